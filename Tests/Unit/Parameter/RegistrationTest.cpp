#include "Source/Parameter/Registration.h"

#include "Source/Editors/GradientParameter.h"
#include "Source/Editors/RampParameter.h"
#include "Source/Parameter/Catalogue.h"
#include "Tests/Support/CustomKinds.h"
#include "Tests/Support/FakeParameterHost.h"
#include "Tests/Support/PanelDescription.h"
#include "Tests/Unit/Parameter/ExpectedPanel.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

namespace Tessavoy {
namespace {

class RegistrationTest : public ::testing::Test {
protected:
    PF_Err registerAll() { return registerParameters(&host.inData(), &host.outData()); }

    const PF_ParamDef& added(std::string_view id) const {
        return host.added.at(static_cast<std::size_t>(parameterIndex(id) - 1));
    }

    /// Frees the defaults that the host took over, as it does when the effect goes. A default of a refused parameter is
    /// the effect's to free.
    void freeTakenDefaults() {
        const std::size_t taken = static_cast<std::size_t>(host.outData().num_params - 1);
        for (std::size_t i = 0; i < taken; ++i) {
            const PF_ParamDef& definition = host.added[i];
            if (definition.param_type == PF_Param_ARBITRARY_DATA && definition.u.arb_d.dephault != nullptr) {
                freeDefault(definition);
            }
        }
    }

    FakeParameterHost host;

private:
    void freeDefault(const PF_ParamDef& definition) {
        PF_ArbParamsExtra extra = {};
        extra.which_function = PF_Arbitrary_DISPOSE_FUNC;
        extra.u.dispose_func_params = {definition.u.arb_d.refconPV, definition.u.arb_d.dephault};
        const bool isRamp = definition.ui_height == 140;
        (isRamp ? HandleRampArbitrary : HandleGradientArbitrary)(&host.inData(), &host.outData(), &extra);
    }
};

TEST_F(RegistrationTest, DeclaresEveryParameterAsThePanelHasIt) {
    ASSERT_EQ(registerAll(), 0);
    const std::vector<std::string> expected = expectedPanel();
    ASSERT_EQ(host.added.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(describeParameter(host.added[i]), expected[i]) << registrationList()[i];
    }
    freeTakenDefaults();
}

TEST_F(RegistrationTest, CountsTheInputLayerWithTheParameters) {
    host.outData().num_params = 12345;
    ASSERT_EQ(registerAll(), 0);
    EXPECT_EQ(host.outData().num_params, 997);
    EXPECT_EQ(host.added.size(), 996u);
    freeTakenDefaults();
}

TEST_F(RegistrationTest, AddsEachParameterAtTheEndUnderItsDiskId) {
    ASSERT_EQ(registerAll(), 0);
    for (std::size_t i = 0; i < host.added.size(); ++i) {
        const std::string& id = registrationList()[i];
        EXPECT_EQ(host.addedAt[i], -1) << id;
        EXPECT_EQ(host.added[i].uu.id, parameterDiskId(id)) << id;
    }
    freeTakenDefaults();
}

TEST_F(RegistrationTest, ArbitraryParametersCarryTheirDiskIdAsSixteenBits) {
    ASSERT_EQ(registerAll(), 0);
    int count = 0;
    for (const PF_ParamDef& definition : host.added) {
        if (definition.param_type == PF_Param_ARBITRARY_DATA) {
            EXPECT_EQ(definition.u.arb_d.id, definition.uu.id);
            EXPECT_EQ(definition.u.arb_d.pad, 0);
            EXPECT_EQ(definition.u.arb_d.value, nullptr);
            ++count;
        }
    }
    EXPECT_EQ(count, 22);
    freeTakenDefaults();
}

TEST_F(RegistrationTest, SupervisesExactlyTheControlsThatChangeThePanel) {
    std::set<std::string> expected = {"UseCompCamera",
                                      "ShapeType",
                                      "ShapeFramesSplittingMode",
                                      "ShapeFramesAnimationSequence",
                                      "ShapeDrawMode",
                                      "ShapeBillboard",
                                      "ShapeUniformScaling",
                                      "ShapeFeatherScreenSpace",
                                      "Script",
                                      "SortByZ",
                                      "FogEnabled",
                                      "OutputType",
                                      "OutputZDepthClamp",
                                      "OutputZDepthAlpha",
                                      "ShowZBounds"};
    for (const auto& facts : Testing::customKinds) {
        const std::string kind = facts.prefix;
        expected.insert(kind + ".ShowRenameButtons");
        for (int slot = 1; slot <= 10; ++slot) {
            expected.insert(kind + ".Rename" + std::to_string(slot));
        }
    }
    ASSERT_EQ(registerAll(), 0);
    std::set<std::string> supervised;
    for (std::size_t i = 0; i < host.added.size(); ++i) {
        if ((host.added[i].flags & PF_ParamFlag_SUPERVISE) != 0) {
            supervised.insert(registrationList()[i]);
        }
    }
    EXPECT_EQ(supervised, expected);
    freeTakenDefaults();
}

TEST_F(RegistrationTest, GroupsOpenAndCloseInPairs) {
    ASSERT_EQ(registerAll(), 0);
    int depth = 0;
    for (const PF_ParamDef& definition : host.added) {
        depth += definition.param_type == PF_Param_GROUP_START ? 1 : 0;
        depth -= definition.param_type == PF_Param_GROUP_END ? 1 : 0;
        ASSERT_GE(depth, 0);
    }
    EXPECT_EQ(depth, 0);
    freeTakenDefaults();
}

TEST_F(RegistrationTest, RegistersTheScriptsControlRightAfterTheScript) {
    ASSERT_EQ(registerAll(), 0);
    ASSERT_EQ(host.controls.size(), 1u);
    EXPECT_EQ(host.addedBeforeControl, static_cast<std::size_t>(parameterIndex("Script")));
    PF_CustomUIInfo expected = {};
    expected.events = 4;
    EXPECT_EQ(std::memcmp(&host.controls.front(), &expected, sizeof expected), 0);
    freeTakenDefaults();
}

TEST_F(RegistrationTest, TheScriptHasNoDefaultHandle) {
    ASSERT_EQ(registerAll(), 0);
    EXPECT_EQ(added("Script").u.arb_d.dephault, nullptr);
    freeTakenDefaults();
}

TEST_F(RegistrationTest, CustomGradientsStartWithTheEditorsDefault) {
    ASSERT_EQ(registerAll(), 0);
    for (const char* id : {"Gradient.Custom1", "Gradient.Custom10"}) {
        const CheckOutGradient gradient(&host.inData(), added(id).u.arb_d.dephault);
        EXPECT_TRUE(sameValue(*gradient, defaultGradient())) << id;
    }
    freeTakenDefaults();
}

TEST_F(RegistrationTest, TheFogsGradientIsOneGreyStopInTheMiddle) {
    ASSERT_EQ(registerAll(), 0);
    {
        const CheckOutGradient gradient(&host.inData(), added("FogColorGradient").u.arb_d.dephault);
        ASSERT_EQ(gradient->points.size(), 1u);
        const auto& [position, point] = *gradient->points.begin();
        EXPECT_EQ(position, 0.5f);
        EXPECT_EQ(point.r, 0.3f);
        EXPECT_EQ(point.g, 0.3f);
        EXPECT_EQ(point.b, 0.3f);
        EXPECT_EQ(point.a, 1.0f);
    }
    freeTakenDefaults();
}

TEST_F(RegistrationTest, CustomRampsStartWithBezierInterpolation) {
    ASSERT_EQ(registerAll(), 0);
    for (const char* id : {"Ramp.Custom1", "Ramp.Custom10"}) {
        const CheckOutRamp ramp(&host.inData(), added(id).u.arb_d.dephault);
        EXPECT_EQ(ramp->interpolation, 3) << id;
        EXPECT_EQ(ramp->mode, 0) << id;
        EXPECT_EQ(ramp->points, defaultRamp().points) << id;
    }
    freeTakenDefaults();
}

TEST_F(RegistrationTest, EveryArbitraryParameterHasAHandleOfItsOwn) {
    ASSERT_EQ(registerAll(), 0);
    EXPECT_EQ(host.handles.liveHandles(), 21u);
    freeTakenDefaults();
    EXPECT_EQ(host.handles.liveHandles(), 0u);
}

TEST_F(RegistrationTest, ARefusedParameterEndsTheCommandWithTheHostsError) {
    for (int n = 1; n <= 996; ++n) {
        host.added.clear();
        host.addedAt.clear();
        host.addFailure = {n, 1000 + n};
        ASSERT_EQ(registerAll(), 1000 + n);
        ASSERT_EQ(host.added.size(), static_cast<std::size_t>(n));
        ASSERT_EQ(host.outData().num_params, n);
        freeTakenDefaults();
        ASSERT_EQ(host.handles.liveHandles(), 0u) << "after parameter " << n;
    }
}

TEST_F(RegistrationTest, AFailedControlIsReportedAfterAllParametersAreAdded) {
    host.controlFailure = {1, 77};
    EXPECT_EQ(registerAll(), 77);
    EXPECT_EQ(host.outData().num_params, 997);
    freeTakenDefaults();
}

TEST_F(RegistrationTest, ARefusedParameterCountsBeforeAFailedControl) {
    host.controlFailure = {1, 77};
    host.addFailure = {996, 88};
    EXPECT_EQ(registerAll(), 88);
    freeTakenDefaults();
}

/// A host whose n-th request for handle memory finds none.
class HandleShortage {
public:
    HandleShortage(FakeParameterHost& host, int failingRequest) : mHost(host) {
        sFailing = failingRequest;
        sRequests = 0;
        sInner = host.inData().pica_basicP->AcquireSuite;
        mBasic = *host.inData().pica_basicP;
        mBasic.AcquireSuite = acquire;
        mOuter = host.inData().pica_basicP;
        host.inData().pica_basicP = &mBasic;
    }
    ~HandleShortage() { mHost.inData().pica_basicP = mOuter; }

    static int requests() { return sRequests; }

private:
    static PF_Handle newHandle(A_HandleSize size) {
        return ++sRequests == sFailing ? nullptr : sTable.host_new_handle(size);
    }

    static SPErr acquire(const char* name, std::int32_t version, const void** suite) {
        const SPErr error = sInner(name, version, suite);
        if (error == 0 && std::string(name) == "PF Handle Suite") {
            sTable = *static_cast<const PF_HandleSuite1*>(*suite);
            sShort = sTable;
            sShort.host_new_handle = newHandle;
            *suite = &sShort;
        }
        return error;
    }

    static inline int sFailing = 0;
    static inline int sRequests = 0;
    static inline SPErr (*sInner)(const char*, std::int32_t, const void**) = nullptr;
    static inline PF_HandleSuite1 sTable{};
    static inline PF_HandleSuite1 sShort{};
    FakeParameterHost& mHost;
    SPBasicSuite mBasic{};
    SPBasicSuite* mOuter = nullptr;
};

TEST_F(RegistrationTest, TheFirstMissingDefaultIsRememberedAndLaterDefaultsAreSkipped) {
    host.controlFailure = {1, 77};
    for (int n = 1; n <= 21; ++n) {
        host.added.clear();
        {
            const HandleShortage shortage(host, n);
            EXPECT_EQ(registerAll(), 512) << "default " << n;
            EXPECT_EQ(HandleShortage::requests(), n);
        }
        EXPECT_EQ(host.outData().num_params, 997);
        EXPECT_EQ(host.handles.liveHandles(), static_cast<std::size_t>(n - 1));
        EXPECT_EQ(added("FogColorGradient").u.arb_d.dephault, nullptr);
        freeTakenDefaults();
    }
}

TEST_F(RegistrationTest, AMissingAnsiSuiteEndsTheCommandAtTheFirstSlotLabel) {
    host.handles.absentSuites.insert("PF ANSI Suite");
    try {
        registerAll();
        FAIL() << "the missing suite passed unseen";
    } catch (PF_Err error) {
        EXPECT_EQ(error, 516);
    }
    EXPECT_EQ(host.added.size(), static_cast<std::size_t>(parameterIndex("Float.Custom1") - 1));
}

TEST_F(RegistrationTest, AMissingHandleSuiteEndsTheCommandAtTheFirstDefault) {
    host.handles.absentSuites.insert("PF Handle Suite");
    try {
        registerAll();
        FAIL() << "the missing suite passed unseen";
    } catch (PF_Err error) {
        EXPECT_EQ(error, 516);
    }
    EXPECT_EQ(host.added.size(), static_cast<std::size_t>(parameterIndex("Ramp.Custom1") - 1));
}

TEST_F(RegistrationTest, AParameterWithoutDiskIdStopsTheSetUp) {
    const ParameterDescription parameters[] = {
        parameterTree()[0], {"Newcomer", Controls::Checkbox{}}, parameterTree()[1]};
    try {
        registerParameters(&host.inData(), &host.outData(), parameters);
        FAIL() << "a parameter that can't be saved was declared";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Failed to find the disk ID for parameter id \"Newcomer\"");
    }
    EXPECT_EQ(host.added.size(), 1u);
}

TEST_F(RegistrationTest, AHostWithoutSuitesIsRefused) {
    host.inData().pica_basicP = nullptr;
    EXPECT_THROW(registerAll(), PF_Err);
    EXPECT_TRUE(host.added.empty());
}

TEST_F(RegistrationTest, NoFailingHostCallLeavesAnythingBehind) {
    int n = 1;
    for (bool reached = true; reached; ++n) {
        ASSERT_LT(n, 1000);
        host.added.clear();
        host.handles.failCall(n);
        PF_Err result = 0;
        try {
            result = registerAll();
        } catch (PF_Err error) {
            result = error;
        }
        reached = host.handles.failed();
        host.handles.failCall(0);
        EXPECT_EQ(result != 0, reached) << "call " << n;
        EXPECT_EQ(host.handles.suiteCount, 0) << "call " << n;
        EXPECT_EQ(host.handles.liveLocks(), 0) << "call " << n;
        freeTakenDefaults();
        EXPECT_EQ(host.handles.liveHandles(), 0u) << "call " << n;
    }
    EXPECT_GT(n, 21);
}

}  // namespace
}  // namespace Tessavoy
