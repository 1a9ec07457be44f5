#pragma once

#include <string>
#include <vector>

namespace TessavoyHost {

// A run holds its frames as a list, with what was said of each; more is surely a mistake.
inline constexpr int mostFrames = 10'000'000;

// The frames that a list names, in its order. Its parts are joined by commas: "12" one frame, "0-99" a range, "0-99x5"
// every fifth of it from the first on, "0-99y5" the others. Frames count from 0 to frameCount - 1.
// Throws HostError(CommandLine) for anything else, for a frame outside, for a frame that is named twice, and for more
// frames than one run takes; all but the third before any memory is taken for the frames.
std::vector<int> parseFrameList(const std::string& list, int frameCount);

// Of an option that names one frame. Throws HostError(CommandLine) for a frame outside.
void checkFrame(int frame, int frameCount);

// Frames in rising order as such a list, runs as ranges: "0-3, 7".
std::string framesInWords(std::vector<int> frames);

}  // namespace TessavoyHost
