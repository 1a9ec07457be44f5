#pragma once

#include <string>
#include <utility>
#include <vector>

namespace TessavoyHost {

// The libraries that the command is linked with: name and version, as the libraries tell where they can.
std::vector<std::pair<std::string, std::string>> linkedLibraries();

}  // namespace TessavoyHost
