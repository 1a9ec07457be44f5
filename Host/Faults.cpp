#include "Host/Faults.h"

#include <algorithm>
#include <new>
#include <utility>

namespace TessavoyHost {

void Faults::failNth(std::string_view call, int n, PF_Err error) {
    arm({std::string(call), n, error});
}

void Faults::exhaustNth(std::string_view call, int n) {
    arm({std::string(call), n, std::nullopt});
}

void Faults::arm(Rule rule) {
    const std::lock_guard lock(mMutex);
    mRules.push_back(std::move(rule));
    mArmed = true;
}

void Faults::removeSuite(std::string_view name, A_long version) {
    const std::lock_guard lock(mMutex);
    mRemoved.push_back({std::string(name), version});
}

void Faults::clear() {
    const std::lock_guard lock(mMutex);
    mRules.clear();
    mRemoved.clear();
    mArmed = false;
    mStruck = 0;
}

PF_Err Faults::answerOf(std::string_view call) {
    if (!mArmed)
        return 0;
    const std::lock_guard lock(mMutex);
    PF_Err error = 0;
    for (Rule& rule : mRules) {
        if (rule.remaining == 0 || (rule.call != anyCall && rule.call != call))
            continue;
        if (--rule.remaining > 0)
            continue;
        ++mStruck;
        if (!rule.error)
            throw std::bad_alloc();
        error = *rule.error;
    }
    return error;
}

bool Faults::suiteRemoved(std::string_view name, A_long version) const {
    const std::lock_guard lock(mMutex);
    return std::any_of(mRemoved.begin(), mRemoved.end(),
                       [&](const RemovedSuite& suite) { return suite.name == name && suite.version == version; });
}

}  // namespace TessavoyHost
