#pragma once

#include <string>
#include <vector>

#include "HostInterface/Effect.h"

namespace TessavoyHost {

// What one command of the module came to.
struct CommandResult {
    PF_Err error = PF_Err_NONE;       // the module's answer; the host's own where only the host failed
    std::string message;              // what the module wants said, or else the failure
    std::string failure;              // of the host itself in one of its calls, with what helps; mostly empty
    bool displayError = false;        // the module asks that the message be shown as an error
    bool projectDirty = false;        // the module says that it changed the project
    PF_OutData out{};                 // as the module left it
    std::vector<int> changed;         // parameters whose values a command of the panel changed
    std::vector<std::string> broken;  // what was lent and not given back, and other broken promises, one text each
};

}  // namespace TessavoyHost
