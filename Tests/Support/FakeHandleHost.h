#pragma once

#include <cstddef>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "HostInterface/Constants.h"
#include "HostInterface/Effect.h"
#include "HostInterface/Suites.h"

namespace Tessavoy {

/// A host of three suites, for code that needs handles and little else: "PF Handle Suite" 2, "PF ANSI Suite" 1 and
/// "PF Effect Sequence Data Suite" 1; the handle calls also stand in the in-data's utilities.
///
/// Every block has exactly the size asked for, filled with rubbish, so that a memory checker sees what is read or
/// written beyond it. One host exists at a time; its functions fail the running test when they are misused (a handle
/// that isn't alive, an unlock without a lock, a block disposed of while locked).
class FakeHandleHost {
public:
    FakeHandleHost();
    ~FakeHandleHost();

    FakeHandleHost(const FakeHandleHost&) = delete;
    FakeHandleHost& operator=(const FakeHandleHost&) = delete;

    /// The in-data and out-data of the running command.
    PF_InData inData{};
    PF_OutData outData{};

    /// A handle with a copy of `bytes`; its block is null for none.
    PF_Handle newHandle(std::span<const std::byte> bytes);
    void dispose(PF_Handle handle);

    /// A copy of the block.
    std::vector<std::byte> bytesOf(PF_Handle handle) const;

    /// What is out at the moment.
    std::size_t liveHandles() const;
    int liveLocks() const;
    int liveSuites() const { return suiteCount; }

    /// Makes the n-th call that can fail (a suite, a handle, a lock), counted from 1, fail from now on; 0 for none.
    void failCall(int n);

    /// Whether the call named by `failCall` came.
    bool failed() const { return failedCall; }

    /// Suites that the host lacks, by name.
    std::set<std::string> absentSuites;

    /// What "PF Effect Sequence Data Suite" answers.
    PF_Handle constSequenceData = nullptr;
    PF_Err constSequenceError = PF_Err_NONE;

    /// For the host's functions: counts a call that can fail; whether it does.
    bool failsNow();

    int suiteCount = 0;

private:
    SPBasicSuite basic{};
    PF_UtilCallbacks utilities{};
    int callsUntilFailure = 0;
    bool failedCall = false;
};

}  // namespace Tessavoy
