// What follows at once when the user changes a parameter of the panel.

#include "Tests/Module/PanelFixture.h"

namespace TessavoyHost {
namespace {

using testing::IsEmpty;

// A parameter that hides others: which ones, for a value.
struct Switch {
    const char* id;
    double value;
    std::vector<const char*> hidden;
    std::vector<const char*> shown;
};

const std::vector<Switch>& switches() {
    static const std::vector<Switch> all = {
        {"ShapeDrawMode", 1, {"ShapeStrokeWidth.GroupBegin"}, {}},
        {"ShapeDrawMode", 2, {}, {"ShapeStrokeWidth.GroupBegin"}},
        {"ShapeUniformScaling", 0, {}, {"ShapeScaleY.GroupBegin"}},
        {"ShapeUniformScaling", 1, {"ShapeScaleY.GroupBegin"}, {}},
        {"ShapeFeatherScreenSpace", 0, {"ShapeFeatherPixels"}, {"ShapeFeatherPercents"}},
        {"ShapeFeatherScreenSpace", 1, {"ShapeFeatherPercents"}, {"ShapeFeatherPixels"}},
    };
    return all;
}

class PanelChange : public PanelFixture {
protected:
    std::unique_ptr<EffectInstance> instanceWith(const Switch& change) {
        ModuleScene scene = fourSquaresScene();
        scene.set(change.id, change.value);
        return instanceOf(scene);
    }

    static void hideAll(EffectInstance& instance, bool hidden) {
        for (int index = 1; index <= 996; ++index)
            instance.panel().hide(index, hidden);
    }

    static int countHidden(const EffectInstance& instance) {
        int hidden = 0;
        for (int index = 1; index <= 996; ++index)
            hidden += instance.panel().at(index).hidden ? 1 : 0;
        return hidden;
    }
};

TEST_F(PanelChange, OfASwitchHidesAndShowsWhatItConcernsAndNothingElse) {
    for (const Switch& row : switches()) {
        SCOPED_TRACE(testing::Message() << row.id << " " << row.value);
        const auto instance = instanceWith(row);
        hideAll(*instance, false);
        const CommandResult result = change(*instance, row.id);
        expectGood(result);
        EXPECT_EQ(result.out.out_flags, 0);
        EXPECT_EQ(countHidden(*instance), static_cast<int>(row.hidden.size()));
        for (const char* id : row.hidden)
            EXPECT_FALSE(isShown(*instance, id)) << id;
        hideAll(*instance, true);
        expectGood(change(*instance, row.id));
        EXPECT_EQ(countHidden(*instance), 996 - static_cast<int>(row.shown.size()));
        for (const char* id : row.shown)
            EXPECT_TRUE(isShown(*instance, id)) << id;
    }
}

// The error is the command's, without a message, and everything lent comes back.
TEST_F(PanelChange, OfASwitchGivesTheHostsFirstError) {
    for (const Switch& row : switches()) {
        SCOPED_TRACE(testing::Message() << row.id << " " << row.value);
        const auto instance = instanceWith(row);
        FailingCommand command;
        command.run = [&] { return change(*instance, row.id); };
        command.expectFailed = [](const CommandResult& result, int) {
            EXPECT_THAT(result.broken, IsEmpty());
            EXPECT_EQ(result.message, "");
            EXPECT_THAT(result.error, testing::AnyOf(PF_Err_INVALID_CALLBACK, PF_Err_BAD_CALLBACK_PARAM));
        };
        command.expectDone = [](const CommandResult& result) { expectGood(result); };
        // Four suites, and five calls a parameter.
        EXPECT_EQ(failEachCall(host(), PF_Err_INVALID_CALLBACK, command),
                  4 + 5 * static_cast<int>(row.hidden.size() + row.shown.size()));
    }
}

TEST_F(PanelChange, AfterAnErrorLeavesTheNextParameter) {
    const auto instance = instanceWith(switches()[5]);
    hideAll(*instance, false);
    host().faults().failNth("AEGP_SetDynamicStreamFlag", 1, PF_Err_INVALID_INDEX);
    host().faults().failNth("AEGP_DisposeStream", 1, PF_Err_INVALID_CALLBACK);
    const CommandResult result = change(*instance, "ShapeFeatherScreenSpace");
    EXPECT_EQ(result.error, PF_Err_INVALID_INDEX) << "the first error counts";
    EXPECT_THAT(result.broken, IsEmpty());
    EXPECT_EQ(countHidden(*instance), 0);
}

TEST_F(PanelChange, OfASwitchIsLeftAloneInTheEditingHost) {
    host({.applId = PF_AppID_Editing});
    for (const Switch& row : switches()) {
        const auto instance = instanceWith(row);
        hideAll(*instance, true);
        host().faults().failNth(Faults::anyCall, 1, PF_Err_INVALID_CALLBACK);
        expectGood(change(*instance, row.id));
        EXPECT_EQ(host().faults().struck(), 0) << row.id;
        EXPECT_EQ(countHidden(*instance), 996) << row.id;
        host().faults().clear();
    }
}

TEST_F(PanelChange, OfASwitchIsLeftAloneWithoutAPluginId) {
    for (const Switch& row : switches()) {
        const auto instance = instanceWith(row);
        hideAll(*instance, true);
        PF_UserChangedParamExtra extra{parameterIndexOf(row.id)};
        SCOPED_TRACE(row.id);
        expectGood(commandWithGlobalData(*instance, PF_Cmd_USER_CHANGED_PARAM, &extra, nullptr));
        EXPECT_EQ(countHidden(*instance), 996);
    }
}

// Switches that matter only to the panel's update, and indices that are no parameter's.
TEST_F(PanelChange, OfAnythingElseDoesNothing) {
    const auto instance = instanceOf(fourSquaresScene());
    hideAll(*instance, false);
    for (const char* id : {"UseCompCamera", "ShapeType", "ShapeFramesSplittingMode", "ShapeFramesAnimationSequence",
                           "OutputType", "SortByZ", "Float.ShowRenameButtons", "Float.Custom1", "CountX", "Script"}) {
        const CommandResult result = change(*instance, id);
        expectGood(result);
        EXPECT_EQ(result.out.out_flags, 0) << id;
    }
    for (const A_long index : {0, -1, 997, 100000}) {
        PF_UserChangedParamExtra extra{index};
        expectGood(instance->command(PF_Cmd_USER_CHANGED_PARAM, 0, &extra));
    }
    EXPECT_EQ(countHidden(*instance), 0);
}

}  // namespace
}  // namespace TessavoyHost
