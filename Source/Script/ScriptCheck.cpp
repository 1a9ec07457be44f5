#include "Source/Script/ScriptCheck.h"

namespace Tessavoy {

std::string compileErrorOf(PF_InData*, const std::string&) {
    return {};
}

}  // namespace Tessavoy
