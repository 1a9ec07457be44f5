// The button that measures the depths of the present frame.

#include <algorithm>

#include "Tests/Module/PanelFixture.h"
#include "Tests/Support/DialogTexts.h"

namespace TessavoyHost {
namespace {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::SizeIs;

// The snapshot of a frame checks out each parameter that frames depend on once; its own test has them written down one
// by one.
constexpr int parameterCheckouts = 617;

class PanelZBounds : public PanelFixture {
protected:
    // The text of the dialog.
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
        return literalAfter(shownScripts[0], "h.text = ");
    }

    // The parameters stay with the host, which takes them back; nothing else is left out.
    static void expectCheckoutsAlone(const CommandResult& result) {
        EXPECT_THAT(result.broken, SizeIs(parameterCheckouts));
        EXPECT_THAT(result.broken, Each(HasSubstr("not given back: parameter")));
    }

    static ModuleScene turnedScene() {
        ModuleScene scene = fourSquaresScene();
        return scene.set("UseCompCamera", 1).set("CenterZ", 70).set("InstanceRotation3DY.Value", 90);
    }
};

TEST_F(PanelZBounds, OfAFlatGridAreZero) {
    EXPECT_EQ(shownFor(fourSquaresScene()), "Maximum Z: 0\nMinimum Z: 0");
}

TEST_F(PanelZBounds, OfAFrameWithNothingToDrawAreZero) {
    ModuleScene scene = turnedScene();
    scene.set("InstanceVisible.Probability", 0);
    EXPECT_EQ(shownFor(scene), "Maximum Z: 0\nMinimum Z: 0");
}

// Squares of half side 5 that stand across the picture, 70 behind it; without a camera seen from nowhere, and from a
// camera 500 before it.
TEST_F(PanelZBounds, ReachFromTheNearestToTheFarthestVertex) {
    ModuleScene scene = turnedScene();
    EXPECT_EQ(shownFor(scene), "Maximum Z: 75\nMinimum Z: 65");
    scene.project.camera = facingCamera(500);
    EXPECT_EQ(shownFor(scene), "Maximum Z: 575\nMinimum Z: 565");
}

// At 1 of 4 seconds a value that grows from 0 to 400 is 100.
TEST_F(PanelZBounds, AreThoseOfThePresentTime) {
    ModuleScene scene = fourSquaresScene();
    scene.set("UseCompCamera", 1).key("CenterZ", 0, 0).key("CenterZ", 4, 400);
    EXPECT_EQ(shownFor(scene, 0), "Maximum Z: 0\nMinimum Z: 0");
    EXPECT_EQ(shownFor(scene, 25), "Maximum Z: 100\nMinimum Z: 100");
}

TEST_F(PanelZBounds, RunTheScript) {
    ModuleScene scene = fourSquaresScene();
    scene.set("UseCompCamera", 1);
    scene.project.script = "z = 10 * (i + 2 * j) - 5";
    EXPECT_EQ(shownFor(scene), "Maximum Z: 25\nMinimum Z: -5");
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

// A host call of the command: what it ends with when the call fails, and whether the dialog is shown all the same.
// Where a block for the evaluation can't be had the host's error value leaves the module as an exception, which the
// host notes.
struct CallOfBounds {
    const char* name;
    PF_Err error;
    enum { Returns, Shows, Throws } way = Returns;
    bool losesReference = false;
};

// In their order, after the checkouts.
const std::vector<CallOfBounds>& callsOfBounds() {
    constexpr PF_Err given = PF_Err_INVALID_INDEX;
    static const std::vector<CallOfBounds> calls = {
        {"the suite that gives effect references", PF_Err_BAD_CALLBACK_PARAM},
        {"the effect's reference", given},
        {"the composition's time", given},
        {"the camera", given},
        {"the suite that takes the reference back, without which it can't be", PF_Err_NONE, CallOfBounds::Shows, true},
        {"giving the reference back", PF_Err_NONE, CallOfBounds::Shows},
        {"the suite of sequence data, which older hosts lack", PF_Err_NONE, CallOfBounds::Shows},
        {"the sequence data", given},
        {"the script's handle", PF_Err_OUT_OF_MEMORY, CallOfBounds::Throws},
        {"its lock", PF_Err_OUT_OF_MEMORY, CallOfBounds::Throws},
        {"the handle of the memory that it runs in", PF_Err_OUT_OF_MEMORY, CallOfBounds::Throws},
        {"its lock", PF_Err_OUT_OF_MEMORY, CallOfBounds::Throws},
        {"the cells' handle suite", PF_Err_BAD_CALLBACK_PARAM},
        {"their handle", PF_Err_INTERNAL_STRUCT_DAMAGED, CallOfBounds::Throws},
        {"its lock", PF_Err_OUT_OF_MEMORY, CallOfBounds::Throws},
        {"the parts' handle suite", PF_Err_BAD_CALLBACK_PARAM},
        {"their handle", PF_Err_INTERNAL_STRUCT_DAMAGED, CallOfBounds::Throws},
        {"its lock", PF_Err_OUT_OF_MEMORY, CallOfBounds::Throws},
        {"the vertices' handle", PF_Err_OUT_OF_MEMORY, CallOfBounds::Throws},
        {"its lock", PF_Err_OUT_OF_MEMORY, CallOfBounds::Throws},
        {"the indices' handle", PF_Err_OUT_OF_MEMORY, CallOfBounds::Throws},
        {"its lock", PF_Err_OUT_OF_MEMORY, CallOfBounds::Throws},
        {"the answer's memory suite", PF_Err_BAD_CALLBACK_PARAM},
        {"the dialog's handle suite", PF_Err_BAD_CALLBACK_PARAM},
        {"its handle", PF_Err_INTERNAL_STRUCT_DAMAGED},
        {"its lock", PF_Err_OUT_OF_MEMORY},
        {"the suite that formats", PF_Err_BAD_CALLBACK_PARAM},
        {"the suite that runs scripts", PF_Err_BAD_CALLBACK_PARAM},
        {"the dialog", given},
        {"freeing the answer", given, CallOfBounds::Shows},
    };
    return calls;
}

// Every call in turn; what fails says so with its own error, and nothing but parameters is left out.
TEST_F(PanelZBounds, AHostCallThatFailsEndsThemWithItsError) {
    const auto instance = instanceOf(turnedScene());
    answerDialogs("1");
    FailingCommand command;
    command.prepare = [&] { shownScripts.clear(); };
    command.run = [&] { return change(*instance, "ShowZBounds"); };
    command.expectFailed = [&](const CommandResult& result, int failed) {
        const CallOfBounds call = failed <= parameterCheckouts
                                      ? CallOfBounds{"a checkout", PF_Err_INVALID_INDEX}
                                      : callsOfBounds().at(static_cast<std::size_t>(failed - parameterCheckouts) - 1);
        SCOPED_TRACE(call.name);
        const int parameters = std::min(failed - 1, parameterCheckouts), thrown = call.way == CallOfBounds::Throws;
        EXPECT_EQ(result.error, call.error);
        EXPECT_EQ(result.message, "");
        EXPECT_EQ(shownScripts.size(), call.way == CallOfBounds::Shows ? 1u : 0u);
        EXPECT_THAT(result.broken, SizeIs(parameters + thrown + call.losesReference));
        EXPECT_THAT(result.broken, Contains(HasSubstr("effect reference")).Times(call.losesReference));
        EXPECT_THAT(result.broken, Contains(HasSubstr("not given back: parameter")).Times(parameters));
        EXPECT_THAT(result.broken, Contains(HasSubstr("an error value left the module as an exception")).Times(thrown));
    };
    command.expectDone = [](const CommandResult& result) {
        EXPECT_EQ(result.error, PF_Err_NONE);
        expectCheckoutsAlone(result);
    };
    EXPECT_EQ(failEachCall(host(), PF_Err_INVALID_INDEX, command),
              parameterCheckouts + static_cast<int>(callsOfBounds().size()));
}

TEST_F(PanelZBounds, NeedThePluginId) {
    const auto instance = instanceOf(fourSquaresScene());
    answerDialogs("1");
    PF_UserChangedParamExtra extra{parameterIndexOf("ShowZBounds")};
    const CommandResult result = commandWithGlobalData(*instance, PF_Cmd_USER_CHANGED_PARAM, &extra, nullptr);
    expectNoPluginId(result);
    expectCheckoutsAlone(result);
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
