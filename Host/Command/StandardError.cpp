#include "Host/Command/StandardError.h"

#include "Host/Command/Descriptors.h"

namespace TessavoyHost {

void writeStandardError(const std::string& text) {
    writeAll(standardError, text);
}

}  // namespace TessavoyHost
