#pragma once

#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "HostInterface/Types.h"

namespace TessavoyHost {

// Makes host calls fail on purpose. Calls are named by their published slot names ("checkout_param", "host_new_handle",
// "AEGP_GetEffectCamera", "AcquireSuite", "abort"); a call that returns an address instead of an error gives null.
// Thread safe.
class Faults {
public:
    // Stands for every call.
    static constexpr std::string_view anyCall = "*";

    // The n-th call of that name from now on, counted from 1, answers with the error instead of doing its work.
    void failNth(std::string_view call, int n, PF_Err error);
    // The n-th call of that name from now on runs out of memory inside the host: std::bad_alloc is thrown in it.
    void exhaustNth(std::string_view call, int n);
    // The suite is absent until cleared.
    void removeSuite(std::string_view name, A_long version);
    // Ends all faults, and the counting.
    void clear();

    // Counts a call, and gives the error it must answer with, or 0. Throws std::bad_alloc where memory is to run out.
    PF_Err answerOf(std::string_view call);
    bool suiteRemoved(std::string_view name, A_long version) const;

    // How many faults have struck since the last clear().
    int struck() const { return mStruck; }

private:
    struct Rule {
        std::string call;
        int remaining;                // calls until it strikes; 0 afterwards
        std::optional<PF_Err> error;  // none: memory runs out
    };
    struct RemovedSuite {
        std::string name;
        A_long version;
    };

    void arm(Rule rule);

    mutable std::mutex mMutex;
    std::atomic<bool> mArmed = false;
    std::atomic<int> mStruck = 0;
    std::vector<Rule> mRules;
    std::vector<RemovedSuite> mRemoved;
};

}  // namespace TessavoyHost
