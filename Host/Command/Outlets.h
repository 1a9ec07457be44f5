#pragma once

#include <string>

namespace TessavoyHost {

// Descriptors to which the command tells what ends it: in words, as an object of the progress stream, or both. -1: not
// so. They stay open to the end of the process.
struct Outlets {
    int words = -1;
    int objects = -1;
};

// At first words go to standard error, and there are no objects. Signal handlers may ask for them.
Outlets outlets() noexcept;
void setOutlets(const Outlets& outlets) noexcept;

// Tells of a failure of the command as a whole: "tessavoy: ...", {"event":"error","text":"..."}.
void tellFailure(const std::string& text);

}  // namespace TessavoyHost
