#include "Host/Dialogs/DialogScript.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "Host/Dialogs/AnswerQueue.h"
#include "Tests/Support/DialogTexts.h"

namespace TessavoyHost {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

DialogAnswer press(DialogButton button, std::map<std::size_t, std::string> texts = {}) {
    return {button, std::move(texts)};
}

// Each test lays answers ready; at its end none is left, and none was missing.
class DialogScripts : public testing::Test {
protected:
    void TearDown() override { EXPECT_THAT(user.broken(), IsEmpty()); }

    std::string valueOf(const std::string& script) {
        const ScriptAnswer answer = runDialogScript(script, user);
        EXPECT_FALSE(answer.failed) << answer.text;
        return answer.text;
    }

    std::string errorOf(const std::string& script) {
        const ScriptAnswer answer = runDialogScript(script, user);
        EXPECT_TRUE(answer.failed) << answer.text;
        return answer.text;
    }

    AnswerQueue user;
};

// The value of the last expression, as the language turns values into texts.
TEST_F(DialogScripts, GiveTheLastValueAsText) {
    EXPECT_EQ(valueOf("1 + 1"), "2");
    EXPECT_EQ(valueOf("var a = 'x'; a + 2;\n"), "x2");
    EXPECT_EQ(valueOf("'first'; function f() {}"), "first");
    EXPECT_EQ(valueOf("[1, 'a']"), "1,a");
    EXPECT_EQ(valueOf("null"), "null");
    EXPECT_EQ(valueOf(""), "undefined");
}

// Beyond the first 65536 characters the language counts two units where UTF-8 has four bytes.
TEST_F(DialogScripts, TakeAndGiveUtf8) {
    const std::string text = "\xC3\xA4 \xE2\x82\xAC \xED\x95\x9C \xF0\x9F\x8E\xA8";
    EXPECT_EQ(valueOf("'" + text + "'"), text);
    EXPECT_EQ(valueOf("'" + text + "'.length"), "8");
    EXPECT_EQ(valueOf("'\\ud83c\\udfa8'"), "\xF0\x9F\x8E\xA8");
    EXPECT_EQ(valueOf("'a\\ud83cb'"),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(valueOf("'a\\u0000b'"), std::string("a\0b", 3));
}

TEST_F(DialogScripts, RefuseWhatIsNotUtf8) {
    EXPECT_EQ(errorOf("'\xE4'"), "the script is not UTF-8");
    EXPECT_EQ(errorOf("'\xED\xA0\x80'"), "the script is not UTF-8");  // half a pair
}

TEST_F(DialogScripts, TellWhatIsWrongWithTheLine) {
    EXPECT_THAT(errorOf("1\n\n'open"), AllOf(StartsWith("SyntaxError: "), HasSubstr("line 3")));
    EXPECT_THAT(errorOf("1\nnothing.here"),
                AllOf(StartsWith("ReferenceError: "), HasSubstr("nothing"), HasSubstr("line 2")));
    EXPECT_EQ(errorOf("throw 'a text'"), "a text");
    EXPECT_EQ(errorOf("throw undefined"), "undefined");
}

TEST_F(DialogScripts, ReachNothingOutside) {
    for (const char* name : {"File", "Folder", "$", "app", "require", "print", "Duktape"})
        EXPECT_EQ(valueOf(std::string("typeof ") + name), "undefined") << name;
}

// Neither a loop nor a handler of its own keeps a script going, nor do texts that double.
TEST_F(DialogScripts, EndAtALimit) {
    EXPECT_EQ(errorOf("while (true) {}"), "it did not end and was stopped");
    EXPECT_EQ(errorOf("while (true) { try { while (true) {} } catch (e) {} finally { continue; } }"),
              "it did not end and was stopped");
    EXPECT_THAT(errorOf("var a = 'xxxxxxxx'; while (true) a += a"), HasSubstr("alloc"));
    EXPECT_THAT(errorOf("function f() { f(); } f()"), HasSubstr("limit"));
}

TEST_F(DialogScripts, ShowTheNameToBeAssigned) {
    user.add(press(DialogButton::Ok, {{0, "wind \xF0\x9F\x8E\xA8"}}));
    EXPECT_EQ(valueOf(renameDialog("old")), "1wind \xF0\x9F\x8E\xA8");
    ASSERT_THAT(user.shown(), SizeIs(1));
    const Dialog& dialog = user.shown()[0];
    EXPECT_EQ(dialog.title, "Assign The Name");
    ASSERT_THAT(dialog.elements, SizeIs(4));
    EXPECT_EQ(dialog.elements[0].kind, DialogElementKind::EditText);
    EXPECT_EQ(dialog.elements[0].text, "old");
    EXPECT_FALSE(dialog.elements[0].multiline);
    EXPECT_FALSE(dialog.elements[0].readOnly);
    EXPECT_TRUE(dialog.elements[0].active);
    EXPECT_EQ(dialog.elements[1].kind, DialogElementKind::Panel);
    EXPECT_EQ(dialog.elements[2].kind, DialogElementKind::Button);
    EXPECT_EQ(dialog.elements[2].text, "OK");
    EXPECT_EQ(dialog.elements[2].button, DialogButton::Ok);
    EXPECT_EQ(dialog.elements[2].panel, 1u);
    EXPECT_EQ(dialog.elements[3].text, "Cancel");
    EXPECT_EQ(dialog.elements[3].button, DialogButton::Cancel);
    EXPECT_EQ(dialog.elements[3].panel, 1u);
}

TEST_F(DialogScripts, GiveTheTextBesideTwoWhenCancelled) {
    user.add(press(DialogButton::Cancel));
    EXPECT_EQ(valueOf(renameDialog("old")), "2old");
    user.add(press(DialogButton::Cancel, {{0, "new"}}));
    EXPECT_EQ(valueOf(renameDialog("old")), "2new");
}

TEST_F(DialogScripts, ShowTheBounds) {
    user.add(press(DialogButton::Ok));
    EXPECT_EQ(valueOf(boundsDialog("1.5", "-20")), "1");
    ASSERT_THAT(user.shown(), SizeIs(1));
    const Dialog& dialog = user.shown()[0];
    EXPECT_EQ(dialog.title, "Z Bounds");
    ASSERT_THAT(dialog.elements, SizeIs(2));
    EXPECT_EQ(dialog.elements[0].text, "Maximum Z: 1.5\nMinimum Z: -20");
    EXPECT_TRUE(dialog.elements[0].multiline);
    EXPECT_TRUE(dialog.elements[0].readOnly);
    EXPECT_EQ(dialog.elements[1].text, "OK");
    EXPECT_FALSE(dialog.elements[1].panel.has_value());
}

TEST_F(DialogScripts, ShowTheEditorWithItsHelp) {
    user.add(press(DialogButton::Ok, {{editorScriptField, "x = 2"}}));
    EXPECT_EQ(valueOf(editorDialog("x = 1\\n\\ty = \\\"a\\\"")), "1x = 2");
    ASSERT_THAT(user.shown(), SizeIs(1));
    const auto& elements = user.shown()[0].elements;
    EXPECT_EQ(user.shown()[0].title, "Script");
    ASSERT_THAT(elements, SizeIs(4));
    EXPECT_THAT(elements[editorHelpField].text, StartsWith(editorHelpStart()));
    EXPECT_TRUE(elements[editorHelpField].readOnly);
    EXPECT_EQ(elements[editorScriptField].text, "x = 1\n\ty = \"a\"");
    EXPECT_TRUE(elements[editorScriptField].multiline);
    EXPECT_FALSE(elements[editorScriptField].readOnly);
}

// Every escape that the effect writes, and every character that it writes as it is.
TEST_F(DialogScripts, GiveEscapedTextsBackByteByByte) {
    user.add(press(DialogButton::Ok));
    EXPECT_EQ(valueOf(editorDialog("\\b\\t\\n\\f\\r\\\"\\\\\\u0001\\u001f\x7F\xC3\xBF")),
              "1\b\t\n\f\r\"\\\x01\x1F\x7F\xC3\xBF");
}

// The effect leaves single quotes as they are, so one of them ends the text, and two make another text of it.
TEST_F(DialogScripts, ASingleQuoteBreaksTheEffectsTexts) {
    EXPECT_THAT(errorOf(editorDialog("x = 'a")), StartsWith("SyntaxError: "));
    EXPECT_THAT(errorOf(renameDialog("wind's")), StartsWith("SyntaxError: "));
    EXPECT_THAT(user.shown(), IsEmpty());
    user.add(press(DialogButton::Ok));
    EXPECT_EQ(valueOf(editorDialog("a '+' b")), "1a  b");
}

TEST_F(DialogScripts, MoreThanOneDialogMayBeShown) {
    user.add(press(DialogButton::Cancel));
    user.add(press(DialogButton::Cancel));
    EXPECT_EQ(valueOf("var w = new Window('dialog', 'A'), v = new Window('dialog', 'B'); w.add('edittext', undefined, "
                      "'in A'); v.show() + w.show()"),
              "4");
    ASSERT_THAT(user.shown(), SizeIs(2));
    EXPECT_EQ(user.shown()[0].title, "B");
    EXPECT_THAT(user.shown()[0].elements, IsEmpty());
    EXPECT_EQ(user.shown()[1].elements.at(0).text, "in A");
}

// What ScriptUI may have and this one has not is an error that names it, also where a script would only set it.
TEST_F(DialogScripts, NameWhatScriptUiLacksHere) {
    const std::string window = "var w = new Window('dialog', 'A');\n";
    EXPECT_THAT(errorOf(window + "w.opacity = 1"),
                AllOf(HasSubstr("Window has no member \"opacity\""), HasSubstr("line 2")));
    EXPECT_THAT(errorOf(window + "w.close()"), HasSubstr("Window has no member \"close\""));
    EXPECT_THAT(errorOf(window + "w.layout.visible"), HasSubstr("layout has no member \"visible\""));
    EXPECT_THAT(errorOf(window + "w.add('slider')"), HasSubstr("there is no element \"slider\""));
    EXPECT_THAT(errorOf(window + "w.add('button').textselection = 'a'"), HasSubstr("button has no member"));
    EXPECT_THAT(errorOf(window + "w.add('edittext {properties: {borderless: true}}')"), HasSubstr("\"borderless\""));
    EXPECT_THAT(errorOf("new Window('palette', 'A')"), HasSubstr("\"dialog\""));
    EXPECT_THAT(errorOf("Window('dialog', 'A')"), HasSubstr("new Window"));
    EXPECT_THAT(errorOf(window + "delete w.text"), HasSubstr("can't be deleted"));
    EXPECT_THAT(errorOf("alert('a')"), HasSubstr("alert"));
}

TEST_F(DialogScripts, TakeOnlyValuesThatFit) {
    const std::string window = "var w = new Window('dialog', 'A'); ";
    EXPECT_THAT(errorOf(window + "w.text = 5"), HasSubstr("Window.text takes a text"));
    EXPECT_THAT(errorOf(window + "w.minimumSize = [1]"), HasSubstr("a list of two numbers"));
    EXPECT_THAT(errorOf(window + "w.orientation = 'across'"), HasSubstr("\"row\""));
    EXPECT_THAT(errorOf(window + "w.add('panel').alignment = ['fill', 'full']"), HasSubstr("a side"));
    EXPECT_THAT(errorOf(window + "w.onResize = 5"), HasSubstr("a function"));
    EXPECT_THAT(errorOf(window + "w.show = function() {}"), HasSubstr("can't be set"));
}

TEST_F(DialogScripts, MembersKeepWhatIsSet) {
    EXPECT_EQ(valueOf("var w = new Window('dialog', 'A'); w.minimumSize = [ -1, 200 ]; w.orientation = 'row';\n"
                      "var calls = 0; w.onResize = function() { calls++; this.layout.resize(); }; w.onResize();\n"
                      "[w.text, w.minimumSize[1], w.orientation, calls, w.layout === w.layout].join('|')"),
              "A|200|row|1|true");
}

// The keyboard belongs to one; what replaces the selection of a field that was written to goes behind its text.
TEST_F(DialogScripts, FieldsHaveASelectionAndTheKeyboard) {
    EXPECT_EQ(
        valueOf("var w = new Window('dialog', 'A'), e = w.add('edittext'), f = w.add('edittext', undefined, 'f');\n"
                "e.active = true; f.active = true; e.textselection = 'a'; e.textselection = 'b';\n"
                "[e.text, f.text, e.active, f.active].join('|')"),
        "ab|f|false|true");
}

TEST_F(DialogScripts, AResourceTextSetsMembersAndProperties) {
    user.add(press(DialogButton::Cancel));
    valueOf(
        "var w = new Window('dialog', 'A');\n"
        "w.add(\"EditText { text: 'it\\\\'s', properties: { multiline: true, name: 'field' }, active: true }\");\n"
        "w.show()");
    const DialogElement& field = user.shown().at(0).elements.at(0);
    EXPECT_EQ(field.text, "it's");
    EXPECT_TRUE(field.multiline);
    EXPECT_TRUE(field.active);
}

// A mistake of whoever answers is none of the script's, even where the script takes all errors.
TEST_F(DialogScripts, AnswersThatDoNotFitAreTheHostsFailure) {
    const auto script = "try { " + boundsDialog("1", "0") + " } catch (e) {}";
    user.add(press(DialogButton::Ok, {{0, "read only"}}));
    EXPECT_THROW(runDialogScript(script, user), std::invalid_argument);
    user.add(press(DialogButton::Ok, {{7, "nowhere"}}));
    EXPECT_THROW(runDialogScript(script, user), std::invalid_argument);
    user.add(press(DialogButton::Ok));
    EXPECT_THROW(runDialogScript("new Window('dialog', 'A').show()", user), std::invalid_argument);
}

class FailingUser : public DialogUser {
public:
    DialogAnswer answer(const Dialog&) override { throw std::runtime_error("nobody there"); }
};

TEST(DialogUsers, MayThrow) {
    FailingUser user;
    EXPECT_THROW(runDialogScript(boundsDialog("1", "0"), user), std::runtime_error);
}

TEST(DialogAnswerQueue, CancelsAndSaysSoWhereNothingIsLeft) {
    AnswerQueue user;
    const ScriptAnswer answer = runDialogScript(renameDialog("a"), user);
    EXPECT_EQ(answer.text, "2a");
    EXPECT_THAT(user.broken(), testing::ElementsAre("no answer was left for the dialog \"Assign The Name\""));
}

TEST(DialogAnswerQueue, SaysWhichAnswersAreLeft) {
    AnswerQueue user;
    user.add({});
    EXPECT_THAT(user.broken(), testing::ElementsAre("1 answers were not asked for"));
}

}  // namespace
}  // namespace TessavoyHost
