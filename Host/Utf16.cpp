#include "Host/Utf16.h"

#include <cstdint>

namespace TessavoyHost {
namespace {

constexpr std::uint32_t replacement = 0xFFFD;
constexpr std::uint32_t firstPair = 0x10000;

bool isHighHalf(std::uint32_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
bool isLowHalf(std::uint32_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}
bool isHalf(std::uint32_t unit) {
    return (unit & 0xF800) == 0xD800;
}

int followingBytes(std::uint32_t lead) {
    if (lead < 0x80)
        return 0;
    return lead >= 0xC2 && lead < 0xE0 ? 1 : lead >= 0xE0 && lead < 0xF0 ? 2 : lead >= 0xF0 && lead < 0xF5 ? 3 : -1;
}

// Takes one code point off the front.
std::uint32_t takeCodePoint(std::string_view& utf8) {
    constexpr std::uint32_t leadBits[] = {0x7F, 0x1F, 0x0F, 0x07};
    constexpr std::uint32_t smallest[] = {0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<std::uint8_t>(utf8.front());
    utf8.remove_prefix(1);
    const int following = followingBytes(lead);
    if (following < 0)
        return replacement;
    std::uint32_t code = lead & leadBits[following];
    for (int i = 0; i < following; ++i) {
        if (utf8.empty() || (static_cast<std::uint8_t>(utf8.front()) & 0xC0) != 0x80)
            return replacement;
        code = code << 6 | (static_cast<std::uint8_t>(utf8.front()) & 0x3F);
        utf8.remove_prefix(1);
    }
    return code < smallest[following] || code > 0x10FFFF || isHalf(code) ? replacement : code;
}

void appendUtf8(std::string& utf8, std::uint32_t code) {
    if (code < 0x80) {
        utf8.push_back(static_cast<char>(code));
        return;
    }
    const int following = code < 0x800 ? 1 : code < firstPair ? 2 : 3;
    const std::uint32_t marks[] = {0, 0xC0, 0xE0, 0xF0};
    utf8.push_back(static_cast<char>(marks[following] | code >> (6 * following)));
    for (int i = following - 1; i >= 0; --i)
        utf8.push_back(static_cast<char>(0x80 | (code >> (6 * i) & 0x3F)));
}

}  // namespace

std::basic_string<A_UTF16Char> toUtf16(std::string_view utf8) {
    std::basic_string<A_UTF16Char> units;
    while (!utf8.empty()) {
        const std::uint32_t code = takeCodePoint(utf8);
        if (code < firstPair) {
            units.push_back(static_cast<A_UTF16Char>(code));
        } else {
            units.push_back(static_cast<A_UTF16Char>(0xD800 | (code - firstPair) >> 10));
            units.push_back(static_cast<A_UTF16Char>(0xDC00 | (code & 0x3FF)));
        }
    }
    return units;
}

std::string fromUtf16(std::basic_string_view<A_UTF16Char> units) {
    std::string utf8;
    while (!units.empty()) {
        const std::uint32_t unit = units.front();
        units.remove_prefix(1);
        if (isHighHalf(unit) && !units.empty() && isLowHalf(units.front())) {
            appendUtf8(utf8, firstPair + ((unit & 0x3FF) << 10 | (units.front() & 0x3FFu)));
            units.remove_prefix(1);
        } else {
            appendUtf8(utf8, isHalf(unit) ? replacement : unit);
        }
    }
    return utf8;
}

std::string fromUtf16(const A_UTF16Char* text) {
    return fromUtf16(std::basic_string_view<A_UTF16Char>(text));
}

}  // namespace TessavoyHost
