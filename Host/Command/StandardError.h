#pragma once

#include <string>
#include <string_view>

namespace TessavoyHost {

// Writes all bytes, past any buffer. False at an error, which errno tells. Signal handlers may call it.
bool writeAll(int descriptor, std::string_view bytes) noexcept;

// Writes to standard error; nobody is told when that fails.
void writeStandardError(const std::string& text);

}  // namespace TessavoyHost
