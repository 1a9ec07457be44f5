#include "Tests/Support/CommandFixture.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace TessavoyHost {

std::string contents(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

CommandFixture::CommandFixture() {
    std::string name = (std::filesystem::temp_directory_path() / "tessavoy-command-XXXXXX").string();
    folder = ::mkdtemp(name.data());
    scene = nlohmann::json::parse(R"({
        "tessavoy": 1,
        "composition": { "width": 64, "height": 36, "frameRate": 25, "duration": 0.4 },
        "layers": [ { "name": "Plate", "solid": [0, 0, 0, 255], "width": 64, "height": 36 } ],
        "effect": { "layer": "Plate", "parameters": { "CountX": 3, "CountY": 2, "GridWidth": 40, "GridHeight": 20 } }
    })");
}

CommandFixture::~CommandFixture() {
    std::filesystem::remove_all(folder);
}

pid_t CommandFixture::start(const std::string& arguments, const std::string& redirection, const std::string& before) {
    return startLine(before + "exec '" TESSAVOY_COMMAND "' " + arguments + " " + redirection + " 2>stderr </dev/null");
}

Outcome CommandFixture::runProgram(const std::string& line) {
    return wait(startLine("exec " + line + " >stdout 2>stderr </dev/null"));
}

pid_t CommandFixture::startLine(const std::string& line) const {
    std::ofstream(folder / "scene.json") << scene.dump();
    const pid_t child = ::fork();
    if (child == 0) {
        if (::chdir(folder.c_str()) == 0) {
            ::execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
        }
        ::_exit(127);
    }
    return child;
}

Outcome CommandFixture::wait(pid_t child) const {
    int state = 0;
    ::waitpid(child, &state, 0);
    Outcome outcome;
    outcome.status = WIFEXITED(state) ? WEXITSTATUS(state) : -1;
    outcome.signal = WIFSIGNALED(state) ? WTERMSIG(state) : 0;
    outcome.out = contents(folder / "stdout");
    outcome.error = contents(folder / "stderr");
    return outcome;
}

std::string CommandFixture::lastLine(const Outcome& outcome) {
    const auto lines = linesOf(outcome.error);
    return lines.empty() ? "" : lines.back();
}

}  // namespace TessavoyHost
