#include "Source/HostAccess/DrawbotAccess.h"
#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/HostMemory.h"
#include "Source/HostAccess/SuiteHandler.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace Tessavoy {
namespace {

/// What the fake basic suite was asked, in order: "+name version" for an acquisition, "-name version" for a release.
struct Calls {
    std::vector<std::string> log;
    bool missing = false;
    std::string missingName;  ///< one suite that isn't there
    bool nullResult = false;
};
thread_local Calls* calls = nullptr;

const int someTable = 0;

SPErr fakeAcquire(const char* name, std::int32_t version, const void** suite) {
    calls->log.push_back("+" + std::string(name) + " " + std::to_string(version));
    if (calls->missing || calls->missingName == name) {
        return 1;
    }
    *suite = calls->nullResult ? nullptr : &someTable;
    return 0;
}

SPErr fakeRelease(const char* name, std::int32_t version) {
    calls->log.push_back("-" + std::string(name) + " " + std::to_string(version));
    return 99;
}

int fakeSprintf(char* text, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsprintf(text, format, arguments);
    va_end(arguments);
    return length;
}

int liveHandles = 0;
int liveLocks = 0;
bool refuseHandles = false;

PF_Handle fakeNewHandle(A_u_longlong size) {
    if (refuseHandles) {
        return nullptr;
    }
    ++liveHandles;
    return new void*(std::malloc(size));
}
void* fakeLockHandle(PF_Handle handle) {
    ++liveLocks;
    return *handle;
}
void fakeUnlockHandle(PF_Handle) {
    --liveLocks;
}
void fakeDisposeHandle(PF_Handle handle) {
    --liveHandles;
    std::free(*handle);
    delete handle;
}

class HostAccess : public testing::Test {
protected:
    HostAccess() {
        mBasic.AcquireSuite = fakeAcquire;
        mBasic.ReleaseSuite = fakeRelease;
        mUtils.ansi.sprintf = fakeSprintf;
        mUtils.host_new_handle = fakeNewHandle;
        mUtils.host_lock_handle = fakeLockHandle;
        mUtils.host_unlock_handle = fakeUnlockHandle;
        mUtils.host_dispose_handle = fakeDisposeHandle;
        mInData.utils = &mUtils;
        mInData.pica_basicP = &mBasic;
        calls = &mCalls;
        liveHandles = liveLocks = 0;
        refuseHandles = false;
    }

    Calls mCalls;
    SPBasicSuite mBasic{};
    PF_UtilCallbacks mUtils{};
    PF_InData mInData{};
    PF_OutData mOutData{};
};

TEST_F(HostAccess, ANullBasicSuiteThrowsThePlainInteger516) {
    try {
        SuiteHandler handler(nullptr);
        FAIL();
    } catch (PF_Err error) {
        EXPECT_EQ(error, 516);
    }
}

TEST_F(HostAccess, ASuiteIsAcquiredOnFirstUseAndReleasedOnce) {
    {
        SuiteHandler handler(&mBasic);
        EXPECT_TRUE(mCalls.log.empty());
        handler.get<PF_HandleSuite1>();
        handler.get<PF_HandleSuite1>();
        handler.get<AEGP_LayerSuite8>();
    }
    const std::vector<std::string> expected = {"+PF Handle Suite 2", "+AEGP Layer Suite 14", "-PF Handle Suite 2",
                                               "-AEGP Layer Suite 14"};
    EXPECT_EQ(mCalls.log, expected);
}

TEST_F(HostAccess, AHandlerThatAcquiredNothingMakesNoHostCall) {
    { SuiteHandler handler(&mBasic); }
    EXPECT_TRUE(mCalls.log.empty());
}

TEST_F(HostAccess, AMissingSuiteAndANullTableThrowThePlainInteger516) {
    for (const bool missing : {true, false}) {
        mCalls.missing = missing;
        mCalls.nullResult = !missing;
        SuiteHandler handler(&mBasic);
        EXPECT_THROW(
            {
                try {
                    handler.get<PF_WorldSuite2>();
                } catch (PF_Err error) {
                    EXPECT_EQ(error, 516);
                    throw;
                }
            },
            PF_Err);
    }
}

TEST_F(HostAccess, ASuiteThatFailedToComeIsNotReleased) {
    mCalls.missing = true;
    {
        SuiteHandler handler(&mBasic);
        EXPECT_THROW(handler.get<PF_WorldSuite2>(), PF_Err);
    }
    EXPECT_EQ(mCalls.log, std::vector<std::string>{"+PF World Suite 2"});
}

TEST_F(HostAccess, ASingleSuiteThatIsMissingIsReportedWithItsText) {
    mCalls.missing = true;
    const void* suite = &someTable;
    EXPECT_EQ(acquireSuite(&mInData, &mOutData, "PF World Suite", 2, "Couldn't load suite.", &suite), 516);
    EXPECT_EQ(suite, nullptr);
    EXPECT_STREQ(mOutData.return_msg, "Couldn't load suite.");
    EXPECT_EQ(mOutData.out_flags, PF_OutFlag_DISPLAY_ERROR_MESSAGE);
}

TEST_F(HostAccess, ASingleSuiteIsAcquiredAndReleased) {
    const void* suite = nullptr;
    EXPECT_EQ(acquireSuite(&mInData, &mOutData, "PF World Suite", 2, defaultAcquireFailure, &suite), 0);
    EXPECT_EQ(suite, &someTable);
    EXPECT_EQ(mOutData.out_flags, 0);
    releaseSuite(&mInData, &mOutData, "PF World Suite", 2, defaultReleaseFailure);
    EXPECT_EQ(mCalls.log.back(), "-PF World Suite 2");
}

TEST_F(HostAccess, AHostWithoutABasicSuiteFailsBothWays) {
    mInData.pica_basicP = nullptr;
    const void* suite = nullptr;
    EXPECT_EQ(acquireSuite(&mInData, &mOutData, "PF World Suite", 2, defaultAcquireFailure, &suite), 516);
    EXPECT_STREQ(mOutData.return_msg, "Not able to acquire AEFX Suite.");
    EXPECT_EQ(releaseSuite(&mInData, &mOutData, "PF World Suite", 2, defaultReleaseFailure), 516);
    EXPECT_STREQ(mOutData.return_msg, "Not able to release AEFX Suite.");
}

TEST_F(HostAccess, AnExceptionsCopyKeepsCodeAndText) {
    const Exception original(513, "text");
    const Exception copy = original;
    EXPECT_EQ(copy.code(), 513);
    EXPECT_STREQ(copy.what(), "text");
    EXPECT_STREQ(Exception(4).what(), "");
}

TEST_F(HostAccess, HostMemoryIsLockedWhileItLivesAndGivenBack) {
    void* block = HostAlloc(&mInData, 100);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(liveHandles, 1);
    EXPECT_EQ(liveLocks, 1);
    HostFree(&mInData, block);
    EXPECT_EQ(liveHandles, 0);
    EXPECT_EQ(liveLocks, 0);
}

TEST_F(HostAccess, FreeingNullDoesNothing) {
    HostFree(&mInData, nullptr);
    EXPECT_EQ(liveHandles, 0);
    EXPECT_EQ(liveLocks, 0);
}

TEST_F(HostAccess, RefusedHostMemoryThrowsTheHostsErrorEnumerationAndNotAnInteger) {
    refuseHandles = true;
    try {
        HostAlloc(&mInData, 100);
        FAIL();
    } catch (PF_Err) {
        FAIL() << "a plain integer";
    } catch (PF_ErrorValue error) {
        EXPECT_EQ(error, PF_Err_OUT_OF_MEMORY);
    }
}

const std::vector<std::string> drawbotAcquisitions = {"+DRAWBOT Draw Suite 1", "+DRAWBOT Supplier Suite 1",
                                                      "+DRAWBOT Surface Suite 2", "+DRAWBOT Path Suite 1"};

TEST_F(HostAccess, TheDrawingSuitesComeInTheirOrderAndGoInTheSame) {
    DrawbotSuites suites;
    EXPECT_EQ(AcquireDrawbotSuites(&mInData, &mOutData, &suites), 0);
    EXPECT_EQ(mCalls.log, drawbotAcquisitions);
    EXPECT_NE(suites.path, nullptr);
    mCalls.log.clear();
    // The fake host answers every release with 99.
    EXPECT_EQ(ReleaseDrawbotSuites(&mInData, &mOutData), 99);
    EXPECT_EQ(mCalls.log, (std::vector<std::string>{"-DRAWBOT Draw Suite 1", "-DRAWBOT Supplier Suite 1",
                                                    "-DRAWBOT Surface Suite 2", "-DRAWBOT Path Suite 1"}));
}

TEST_F(HostAccess, TheDrawingSuitesStopAtTheFirstThatIsMissing) {
    mCalls.missingName = "DRAWBOT Surface Suite";
    DrawbotSuites suites;
    EXPECT_EQ(AcquireDrawbotSuites(&mInData, &mOutData, &suites), 516);
    EXPECT_EQ(mCalls.log, std::vector<std::string>(drawbotAcquisitions.begin(), drawbotAcquisitions.begin() + 3));
    EXPECT_EQ(suites.path, nullptr);
}

TEST_F(HostAccess, NoPlaceForTheDrawingSuitesIsNamed) {
    EXPECT_EQ(AcquireDrawbotSuites(&mInData, &mOutData, nullptr), 514);
    EXPECT_STREQ(mOutData.return_msg, "NULL suite pointer passed to AEFX_AcquireDrawbotSuites");
    EXPECT_TRUE(mCalls.log.empty());
}

TEST_F(HostAccess, AMessageIsCutAt255Characters) {
    reportMessage(&mOutData, std::string(300, 'x').c_str());
    EXPECT_EQ(std::string(mOutData.return_msg), std::string(255, 'x'));
    EXPECT_EQ(mOutData.out_flags, PF_OutFlag_DISPLAY_ERROR_MESSAGE);
}

}  // namespace
}  // namespace Tessavoy
