#pragma once

#include <string>

namespace TessavoyHost {

// Writes to standard error, past any buffer; nobody is told when that fails.
void writeStandardError(const std::string& text);

}  // namespace TessavoyHost
