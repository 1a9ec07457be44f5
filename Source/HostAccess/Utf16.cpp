#include "Source/HostAccess/Utf16.h"

#include <cstddef>
#include <cstdint>

namespace Tessavoy {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t firstBeyondOneUnit = 0x10000;
constexpr std::uint8_t lowestFollowing = 0x80;
constexpr std::uint8_t highestFollowing = 0xBF;

/// Well-formed sequences by their first byte (Unicode standard, table 3-7). All bytes after the second lie between the
/// lowest and the highest following byte.
struct Sequence {
    std::uint8_t firstLow;
    std::uint8_t firstHigh;
    std::uint8_t secondLow;
    std::uint8_t secondHigh;
    std::size_t length;
};

constexpr Sequence sequences[] = {
    {0x00, 0x7F, 0, 0, 1},       {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

/// A code point and how many bytes it took.
struct Decoded {
    char32_t code;
    std::size_t length;
};

std::uint8_t byteAt(std::string_view text, std::size_t index) {
    return static_cast<std::uint8_t>(text[index]);
}

bool follows(const Sequence& sequence, std::size_t index, std::uint8_t byte) {
    const std::uint8_t low = index == 1 ? sequence.secondLow : lowestFollowing;
    const std::uint8_t high = index == 1 ? sequence.secondHigh : highestFollowing;
    return byte >= low && byte <= high;
}

Decoded decode(const Sequence& sequence, std::string_view rest) {
    constexpr std::uint8_t codeBits[] = {0x7F, 0x1F, 0x0F, 0x07};
    char32_t code = byteAt(rest, 0) & codeBits[sequence.length - 1];
    for (std::size_t index = 1; index < sequence.length; ++index) {
        if (index == rest.size() || !follows(sequence, index, byteAt(rest, index))) {
            return {replacement, index};
        }
        code = code << 6 | (byteAt(rest, index) & 0x3F);
    }
    return {code, sequence.length};
}

Decoded decodeFirst(std::string_view rest) {
    const std::uint8_t first = byteAt(rest, 0);
    for (const Sequence& sequence : sequences) {
        if (first >= sequence.firstLow && first <= sequence.firstHigh) {
            return decode(sequence, rest);
        }
    }
    return {replacement, 1};
}

void append(std::vector<DRAWBOT_UTF16Char>& units, char32_t code) {
    if (code < firstBeyondOneUnit) {
        units.push_back(static_cast<DRAWBOT_UTF16Char>(code));
        return;
    }
    const char32_t offset = code - firstBeyondOneUnit;
    units.push_back(static_cast<DRAWBOT_UTF16Char>(0xD800 + (offset >> 10)));
    units.push_back(static_cast<DRAWBOT_UTF16Char>(0xDC00 + (offset & 0x3FF)));
}

}  // namespace

std::vector<DRAWBOT_UTF16Char> utf16FromUtf8(std::string_view text) {
    std::vector<DRAWBOT_UTF16Char> units;
    units.reserve(text.size() + 1);
    while (!text.empty()) {
        const Decoded decoded = decodeFirst(text);
        append(units, decoded.code);
        text.remove_prefix(decoded.length);
    }
    units.push_back(0);
    return units;
}

}  // namespace Tessavoy
