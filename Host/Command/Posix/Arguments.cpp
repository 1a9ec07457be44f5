#include "Host/Command/Arguments.h"

namespace TessavoyHost {

std::vector<std::string> programArguments(int argc, const char* const* argv) {
    return {argv, argv + argc};
}

}  // namespace TessavoyHost
