#include "Source/HostAccess/Utf16.h"

#include <gtest/gtest.h>

#include <string>

namespace Tessavoy {
namespace {

using Units = std::vector<DRAWBOT_UTF16Char>;

constexpr DRAWBOT_UTF16Char bad = 0xFFFD;

TEST(Utf16, AnEmptyTextIsItsClosingZero) {
    EXPECT_EQ(utf16FromUtf8(""), (Units{0}));
}

// First and last code point of each length, and those around the surrogates.
TEST(Utf16, EveryLengthOfSequence) {
    EXPECT_EQ(utf16FromUtf8("\x01\x7F"), (Units{0x01, 0x7F, 0}));
    EXPECT_EQ(utf16FromUtf8("\xC2\x80\xDF\xBF"), (Units{0x80, 0x7FF, 0}));
    EXPECT_EQ(utf16FromUtf8("\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"),
              (Units{0x800, 0xD7FF, 0xE000, 0xFFFF, 0}));
    EXPECT_EQ(utf16FromUtf8("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"), (Units{0xD800, 0xDC00, 0xDBFF, 0xDFFF, 0}));
}

// The example of table 3-8 of the Unicode standard: each maximal subpart is replaced once.
TEST(Utf16, TruncatedSequencesAreReplacedByMaximalSubparts) {
    EXPECT_EQ(utf16FromUtf8("\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64"),
              (Units{'a', bad, bad, bad, 'b', bad, 'c', bad, bad, 'd', 0}));
}

// Bytes that no sequence begins or goes on with: each stands alone.
TEST(Utf16, OverlongSurrogateAndOutOfRangeBytesAreReplacedOneByOne) {
    EXPECT_EQ(utf16FromUtf8("\xC0\xAF"), (Units{bad, bad, 0}));
    EXPECT_EQ(utf16FromUtf8("\xE0\x80\xAF"), (Units{bad, bad, bad, 0}));
    EXPECT_EQ(utf16FromUtf8("\xED\xA0\x80"), (Units{bad, bad, bad, 0}));
    EXPECT_EQ(utf16FromUtf8("\xF4\x90\x80\x80"), (Units{bad, bad, bad, bad, 0}));
    EXPECT_EQ(utf16FromUtf8("\xF5\xFE\xFF"), (Units{bad, bad, bad, 0}));
}

TEST(Utf16, ATextThatEndsWithinASequenceIsReplacedAtItsEnd) {
    for (const char* text : {"x\xC3", "x\xE2\x82", "x\xF0\x9F\x8E"}) {
        EXPECT_EQ(utf16FromUtf8(text), (Units{'x', bad, 0}));
    }
}

// No pair of bytes may be read past or dropped: what is kept of them is the ASCII among them, or they are one letter.
TEST(Utf16, AnyTwoBytesGiveOneOrTwoUnits) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string text = {static_cast<char>(first), static_cast<char>(second)};
            const Units units = utf16FromUtf8(text);
            const bool isLetter = first >= 0xC2 && first <= 0xDF && second >= 0x80 && second <= 0xBF;
            const bool isCutShort = first >= 0xE0 && first <= 0xF4 && second >= 0x80 && second <= 0xBF &&
                                    !(first == 0xE0 && second < 0xA0) && !(first == 0xED && second > 0x9F) &&
                                    !(first == 0xF0 && second < 0x90) && !(first == 0xF4 && second > 0x8F);
            ASSERT_EQ(units.size(), isLetter || isCutShort ? 2U : 3U) << first << ' ' << second;
            if (!isLetter && !isCutShort) {
                ASSERT_EQ(units[0], first < 0x80 ? first : bad);
                ASSERT_EQ(units[1], second < 0x80 ? second : bad);
            }
        }
    }
}

}  // namespace
}  // namespace Tessavoy
