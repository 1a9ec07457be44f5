#include "Host/Command/StandardError.h"

#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace TessavoyHost {

void writeStandardError(const std::string& text) {
    for (std::string_view rest = text; !rest.empty();) {
        const ssize_t written = ::write(STDERR_FILENO, rest.data(), rest.size());
        if (written < 0 && errno != EINTR) {
            return;
        }
        rest.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
}

}  // namespace TessavoyHost
