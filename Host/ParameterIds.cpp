#include "Host/ParameterIds.h"

namespace TessavoyHost {

const std::vector<std::string>& parameterIds() {
    static const std::vector<std::string> ids = {
// One quoted id and a comma a line, written by the build.
#include "ParameterIds.inc"
    };
    return ids;
}

}  // namespace TessavoyHost
