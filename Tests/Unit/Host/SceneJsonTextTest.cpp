#include "Host/Scene/JsonText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace TessavoyHost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

std::vector<std::string> problemsOf(const std::string& text) {
    Problems problems;
    parseJsonText(text, problems);
    return problems.lines();
}

TEST(SceneJsonText, AllowsBothKindsOfComments) {
    Problems problems;
    const auto json = parseJsonText("{ // to the end of the line\n \"a\": /* inside */ 1 }", problems);
    ASSERT_TRUE(json.has_value());
    EXPECT_EQ(json->at("a"), 1);
    EXPECT_TRUE(problems.empty());
}

TEST(SceneJsonText, AByteOrderMarkIsNoText) {
    EXPECT_THAT(problemsOf("\xEF\xBB\xBF{}"), IsEmpty());
}

TEST(SceneJsonText, ASyntaxErrorNamesLineAndColumn) {
    EXPECT_THAT(problemsOf("{\n  \"a\": 1,\n  \"b\" 2\n}"), ElementsAre(StartsWith("line 3, column 7: syntax error")));
    EXPECT_THAT(problemsOf("x"), ElementsAre(StartsWith("line 1, column 1: syntax error")));
}

TEST(SceneJsonText, TextThatIsNotUtf8IsRefused) {
    EXPECT_THAT(problemsOf("{\"a\": \"\xff\"}"), ElementsAre(StartsWith("line 1, column ")));
}

TEST(SceneJsonText, ANumberBeyondAllRangesIsRefused) {
    EXPECT_THAT(problemsOf("{\"a\": 1e999}"), ElementsAre("line 1, column 7: 1e999 is beyond the range of numbers"));
    EXPECT_THAT(problemsOf("{ // 1e999\n  \"a\": [1, 1e308,\n-1e999, 2e999]}"),
                ElementsAre("line 3, column 1: -1e999 is beyond the range of numbers"));
    EXPECT_THAT(problemsOf("1e999"), ElementsAre("line 1, column 1: 1e999 is beyond the range of numbers"));
    EXPECT_THAT(problemsOf("[" + std::string(400, '9') + "]"),
                ElementsAre("line 1, column 2: " + std::string(32, '9') + "... is beyond the range of numbers"));
}

TEST(SceneJsonText, AKeyThatStandsTwiceIsNamedByItsPlace) {
    EXPECT_THAT(problemsOf(R"({"a": 1, "a": 2})"), ElementsAre("a: stands twice"));
    EXPECT_THAT(problemsOf(R"({"list": [0, {"x": 1}, {"Size.Value": {"x": 1, "y": 2, "x": 3}}], "list": 0})"),
                ElementsAre("list[2].\"Size.Value\".x: stands twice", "list: stands twice"));
}

TEST(SceneJsonText, TheSameKeyInTwoObjectsIsRight) {
    EXPECT_THAT(problemsOf(R"({"a": {"x": 1}, "b": {"x": 1}, "c": [{"x": 1}, {"x": 1}]})"), IsEmpty());
}

TEST(SceneJsonText, DeepNestingIsReadAndFreed) {
    const std::size_t depth = 100000;
    EXPECT_THAT(problemsOf(std::string(depth, '[') + std::string(depth, ']')), IsEmpty());
}

}  // namespace
}  // namespace TessavoyHost
