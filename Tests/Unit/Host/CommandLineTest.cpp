#include "Host/Command/CommandLine.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Host/Command/RenderOptions.h"

namespace TessavoyHost {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// What a command line that needs no module answers.
struct Answer {
    ExitStatus status;
    std::string out, error;
};

std::string contents(const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

void pointTo(int descriptor, const std::filesystem::path& file) {
    const int opened = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(opened, descriptor);
    ::close(opened);
}

Answer answerTo(std::vector<const char*> arguments) {
    std::string folder = (std::filesystem::temp_directory_path() / "tessavoy-line-XXXXXX").string();
    const std::filesystem::path place = ::mkdtemp(folder.data());
    const int before[] = {::dup(STDOUT_FILENO), ::dup(STDERR_FILENO)};
    std::fflush(stdout);
    pointTo(STDOUT_FILENO, place / "out");
    pointTo(STDERR_FILENO, place / "error");
    Answer answer{};
    {
        OutputChannel channel;
        arguments.insert(arguments.begin(), "tessavoy");
        answer.status = runCommandLine(static_cast<int>(arguments.size()), arguments.data(), channel);
    }
    ::dup2(before[0], STDOUT_FILENO);
    ::dup2(before[1], STDERR_FILENO);
    ::close(before[0]);
    ::close(before[1]);
    answer.out = contents(place / "out");
    answer.error = contents(place / "error");
    std::filesystem::remove_all(place);
    return answer;
}

TEST(CommandLine, EverySubcommandsHelpShowsAnExample) {
    for (const char* command : {"render", "check", "parameters", "schema", "about"}) {
        const auto answer = answerTo({command, "--help"});
        EXPECT_EQ(answer.status, ExitStatus::Success);
        EXPECT_THAT(answer.out, HasSubstr(std::string("Example:\n  tessavoy ") + command)) << command;
        EXPECT_EQ(answer.error, "");
    }
}

TEST(CommandLine, HelpListsTheSubcommands) {
    const auto answer = answerTo({"--help"});
    EXPECT_EQ(answer.status, ExitStatus::Success);
    for (const char* command : {"  render ", "  check ", "  parameters ", "  schema ", "  about "}) {
        EXPECT_THAT(answer.out, HasSubstr(command));
    }
    EXPECT_THAT(answer.out, HasSubstr("Example:\n  tessavoy render"));
}

TEST(CommandLine, RendersHelpListsEveryOption) {
    const auto answer = answerTo({"render", "--help"});
    for (const auto& option : renderOptions()) {
        EXPECT_THAT(answer.out, AllOf(HasSubstr(option.names), HasSubstr(option.value)));
    }
}

TEST(CommandLine, NothingToDoIsWrong) {
    const auto answer = answerTo({});
    EXPECT_EQ(answer.status, ExitStatus::CommandLine);
    EXPECT_THAT(answer.error, HasSubstr("Run 'tessavoy --help'"));
}

TEST(CommandLine, AnUnknownSubcommandIsSuggested) {
    const auto answer = answerTo({"rendr", "x.json"});
    EXPECT_EQ(answer.status, ExitStatus::CommandLine);
    EXPECT_THAT(answer.error, StartsWith("tessavoy: there is no subcommand \"rendr\"; did you mean \"render\"?"));
}

TEST(CommandLine, WhatIsNotExpectedIsNamedInItsOrder) {
    EXPECT_THAT(answerTo({"check", "x.json", "--first", "--second"}).error, HasSubstr("--first --second"));
    EXPECT_THAT(answerTo({"--first", "--second"}).error, HasSubstr("--first --second"));
}

TEST(CommandLine, AnUnknownOptionIsSuggested) {
    const auto answer = answerTo({"render", "x.json", "-o", "a.png", "--frame", "5"});
    EXPECT_EQ(answer.status, ExitStatus::CommandLine);
    EXPECT_THAT(answer.error, AllOf(HasSubstr("--frame"), HasSubstr("did you mean \"--frames\"?"),
                                    HasSubstr("Run 'tessavoy render --help'")));
}

TEST(CommandLine, SceneAndOutputAreRequired) {
    EXPECT_THAT(answerTo({"render", "-o", "a.png"}).error, HasSubstr("SCENE is required"));
    EXPECT_THAT(answerTo({"render", "x.json"}).error, HasSubstr("--output is required"));
    EXPECT_EQ(answerTo({"check"}).status, ExitStatus::CommandLine);
}

TEST(CommandLine, AnOptionsValueIsChecked) {
    const auto answer = answerTo({"render", "x.json", "-o", "a.jpg"});
    EXPECT_EQ(answer.status, ExitStatus::CommandLine);
    EXPECT_THAT(answer.error, StartsWith("tessavoy: --output: \"a.jpg\" must end in"));
    EXPECT_EQ(answerTo({"render", "x.json", "-o", "a.png", "--depth", "9"}).status, ExitStatus::CommandLine);
    EXPECT_EQ(answerTo({"render", "x.json", "-o", "a.png", "--strict=maybe"}).status, ExitStatus::CommandLine);
}

TEST(CommandLine, AnOptionStandsOnceUnlessItIsRepeatable) {
    EXPECT_EQ(answerTo({"render", "x.json", "-o", "a.png", "--depth", "8", "--depth", "8"}).status,
              ExitStatus::CommandLine);
    EXPECT_EQ(answerTo({"render", "x.json", "-o", "a.png", "--set", "A=1", "--set", "B=2"}).status, ExitStatus::Scene);
    EXPECT_EQ(answerTo({"render", "x.json", "y.json", "-o", "a.png"}).status, ExitStatus::CommandLine);
}

// The line is right when the scene is the first thing that can't be had.
TEST(CommandLine, OptionsStandInAnyOrder) {
    const std::vector<std::vector<const char*>> lines{
        {"render", "no.json", "-o", "-", "--frames", "0-9", "--set", "A=-1", "--strict"},
        {"render", "--strict", "--set", "A=-1", "--frames=0-9", "--output", "-", "no.json"},
        {"render", "-o", "-", "--set", "A=-1", "no.json", "--strict", "--set=B=[1, -2]"},
        {"render", "-o-", "no.json", "--region", "0,0,1,1"},
        {"check", "--module", "x.so", "no.json"},
        {"check", "no.json", "--module=x.so"}};
    for (const auto& line : lines) {
        const auto answer = answerTo(line);
        EXPECT_EQ(answer.status, ExitStatus::Scene);
        EXPECT_EQ(answer.error, "tessavoy: no.json: No such file or directory\n");
    }
}

TEST(CommandLine, AMissingModuleIsNamed) {
    for (const char* command : {"parameters", "schema", "about"}) {
        const auto answer = answerTo({command, "--module", "no/such.so"});
        EXPECT_EQ(answer.status, ExitStatus::Module);
        EXPECT_EQ(answer.error, "tessavoy: no/such.so: there is no such module; name one with --module\n");
        EXPECT_EQ(answer.out, "");
    }
}

TEST(CommandLine, ParametersAreListedInOneForm) {
    EXPECT_EQ(answerTo({"parameters", "--json", "--markdown"}).status, ExitStatus::CommandLine);
}

}  // namespace
}  // namespace TessavoyHost
