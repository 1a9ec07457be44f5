#include "Host/Command/EditorText.h"

#include <sstream>
#include <string_view>

namespace TessavoyHost {
namespace {

constexpr std::string_view helpMark =
    "-- ======== tessavoy: help, down to the next such line; it is no part of the script";
constexpr std::string_view scriptMark = "-- ======== tessavoy: the script begins below this line";

std::string asRemarks(const std::string& text) {
    std::string remarks;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        remarks += "-- " + line + '\n';
    }
    return remarks;
}

bool lacksLineEnd(const std::string& script) {
    return !script.empty() && script.back() != '\n';
}

// A line that begins so; npos where there is none.
std::size_t lineWith(std::string_view text, std::string_view mark) {
    for (std::size_t at = text.find(mark); at != text.npos; at = text.find(mark, at + 1)) {
        if (at == 0 || text[at - 1] == '\n') {
            return at;
        }
    }
    return text.npos;
}

}  // namespace

std::string editorText(const std::string& help, const std::string& script) {
    return std::string(helpMark) + '\n' + asRemarks(help) + std::string(scriptMark) + '\n' + script +
           (lacksLineEnd(script) ? "\n" : "");
}

std::optional<std::string> scriptInEditorText(const std::string& text, const std::string& scriptBefore) {
    const bool hasHelp = lineWith(text, helpMark) != text.npos;
    const std::size_t mark = lineWith(text, scriptMark);
    if (hasHelp != (mark != text.npos)) {
        return std::nullopt;
    }
    std::size_t begin = 0;
    if (hasHelp) {
        const std::size_t lineEnd = text.find('\n', mark);
        begin = lineEnd == text.npos ? text.size() : lineEnd + 1;
    }
    std::string script = text.substr(begin);
    if (lacksLineEnd(scriptBefore) && script.ends_with('\n')) {
        script.pop_back();
    }
    return script;
}

}  // namespace TessavoyHost
