#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Host/Dialogs/ResourceText.h"

namespace TessavoyHost {
namespace {

using nlohmann::json;

std::string problemOf(const std::string& text) {
    try {
        parseResourceText(text);
    } catch (const ScriptUiError& error) {
        return error.what();
    }
    return "none";
}

TEST(DialogResourceText, IsATypeAlone) {
    const ResourceText panel = parseResourceText(" panel ");
    EXPECT_EQ(panel.type, "panel");
    EXPECT_EQ(panel.members, json::object());
    EXPECT_EQ(panel.creationProperties, json::object());
}

TEST(DialogResourceText, HasCreationPropertiesUnderTheirName) {
    const ResourceText field = parseResourceText("edittext {properties: {multiline: true, readonly: false}}");
    EXPECT_EQ(field.type, "edittext");
    EXPECT_EQ(field.members, json::object());
    EXPECT_EQ(field.creationProperties, json::parse(R"({"multiline": true, "readonly": false})"));
}

TEST(DialogResourceText, TakesValuesOfAllKinds) {
    const ResourceText all = parseResourceText(
        "a_1{ text: 'it\\'s', 'quoted key': \"a\\n\\\"b\\\"\\\\\", size: [ -1, 2.5, [] ], none: null,\n deep: {} , }");
    EXPECT_EQ(all.type, "a_1");
    EXPECT_EQ(all.members, json::parse(R"({"text": "it's", "quoted key": "a\n\"b\"\\", "size": [-1.0, 2.5, []],
                                           "none": null, "deep": {}})"));
}

TEST(DialogResourceText, NamesThePlaceOfAProblem) {
    EXPECT_EQ(problemOf(""), "resource text, character 1: a name expected");
    EXPECT_EQ(problemOf("a b"), "resource text, character 3: something follows the element");
    EXPECT_EQ(problemOf("a {b 1}"), "resource text, character 6: ':' expected");
    EXPECT_EQ(problemOf("a {b: 'c"), "resource text, character 9: a text does not end");
    EXPECT_EQ(problemOf("a {b: 1"), "resource text, character 8: ',' expected");
    EXPECT_EQ(problemOf("a {b: -}"), "resource text, character 7: a number expected");
    EXPECT_THAT(problemOf("a {b: '\\x'}"), testing::HasSubstr("after a backslash"));
    EXPECT_THAT(problemOf("group {e: EditText {}}"), testing::HasSubstr("\"EditText\" is no value"));
}

TEST(DialogResourceText, DoesNotNestForEver) {
    EXPECT_THAT(problemOf("a {b: " + std::string(100000, '[')), testing::HasSubstr("inside of each other"));
}

}  // namespace
}  // namespace TessavoyHost
