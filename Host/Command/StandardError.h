#pragma once

#include <string>

namespace TessavoyHost {

// Writes the text whole, past any buffer, as far as anybody reads it.
void writeStandardError(const std::string& text);

}  // namespace TessavoyHost
