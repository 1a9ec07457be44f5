#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace TessavoyHost {

std::filesystem::path pathFromUtf8(std::string_view text);
std::string utf8(const std::filesystem::path& path);

// The bytes of a file; nothing when it can't be read, with the reason in words.
std::optional<std::string> readFile(const std::filesystem::path& file, std::string& reason);

}  // namespace TessavoyHost
