#pragma once

#include <string>
#include <string_view>

namespace TessavoyHost {

// The interpreter keeps texts as UTF-16 units, each in up to three bytes as UTF-8 has them, so that a character beyond
// the first 65536 takes six bytes (CESU-8) where UTF-8 takes four.

// Whether it is all well formed UTF-8.
bool isUtf8(std::string_view text);

std::string toInterpreterText(std::string_view utf8);

// Half pairs and whatever else is not well formed become U+FFFD.
std::string fromInterpreterText(std::string_view text);

}  // namespace TessavoyHost
