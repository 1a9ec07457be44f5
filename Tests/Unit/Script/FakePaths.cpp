#include "Tests/Unit/Script/FakePaths.h"

#include <gtest/gtest.h>

namespace Tessavoy {

namespace {

FakePaths* fake = nullptr;

SPErr acquireSuite(const char* name, std::int32_t version, const void** suite) {
    ++fake->acquisitions[name];
    *suite = FakePathSuites::find(name, version);
    if (*suite == nullptr) {
        return fake->handleBasic->AcquireSuite(name, version, suite);
    }
    if (fake->host.absentSuites.contains(name) || fake->host.failsNow()) {
        *suite = nullptr;
        return 1;
    }
    ++fake->host.suiteCount;
    return 0;
}

SPErr releaseSuite(const char* name, std::int32_t version) {
    if (FakePathSuites::find(name, version) == nullptr) {
        return fake->handleBasic->ReleaseSuite(name, version);
    }
    --fake->host.suiteCount;
    return 0;
}

}  // namespace

FakePaths::FakePaths(FakeHandleHost& handleHost)
    : FakePathSuites(handleHost.inData,
                     [this](const FakePathCall&) { return host.failsNow() ? failure : PF_Err_NONE; }),
      host(handleHost),
      handleBasic(handleHost.inData.pica_basicP) {
    fake = this;
    mBasic.AcquireSuite = acquireSuite;
    mBasic.ReleaseSuite = releaseSuite;
    host.inData.pica_basicP = &mBasic;
}

FakePaths::~FakePaths() {
    host.inData.pica_basicP = handleBasic;
    fake = nullptr;
}

}  // namespace Tessavoy
