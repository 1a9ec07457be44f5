#pragma once

#include <string>
#include <vector>

#include "HostInterface/Effect.h"

namespace TessavoyHost {

// What one command of the module came to.
struct CommandResult {
    PF_Err error = PF_Err_NONE;
    std::string message;              // what the module wants said
    std::string failure;              // of a host call, for whose sake the command counts as failed; mostly empty
    bool displayError = false;        // the module asks that the message be shown as an error
    bool projectDirty = false;        // the module says that it changed the project
    PF_OutData out{};                 // as the module left it
    std::vector<std::string> broken;  // what was lent and not given back, and other broken promises, one text each
};

}  // namespace TessavoyHost
