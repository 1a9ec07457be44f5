// Editing the script by a click on its control. What the dialog itself shows is tested with its class.

#include "Tests/Module/PanelFixture.h"

namespace TessavoyHost {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr PF_OutFlags rerenderAndRefresh = 0x420000;

class PanelScript : public PanelFixture {
protected:
    static void expectChanged(const CommandResult& result) {
        expectGood(result);
        EXPECT_TRUE(result.projectDirty);
        EXPECT_EQ(result.out.out_flags, rerenderAndRefresh);
        EXPECT_EQ(result.out.out_flags2, 0);
    }

    static void expectUnchanged(const CommandResult& result) {
        expectGood(result);
        EXPECT_FALSE(result.projectDirty);
        EXPECT_EQ(result.out.out_flags, 0);
    }
};

TEST_F(PanelScript, OkStoresANewText) {
    const auto instance = instanceWithScript("x = 1");
    answerDialogs("1y = 2");
    expectChanged(click(*instance));
    EXPECT_EQ(scriptOf(*instance), "y = 2");
    ASSERT_EQ(shownScripts.size(), 1u);
    EXPECT_THAT(shownScripts[0], HasSubstr("e.text = 'x = 1';\n"));
}

TEST_F(PanelScript, OkWithNothingClearsTheScript) {
    const auto instance = instanceWithScript("x = 1");
    answerDialogs("1");
    expectChanged(click(*instance));
    EXPECT_EQ(scriptOf(*instance), "");
}

TEST_F(PanelScript, OkWithTheSameTextChangesNothing) {
    for (const char* script : {"", "x = 1", "x = \"a\"\n-- it's\t\xC3\xBC"}) {
        const auto instance = instanceWithScript(script);
        answerDialogs(std::string("1") + script);
        expectUnchanged(click(*instance));
        EXPECT_EQ(scriptOf(*instance), script);
    }
}

TEST_F(PanelScript, CancelNeverChangesTheScript) {
    const auto instance = instanceWithScript("x = 1");
    for (const char* answer : {"2", "2x = 1", "2y = 2", ""}) {
        answerDialogs(answer);
        expectUnchanged(click(*instance));
        EXPECT_EQ(scriptOf(*instance), "x = 1");
    }
}

// Escaped, but for the single quote, which ends the dialog's own string.
TEST_F(PanelScript, PutsTheScriptIntoTheDialog) {
    const auto instance = instanceWithScript("x = \"a\"\r\ny = 'b' -- \\ \f\v \xC3\xBC %s");
    answerDialogs("2");
    expectUnchanged(click(*instance));
    ASSERT_EQ(shownScripts.size(), 1u);
    EXPECT_THAT(shownScripts[0],
                HasSubstr("e.text = 'x = \\\"a\\\"\\r\\ny = 'b' -- \\\\ \\f\\u000b \xC3\xBC %s';\nh.text = "));
}

// In place of the script until one compiles.
TEST_F(PanelScript, ShowsTheErrorUntilAScriptCompiles) {
    constexpr const char* hint = "Click on the text to edit the Lua script.";
    const auto instance = instanceWithScript("x = 1");
    answerDialogs("1y = =");
    expectChanged(click(*instance));
    EXPECT_THAT(linesDrawnBy(*instance),
                ElementsAre(hint, "Error:", "[string \"script\"]:3: unexpected symbol near '='"));
    EXPECT_EQ(scriptOf(*instance), "y = =") << "it is stored all the same";
    answerDialogs("1y = 2");
    expectChanged(click(*instance));
    EXPECT_THAT(linesDrawnBy(*instance), ElementsAre(hint, "y = 2"));
}

TEST_F(PanelScript, IsWhatTheNextFrameRuns) {
    const auto instance = instanceWithScript("");
    expectPicture(instance->renderFrame({}).output, fourSquares());
    answerDialogs("1r = 0 b = 0");
    expectChanged(click(*instance));
    expectPicture(instance->renderFrame({}).output, fourSquares({1, 0, 1, 0}));
}

// 2549 bytes, the escaped script of 6 and its zero, 70 for the inputs and twice 161 for the outputs; the handle that
// keeps the answer's text is as large as the answer, 8 bytes, and one address.
TEST_F(PanelScript, IsShownOutOfABlockOfTheToldSize) {
    host({.rubbishInFreshMemory = true});
    const auto instance = instanceWithScript("x = 1\n");
    std::vector<std::string> lent;
    host().services().hooks.runScript = [&](const std::string&) {
        lent = CommandContext::current()->ledger.outstanding();
        return std::string("1y = 22");
    };
    expectChanged(click(*instance));
    EXPECT_THAT(lent, Contains(HasSubstr("handle (" + std::to_string(2549 + 8 + 70 + 2 * 161) + ")")));
    EXPECT_EQ(scriptOf(*instance), "y = 22");
}

TEST_F(PanelScript, TakesScriptsOfAnyLength) {
    host({.rubbishInFreshMemory = true});
    const std::string longScript = "x = 1 -- " + std::string(200000, '"');
    const auto instance = instanceWithScript(longScript);
    answerDialogs("1" + longScript + "x");
    expectChanged(click(*instance));
    EXPECT_EQ(scriptOf(*instance), longScript + "x");
}

// A host call of a click that stores a text: what the event ends with when it fails, and the script that is then kept.
struct CallOfClick {
    const char* name;
    PF_Err error;
    const char* script = "x = 1";
    bool isCompiling = false;
};

// Every call in turn, in their order; everything lent comes back. What fails before the text is there leaves the
// script. Where there is no memory to compile in, the host's error value leaves the module as an exception, which the
// host notes.
TEST_F(PanelScript, AHostCallThatFailsEndsTheEventWithItsError) {
    constexpr PF_Err given = PF_Err_INVALID_INDEX;
    const std::vector<CallOfClick> calls = {
        {"the answer's memory suite", PF_Err_BAD_CALLBACK_PARAM},
        {"the dialog's handle suite", PF_Err_BAD_CALLBACK_PARAM},
        {"its handle", PF_Err_INTERNAL_STRUCT_DAMAGED},
        {"its lock", PF_Err_OUT_OF_MEMORY},
        {"the suite that formats", PF_Err_BAD_CALLBACK_PARAM},
        {"the suite that runs scripts", PF_Err_BAD_CALLBACK_PARAM},
        {"the dialog", given},
        {"the answer's lock", given},
        {"its size", given},
        {"the text's handle", PF_Err_OUT_OF_MEMORY},
        {"its lock", PF_Err_OUT_OF_MEMORY},
        {"unlocking the answer", given},
        {"freeing it", given},
        {"the application's suite", PF_Err_BAD_CALLBACK_PARAM},
        {"marking the project", given, "y = 2"},
        {"the compiler's handle", PF_Err_OUT_OF_MEMORY, "y = 2", true},
        {"its lock", PF_Err_OUT_OF_MEMORY, "y = 2", true},
    };
    std::unique_ptr<EffectInstance> instance;
    FailingCommand command;
    command.prepare = [&] {
        instance = instanceWithScript("x = 1");
        answerDialogs("1y = 2");
    };
    command.run = [&] { return click(*instance); };
    command.expectFailed = [&](const CommandResult& result, int failed) {
        const CallOfClick& call = calls.at(static_cast<std::size_t>(failed) - 1);
        SCOPED_TRACE(call.name);
        EXPECT_EQ(result.error, call.error);
        EXPECT_EQ(result.message, "");
        EXPECT_EQ(scriptOf(*instance), call.script);
        if (call.isCompiling)
            EXPECT_THAT(result.broken, ElementsAre(HasSubstr("an error value left the module as an exception: 4")));
        else
            EXPECT_THAT(result.broken, IsEmpty());
    };
    command.expectDone = expectChanged;
    EXPECT_EQ(failEachCall(host(), given, command), static_cast<int>(calls.size()));
}

TEST_F(PanelScript, AFailureBeforeTheTextLeavesTheScript) {
    const auto instance = instanceWithScript("x = 1");
    answerDialogs("1y = 2");
    for (const char* call : {"AEGP_ExecuteScript", "AEGP_LockMemHandle", "AEGP_GetMemHandleSize"}) {
        host().faults().failNth(call, 1, PF_Err_INVALID_INDEX);
        const CommandResult result = click(*instance);
        host().faults().clear();
        EXPECT_EQ(result.error, PF_Err_INVALID_INDEX) << call;
        EXPECT_FALSE(result.projectDirty) << call;
        EXPECT_EQ(result.out.out_flags, 0) << call;
        EXPECT_EQ(scriptOf(*instance), "x = 1") << call;
    }
}

// The text came out, so the project counts as changed; the script stays.
TEST_F(PanelScript, AFailureAfterTheTextStoresNothing) {
    const auto instance = instanceWithScript("x = 1");
    answerDialogs("1y = 2");
    for (const char* call : {"AEGP_UnlockMemHandle", "AEGP_FreeMemHandle"}) {
        host().faults().failNth(call, 1, PF_Err_INVALID_INDEX);
        const CommandResult result = click(*instance);
        host().faults().clear();
        EXPECT_EQ(result.error, PF_Err_INVALID_INDEX) << call;
        EXPECT_TRUE(result.projectDirty) << call;
        EXPECT_EQ(result.out.out_flags, rerenderAndRefresh) << call;
        EXPECT_EQ(scriptOf(*instance), "x = 1") << call;
        EXPECT_THAT(result.broken, IsEmpty()) << call;
    }
}

TEST_F(PanelScript, IsStoredAlsoWhereTheProjectCannotBeMarked) {
    const auto instance = instanceWithScript("x = 1");
    answerDialogs("1y = 2");
    host().faults().failNth("PF_SetProjectDirty", 1, PF_Err_INVALID_INDEX);
    const CommandResult result = click(*instance);
    host().faults().clear();
    EXPECT_EQ(result.error, PF_Err_INVALID_INDEX);
    EXPECT_EQ(result.out.out_flags, rerenderAndRefresh);
    EXPECT_EQ(scriptOf(*instance), "y = 2");
}

TEST_F(PanelScript, NeedsSequenceDataToStoreIn) {
    const auto instance = instanceWithScript("x = 1");
    answerDialogs("1y = 2");
    PF_EventExtra event = clickOnScript();
    const CommandResult result = commandWithoutSequenceData(*instance, PF_Cmd_EVENT, &event);
    EXPECT_EQ(result.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_TRUE(result.projectDirty);
    EXPECT_THAT(result.broken, IsEmpty());
    ASSERT_EQ(shownScripts.size(), 1u);
    EXPECT_THAT(shownScripts[0], HasSubstr("e.text = '';\n"));
}

TEST_F(PanelScript, NeedsThePluginId) {
    const auto instance = instanceWithScript("x = 1");
    answerDialogs("1y = 2");
    PF_EventExtra event = clickOnScript();
    const CommandResult result = commandWithGlobalData(*instance, PF_Cmd_EVENT, &event, nullptr);
    expectNoPluginId(result);
    EXPECT_THAT(result.broken, IsEmpty());
}

TEST_F(PanelScript, NeedsAHostThatRunsScripts) {
    const auto instance = instanceWithScript("x = 1");
    const CommandResult result = click(*instance);
    EXPECT_EQ(result.error, PF_Err_INVALID_CALLBACK);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(result.broken, IsEmpty());
    EXPECT_EQ(scriptOf(*instance), "x = 1");
}

}  // namespace
}  // namespace TessavoyHost
