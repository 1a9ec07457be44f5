#include "Host/Command/AboutCommand.h"

#include <algorithm>

#include "Host/Command/ExitGuard.h"
#include "Host/Command/Libraries.h"
#include "Host/Command/LoadedModule.h"
#include "Host/Command/Version.h"
#include "Host/Scene/Files.h"

namespace TessavoyHost {
namespace {

std::string line(const std::string& title, const std::string& text) {
    constexpr std::size_t titleWidth = 16;
    return title + std::string(titleWidth - std::min(titleWidth, title.size()), ' ') + text + '\n';
}

// Each line of a text on a line of its own, behind the title.
std::string lines(const std::string& title, const std::string& text) {
    std::string result;
    std::string current;
    for (const char letter : text + '\n') {
        if (letter != '\n' && letter != '\r') {
            current += letter;
        } else if (!current.empty()) {
            result += line(result.empty() ? title : "", current);
            current.clear();
        }
    }
    return result;
}

std::string moduleLines(LoadedModule& module) {
    const auto& description = module.host().description();
    return line("name", description.name) + line("version", versionInWords(description.version)) +
           lines("notice", description.about) + line("match name", description.matchName) +
           line("category", description.category) + line("module", utf8(module.path())) +
           line("interface", std::to_string(description.apiMajor) + '.' + std::to_string(description.apiMinor)) +
           line("flags", std::to_string(description.outFlags) + ", " + std::to_string(description.outFlags2)) +
           line("parameters", std::to_string(module.table().count() - 1));
}

std::string libraryLines() {
    std::string text;
    for (const auto& [name, version] : linkedLibraries()) {
        text += line(text.empty() ? "libraries" : "", name + ' ' + version);
    }
    return text;
}

}  // namespace

ExitStatus printAbout(const std::filesystem::path& path, OutputChannel& output) {
    LoadedModule module(path);
    return decideStatus([&] {
        output.write(moduleLines(module) + lines("OpenGL", module.setUpOutput()) + libraryLines());
        return ExitStatus::Success;
    });
}

}  // namespace TessavoyHost
