#pragma once

#include "HostInterface/Parameters.h"

#include <string>

namespace Tessavoy {

/// One line that says all that a host learns of a registered parameter, its disk id and arbitrary default apart, such
/// as `float "Scale" 0 to 100000, slider 0 to 100, default 100, precision 1 % flags 0 ui 0`.
std::string describeParameter(const PF_ParamDef& definition);

}  // namespace Tessavoy
