#pragma once

#include <string>

#include "HostInterface/Types.h"

namespace TessavoyHost {

// "1.3.1" of a version as modules state it; the stage and build stand behind unless it is a release of build 0.
std::string versionInWords(A_u_long version);

}  // namespace TessavoyHost
