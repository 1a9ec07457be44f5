#pragma once

#include <string>
#include <vector>

namespace Tessavoy {

/// What the panel must declare, one line for each parameter in the words of describeParameter, written down on its own
/// and not made from the effect's tables.
std::vector<std::string> expectedPanel();

}  // namespace Tessavoy
