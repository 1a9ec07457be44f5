#include "Tests/Support/FakePathHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <utility>

namespace Tessavoy {

namespace {

FakePathHost* host = nullptr;

SPErr acquireSuite(const char* name, std::int32_t version, const void** suite) {
    *suite = nullptr;
    const PF_Err error = host->note({name});
    if (error != 0 || host->absentSuites.contains(name)) {
        return 1;
    }
    *suite = FakePathSuites::find(name, version);
    EXPECT_NE(*suite, nullptr) << name << " " << version << " isn't served by this host";
    ++host->suiteCount;
    return 0;
}

SPErr releaseSuite(const char* name, std::int32_t version) {
    EXPECT_NE(FakePathSuites::find(name, version), nullptr);
    --host->suiteCount;
    return 0;
}

}  // namespace

FakePathHost::FakePathHost() {
    EXPECT_EQ(host, nullptr);
    host = this;
    basic.AcquireSuite = acquireSuite;
    basic.ReleaseSuite = releaseSuite;
    inData.pica_basicP = &basic;
    inData.effect_ref = reinterpret_cast<PF_ProgPtr>(this);
    inData.current_time = currentTime;
    inData.time_step = timeStep;
    inData.time_scale = timeScale;
}

FakePathHost::~FakePathHost() {
    EXPECT_EQ(liveSuites(), 0) << "suites not released";
    host = nullptr;
}

void FakePathHost::failCall(int n) {
    calls.clear();
    firstFailing = lastFailing = n;
    firstFailure = 0;
    suiteFailed = false;
}

void FakePathHost::failFrom(int n) {
    failCall(n);
    lastFailing = INT_MAX;
}

int FakePathHost::countOf(std::string_view name) const {
    return static_cast<int>(
        std::count_if(calls.begin(), calls.end(), [&](const Call& call) { return call.name == name; }));
}

PF_Err FakePathHost::note(Call call) {
    calls.push_back(std::move(call));
    const int n = static_cast<int>(calls.size());
    if (firstFailing == 0 || n < firstFailing || n > lastFailing) {
        return 0;
    }
    if (firstFailure == 0) {
        firstFailure = n;
        suiteFailed = calls.back().name.ends_with("Suite");
    }
    return errorOf(n);
}

}  // namespace Tessavoy
