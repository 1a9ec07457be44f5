#include "Tests/Module/FailingCalls.h"

#include <gtest/gtest.h>

namespace TessavoyHost {

int failEachCall(EffectHost& host, PF_Err given, const FailingCommand& command, std::string_view call) {
    constexpr int enough = 2000;
    Faults& faults = host.faults();
    for (int number = 1; number <= enough; ++number) {
        SCOPED_TRACE(testing::Message() << "call " << number << " of " << call);
        command.prepare();
        faults.failNth(call, number, given);
        const CommandResult result = command.run();
        const bool struck = faults.struck() > 0;
        faults.clear();
        if (!struck) {
            command.expectDone(result);
            return number - 1;
        }
        command.expectFailed(result, number);
    }
    ADD_FAILURE() << "a command of more than " << enough << " calls of " << call;
    return enough;
}

}  // namespace TessavoyHost
