#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace TessavoyHost {

// What a run of the command left.
struct Outcome {
    int status = -1;  // exit status, or -1 when a signal ended it
    int signal = 0;
    std::string out, error;
};

std::string contents(const std::filesystem::path& file);
std::vector<std::string> linesOf(const std::string& text);

// The built command, run as its users run it, in a folder of the test's own with a scene of two rows of three squares
// on a black layer of 64 x 36 pixels, ten frames long.
class CommandFixture : public ::testing::Test {
protected:
    CommandFixture();
    ~CommandFixture() override;

    // Writes the scene and starts the command in the folder, its outputs going to files.
    pid_t start(const std::string& arguments, const std::string& redirection = ">stdout",
                const std::string& before = "");
    Outcome wait(pid_t child) const;
    // Runs another program in the folder; line: of a shell.
    Outcome runProgram(const std::string& line);
    Outcome run(const std::string& arguments) { return wait(start(arguments)); }

    // Of standard error; empty for none.
    static std::string lastLine(const Outcome& outcome);

    std::filesystem::path folder;
    nlohmann::json scene;

private:
    // Writes the scene and starts a line of a shell.
    pid_t startLine(const std::string& line) const;
};

}  // namespace TessavoyHost
