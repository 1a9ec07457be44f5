#include "Source/Script/ScriptCheck.h"

#include "Source/Script/ScriptHost.h"

namespace Tessavoy {

std::string compileErrorOf(PF_InData* inData, const std::string& script) {
    ScriptHost host;
    return host.compile(inData, script.c_str(), nullptr) ? std::string() : host.errorText();
}

}  // namespace Tessavoy
