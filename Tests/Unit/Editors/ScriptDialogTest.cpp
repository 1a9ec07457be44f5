#include "Source/Editors/ScriptDialog.h"

#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/HostMemory.h"
#include "Tests/Unit/Editors/DialogHost.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Tessavoy {
namespace {

const std::string inputs = "time, frame, i, j, xPart, yPart, xCount, yCount, gridWidth, gridHeight";
const std::string outputs =
    "visible, x, y, z, angleX, angleY, angle, radius, r, g, b, a, feather, stroke, strokeWidth, partsCount, anchorX, "
    "anchorY, scaleX, scaleY, angleOffset, spriteIndex";

/// The script of the dialog for an escaped text.
std::string dialogWith(const std::string& script) {
    return "var w = new Window(\"dialog\", \"Script\");\n"
           "//var w = new Window(\"dialog\", \"Script\", undefined, { resizeable : true });\n"
           "w.orientation = \"column\";\n"
           "var h = w.add('edittext {properties: {multiline: true, readonly: true}}');\n"
           "h.minimumSize = [ -1, 200 ];\n"
           "h.alignment = [ \"fill\", \"fill\" ];\n"
           "var e = w.add('edittext {properties: {multiline: true}}');\n"
           "e.alignment = [ \"fill\", \"fill\" ];\n"
           "e.minimumSize = [ 600, 400 ];\n"
           "w.add(\"button\", undefined, \"OK\");\n"
           "w.add(\"button\", undefined, \"Cancel\");\n"
           "w.layout.layout();\n"
           "\n"
           "e.text = '" +
           script +
           "';\n"
           "h.text = 'Input variables:\\n" +
           inputs + ", " + outputs + "\\nOutput variables:\\n" + outputs +
           "\\nFunctions:\\n' + \n"
           "'GetSlider(ind), GetFloat(ind) - returns the custom float value at the given index ind [1..10]\\n' +\n"
           "'GetColor(ind) - returns the custom color value at the given index ind [1..10]\\n' +\n"
           "'GetLayer(ind, xPart, yPart) - returns the layer value at the given index ind [1..10] and x and y coords "
           "[0..1]\\n' +\n"
           "'GetNoise(ind, xPart, yPart) - returns the noise value at the given index ind [1..10] and x and y coords "
           "[0..1]\\n' +\n"
           "'GetRandom(ind, i, j) - returns the random value at the given index ind [1..10] and i and j integer values "
           "(indexes)\\n' +\n"
           "'GetRamp(ind, part) - returns the ramp value at the given index ind [1..10] and the given part [0..1]\\n' "
           "+\n"
           "'GetGradient(ind, part) - returns the gradient value (three values r, g, b) at the given index ind [1..10] "
           "and the given part [0..1]\\n' +\n"
           "'GetPath(ind, part) - returns the mask value (two values x, y) at the given index ind [1..10] and the "
           "given part [0..1]\\n' +\n"
           "'GetPoint2D(ind) - returns the point 2D value (two values x, y) at the given index ind [1..10]\\n' +\n"
           "'GetPoint3D(ind) - returns the point 3D value (three values x, y, z) at the given index ind [1..10]\\n' +\n"
           "'Note that the assigned name of the parameter can be used insted of the index (ind) in the functions "
           "above.' +\n"
           "'GetDistToCam(x, y, z) - computes the distance from the given position to the camera point of view\\n' +\n"
           "'Lerp(a, b, t) - computes the linear interpolation between a and b, i.e. the result of a + t * (b - a)\\n' "
           "+\n"
           "'Dist2D(x1, y1, x2, y2) - computes the distance between two 2D points, i.e. the result of sqrt((x2 - x1) * "
           "(x2 - x1) + (y2 - y1) * (y2 - y1))\\n' +\n"
           "'Dist3D(x1, y1, z1, x2, y2, z2) - computes the distance between two 3D points, i.e. the result of sqrt((x2 "
           "- x1) * (x2 - x1) + (y2 - y1) * (y2 - y1) + (z2 - z1) * (z2 - z1))\\n' +\n"
           "'Documentation: https://quelvane.example/tessavoy/scripting';\n"
           "\n"
           "// onResize needed on Mac OS X\n"
           "w.onResizing = w.onResize = function() { this.layout.resize(); }\n"
           "var result = w.show()\n"
           "result+e.text;\n";
}

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
    EXPECT_EQ(host.scripts[0], dialogWith("x = 1"));
}

TEST(ScriptDialog, EscapesTheScriptButForItsSingleQuotes) {
    DialogHost host;
    edit(host, "x = \"a\"\n\ty = 'b' \\ \f\x01 \xC3\xBC % %s %n");
    EXPECT_EQ(host.scripts.at(0), dialogWith("x = \\\"a\\\"\\n\\ty = 'b' \\\\ \\f\\u0001 \xC3\xBC % %s %n"));
}

// The lists are 70 and 161 characters long, an empty script is one byte.
TEST(ScriptDialog, AsksForABlockOfItsTextsAnd2549Bytes) {
    DialogHost host;
    ASSERT_EQ(inputs.size(), 70u);
    ASSERT_EQ(outputs.size(), 161u);
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
