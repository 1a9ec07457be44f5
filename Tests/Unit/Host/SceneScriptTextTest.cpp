#include "Host/Scene/SceneScriptText.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace TessavoyHost {
namespace {

// The rest stands byte by byte: remarks, order, blanks, line ends, numbers as they were written.
TEST(SceneScriptText, ReplacesTheTextAlone) {
    const std::string before =
        "\xEF\xBB\xBF// \"effect\": { \"scriptText\": \"not this\" }\r\n{\n  \"a\": [1.50, {\"effect\": {}}, "
        "\"}]\\\"\"],"
        "\n  \"scriptText\": \"nor this\", /* { */ \"\\u0065ffect\" : /* it */ { \"parameters\": {\"scriptText\": 1},\n"
        "    \"scriptText\"  : ";
    const std::string after = " // the end }\n , \"layer\": \"A\" }\n}\n";
    EXPECT_EQ(withScriptText(before + "\"x = \\\"1\\\"\\n\"" + after, "y = \"2\"\t-- \xC3\xA4\n"),
              before + "\"y = \\\"2\\\"\\t-- \xC3\xA4\\n\"" + after);
}

TEST(SceneScriptText, TakesAnyCharacter) {
    std::string script;
    for (char c = 1; c < 127; ++c)
        script += c;
    script += "\xE2\x82\xAC\xF0\x9F\x8E\xA8";
    const auto json = nlohmann::json::parse(withScriptText(R"({"effect": {"scriptText": ""}})", script));
    EXPECT_EQ(json["effect"]["scriptText"], script);
}

// In front of the rest, on a line of its own where the first member is on one.
TEST(SceneScriptText, IsAddedWhereItLacks) {
    EXPECT_EQ(withScriptText(R"({"effect":{"layer":"A"}})", "x"), R"({"effect":{"scriptText": "x", "layer":"A"}})");
    EXPECT_EQ(withScriptText("{\n  \"effect\": {\n    \"layer\": \"A\" // it\n  }\n}\n", "x"),
              "{\n  \"effect\": {\n    \"scriptText\": \"x\",\n    \"layer\": \"A\" // it\n  }\n}\n");
    EXPECT_EQ(withScriptText("{\"effect\": { // the effect\n \"layer\": 1}}", "x"),
              "{\"effect\": { \"scriptText\": \"x\", // the effect\n \"layer\": 1}}");
}

TEST(SceneScriptText, ValuesOfEveryKindStandBefore) {
    EXPECT_EQ(withScriptText(R"({"a":true,"b":null,"c":-1e5,"d":[],"e":{},"effect":{"n":1,"scriptText":"x"}})", "y"),
              R"({"a":true,"b":null,"c":-1e5,"d":[],"e":{},"effect":{"n":1,"scriptText":"y"}})");
}

}  // namespace
}  // namespace TessavoyHost
