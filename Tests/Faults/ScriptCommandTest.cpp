#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "Tests/Support/CommandFixture.h"

// What the built command tells of scripts, run as its users run it.

namespace TessavoyHost {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

// Of standard error: how many begin so.
long linesThatBegin(const Outcome& outcome, const std::string& text) {
    const auto all = linesOf(outcome.error);
    return std::count_if(all.begin(), all.end(), [&](const std::string& line) { return line.starts_with(text); });
}

class ScriptCommand : public CommandFixture {
protected:
    void script(const std::string& text) {
        file("wave.lua", text);
        scene["effect"]["script"] = "wave.lua";
    }

    void file(const std::string& name, const std::string& text) const { std::ofstream(folder / name) << text; }

    // Names of the pictures.
    std::vector<std::string> pictures() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() == ".png") {
                names.push_back(entry.path().filename().string());
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(ScriptCommand, ARightScriptIsChecked) {
    script("x = x + 10");
    const auto outcome = run("check scene.json");
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    EXPECT_EQ(outcome.error, "");
}

// Nothing but the user ends a script that goes on for ever.
TEST_F(ScriptCommand, OneWithoutAnEndHangsItsFrame) {
    script("while true do end");
    const auto outcome = run("render scene.json -o '##.png' --frames 2-3 --frame-timeout 0.5");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.error, HasSubstr("frame 2: failed: took longer than 0.5 seconds"));
    EXPECT_THAT(pictures(), IsEmpty());
}

TEST_F(ScriptCommand, OneThatEndsTheProcessIsACrashOfItsFrame) {
    script("if frame == 1 then os.exit(0) end");
    const auto outcome = run("render scene.json -o '##.png' --frames 0-2");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(lastLine(outcome), "tessavoy: frame 1 ended the process");
    EXPECT_THAT(pictures(), Not(Contains("01.png")));
}

TEST_F(ScriptCommand, BoundsTellACrashWithItsFrame) {
    script("partsCount = 0");  // which is an assertion of the effect
    const auto outcome = run("bounds scene.json --frame 2");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(lastLine(outcome), "tessavoy: frame 2 crashed");
}

TEST_F(ScriptCommand, CheckNamesTheFileAndTheUsersLine) {
    script("-- two lines that are right\nx = 1\ny = = 2\n");
    const auto outcome = run("check scene.json");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.error, "tessavoy: wave.lua:3: unexpected symbol near '='\n");
    EXPECT_EQ(outcome.out, "");
}

TEST_F(ScriptCommand, CheckNamesThePlaceOfATextInTheScene) {
    scene["effect"]["scriptText"] = "x = 'open";
    const auto outcome = run("check scene.json");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.error, StartsWith("tessavoy: scene.json: effect.scriptText:1: unfinished string"));
}

TEST_F(ScriptCommand, CheckSaysWhatHelps) {
    script("if i == 0 then\n  x = 1\n\n");
    EXPECT_EQ(run("check scene.json").error, "tessavoy: wave.lua:2: 'end' expected near <eof>; an 'end' is missing\n");
    script("x = 1\nend\n");
    EXPECT_EQ(run("check scene.json").error,
              "tessavoy: wave.lua:2: <eof> expected near 'end'; there is an 'end' too many\n");
    script("x = 1\nreturn x\n");
    EXPECT_THAT(run("check scene.json").error,
                AllOf(StartsWith("tessavoy: wave.lua:2: 'end' expected near 'return'; "), HasSubstr("needs none")));
    script("x = 1 +");
    EXPECT_THAT(run("check scene.json").error,
                AllOf(StartsWith("tessavoy: wave.lua:1: "), HasSubstr("the last statement is not finished")));
    script("return x y");  // a 'return' of the user's own, and no end of the script
    EXPECT_THAT(run("check scene.json").error, Not(HasSubstr("needs none")));
}

TEST_F(ScriptCommand, RenderTellsItOnceAndGoesOnWithoutTheScript) {
    const auto without = run("render scene.json -o - --progress none");
    script("x = = 1");
    const auto outcome = run("render scene.json -o - --progress none --threads 2");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(linesOf(outcome.error),
                Contains("wave.lua:1: unexpected symbol near '='; the frames are rendered without the script"));
    EXPECT_EQ(linesThatBegin(outcome, "wave.lua"), 1);
    EXPECT_EQ(outcome.out.size(), 10u * 64u * 36u * 4u);
    EXPECT_EQ(outcome.out, without.out);
}

TEST_F(ScriptCommand, StrictRenderingStopsBeforeTheFirstFrame) {
    script("x = = 1");
    const auto outcome = run("render scene.json -o '##.png' --strict");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(linesOf(outcome.error), Contains("tessavoy: wave.lua:1: unexpected symbol near '='"));
    EXPECT_THAT(pictures(), IsEmpty());
}

TEST_F(ScriptCommand, JsonProgressCarriesTheMessage) {
    script("x = = 1");
    const auto outcome = run("render scene.json -o '##.png' --frames 0 --progress json");
    const auto first = nlohmann::json::parse(outcome.out.substr(0, outcome.out.find('\n')));
    EXPECT_EQ(first["event"], "message");
    EXPECT_THAT(first["text"].get<std::string>(), StartsWith("wave.lua:1: unexpected symbol"));
}

// One large instance covers the middle; the scripts colour it.
TEST_F(ScriptCommand, TheOptionOverridesTheScenesScript) {
    scene["effect"]["parameters"] = {{"CountX", 1}, {"CountY", 1}, {"InstanceSize.Value", 20}};
    script("r, g, b = 1, 0, 0");
    file("green.lua", "r, g, b = 0, 1, 0");
    const std::size_t middle = (18 * 64 + 32) * 4;  // A R G B
    EXPECT_EQ(run("render scene.json -o - --frames 0").out.substr(middle, 4), std::string("\xff\xff\x00\x00", 4));
    EXPECT_EQ(run("render scene.json -o - --frames 0 --script green.lua").out.substr(middle, 4),
              std::string("\xff\x00\xff\x00", 4));
}

TEST_F(ScriptCommand, TheOptionsScriptIsNamedInMessages) {
    script("x = = 1");
    file("other.lua", "y = = 1");
    const auto outcome = run("render scene.json -o '##.png' --frames 0 --script other.lua");
    EXPECT_EQ(linesThatBegin(outcome, "other.lua:1: "), 1);
    EXPECT_EQ(linesThatBegin(outcome, "wave.lua"), 0);
}

// The column of the cell and the frame that it fails in are the script's own choice.
constexpr const char* failsFromFrame4 = "x = x + 1\nif frame >= 4 and i == 2 then\n  x = nothing.here\nend";

TEST_F(ScriptCommand, AFailureInAFrameIsToldWithTheUsersLine) {
    script(failsFromFrame4);
    const auto outcome = run("render scene.json -o '##.png' --progress none");
    EXPECT_EQ(outcome.status, 0);
    const auto lines = linesOf(outcome.error);
    const auto told =
        std::find(lines.begin(), lines.end(), "frame 4: Failed to execute the script (i=2, j=0, frame=4)");
    ASSERT_NE(told, lines.end()) << outcome.error;
    EXPECT_THAT(told[1], StartsWith("wave.lua:3: attempt to index"));
    EXPECT_THAT(lines, Contains(StartsWith("the script failed in frame 4; ")));
    EXPECT_EQ(pictures().size(), 10u);
}

// Every thread has sequence data of its own, in which it comes to the failure in a frame of its own.
TEST_F(ScriptCommand, AFailureOnSeveralThreadsIsToldOnce) {
    script("x = nothing.here");
    const auto outcome = run("render scene.json -o '##.png' --progress none --threads 4");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(linesThatBegin(outcome, "wave.lua:1: attempt to index"), 1) << outcome.error;
    EXPECT_EQ(linesThatBegin(outcome, "the script failed in frame"), 1) << outcome.error;
}

// No frame that lacks the script is taken for a good one, on however many threads.
TEST_F(ScriptCommand, StrictRenderingFailsEveryFrameThatTheScriptFailsIn) {
    script(failsFromFrame4);
    for (const char* threads : {"1", "3"}) {
        const auto outcome =
            run("render scene.json -o '##.png' --strict --existing overwrite --threads " + std::string(threads));
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(lastLine(outcome), "frames: 4 written, 0 skipped, 6 failed (4-9)") << threads;
        EXPECT_EQ(linesThatBegin(outcome, "frame 9: failed: Failed to execute the script (i=2, j=0, frame=9)"), 1);
        EXPECT_THAT(pictures(), ElementsAre("00.png", "01.png", "02.png", "03.png"));
    }
}

}  // namespace
}  // namespace TessavoyHost
