#include "Source/Editors/HostDialog.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Tessavoy {
namespace {

/// Written into a buffer of exactly the size that is told.
std::string escaped(const std::string& text) {
    const std::size_t size = EscapeForScript(text.c_str(), nullptr);
    std::vector<char> buffer(size + 1, '#');
    EXPECT_EQ(EscapeForScript(text.c_str(), buffer.data()), size);
    EXPECT_EQ(buffer[size - 1], '\0');
    EXPECT_EQ(buffer[size], '#') << "written beyond the size told";
    EXPECT_EQ(escapeForScript(text.c_str()), buffer.data());
    return std::string(buffer.data(), size - 1);
}

TEST(HostDialog, EscapesWhatJsonEscapesShortly) {
    EXPECT_EQ(escaped("\b\t\n\f\r\"\\"), R"(\b\t\n\f\r\"\\)");
    EXPECT_EQ(escaped("if a == \"b\" then\n\tx = '\\' end"), R"(if a == \"b\" then\n\tx = '\\' end)");
    EXPECT_EQ(escaped(""), "");
}

// Two lower-case hexadecimal digits each.
TEST(HostDialog, EscapesOtherControlCharactersByTheirNumbers) {
    EXPECT_EQ(escaped("\x01\x02\x03\x04\x05\x06\x07"), R"(\u0001\u0002\u0003\u0004\u0005\u0006\u0007)");
    EXPECT_EQ(escaped("\x0b\x0e\x0f"), R"(\u000b\u000e\u000f)");
    EXPECT_EQ(escaped("\x10\x1a\x1e\x1f"), R"(\u0010\u001a\u001e\u001f)");
}

TEST(HostDialog, LeavesEveryOtherByte) {
    std::string others;
    for (int byte = 32; byte < 256; ++byte) {
        if (byte != '"' && byte != '\\') {
            others.push_back(static_cast<char>(byte));
        }
    }
    EXPECT_EQ(escaped(others), others);
    EXPECT_EQ(escaped("it's"), "it's") << "the single quote is no escape";
    EXPECT_EQ(escaped("\x7f\x80\xff \xC3\xBC \xF0\x9F\x8E\xA8"), "\x7f\x80\xff \xC3\xBC \xF0\x9F\x8E\xA8");
}

TEST(HostDialog, TellsTheSizeWithTheClosingZero) {
    EXPECT_EQ(EscapeForScript("", nullptr), 1u);
    EXPECT_EQ(EscapeForScript("abc", nullptr), 4u);
    EXPECT_EQ(EscapeForScript("\n\x01", nullptr), 9u);
}

TEST(HostDialog, AnEditedTextFollowsTheButtonsNumber) {
    EXPECT_STREQ(editedText("1new", "old"), "new");
    EXPECT_STREQ(editedText("1", "old"), "") << "the text was deleted";
    EXPECT_STREQ(editedText("12", ""), "2");
    EXPECT_STREQ(editedText("1old ", "old"), "old ");
}

TEST(HostDialog, CancelAndAnUnchangedTextAreNoEdit) {
    EXPECT_EQ(editedText("2new", "old"), nullptr);
    EXPECT_EQ(editedText("2", "old"), nullptr);
    EXPECT_EQ(editedText("1old", "old"), nullptr);
    EXPECT_EQ(editedText("1", ""), nullptr);
    EXPECT_EQ(editedText("", "old"), nullptr) << "a script without a value";
    EXPECT_EQ(editedText(nullptr, "old"), nullptr);
}

}  // namespace
}  // namespace Tessavoy
