#pragma once

#include <string>
#include <string_view>

#include "HostInterface/Types.h"

namespace TessavoyHost {

// Names go to and from modules in UTF-16. What is not well formed becomes U+FFFD.
std::basic_string<A_UTF16Char> toUtf16(std::string_view utf8);
std::string fromUtf16(std::basic_string_view<A_UTF16Char> units);
// Up to a zero.
std::string fromUtf16(const A_UTF16Char* text);

}  // namespace TessavoyHost
