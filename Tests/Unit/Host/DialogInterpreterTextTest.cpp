#include <gtest/gtest.h>

#include "Host/Dialogs/InterpreterText.h"

namespace TessavoyHost {
namespace {

struct Pair {
    const char* name;
    std::string utf8;
    std::string interpreter;
};

// By the two definitions: U+1F3A8 is F0 9F 8E A8 in UTF-8; its pair is D83C DFA8, which as three bytes each is
// ED A0 BC ED BE A8.
const Pair pairs[] = {
    {"empty", "", ""},
    {"ASCII with a zero", std::string("a\0b", 3), std::string("a\0b", 3)},
    {"two bytes", "\xC3\xA4", "\xC3\xA4"},
    {"three bytes", "\xE2\x82\xAC", "\xE2\x82\xAC"},
    {"three bytes that begin as halves do", "\xED\x95\x9C\xED\x9F\xBF", "\xED\x95\x9C\xED\x9F\xBF"},
    {"beyond the first plane", "x\xF0\x9F\x8E\xA8y", "x\xED\xA0\xBC\xED\xBE\xA8y"},
    {"the first and the last pair", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
     "\xED\xA0\x80\xED\xB0\x80\xED\xAF\xBF\xED\xBF\xBF"},
};

TEST(DialogInterpreterText, GoesThereAndBack) {
    for (const Pair& pair : pairs) {
        EXPECT_EQ(toInterpreterText(pair.utf8), pair.interpreter) << pair.name;
        EXPECT_EQ(fromInterpreterText(pair.interpreter), pair.utf8) << pair.name;
        EXPECT_TRUE(isUtf8(pair.utf8)) << pair.name;
    }
}

TEST(DialogInterpreterText, HasAReplacementForWhatIsNotWellFormed) {
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(fromInterpreterText("\xED\xA0\xBC"), replacement);                            // a first half alone
    EXPECT_EQ(fromInterpreterText("\xED\xBE\xA8\xED\xA0\xBC"), replacement + replacement);  // in the wrong order
    EXPECT_EQ(fromInterpreterText("a\xED"), "a" + replacement);                             // cut off
    EXPECT_EQ(fromInterpreterText("\xFFz"), replacement + "z");
    EXPECT_FALSE(isUtf8("\xED\xA0\xBC\xED\xBE\xA8"));
    EXPECT_FALSE(isUtf8("a\xC3"));
    EXPECT_TRUE(isUtf8(replacement));
}

}  // namespace
}  // namespace TessavoyHost
