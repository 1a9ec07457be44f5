#pragma once

#include "HostInterface/DrawbotSuites.h"

#include <string_view>
#include <vector>

namespace Tessavoy {

/// UTF-8 as the host draws it: UTF-16 units, closed by a zero. Where the bytes are not well formed, each maximal
/// subpart of a sequence (Unicode standard, 3.9, "Substitution of Maximal Subparts") becomes one U+FFFD; nothing else
/// is lost.
std::vector<DRAWBOT_UTF16Char> utf16FromUtf8(std::string_view text);

}  // namespace Tessavoy
