#include "Host/Command/EditorText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace TessavoyHost {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

const std::string help = "Functions:\nLerp(a, b, t)";

std::string replaced(std::string text, const std::string& part, const std::string& by) {
    return text.replace(text.find(part), part.size(), by);
}

TEST(CommandEditorText, HasTheHelpAsRemarksAboveTheScript) {
    const std::string text = editorText(help, "x = 1\n");
    EXPECT_THAT(text, StartsWith("-- ========"));
    EXPECT_THAT(text, HasSubstr("\n-- Functions:\n-- Lerp(a, b, t)\n-- ========"));
    EXPECT_THAT(text, EndsWith("\nx = 1\n"));
}

// What nobody touched comes back as it was, with and without a line end, and with the line ends of all systems.
TEST(CommandEditorText, GivesTheScriptBack) {
    for (const char* script : {"", "x = 1", "x = 1\n", "x = 1\r\n\r\ny = 2\r\n", "\n", "x = 1\n\n", "-- \xC3\xA4\f\t"})
        EXPECT_EQ(scriptInEditorText(editorText(help, script), script), script);
}

TEST(CommandEditorText, GivesWhatWasChangedBelowTheMark) {
    EXPECT_EQ(scriptInEditorText(replaced(editorText(help, "x = 1\n"), "x = 1", "x = 2\ny = 3"), "x = 1\n"),
              "x = 2\ny = 3\n");
    // An editor's last line end, where the script had none.
    EXPECT_EQ(scriptInEditorText(replaced(editorText(help, "x = 1"), "x = 1", "x = 2"), "x = 1"), "x = 2");
    EXPECT_EQ(scriptInEditorText(editorText(help, "") + "x = 1\n", ""), "x = 1\n");
    EXPECT_EQ(scriptInEditorText(replaced(editorText(help, "x = 1\n"), "x = 1\n", ""), "x = 1\n"), "");
    EXPECT_EQ(scriptInEditorText(replaced(editorText(help, "x = 1\n"), "-- Functions:\n", ""), "x = 1\n"), "x = 1\n");
}

TEST(CommandEditorText, IsAllScriptWithoutTheMarks) {
    EXPECT_EQ(scriptInEditorText("y = 2\n", "x = 1\n"), "y = 2\n");
}

TEST(CommandEditorText, CantTellTheScriptWithOneMark) {
    const std::string text = editorText(help, "x = 1\n");
    const std::size_t second = text.rfind("-- ========");
    const std::size_t secondEnd = text.find('\n', second) + 1;
    EXPECT_EQ(scriptInEditorText(text.substr(0, second) + text.substr(secondEnd), "x = 1\n"), std::nullopt);
    EXPECT_EQ(scriptInEditorText(text.substr(second), "x = 1\n"), std::nullopt);
}

}  // namespace
}  // namespace TessavoyHost
