#include "Source/Editors/HostDialog.h"

#include "Source/HostAccess/EffectLayerQuery.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace Tessavoy {

namespace {

/// A character that has an escape of two characters, and the second of them.
struct ShortEscape {
    char character;
    char letter;
};

constexpr std::array<ShortEscape, 7> shortEscapes = {
    {{'\b', 'b'}, {'\t', 't'}, {'\n', 'n'}, {'\f', 'f'}, {'\r', 'r'}, {'"', '"'}, {'\\', '\\'}}};

/// One escaped character, without a closing zero.
struct Escaped {
    std::array<char, 6> characters;
    std::size_t length;
};

Escaped escape(char character) {
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr unsigned char firstPrinted = 32;
    const auto same = [character](const ShortEscape& row) { return row.character == character; };
    const auto row = std::find_if(shortEscapes.begin(), shortEscapes.end(), same);
    if (row != shortEscapes.end()) {
        return {{'\\', row->letter}, 2};
    }
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= firstPrinted) {
        return {{character}, 1};
    }
    return {{'\\', 'u', '0', '0', digits[byte / 16], digits[byte % 16]}, 6};
}

}  // namespace

std::size_t EscapeForScript(const char* text, char* buffer) {
    std::size_t size = 0;
    for (; *text != '\0'; ++text) {
        const Escaped escaped = escape(*text);
        if (buffer != nullptr) {
            std::copy_n(escaped.characters.begin(), escaped.length, buffer + size);
        }
        size += escaped.length;
    }
    if (buffer != nullptr) {
        buffer[size] = '\0';
    }
    return size + 1;
}

std::string escapeForScript(const char* text) {
    std::string escaped(EscapeForScript(text, nullptr), '\0');
    EscapeForScript(text, escaped.data());
    escaped.pop_back();  // the closing zero, of which a string has its own
    return escaped;
}

const char* editedText(const char* value, const char* current) {
    constexpr char cancelButton = '2';
    if (value == nullptr || *value == '\0' || *value == cancelButton) {
        return nullptr;
    }
    const char* text = value + 1;
    return std::strcmp(text, current) == 0 ? nullptr : text;
}

PF_Err executeScript(const PF_InData* inData, SuiteHandler& suites, const char* script, MemoryHandle& result) {
    constexpr A_Boolean platformEncoding = 0;
    return suites.get<AEGP_UtilitySuite5>().AEGP_ExecuteScript(pluginId(inData), script, platformEncoding,
                                                               result.place(), nullptr);
}

}  // namespace Tessavoy
