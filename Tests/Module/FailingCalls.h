#pragma once

#include <functional>
#include <string_view>

#include "Host/EffectHost.h"

namespace TessavoyHost {

// A command of the module, of which host calls are to fail.
struct FailingCommand {
    // Before each run; no call fails meanwhile.
    std::function<void()> prepare = [] {};
    std::function<CommandResult()> run;
    // Looks at what came of a run in which a call failed.
    std::function<void(const CommandResult& result, int failed)> expectFailed;
    // Looks at what came of the run in which none did.
    std::function<void(const CommandResult& result)> expectDone;
};

// Runs the command again and again, each time with one more of its host calls of that name failing with the error, from
// the first to the last, and then without. Returns how many calls there are.
int failEachCall(EffectHost& host, PF_Err given, const FailingCommand& command,
                 std::string_view call = Faults::anyCall);

}  // namespace TessavoyHost
