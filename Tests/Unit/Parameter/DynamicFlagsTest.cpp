#include "Source/Parameter/DynamicFlags.h"

#include "HostInterface/Constants.h"
#include "Source/HostAccess/Exception.h"
#include "Source/Parameter/Catalogue.h"
#include "Source/Sequence.h"
#include "Tests/Support/FakeParameterHost.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace Tessavoy {
namespace {

/// What of the settings decides about the flags.
struct Settings {
    A_long shape = 2;
    A_long splitting = 1;
    A_long sequence = 1;
    double speed = 1;
    std::string script = {};
    A_long camera = 0;
};

/// A host with these settings, which notes in which order its parameters and its suite are taken and given back.
class FlagHost {
public:
    explicit FlagHost(const Settings& settings) {
        current = this;
        setPopup("ShapeType", settings.shape);
        setPopup("ShapeFramesSplittingMode", settings.splitting);
        host.values[parameterIndex("ShapeFramesAnimationSequence")].u.bd.value = settings.sequence;
        host.values[parameterIndex("ShapeFramesAnimationSpeed")].u.fs_d.value = settings.speed;
        host.values[parameterIndex("UseCompCamera")].u.bd.value = settings.camera;
        mRecord.script = settings.script;
        host.handles.constSequenceData = &mBlock;
        noteCalls();
    }
    ~FlagHost() { current = nullptr; }
    FlagHost(const FlagHost&) = delete;
    FlagHost& operator=(const FlagHost&) = delete;

    PF_Err query() { return QueryDynamicFlags(&host.inData(), &host.outData()); }

    FakeParameterHost host;
    std::vector<std::string> calls;

private:
    void setPopup(const char* id, A_long value) { host.values[parameterIndex(id)].u.pd.value = value; }

    void noteCalls() {
        PF_InData& in = host.inData();
        mInner = in.inter;
        mInnerBasic = in.pica_basicP;
        mBasic.AcquireSuite = [](const char* name, std::int32_t version, const void** suite) {
            current->calls.push_back(std::string("acquire ") + name);
            return current->mInnerBasic->AcquireSuite(name, version, suite);
        };
        mBasic.ReleaseSuite = [](const char* name, std::int32_t version) {
            current->calls.push_back(std::string("release ") + name);
            return current->mInnerBasic->ReleaseSuite(name, version);
        };
        in.pica_basicP = &mBasic;
        in.inter.checkout_param = [](PF_ProgPtr effect, PF_ParamIndex index, A_long time, A_long step, A_u_long scale,
                                     PF_ParamDef* record) {
            const PF_Err error = current->mInner.checkout_param(effect, index, time, step, scale, record);
            record->unused = index;
            current->calls.push_back("out " + idOf(index));
            return error;
        };
        in.inter.checkin_param = [](PF_ProgPtr effect, PF_ParamDef* record) {
            current->calls.push_back("in " + idOf(record->unused));
            return current->mInner.checkin_param(effect, record);
        };
    }

    static std::string idOf(A_long index) { return registrationList()[static_cast<std::size_t>(index) - 1]; }

    static inline FlagHost* current = nullptr;

    SequenceData mRecord;
    void* mBlock = &mRecord;
    PF_InteractCallbacks mInner{};
    const SPBasicSuite* mInnerBasic = nullptr;
    SPBasicSuite mBasic{};
};

constexpr A_long allButVary = ~PF_OutFlag_NON_PARAM_VARY;

/// Whether frames vary, whatever the flag said before; every other bit must stay as it was.
bool varies(const Settings& settings) {
    FlagHost host(settings);
    const auto flagsAfter = [&host](A_long before) {
        host.host.outData().out_flags = before;
        EXPECT_EQ(host.query(), PF_Err_NONE);
        EXPECT_EQ(host.host.outData().out_flags & allButVary, before & allButVary);
        return (host.host.outData().out_flags & PF_OutFlag_NON_PARAM_VARY) != 0;
    };
    const bool answer = flagsAfter(0);
    EXPECT_EQ(flagsAfter(-1), answer);
    return answer;
}

TEST(DynamicFlags, FramesVaryWhenATexturePlays) {
    EXPECT_TRUE(varies({}));
    EXPECT_TRUE(varies({.splitting = 2}));
    EXPECT_FALSE(varies({.shape = 1}));
    EXPECT_FALSE(varies({.splitting = 3}));
    EXPECT_FALSE(varies({.sequence = 0}));
}

TEST(DynamicFlags, OnlyASpeedOfExactly0StandsStill) {
    EXPECT_FALSE(varies({.speed = 0}));
    EXPECT_FALSE(varies({.speed = -0.0}));
    for (const double speed : {1e-300, std::numeric_limits<double>::denorm_min(), -2.0, std::nan("")}) {
        EXPECT_TRUE(varies({.speed = speed})) << speed;
    }
}

TEST(DynamicFlags, FramesVaryWithAnyScript) {
    for (const char* script : {" ", "x = 1", "this is not Lua"}) {
        EXPECT_TRUE(varies({.shape = 1, .script = script})) << script;
        EXPECT_TRUE(varies({.speed = 0, .script = script})) << script;
    }
    EXPECT_FALSE(varies({.shape = 1, .script = ""}));
}

TEST(DynamicFlags, TheCameraIsLookedAtWhenItIsInUse) {
    const auto flagsAfter = [](A_long camera, A_long before) {
        FlagHost host({.camera = camera});
        host.host.outData().out_flags2 = before;
        EXPECT_EQ(host.query(), PF_Err_NONE);
        return host.host.outData().out_flags2;
    };
    for (const A_long before : {0, -1}) {
        EXPECT_EQ(flagsAfter(0, before), before & ~PF_OutFlag2_I_USE_3D_CAMERA);
        EXPECT_EQ(flagsAfter(1, before), before | PF_OutFlag2_I_USE_3D_CAMERA);
    }
}

TEST(DynamicFlags, AskInOrderAndGiveBackInTheOppositeOne) {
    FlagHost host({});
    EXPECT_EQ(host.query(), PF_Err_NONE);
    const std::vector<std::string> expected = {
        "out ShapeType",
        "out ShapeFramesSplittingMode",
        "out ShapeFramesAnimationSequence",
        "out ShapeFramesAnimationSpeed",
        "acquire PF Effect Sequence Data Suite",
        "out UseCompCamera",
        "in UseCompCamera",
        "release PF Effect Sequence Data Suite",
        "in ShapeFramesAnimationSpeed",
        "in ShapeFramesAnimationSequence",
        "in ShapeFramesSplittingMode",
        "in ShapeType",
    };
    EXPECT_EQ(host.calls, expected);
    for (const auto& checkout : host.host.checkouts) {
        EXPECT_EQ(checkout.time, 12);
        EXPECT_EQ(checkout.step, 3);
        EXPECT_EQ(checkout.scale, 25u);
    }
}

TEST(DynamicFlags, AHostThatLacksTheSequenceSuiteIsAskedDirectly) {
    FlagHost host({.shape = 1, .script = "x = 1"});
    host.host.inData().sequence_data = host.host.handles.constSequenceData;
    host.host.handles.constSequenceData = nullptr;
    host.host.handles.absentSuites = {"PF Effect Sequence Data Suite"};
    EXPECT_EQ(host.query(), PF_Err_NONE);
    EXPECT_EQ(host.host.outData().out_flags, PF_OutFlag_NON_PARAM_VARY);
}

TEST(DynamicFlags, AnInstanceThatKeepsNothingHasNoScript) {
    FlagHost host({.shape = 1});
    host.host.handles.constSequenceData = nullptr;
    EXPECT_EQ(host.query(), PF_Err_NONE);
    EXPECT_EQ(host.host.outData().out_flags, 0);
}

/// The error of a query that fails, after which as much was given back as was taken.
PF_Err errorOf(FlagHost& host) {
    PF_Err thrown = PF_Err_NONE;
    try {
        host.query();
    } catch (const Exception& exception) {
        thrown = exception.code();
        EXPECT_STREQ(exception.what(), "");
    }
    return thrown;
}

// A parameter whose checkout failed isn't out.
TEST(DynamicFlags, AFailedCheckoutIsThrownAndTheOthersGivenBack) {
    for (int call = 1; call <= 5; ++call) {
        FlagHost host({});
        host.host.checkoutFailure = {call, PF_Err_INVALID_INDEX};
        EXPECT_EQ(errorOf(host), PF_Err_INVALID_INDEX) << call;
        EXPECT_EQ(host.host.checkins.size(), static_cast<std::size_t>(call - 1));
    }
}

TEST(DynamicFlags, AFailedSequenceIsThrownAndTheParametersGivenBack) {
    FlagHost host({});
    host.host.handles.constSequenceError = PF_Err_INVALID_CALLBACK;
    EXPECT_EQ(errorOf(host), PF_Err_INVALID_CALLBACK);
    EXPECT_EQ(host.host.checkins.size(), 4u);
}

// What is given back has no one to tell.
TEST(DynamicFlags, AFailedCheckInEndsNothing) {
    for (int call = 1; call <= 5; ++call) {
        FlagHost host({});
        host.host.checkinFailure = {call, PF_Err_INVALID_INDEX};
        EXPECT_EQ(host.query(), PF_Err_NONE);
        EXPECT_EQ(host.host.checkins.size(), 5u);
        EXPECT_EQ(host.host.outData().out_flags, PF_OutFlag_NON_PARAM_VARY);
    }
}

}  // namespace
}  // namespace Tessavoy
