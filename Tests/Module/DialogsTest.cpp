#include "Host/Dialogs/AnswerQueue.h"
#include "Host/Dialogs/DialogScript.h"
#include "Tests/Module/PanelFixture.h"
#include "Tests/Support/DialogTexts.h"

// The effect's dialogs from the click to what is kept, with their scripts really run.

namespace TessavoyHost {
namespace {

using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

class ModuleDialogs : public PanelFixture {
protected:
    void TearDown() override {
        EXPECT_THAT(user.broken(), IsEmpty());
        PanelFixture::TearDown();
    }

    std::unique_ptr<EffectInstance> instanceWith(const std::string& script) {
        ModuleScene scene = fourSquaresScene();
        scene.project.script = script;
        return served(scene);
    }

    std::unique_ptr<EffectInstance> served(const ModuleScene& scene) {
        serveDialogs(host().services(), user);
        return instanceOf(scene);
    }

    // A press of OK that leaves all fields as they are, and one that writes into the editor.
    static DialogAnswer ok() { return {DialogButton::Ok, {}}; }
    static DialogAnswer write(const std::string& text) { return {DialogButton::Ok, {{editorScriptField, text}}}; }

    void expectRenamed(EffectInstance& instance, const std::string& name, const std::string& label) {
        user.add({DialogButton::Ok, {{0, name}}});
        const CommandResult result = change(instance, "Float.Rename2");
        EXPECT_EQ(result.error, PF_Err_NONE);
        EXPECT_EQ(result.message, "");
        EXPECT_TRUE(result.projectDirty);
        EXPECT_EQ(itemOf(instance, "Float.Custom2").name, label);
    }

    AnswerQueue user;
};

TEST_F(ModuleDialogs, TheEditorShowsTheHelpAndTheScript) {
    const auto instance = instanceWith("x = 1\n");
    user.add({DialogButton::Cancel, {}});
    expectGood(click(*instance));
    ASSERT_THAT(user.shown(), SizeIs(1));
    const Dialog& dialog = user.shown()[0];
    EXPECT_EQ(dialog.title, "Script");
    EXPECT_THAT(dialog.elements.at(editorHelpField).text, StartsWith(editorHelpStart()));
    EXPECT_TRUE(dialog.elements[editorHelpField].readOnly);
    EXPECT_EQ(dialog.elements.at(editorScriptField).text, "x = 1\n");
    EXPECT_TRUE(dialog.elements[editorScriptField].multiline);
}

TEST_F(ModuleDialogs, OkStoresTheEditedScript) {
    const auto instance = instanceWith("x = 1");
    user.add(write("x = 2 -- \xF0\x9F\x8E\xA8"));
    const CommandResult result = click(*instance);
    EXPECT_EQ(result.error, PF_Err_NONE);
    EXPECT_TRUE(result.projectDirty);
    EXPECT_EQ(scriptOf(*instance), "x = 2 -- \xF0\x9F\x8E\xA8");
}

// Every character that a script may have, the single quote apart: what the dialog makes of it is the same text.
TEST_F(ModuleDialogs, AScriptOfAllCharactersComesThroughUnchanged) {
    std::string script;
    for (char c = 1; c < 127; ++c) {
        if (c != '\'')
            script += c;
    }
    script += "\x7F \xC3\xA4 \xE2\x82\xAC \xED\x95\x9C \xF0\x9F\x8E\xA8";
    const auto instance = instanceWith(script);
    user.add(ok());
    const CommandResult result = click(*instance);
    EXPECT_EQ(result.error, PF_Err_NONE);
    EXPECT_FALSE(result.projectDirty);
    EXPECT_EQ(user.shown().at(0).elements.at(editorScriptField).text, script);
    EXPECT_EQ(scriptOf(*instance), script);
}

TEST_F(ModuleDialogs, AFormFeedSurvivesTheTripAndBack) {
    const auto instance = instanceWith("x = 1\fy = 2");
    user.add(write("x = 1\fy = 3"));
    EXPECT_EQ(click(*instance).error, PF_Err_NONE);
    EXPECT_EQ(user.shown().at(0).elements.at(editorScriptField).text, "x = 1\fy = 2");
    EXPECT_EQ(scriptOf(*instance), "x = 1\fy = 3");
}

TEST_F(ModuleDialogs, CancelChangesNothingWhateverWasWritten) {
    const auto instance = instanceWith("x = 1");
    user.add({DialogButton::Cancel, {{editorScriptField, "x = 2"}}});
    const CommandResult result = click(*instance);
    expectGood(result);
    EXPECT_FALSE(result.projectDirty);
    EXPECT_EQ(scriptOf(*instance), "x = 1");
}

TEST_F(ModuleDialogs, ASingleQuoteIsTheHostsErrorAndStoresNothing) {
    const auto instance = instanceWith("x = #'a'");
    const CommandResult result = click(*instance);
    EXPECT_EQ(result.error, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_THAT(result.message, StartsWith("the dialog's script failed: SyntaxError: "));
    EXPECT_FALSE(result.projectDirty);
    EXPECT_THAT(result.broken, IsEmpty());
    EXPECT_THAT(user.shown(), IsEmpty());
    EXPECT_EQ(scriptOf(*instance), "x = #'a'");
}

// It may be written, as the answer is no part of the dialog's text; only the next dialog breaks.
TEST_F(ModuleDialogs, ASingleQuoteMayBeWritten) {
    const auto instance = instanceWith("x = 1");
    user.add(write("x = #'a'"));
    EXPECT_EQ(click(*instance).error, PF_Err_NONE);
    EXPECT_EQ(scriptOf(*instance), "x = #'a'");
    EXPECT_EQ(click(*instance).error, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(scriptOf(*instance), "x = #'a'");
}

TEST_F(ModuleDialogs, ASlotTakesTheNameAndLosesIt) {
    const auto instance = served(fourSquaresScene());
    expectRenamed(*instance, "wind \xF0\x9F\x8E\xA8", "Slider 2 (wind \xF0\x9F\x8E\xA8)");
    expectRenamed(*instance, "\"\\\t", "Slider 2 (\"\\\t)");
    EXPECT_EQ(user.shown().at(1).elements.at(0).text, "wind \xF0\x9F\x8E\xA8");
    expectRenamed(*instance, "", "Slider 2");
    EXPECT_EQ(user.shown().at(2).elements.at(0).text, "\"\\\t");
}

TEST_F(ModuleDialogs, ACancelledRenameChangesNothing) {
    const auto instance = served(fourSquaresScene());
    user.add({DialogButton::Cancel, {{0, "wind"}}});
    const CommandResult result = change(*instance, "Float.Rename2");
    expectGood(result);
    EXPECT_FALSE(result.projectDirty);
    EXPECT_EQ(itemOf(*instance, "Float.Custom2").name, "Slider 2");
    EXPECT_EQ(user.shown().at(0).elements.at(0).text, "");
}

// The effect escapes the name, but not the single quote.
TEST_F(ModuleDialogs, ANameWithASingleQuoteIsTheHostsErrorAndStays) {
    const auto instance = served(fourSquaresScene());
    expectRenamed(*instance, "wind's", "Slider 2 (wind's)");
    const CommandResult result = change(*instance, "Float.Rename2");
    EXPECT_EQ(result.error, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_FALSE(result.projectDirty);
    EXPECT_EQ(itemOf(*instance, "Float.Custom2").name, "Slider 2 (wind's)");
}

TEST_F(ModuleDialogs, ANameOf31BytesIsTheLongest) {
    const auto instance = served(fourSquaresScene());
    user.add({DialogButton::Ok, {{0, std::string(32, 'a')}}});
    const CommandResult refused = change(*instance, "Float.Rename2");
    EXPECT_EQ(refused.message, "Failed to rename the parameter: The name must be shorter then 31.");
    EXPECT_TRUE(refused.displayError);
    EXPECT_EQ(itemOf(*instance, "Float.Custom2").name, "Slider 2");
    // "Slider 2 (" and 18 of the letters are 28 characters, the last that stay.
    expectRenamed(*instance, std::string(31, 'a'), "Slider 2 (" + std::string(18, 'a') + "...");
}

// 2 by 2 squares of half side 5 that stand across the picture, 70 behind it.
TEST_F(ModuleDialogs, TheBoundsAreShownOnTwoLines) {
    ModuleScene scene = fourSquaresScene();
    scene.set("UseCompCamera", 1).set("CenterZ", 70).set("InstanceRotation3DY.Value", 90);
    const auto instance = served(scene);
    user.add(ok());
    const CommandResult result = change(*instance, "ShowZBounds");
    EXPECT_EQ(result.error, PF_Err_NONE);
    EXPECT_THAT(result.broken, Each(HasSubstr("not given back: parameter")));
    ASSERT_THAT(user.shown(), SizeIs(1));
    EXPECT_EQ(user.shown()[0].title, "Z Bounds");
    EXPECT_EQ(user.shown()[0].elements.at(0).text, "Maximum Z: 75\nMinimum Z: 65");
}

}  // namespace
}  // namespace TessavoyHost
