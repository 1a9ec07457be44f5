#include "Host/Command/ScriptMessages.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string_view>

#include "Host/Drawing/PanelReader.h"
#include "Host/Scene/Files.h"

namespace TessavoyHost {
namespace {

constexpr std::string_view chunkPrefix = "[string \"script\"]:";
constexpr std::string_view lineReferences[] = {"at line ", "on line "};
constexpr std::string_view tokenPrefix = " near ";  // what follows is the user's text
constexpr std::string_view failurePrefix = "Failed to execute the script (";
constexpr std::string_view digits = "0123456789";
constexpr std::string_view lineEnds = "\r\n";  // each ends a line, and so does a pair of both

// The chunk begins with an empty line and the head of a function; its last lines return the function's values and close
// it.
constexpr long linesBefore = 2;
constexpr std::string_view wrappingFunction = " (to close 'function' at line 2)";

// Lines with something on them count, so that the last one is where a user looks.
long lastLine(const std::string& text) {
    const std::size_t end = text.find_last_not_of(" \t\r\n");
    std::string_view used = std::string_view(text).substr(0, end == std::string::npos ? 0 : end);
    long line = 1;
    for (auto found = used.find_first_of(lineEnds); found != used.npos; found = used.find_first_of(lineEnds)) {
        const bool isPair = used.size() > found + 1 && used[found] != used[found + 1] &&
                            lineEnds.find(used[found + 1]) != lineEnds.npos;
        used.remove_prefix(found + (isPair ? 2 : 1));
        ++line;
    }
    return line;
}

long usersLine(long line, const ScriptSource& script) {
    return std::clamp(line - linesBefore, 1L, lastLine(script.text));
}

// Puts what `replace` makes of the number behind each prefix in the place of both.
std::string replaceNumbers(const std::string& text, std::string_view prefix,
                           const std::function<std::string(long)>& replace) {
    std::string result;
    std::size_t done = 0;
    for (auto found = text.find(prefix); found != std::string::npos; found = text.find(prefix, done)) {
        const std::size_t number = found + prefix.size();
        const std::size_t end = std::min(text.find_first_not_of(digits, number), text.size());
        result += text.substr(done, found - done);
        result += end == number ? std::string(prefix) : replace(std::strtol(text.c_str() + number, nullptr, 10));
        done = end;
    }
    return result + text.substr(done);
}

std::string without(std::string text, std::string_view part) {
    const std::size_t found = text.find(part);
    return found == std::string::npos ? text : text.erase(found, part.size());
}

// Whether Lua stopped in the lines that follow the user's.
bool isBehindScript(const std::string& message, const ScriptSource& script) {
    const bool hasPosition = message.starts_with(chunkPrefix);
    const long line = hasPosition ? std::strtol(message.c_str() + chunkPrefix.size(), nullptr, 10) : 0;
    return line - linesBefore > lastLine(script.text);
}

// What Lua met behind the script says what the script lacks.
std::string remedy(const std::string& message, const ScriptSource& script) {
    const auto says = [&message](std::string_view part) { return message.find(part) != std::string::npos; };
    if (says("<eof> expected near 'end'")) {
        return "; there is an 'end' too many";
    }
    if (says("'end' expected") && says("near <eof>")) {
        return "; an 'end' is missing";
    }
    if (says("near 'return'") && isBehindScript(message, script)) {
        return "; the last statement is not finished, or is a 'return': a script needs none, what it assigns counts";
    }
    return {};
}

// Lua's message, or nothing where the control shows the script itself or nothing.
std::optional<std::string> errorIn(const std::vector<DrawnText>& lines) {
    constexpr std::size_t firstOfBody = 1;  // after the hint
    if (lines.size() <= firstOfBody || lines[firstOfBody].text != "Error:") {
        return std::nullopt;
    }
    std::string message;
    for (std::size_t i = firstOfBody + 1; i < lines.size(); ++i) {
        message += (message.empty() ? "" : "\n") + lines[i].text;
    }
    return message;
}

}  // namespace

ScriptSource scriptSourceOf(const Project& project, const std::filesystem::path& scene) {
    return {project.scriptFile.empty() ? utf8(scene) + ": effect.scriptText" : utf8(project.scriptFile),
            project.script};
}

std::string inUsersLines(const std::string& message, const ScriptSource& script) {
    return replaceNumbers(message, chunkPrefix,
                          [&script](long line) { return script.name + ':' + std::to_string(usersLine(line, script)); });
}

std::string compileErrorInUsersLines(const std::string& message, const ScriptSource& script) {
    const std::size_t token = std::min(message.find(tokenPrefix), message.size());
    std::string told = without(message.substr(0, token), wrappingFunction);
    for (const std::string_view reference : lineReferences) {
        told = replaceNumbers(told, reference, [&](long line) {
            return std::string(reference) + std::to_string(usersLine(line, script));
        });
    }
    return inUsersLines(told, script) + message.substr(token);
}

std::optional<std::string> scriptProblem(EffectInstance& instance, const ParameterTable& table,
                                         const ScriptSource& script) {
    const auto index = table.index("Script");
    if (script.text.empty() || !index) {
        return std::nullopt;
    }
    const auto message = errorIn(PanelReader(instance).textsOf(*index));
    if (!message) {
        return std::nullopt;
    }
    const std::string told = compileErrorInUsersLines(*message, script);
    const std::string place = told.starts_with(script.name) ? "" : script.name + ": ";
    return place + told + remedy(*message, script);
}

bool isScriptFailure(const std::string& message) {
    return message.starts_with(failurePrefix);
}

}  // namespace TessavoyHost
