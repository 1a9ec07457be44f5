#include "Host/Dialogs/InterpreterText.h"

#include <cstdint>

#include "Host/Utf16.h"

namespace TessavoyHost {
namespace {

// A unit as one to three bytes, a half of a pair as well.
void appendUnit(std::string& text, A_UTF16Char unit) {
    const std::uint32_t code = unit;
    if (code < 0x80) {
        text.push_back(static_cast<char>(code));
        return;
    }
    if (code < 0x800) {
        text.push_back(static_cast<char>(0xC0 | code >> 6));
    } else {
        text.push_back(static_cast<char>(0xE0 | code >> 12));
        text.push_back(static_cast<char>(0x80 | (code >> 6 & 0x3F)));
    }
    text.push_back(static_cast<char>(0x80 | (code & 0x3F)));
}

bool continues(std::string_view text, std::size_t count) {
    for (std::size_t i = 1; i <= count; ++i) {
        if (i >= text.size() || (static_cast<std::uint8_t>(text[i]) & 0xC0) != 0x80)
            return false;
    }
    return true;
}

// Takes one unit of three bytes that is half of a pair off the front; zero where there is none.
A_UTF16Char takeHalf(std::string_view& text) {
    if (static_cast<std::uint8_t>(text.front()) != 0xED || !continues(text, 2) ||
        static_cast<std::uint8_t>(text[1]) < 0xA0)
        return 0;
    const auto middle = static_cast<std::uint32_t>(text[1] & 0x3F);
    const auto last = static_cast<std::uint32_t>(text[2] & 0x3F);
    text.remove_prefix(3);
    return static_cast<A_UTF16Char>(0xD000 | middle << 6 | last);
}

}  // namespace

bool isUtf8(std::string_view text) {
    return fromUtf16(std::basic_string_view<A_UTF16Char>(toUtf16(text))) == text;
}

std::string toInterpreterText(std::string_view utf8) {
    std::string text;
    for (const A_UTF16Char unit : toUtf16(utf8))
        appendUnit(text, unit);
    return text;
}

// What lies between halves is UTF-8.
std::string fromInterpreterText(std::string_view text) {
    std::basic_string<A_UTF16Char> units;
    while (!text.empty()) {
        if (const A_UTF16Char half = takeHalf(text)) {
            units.push_back(half);
            continue;
        }
        const std::size_t next = text.find('\xED', 1);
        units += toUtf16(text.substr(0, next));
        text.remove_prefix(next == text.npos ? text.size() : next);
    }
    return fromUtf16(std::basic_string_view<A_UTF16Char>(units));
}

}  // namespace TessavoyHost
