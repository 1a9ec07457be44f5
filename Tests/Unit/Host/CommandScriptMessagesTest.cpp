#include "Host/Command/ScriptMessages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Host/Command/RunReporter.h"

namespace TessavoyHost {
namespace {

using ::testing::ElementsAre;

// Lua's messages about the chunk that the effect makes of a script, whose first line is the chunk's third.
TEST(CommandScriptMessages, NameTheUsersLines) {
    const ScriptSource script{"wave.lua", "a\nb\nc\n"};
    EXPECT_EQ(inUsersLines("[string \"script\"]:4: unexpected symbol near '='", script),
              "wave.lua:2: unexpected symbol near '='");
    EXPECT_EQ(compileErrorInUsersLines("[string \"script\"]:5: label 'a' already defined on line 4", script),
              "wave.lua:3: label 'a' already defined on line 2");
    EXPECT_EQ(compileErrorInUsersLines("[string \"script\"]:5: unfinished long string (starting at line 3) near <eof>",
                                       script),
              "wave.lua:3: unfinished long string (starting at line 1) near <eof>");
    EXPECT_EQ(inUsersLines("[string \"script\"]:3: [string \"script\"]:5: raised again", script),
              "wave.lua:1: wave.lua:3: raised again");
}

// The lines that follow the user's, and the head of the function around them, are nothing that a user can look at.
TEST(CommandScriptMessages, NameTheLastLineForWhatLiesBehindIt) {
    const ScriptSource script{"wave.lua", "if a then\n  x = 1\n\n"};
    EXPECT_EQ(compileErrorInUsersLines(
                  "[string \"script\"]:8: 'end' expected (to close 'function' at line 2) near <eof>", script),
              "wave.lua:2: 'end' expected near <eof>");
    EXPECT_EQ(inUsersLines("[string \"script\"]:1: odd", script), "wave.lua:1: odd");
    EXPECT_EQ(inUsersLines("[string \"script\"]:3: odd", ScriptSource{"s", ""}), "s:1: odd");
}

// As Lua counts them: LF, CR, and either pair of both.
TEST(CommandScriptMessages, CountLinesByTheEndsOfAllSystems) {
    for (const char* text : {"a\nb\n\nd", "a\rb\r\rd", "a\r\nb\r\n\r\nd\r\n", "a\n\rb\n\r\n\rd"}) {
        const ScriptSource script{"wave.lua", text};
        EXPECT_EQ(inUsersLines("[string \"script\"]:6: no", script), "wave.lua:4: no") << text;
        EXPECT_EQ(inUsersLines("[string \"script\"]:7: no", script), "wave.lua:4: no") << text;
    }
}

TEST(CommandScriptMessages, LeaveAllElseAsItIs) {
    const ScriptSource script{"wave.lua", "a"};
    for (const char* text : {"", "out of memory", "[string \"script\"]:", "[string \"script\"]:x", "at line ",
                             "[string \"other\"]:7: no", "Failed to load Lua script: data corrupted"}) {
        EXPECT_EQ(inUsersLines(text, script), text);
        EXPECT_EQ(compileErrorInUsersLines(text, script), text);
    }
}

// The token that Lua stopped at, and what a script raises itself, are the user's own words.
TEST(CommandScriptMessages, LeaveTheUsersWordsAsTheyAre) {
    const ScriptSource script{"wave.lua", "a\nb\nc"};
    EXPECT_EQ(compileErrorInUsersLines("[string \"script\"]:3: unfinished string near '\"at line 4'", script),
              "wave.lua:1: unfinished string near '\"at line 4'");
    EXPECT_EQ(inUsersLines("[string \"script\"]:5: my table ends at line 4", script),
              "wave.lua:3: my table ends at line 4");
}

TEST(CommandScriptMessages, KeepTheEffectsWordsAboutAFrame) {
    EXPECT_EQ(inUsersLines("Failed to execute the script (i=3, j=2, frame=10)\n[string \"script\"]:3: no",
                           ScriptSource{"scene.json: effect.scriptText", "a"}),
              "Failed to execute the script (i=3, j=2, frame=10)\nscene.json: effect.scriptText:1: no");
}

TEST(CommandScriptMessages, TheSourceIsTheFileOrThePlaceInTheScene) {
    Project project;
    project.script = "x = 1";
    EXPECT_EQ(scriptSourceOf(project, "scenes/a.json").name, "scenes/a.json: effect.scriptText");
    project.scriptFile = "scenes/wave.lua";
    EXPECT_EQ(scriptSourceOf(project, "scenes/a.json").name, "scenes/wave.lua");
    EXPECT_EQ(scriptSourceOf(project, "scenes/a.json").text, "x = 1");
}

// Each render thread may come to the failure in its own frame and with its own words.
TEST(CommandScriptMessages, AFailureIsToldOnceForAllFrames) {
    std::vector<std::string> told;
    ProgressOutput output;
    output.error = [&told](const std::string& text) { told.push_back(text); };
    output.seconds = [] { return 0.0; };
    const auto progress = makeProgress(ProgressMode::None, output);
    RunReporter reporter(4, *progress);
    reporter.message(5, "Failed to execute the script (i=0, j=0, frame=5)\nwave.lua:1: no");
    reporter.message(7, "Failed to execute the script (i=1, j=0, frame=7)\nwave.lua:1: no");
    reporter.message(6, "Failed to execute the script (i=0, j=2, frame=6)\nwave.lua:1: no");
    reporter.message(7, "something else");
    reporter.finish();
    EXPECT_THAT(told, ElementsAre("frame 5: Failed to execute the script (i=0, j=0, frame=5)\nwave.lua:1: no\n",
                                  "frame 7: something else\n",
                                  "the script failed in frames 5-7; frames rendered after that may lack it (--strict "
                                  "makes frames fail instead)\n",
                                  "frames: 0 written, 0 skipped, 0 failed, 4 not rendered\n"));
}

}  // namespace
}  // namespace TessavoyHost
