#include "Source/Script/ChangedOutputs.h"

#include "Source/Script/ScriptText.h"

#include <lua.hpp>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace Tessavoy {

namespace {

constexpr OutputSet allOutputs = (OutputSet{1} << ScriptText::outputCount) - 1;

/// A text that holds one of these may change anything.
constexpr std::array<std::string_view, 10> wordsThatReachAll = {
    "return", ScriptText::functionName, "debug", "load", "loadfile", "dofile", "require", "package", "_G", "_ENV",
};

constexpr bool belongsToWord(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_';
}

/// Takes the first run of letters, digits and underscores off the text; empty when there is none.
constexpr std::string_view takeWord(std::string_view& text) {
    const auto begin = std::find_if(text.begin(), text.end(), belongsToWord);
    const auto end = std::find_if_not(begin, text.end(), belongsToWord);
    const std::string_view word(begin, end);
    text = std::string_view(end, text.end());
    return word;
}

constexpr std::array<std::string_view, ScriptText::outputCount> namesOfOutputs() {
    std::array<std::string_view, ScriptText::outputCount> names;
    std::string_view list = ScriptText::outputs;
    for (std::string_view& name : names) {
        name = takeWord(list);
    }
    return names;
}

constexpr std::array outputNames = namesOfOutputs();

OutputSet outputsReachedBy(std::string_view word) {
    if (std::find(wordsThatReachAll.begin(), wordsThatReachAll.end(), word) != wordsThatReachAll.end()) {
        return allOutputs;
    }
    const auto name = std::find(outputNames.begin(), outputNames.end(), word);
    return name == outputNames.end() ? 0 : OutputSet{1} << (name - outputNames.begin());
}

OutputSet outputsReachedByWordsOf(std::string_view text) {
    OutputSet reached = 0;
    for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text)) {
        reached |= outputsReachedBy(word);
    }
    return reached;
}

/// How many lines Lua ends in this text: of two different characters of a line's end that follow each other, it takes
/// the second one with the first.
int lineEndsIn(std::string_view text) {
    const auto endsLine = [](char character) { return character == '\n' || character == '\r'; };
    int count = 0;
    for (std::size_t k = 0; k < text.size(); ++k) {
        if (endsLine(text[k])) {
            ++count;
            k += k + 1 < text.size() && endsLine(text[k + 1]) && text[k + 1] != text[k];
        }
    }
    return count;
}

/// The line of the chunk's last word, an `end`.
int lastLineOf(std::string_view text) {
    constexpr int linesAround = 3;  // the empty one, the function's head, and the return
    return linesAround + lineEndsIn('\n' + std::string(text) + '\n');
}

/// Whether the function at the top of the stack, which it takes, reaches to the chunk's end: if not, the text has ended
/// it, and begun another.
bool isWholeChunk(lua_State* lua, std::string_view text) {
    lua_Debug function;
    return lua_getinfo(lua, ">S", &function) != 0 && function.lastlinedefined == lastLineOf(text);
}

}  // namespace

OutputSet outputsThatMayChange(lua_State* lua, const char* text) {
    const OutputSet reached = outputsReachedByWordsOf(text);
    if (reached == allOutputs) {
        return allOutputs;  // and the function may be none
    }
    lua_getglobal(lua, ScriptText::functionName);
    return isWholeChunk(lua, text) ? reached : allOutputs;
}

}  // namespace Tessavoy
