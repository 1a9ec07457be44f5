#pragma once

#include <string>

#include "HostInterface/Effect.h"

namespace Tessavoy {

/// The message that compiling `script` (Lua text, not empty) gives; empty when it compiles.
std::string compileErrorOf(PF_InData* inData, const std::string& script);

}  // namespace Tessavoy
