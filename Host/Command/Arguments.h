#pragma once

#include <string>
#include <vector>

namespace TessavoyHost {

// The program's name and its arguments, as main got them. On Windows, where main's are in the system's code page, they
// are taken from the system instead, in UTF-8.
std::vector<std::string> programArguments(int argc, const char* const* argv);

}  // namespace TessavoyHost
