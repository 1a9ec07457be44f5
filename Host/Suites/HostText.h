#pragma once

#include <string>

#include "HostInterface/Types.h"

namespace TessavoyHost {

class CommandContext;

// A text in a memory handle of the caller's, closed by a zero: as bytes, or as UTF-16 made of UTF-8.
AEGP_MemHandle lendText(CommandContext& context, const std::string& text);
AEGP_MemHandle lendUtf16(CommandContext& context, const std::string& utf8);

}  // namespace TessavoyHost
