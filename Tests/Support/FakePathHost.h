#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Tests/Support/FakePathSuites.h"

namespace Tessavoy {

/// A host of one path, for code that needs "PF Path Query Suite" 1 and "PF Path Data Suite" 1 and no other.
///
/// It notes every call. One host exists at a time; it fails the running test when something comes to it that it never
/// gave out, and at its end when something was not given back.
class FakePathHost {
public:
    using Call = FakePathCall;

    static constexpr PF_PathID id = 7;
    static constexpr A_long currentTime = 1200;
    static constexpr A_long timeStep = 100;
    static constexpr A_u_long timeScale = 2500;

    /// The error of the n-th call, counted from 1, when it is told to fail.
    static constexpr PF_Err errorOf(int n) { return 1000 + n; }

    FakePathHost();
    ~FakePathHost();

    FakePathHost(const FakePathHost&) = delete;
    FakePathHost& operator=(const FakePathHost&) = delete;

    PF_InData inData{};
    FakePathSuites pathSuites{inData, [this](const Call& call) { return note(call); }};
    FakePath& path = pathSuites.paths[id];

    /// Suites that the host lacks, by name.
    std::set<std::string> absentSuites;

    /// The n-th call from now fails, or every call from the n-th on. Suites that are asked for count as calls, those
    /// that are given back don't. What gives something back is done all the same.
    void failCall(int n);
    void failFrom(int n);

    /// Whether a call failed on demand, and whether that was a suite.
    bool failed() const { return firstFailure != 0; }
    bool failedAtASuite() const { return suiteFailed; }

    /// Every call in its order; a suite that is asked for is noted by its name.
    std::vector<Call> calls;
    int countOf(std::string_view name) const;

    /// What is out at the moment.
    int livePaths() const { return pathSuites.livePaths(); }
    int livePreparations() const { return pathSuites.livePreparations(); }
    int liveSuites() const { return suiteCount; }

    /// For the host's functions: notes a call and gives its result.
    PF_Err note(Call call);
    int suiteCount = 0;

private:
    SPBasicSuite basic{};
    int firstFailing = 0;
    int lastFailing = 0;
    int firstFailure = 0;
    bool suiteFailed = false;
};

}  // namespace Tessavoy
