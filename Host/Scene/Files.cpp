#include "Host/Scene/Files.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

namespace TessavoyHost {

std::filesystem::path pathFromUtf8(std::string_view text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

std::string utf8(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

std::optional<std::string> readFile(const std::filesystem::path& file, std::string& reason) {
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored)) {
        reason = "is a folder";
        return std::nullopt;
    }
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream.is_open() || stream.bad()) {
        reason = errno == 0 ? "can't be read" : std::strerror(errno);
        return std::nullopt;
    }
    return bytes;
}

}  // namespace TessavoyHost
