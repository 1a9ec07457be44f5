#include "Host/Command/StandardError.h"

#include <unistd.h>

#include <cerrno>

namespace TessavoyHost {

bool writeAll(int descriptor, std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

void writeStandardError(const std::string& text) {
    writeAll(STDERR_FILENO, text);
}

}  // namespace TessavoyHost
