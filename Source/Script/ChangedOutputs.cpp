#include "Source/Script/ChangedOutputs.h"

#include "Source/Script/ScriptText.h"

#include <lua.hpp>

#include <algorithm>
#include <array>
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

/// What a text's words say of it.
struct Words {
    OutputSet reached = 0;
    bool hasEnd = false;  ///< without one, nothing is closed that the text hasn't opened
};

Words wordsOf(std::string_view text) {
    Words words;
    for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text)) {
        words.reached |= outputsReachedBy(word);
        words.hasEnd = words.hasEnd || word == "end";
    }
    return words;
}

/// Whether the text compiles by itself. Leaves nothing on the stack.
bool isBlock(lua_State* lua, std::string_view text) {
    const bool compiles = luaL_loadbufferx(lua, text.data(), text.size(), ScriptText::chunkName, "t") == LUA_OK;
    lua_settop(lua, -2);
    return compiles;
}

}  // namespace

OutputSet outputsThatMayChange(lua_State* lua, const char* text) {
    const Words words = wordsOf(text);
    const bool staysInside = words.reached == allOutputs || !words.hasEnd || isBlock(lua, text);
    return staysInside ? words.reached : allOutputs;
}

}  // namespace Tessavoy
