// The button that measures the depths of the present frame.

#include "Tests/Module/PanelFixture.h"

namespace TessavoyHost {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;

class PanelZBounds : public PanelFixture {
protected:
    // The line of the dialog with the numbers.
    std::string shownFor(const ModuleScene& scene, int frame = 0) {
        const auto instance = instanceOf(scene);
        answerDialogs("1");
        shownScripts.clear();
        PF_UserChangedParamExtra extra{parameterIndexOf("ShowZBounds")};
        const CommandResult result = instance->command(PF_Cmd_USER_CHANGED_PARAM, frame, &extra);
        EXPECT_EQ(result.error, PF_Err_NONE);
        EXPECT_EQ(result.message, "");
        EXPECT_EQ(result.out.out_flags, 0) << "the button changes nothing";
        EXPECT_FALSE(result.projectDirty);
        expectCheckoutsAlone(result);
        if (shownScripts.size() != 1)
            return std::to_string(shownScripts.size()) + " dialogs";
        return lineOf(shownScripts[0]);
    }

    static std::string lineOf(const std::string& script) {
        const std::string before = "h.text = '";
        const std::size_t start = script.find(before) + before.size();
        return script.substr(start, script.find("';", start) - start);
    }

    // The parameters stay with the host, which takes them back; nothing else is left out.
    static void expectCheckoutsAlone(const CommandResult& result) {
        EXPECT_GT(result.broken.size(), 400u);
        EXPECT_THAT(result.broken, Each(HasSubstr("not given back: parameter")));
    }

    static ModuleScene turnedScene() {
        ModuleScene scene = fourSquaresScene();
        return scene.set("UseCompCamera", 1).set("CenterZ", 70).set("InstanceRotation3DY.Value", 90);
    }
};

TEST_F(PanelZBounds, OfAFlatGridAreZero) {
    EXPECT_EQ(shownFor(fourSquaresScene()), "Maximum Z: 0\\nMinimum Z: 0");
}

TEST_F(PanelZBounds, OfAFrameWithNothingToDrawAreZero) {
    ModuleScene scene = turnedScene();
    scene.set("InstanceVisible.Probability", 0);
    EXPECT_EQ(shownFor(scene), "Maximum Z: 0\\nMinimum Z: 0");
}

// Squares of half side 5 that stand across the picture, 70 behind it; without a camera seen from nowhere, and from a
// camera 500 before it.
TEST_F(PanelZBounds, ReachFromTheNearestToTheFarthestVertex) {
    ModuleScene scene = turnedScene();
    EXPECT_EQ(shownFor(scene), "Maximum Z: 75\\nMinimum Z: 65");
    scene.project.camera = facingCamera(500);
    EXPECT_EQ(shownFor(scene), "Maximum Z: 575\\nMinimum Z: 565");
}

// At 1 of 4 seconds a value that grows from 0 to 400 is 100.
TEST_F(PanelZBounds, AreThoseOfThePresentTime) {
    ModuleScene scene = fourSquaresScene();
    scene.set("UseCompCamera", 1).key("CenterZ", 0, 0).key("CenterZ", 4, 400);
    EXPECT_EQ(shownFor(scene, 0), "Maximum Z: 0\\nMinimum Z: 0");
    EXPECT_EQ(shownFor(scene, 25), "Maximum Z: 100\\nMinimum Z: 100");
}

TEST_F(PanelZBounds, RunTheScript) {
    ModuleScene scene = fourSquaresScene();
    scene.set("UseCompCamera", 1);
    scene.project.script = "z = 10 * (i + 2 * j) - 5";
    EXPECT_EQ(shownFor(scene), "Maximum Z: 25\\nMinimum Z: -5");
}

// The script is in a handle of 428 bytes while it runs.
TEST_F(PanelZBounds, AreShownOutOfABlockOf428Bytes) {
    host({.rubbishInFreshMemory = true});
    const auto instance = instanceOf(turnedScene());
    std::vector<std::string> lent;
    host().services().hooks.runScript = [&](const std::string&) {
        lent = CommandContext::current()->ledger.outstanding();
        return std::string();
    };
    expectCheckoutsAlone(change(*instance, "ShowZBounds"));
    EXPECT_THAT(lent, Contains(HasSubstr("handle (428)")));
}

// What a call that fails may leave beside the parameters. Where a handle can't be had for the evaluation the host's
// error value leaves the module as an exception, which the host notes; an effect reference can't be given back without
// its suite.
struct FailingCall {
    const char* name;
    std::vector<PF_Err> errors;
    const char* leaving = "not given back: parameter";
    int step = 1;
};

TEST_F(PanelZBounds, AHostCallThatFailsEndsThemWithItsError) {
    constexpr const char* thrownValue = "an error value left the module as an exception";
    constexpr PF_Err given = PF_Err_INVALID_INDEX;
    const std::vector<FailingCall> calls = {
        {"checkout_param", {given}, "not given back: parameter", 37},
        // Older hosts lack the suite for sequence data.
        {"AcquireSuite", {PF_Err_BAD_CALLBACK_PARAM, PF_Err_NONE}, "not given back: effect reference"},
        {"host_new_handle", {PF_Err_INTERNAL_STRUCT_DAMAGED, PF_Err_OUT_OF_MEMORY}, thrownValue},
        {"host_lock_handle", {PF_Err_INTERNAL_STRUCT_DAMAGED, PF_Err_OUT_OF_MEMORY}, thrownValue},
        {"AEGP_GetNewEffectForEffect", {given}},
        {"AEGP_ConvertEffectToCompTime", {given}},
        {"AEGP_GetEffectCamera", {given}},
        {"AEGP_DisposeEffect", {PF_Err_NONE}},
        {"PF_GetConstSequenceData", {given}},
        {"AEGP_ExecuteScript", {given}},
        {"AEGP_FreeMemHandle", {given}},
    };
    const auto instance = instanceOf(turnedScene());
    answerDialogs("1");
    for (const FailingCall& call : calls) {
        bool struck = true;
        int n = 1;
        for (; struck; n += call.step) {
            SCOPED_TRACE(testing::Message() << call.name << " " << n);
            host().faults().failNth(call.name, n, given);
            const CommandResult result = change(*instance, "ShowZBounds");
            struck = host().faults().struck() > 0;
            host().faults().clear();
            EXPECT_THAT(result.broken, Each(AnyOf(HasSubstr("not given back: parameter"), HasSubstr(call.leaving))));
            EXPECT_THAT(struck ? call.errors : std::vector<PF_Err>{PF_Err_NONE}, Contains(result.error));
        }
        EXPECT_GT(n, 2) << call.name << " is never called";
    }
}

TEST_F(PanelZBounds, NeedThePluginId) {
    const auto instance = instanceOf(fourSquaresScene());
    answerDialogs("1");
    PF_UserChangedParamExtra extra{parameterIndexOf("ShowZBounds")};
    CommandContext context(host(), instance.get(), PF_Cmd_USER_CHANGED_PARAM, {});
    context.in.global_data = nullptr;
    EXPECT_EQ(context.run(nullptr, nullptr, &extra), PF_Err_INTERNAL_STRUCT_DAMAGED);
    const CommandResult result = context.finish();
    EXPECT_EQ(result.message, "Failed to get global data while constructing an AEGP effect");
    expectCheckoutsAlone(result);
    EXPECT_TRUE(shownScripts.empty());
}

TEST_F(PanelZBounds, NeedAHostThatRunsScripts) {
    const auto instance = instanceOf(fourSquaresScene());
    const CommandResult result = change(*instance, "ShowZBounds");
    EXPECT_EQ(result.error, PF_Err_INVALID_CALLBACK);
    EXPECT_EQ(result.message, "");
    expectCheckoutsAlone(result);
}

}  // namespace
}  // namespace TessavoyHost
