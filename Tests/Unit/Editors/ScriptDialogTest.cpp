#include "Source/Editors/ScriptDialog.h"

#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/HostMemory.h"
#include "Tests/Support/DialogTexts.h"
#include "Tests/Unit/Editors/DialogHost.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Tessavoy {
namespace {

using TessavoyHost::editorDialog;
using TessavoyHost::literalAfter;
using TessavoyHost::scriptInputs;
using TessavoyHost::scriptOutputs;

/// What came out of a dialog: its error, and the new text where there is one.
struct Outcome {
    PF_Err error = PF_Err_NONE;
    bool hasText = false;
    std::string text;
};

Outcome edit(DialogHost& host, const std::string& script) {
    char unset = 0;
    char* text = &unset;
    const PF_Err error = EditScriptDialog(&host.inData(), script.c_str(), &text);
    EXPECT_NE(text, &unset) << "the place for the text was left as it was";
    const Outcome outcome = {error, text != nullptr, text == nullptr ? "" : text};
    HostFree(&host.inData(), text);
    return outcome;
}

TEST(ScriptDialog, TellsWhatScriptsReadSetAndCall) {
    DialogHost host;
    edit(host, "x = 1");
    ASSERT_EQ(host.scripts.size(), 1u);
    EXPECT_EQ(host.scripts[0], editorDialog("x = 1"));
}

TEST(ScriptDialog, EscapesTheScriptButForItsSingleQuotes) {
    DialogHost host;
    edit(host, "x = \"a\"\n\ty = 'b' \\ \f\x01 \xC3\xBC % %s %n");
    EXPECT_EQ(host.scripts.at(0), editorDialog("x = \\\"a\\\"\\n\\ty = 'b' \\\\ \\f\\u0001 \xC3\xBC % %s %n"));
}

// What the script language reads in the dialog's literal is what was put there, control characters included; only the
// single quote would end it.
TEST(ScriptDialog, ShowsTheScriptByteForByte) {
    std::string script;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '\'') {
            script.push_back(static_cast<char>(byte));
        }
    }
    for (const std::string& text : {script, std::string(), std::string("x\f = \v1\r\n"), std::string("\\u000c\\n\\")}) {
        DialogHost host;
        edit(host, text);
        EXPECT_EQ(literalAfter(host.scripts.at(0), "e.text = "), text);
    }
}

// The lists are 70 and 161 characters long, an empty script is one byte.
TEST(ScriptDialog, AsksForABlockOfItsTextsAnd2549Bytes) {
    DialogHost host;
    ASSERT_EQ(scriptInputs().size(), 70u);
    ASSERT_EQ(scriptOutputs().size(), 161u);
    for (const std::string& script :
         {std::string(), std::string("x"), std::string("\n"), std::string(100000, '\x01')}) {
        edit(host, script);
    }
    const std::size_t rest = 2549 + 70 + 2 * 161;
    EXPECT_EQ(host.handleSizes, (std::vector<std::size_t>{rest + 1, rest + 2, rest + 3, rest + 600001}));
}

TEST(ScriptDialog, GivesTheEditedText) {
    DialogHost host;
    for (const char* text : {"y = 2", "", "2", "x = 1 ", "it's \"quoted\"\r\n\xC3\xBC"}) {
        host.answer = std::string("1") + text;
        const Outcome outcome = edit(host, "x = 1");
        EXPECT_EQ(outcome.error, PF_Err_NONE);
        EXPECT_TRUE(outcome.hasText);
        EXPECT_EQ(outcome.text, text);
    }
}

TEST(ScriptDialog, GivesNothingWhenNothingChanged) {
    DialogHost host;
    for (const char* answer : {"2", "2y = 2", "2x = 1", "1x = 1", ""}) {
        host.answer = answer;
        const Outcome outcome = edit(host, "x = 1");
        EXPECT_EQ(outcome.error, PF_Err_NONE) << answer;
        EXPECT_FALSE(outcome.hasText) << answer;
    }
    host.answer.reset();
    EXPECT_FALSE(edit(host, "x = 1").hasText);
}

TEST(ScriptDialog, TakesTheTextOutOfALargerBlock) {
    DialogHost host;
    host.answer = "1y = 2";
    host.answerPadding = 50;
    EXPECT_EQ(edit(host, "x = 1").text, "y = 2");
}

TEST(ScriptDialog, ReturnsTheHostsErrors) {
    for (A_Err DialogHost::*call : {&DialogHost::scriptError, &DialogHost::lockError, &DialogHost::sizeError}) {
        DialogHost host;
        host.answer = "1y = 2";
        host.*call = PF_Err_INVALID_INDEX;
        const Outcome outcome = edit(host, "x = 1");
        EXPECT_EQ(outcome.error, PF_Err_INVALID_INDEX);
        EXPECT_FALSE(outcome.hasText);
    }
}

// The text is out by then.
TEST(ScriptDialog, GivesTheTextWithTheErrorOfTakingItsMemoryBack) {
    for (A_Err DialogHost::*call : {&DialogHost::unlockError, &DialogHost::freeError}) {
        DialogHost host;
        host.answer = "1y = 2";
        host.*call = PF_Err_INVALID_INDEX;
        const Outcome outcome = edit(host, "x = 1");
        EXPECT_EQ(outcome.error, PF_Err_INVALID_INDEX);
        EXPECT_EQ(outcome.text, "y = 2");
    }
}

TEST(ScriptDialog, EndsWithoutASuiteOrMemory) {
    std::vector<PF_Err> errors;
    for (int call = 1;; ++call) {
        DialogHost host;
        host.answer = "1y = 2";
        host.handles.failCall(call);
        try {
            const Outcome outcome = edit(host, "x = 1");
            EXPECT_EQ(outcome.hasText, outcome.error == PF_Err_NONE);
            errors.push_back(outcome.error);
        } catch (PF_Err error) {
            errors.push_back(error);
        }
        if (!host.handles.failed()) {
            break;
        }
    }
    // The memory suite; the dialog's handle suite, handle, lock, text suite, utility suite; the text's handle and lock.
    EXPECT_EQ(errors, (std::vector<PF_Err>{516, 516, 512, 4, 516, 516, 4, 4, 0}));
}

}  // namespace
}  // namespace Tessavoy
