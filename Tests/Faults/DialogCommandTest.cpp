#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include "Tests/Support/CommandFixture.h"

// The commands that answer the effect's dialogs, run as their users run them.

namespace TessavoyHost {
namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class DialogCommand : public CommandFixture {
protected:
    void file(const std::string& name, const std::string& text) const { std::ofstream(folder / name) << text; }

    void script(const std::string& text) {
        file("wave.lua", text);
        scene["effect"]["script"] = "wave.lua";
    }

    // Runs `tessavoy edit` with lines of shell as the editor, which find the file's name in $1. Temporary files go to a
    // folder of their own.
    Outcome edit(const std::string& editor, const std::string& sceneFile = "scene.json") {
        file("editor", "#!/bin/sh\n" + editor + "\n");
        return editBy("unset VISUAL; export EDITOR='sh editor'; ", sceneFile);
    }

    Outcome editBy(const std::string& setting, const std::string& sceneFile = "scene.json") {
        std::filesystem::create_directory(folder / "temporary");
        return wait(start("edit " + sceneFile, ">stdout", "export TMPDIR=\"$PWD/temporary\"; " + setting));
    }

    // Runs it on a terminal of its own; gives what appeared there, and the exit status.
    std::pair<std::string, int> editOnTerminal(const std::string& setting) {
        file("scene.json", scene.dump());
        const std::string line = setting + "exec '" TESSAVOY_COMMAND "' edit scene.json";
        int terminal = -1;
        const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0) {
            if (::chdir(folder.c_str()) == 0) {
                ::execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
            }
            ::_exit(127);
        }
        std::string screen;
        std::array<char, 1024> block{};
        for (ssize_t got = 0; (got = ::read(terminal, block.data(), block.size())) > 0;) {
            screen.append(block.data(), static_cast<std::size_t>(got));
        }
        int state = 0;
        ::waitpid(child, &state, 0);
        ::close(terminal);
        return {screen, WIFEXITED(state) ? WEXITSTATUS(state) : -1};
    }

    // What the command left there.
    std::vector<std::string> keptTexts() const {
        std::vector<std::string> texts;
        for (const auto& entry : std::filesystem::directory_iterator(folder / "temporary")) {
            texts.push_back(contents(entry.path()));
        }
        return texts;
    }
};

using BoundsCommand = DialogCommand;
using EditCommand = DialogCommand;

TEST_F(BoundsCommand, OfAFlatGridAreZero) {
    const auto outcome = run("bounds scene.json");
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    EXPECT_EQ(outcome.out, "Maximum Z: 0\nMinimum Z: 0\n");
    EXPECT_EQ(outcome.error, "");
}

// The script's z is the depth of the cell's middle, and of all of a cell that faces the viewer. 25 frames a second.
TEST_F(BoundsCommand, AreThoseOfTheFrameWithItsScript) {
    scene["effect"]["parameters"]["UseCompCamera"] = true;
    scene["effect"]["scriptText"] = "z = 10 * i - 2 * j + 100 * frame";
    EXPECT_EQ(run("bounds scene.json").out, "Maximum Z: 20\nMinimum Z: -2\n");
    EXPECT_EQ(run("bounds scene.json --frame 3").out, "Maximum Z: 320\nMinimum Z: 298\n");
}

TEST_F(BoundsCommand, RefuseAFrameOutside) {
    for (const char* frame : {"10", "-1"}) {
        const auto outcome = run("bounds scene.json --frame " + std::string(frame));
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.error, "tessavoy: --frame: frame " + std::string(frame) +
                                     " lies outside the composition, whose frames are 0 to 9\n");
    }
    EXPECT_EQ(run("bounds scene.json --frame first").status, 2);
}

TEST_F(BoundsCommand, TellOfAScriptThatIsLeftOut) {
    script("z = = 1");
    const auto outcome = run("bounds scene.json");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "Maximum Z: 0\nMinimum Z: 0\n");
    EXPECT_EQ(outcome.error, "wave.lua:1: unexpected symbol near '='; the bounds are those without the script\n");
}

TEST_F(EditCommand, StoresInTheScriptsFile) {
    script("x = 1\n");
    ::chmod((folder / "wave.lua").c_str(), 0640);
    const auto outcome = edit("sed -i 's/^x = 1/x = 2 -- \xC3\xA4/' \"$1\"");
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    EXPECT_EQ(outcome.out, "wave.lua: stored\n");
    EXPECT_EQ(outcome.error, "");
    EXPECT_EQ(contents(folder / "wave.lua"), "x = 2 -- \xC3\xA4\n");
    struct stat status {};
    ::stat((folder / "wave.lua").c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
    EXPECT_EQ(contents(folder / "scene.json"), scene.dump());
    EXPECT_THAT(keptTexts(), IsEmpty());
}

TEST_F(EditCommand, WritesThroughALink) {
    script("");
    std::filesystem::rename(folder / "wave.lua", folder / "real.lua");
    std::filesystem::create_symlink("real.lua", folder / "wave.lua");
    EXPECT_EQ(edit("echo 'x = 1' >> \"$1\"").status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "wave.lua"));
    EXPECT_EQ(contents(folder / "real.lua"), "x = 1\n");
}

TEST_F(EditCommand, StoresInTheSceneAndLeavesItsOtherBytes) {
    scene["effect"]["scriptText"] = "x = 1";
    std::string text = "// mine\n" + scene.dump(3);
    file("mine.json", text);
    const auto outcome = edit("sed -i 's/^x = 1/x = \"2\"/' \"$1\"", "mine.json");
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    EXPECT_EQ(outcome.out, "mine.json: effect.scriptText: stored\n");
    text.replace(text.find("x = 1"), 5, "x = \\\"2\\\"");
    EXPECT_EQ(contents(folder / "mine.json"), text);
}

TEST_F(EditCommand, ASceneWithoutAScriptGetsOne) {
    const auto outcome = edit("printf 'x = 1\\n' >> \"$1\"");
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    const auto stored = nlohmann::json::parse(contents(folder / "scene.json"));
    EXPECT_EQ(stored["effect"]["scriptText"], "x = 1\n");
}

TEST_F(EditCommand, ShowsTheHelpAboveTheScript) {
    script("x = 1\n");
    edit("cp \"$1\" shown; echo \"$1\" > name");
    const auto shown = contents(folder / "shown");
    EXPECT_THAT(shown, AllOf(StartsWith("-- ===="), HasSubstr("\n-- Input variables:\n-- time, frame, "),
                             HasSubstr("\n-- Lerp(a, b, t) - "), EndsWith("\nx = 1\n")));
    EXPECT_THAT(contents(folder / "name"), EndsWith(".lua\n"));
}

TEST_F(EditCommand, TakesTheVisualEditorFirst) {
    script("x = 1\n");
    const auto outcome = editBy("export VISUAL=\"sed -i 's/^x = 1/x = 3/'\" EDITOR=false; ");
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    EXPECT_EQ(contents(folder / "wave.lua"), "x = 3\n");
}

// The editor's input and output are the terminal, though the command keeps its own output apart.
TEST_F(EditCommand, OnATerminalThereIsAlwaysAnEditor) {
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (terminal == -1) {
        GTEST_SKIP() << "this machine gives no pseudo-terminal";
    }
    ::close(terminal);
    script("x = 1\n");
    file("vi", "#!/bin/sh\ntest -t 0 && test -t 1 && echo drawn && echo 'x = 2' >> \"$1\"\n");
    std::filesystem::permissions(folder / "vi", std::filesystem::perms::owner_all);
    const auto [screen, status] = editOnTerminal("unset VISUAL EDITOR; PATH=\"$PWD:$PATH\"; ");
    EXPECT_EQ(status, 0) << screen;
    EXPECT_THAT(screen, HasSubstr("drawn\r\nwave.lua: stored\r\n"));
    EXPECT_EQ(contents(folder / "wave.lua"), "x = 1\nx = 2\n");
}

// Each way to cancel: nothing is changed, and the command says so and why.
TEST_F(EditCommand, CancelsWithoutAChange) {
    struct Case {
        const char* editor;
        int status;
        const char* reason;
    };
    for (const Case& way : {Case{":", 0, "the script is as it was"}, Case{": > \"$1\"", 0, "empty file"},
                            Case{"exit 3", 2, "ended with status 3"}, Case{"rm \"$1\"", 2, "can't be read"}}) {
        script("x = 1");
        const auto outcome = edit(way.editor);
        EXPECT_EQ(outcome.status, way.status) << way.editor;
        EXPECT_THAT(outcome.error, AllOf(HasSubstr("wave.lua: nothing was changed: "), HasSubstr(way.reason)));
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(contents(folder / "wave.lua"), "x = 1");
        EXPECT_THAT(keptTexts(), IsEmpty());
    }
}

TEST_F(EditCommand, CancelsWithoutATerminalAndAnEditor) {
    script("x = 1");
    const auto outcome = editBy("unset VISUAL EDITOR; ");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.error, AllOf(HasSubstr("nothing was changed: there is no terminal"), HasSubstr("EDITOR")));
    EXPECT_EQ(contents(folder / "wave.lua"), "x = 1");
}

// What the user wrote is not lost where it can't be taken.
TEST_F(EditCommand, KeepsATextThatItCantTake) {
    struct Case {
        const char* editor;
        const char* reason;
        const char* text;
    };
    for (const Case& way : {Case{"sed -i 's/^x = 1/x = 2/; /script begins/d' \"$1\"", "marked lines", "x = 2"},
                            Case{"printf 'x = 3 -- \\344' >> \"$1\"", "not UTF-8", "x = 3 -- \xE4"},
                            Case{"printf 'x = 4\\000' >> \"$1\"", "zero byte", "x = 4"},
                            Case{"echo 'x = 5' >> \"$1\"; exit 1", "ended with status 1", "x = 5"}}) {
        script("x = 1\n");
        std::filesystem::remove_all(folder / "temporary");
        const auto outcome = edit(way.editor);
        EXPECT_EQ(outcome.status, 2) << way.editor;
        EXPECT_THAT(outcome.error, AllOf(HasSubstr("nothing was changed: "), HasSubstr(way.reason),
                                         HasSubstr("; the text is kept in ")));
        EXPECT_EQ(contents(folder / "wave.lua"), "x = 1\n");
        ASSERT_EQ(keptTexts().size(), 1u) << way.editor;
        EXPECT_THAT(keptTexts()[0], HasSubstr(way.text));
    }
}

TEST_F(EditCommand, StoresAScriptThatDoesNotCompileAndSaysSo) {
    script("x = 1\n");
    const auto outcome = edit("echo 'y = = 2' >> \"$1\"");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.out, "wave.lua: stored\n");
    EXPECT_EQ(outcome.error, "tessavoy: wave.lua:2: unexpected symbol near '='\n");
    EXPECT_EQ(contents(folder / "wave.lua"), "x = 1\ny = = 2\n");
}

// The effect's dialog can't be opened on it. The editor never starts, and the script stays.
TEST_F(EditCommand, ASingleQuoteIsToldWithTheRemedy) {
    for (const char* text : {"x = 1\ny = #'a'\n", "x = 1\ny = 1 -- it's\n"}) {
        script(text);
        const auto outcome = edit("touch started");
        EXPECT_EQ(outcome.status, 3);
        EXPECT_THAT(outcome.error, AllOf(StartsWith("tessavoy: wave.lua: nothing was changed: "), HasSubstr("line 2"),
                                         HasSubstr("single quote"), HasSubstr("double quotes")));
        EXPECT_EQ(contents(folder / "wave.lua"), text);
        EXPECT_FALSE(std::filesystem::exists(folder / "started"));
    }
}

// The dialog's language ends a text there.
TEST_F(EditCommand, ALineSeparatorIsToldWithTheRemedy) {
    for (const char* character : {"\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        script("x = 1\n--" + std::string(character) + "\n");
        const auto outcome = edit("touch started");
        EXPECT_EQ(outcome.status, 3);
        EXPECT_THAT(outcome.error, AllOf(HasSubstr("line 2 has a "), HasSubstr("separator"), HasSubstr("take it out")));
    }
}

// Two quotes may make another text of the script, which nobody wants to edit.
TEST_F(EditCommand, ATextThatQuotesChangeIsNotEdited) {
    script("x = #'+'\n");
    const auto outcome = edit("touch started");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.error, AllOf(HasSubstr("shows another text"), HasSubstr("line 1"), HasSubstr("double quotes")));
    EXPECT_EQ(contents(folder / "wave.lua"), "x = #'+'\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "started"));
}

TEST_F(EditCommand, ANewSingleQuoteIsStoredWithAWarning) {
    script("x = 1\n");
    const auto outcome = edit("echo \"y = #'a'\" >> \"$1\"");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.error, AllOf(StartsWith("wave.lua: "), HasSubstr("won't open again"), HasSubstr("double")));
    EXPECT_EQ(contents(folder / "wave.lua"), "x = 1\ny = #'a'\n");
}

TEST_F(EditCommand, AScriptThatIsNotUtf8IsToldWithTheRemedy) {
    script("x = 1 -- \xE4\n");
    const auto outcome = edit("touch started");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.error, HasSubstr("not UTF-8"));
    EXPECT_EQ(contents(folder / "wave.lua"), "x = 1 -- \xE4\n");
}

// A folder that takes no files: as root nothing is forbidden, so the script's file has become a folder meanwhile.
TEST_F(EditCommand, KeepsATextThatCantBeStored) {
    script("x = 1\n");
    const auto outcome = edit("echo 'x = 2' >> \"$1\"; rm wave.lua; mkdir wave.lua");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.error, AllOf(HasSubstr("can't be written"), HasSubstr("; the text is kept in ")));
    EXPECT_EQ(outcome.out, "");
    ASSERT_EQ(keptTexts().size(), 1u);
    EXPECT_THAT(keptTexts()[0], EndsWith("x = 1\nx = 2\n"));
}

TEST_F(EditCommand, HelpEndsWithAnExample) {
    EXPECT_THAT(run("edit --help").out, HasSubstr("Example:\n  tessavoy edit scene.json\n"));
    EXPECT_THAT(run("bounds --help").out, HasSubstr("Example:\n  tessavoy bounds scene.json --frame 12\n"));
}

}  // namespace
}  // namespace TessavoyHost
