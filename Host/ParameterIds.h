#pragma once

#include <string>
#include <vector>

namespace TessavoyHost {

// The effect's parameter ids in the order of registration: the first one is the parameter of index 1. The module itself
// registers labels only, so the build lists the ids from the effect's catalogue.
const std::vector<std::string>& parameterIds();

}  // namespace TessavoyHost
