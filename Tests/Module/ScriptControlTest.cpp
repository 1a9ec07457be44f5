#include "Host/SequenceBlock.h"
#include "Tests/Module/PanelFixture.h"

namespace TessavoyHost {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* hint = "Click on the text to edit the Lua script.";
constexpr PF_Rect frame = {10, 200, 160, 350};

// Keeps the clip besides.
class ClipRecorder : public TextRecorder {
public:
    void clip(const DRAWBOT_Rect32& rectangle) override { clips.push_back(rectangle); }
    std::vector<DRAWBOT_Rect32> clips;
};

class ModuleScriptControl : public PanelFixture {
protected:
    std::vector<std::string> linesDrawnFor(const std::string& script) {
        return linesDrawnBy(*instanceWithScript(script));
    }
};

TEST_F(ModuleScriptControl, IsDrawnByTheModule) {
    const auto instance = instanceWithScript("");
    EXPECT_TRUE(PanelReader(*instance).drawsControl(parameterIndexOf("Script")));
}

TEST_F(ModuleScriptControl, ShowsTheHintAloneWithoutAScript) {
    EXPECT_THAT(linesDrawnFor(""), ElementsAre(hint));
}

// Line ends of all systems, and lines without anything on them; the last line end begins no line.
TEST_F(ModuleScriptControl, ShowsTheScriptLineByLine) {
    EXPECT_THAT(linesDrawnFor("x = x + 1"), ElementsAre(hint, "x = x + 1"));
    EXPECT_THAT(linesDrawnFor("x = 1\ny = 2\r\n\r\nz = 3\rr = 0\n"),
                ElementsAre(hint, "x = 1", "y = 2", "", "z = 3", "r = 0"));
}

// The script's first line is the third of the chunk that Lua sees.
TEST_F(ModuleScriptControl, ShowsTheErrorInPlaceOfTheScript) {
    EXPECT_THAT(linesDrawnFor("x = 1\ny = = 2"),
                ElementsAre(hint, "Error:", "[string \"script\"]:4: unexpected symbol near '='"));
}

TEST_F(ModuleScriptControl, ShowsThatSavedDataIsDamaged) {
    const auto instance = instanceWithScript("x = 1");
    auto flat = sequenceBlock("x = 1", {}, host().description().version);
    flat[1] = std::byte{'g'};
    instance->resetup(flat);
    EXPECT_THAT(linesDrawnBy(*instance), ElementsAre(hint, "Error:", "Failed to load Lua script: data corrupted"));
}

// The panel's instance is the original, of which renders have copies.
TEST_F(ModuleScriptControl, ShowsTheScriptUntilItsOwnInstanceFails) {
    const auto instance = instanceWithScript("x = y.z");
    EXPECT_THAT(instance->renderFrame({}).message, HasSubstr("Failed to execute the script"));
    EXPECT_THAT(linesDrawnBy(*instance), ElementsAre(hint, "x = y.z"));
}

// The first baseline is a font's height below the frame's top, each further one the font's height and 5 below the last.
TEST_F(ModuleScriptControl, PlacesLinesByTheFontInTheColourOfTheTheme) {
    const auto instance = instanceWithScript("x = 1\ny = 2");
    ClipRecorder recorder;
    EXPECT_THAT(PanelReader(*instance).draw(parameterIndexOf("Script"), frame, recorder).broken, IsEmpty());
    ASSERT_EQ(recorder.texts().size(), 3u);
    const float fontSize = recorder.texts()[0].fontSize;
    EXPECT_GT(fontSize, 0);
    for (int line = 0; line < 3; ++line) {
        const DrawnText& text = recorder.texts()[static_cast<std::size_t>(line)];
        EXPECT_EQ(text.origin.x, 15);
        EXPECT_EQ(text.origin.y, 200 + fontSize + static_cast<float>(line) * (fontSize + 5));
        EXPECT_EQ(text.fontSize, fontSize);
        EXPECT_EQ(text.alignment, kDRAWBOT_TextAlignment_Left);
        EXPECT_EQ(text.truncation, kDRAWBOT_TextTruncation_None);
        // The host's text colour is 0xC0C0 of 0xFFFF in each component.
        EXPECT_FLOAT_EQ(text.color.red, 0xC0C0 * 1.5259022e-05F);
        EXPECT_FLOAT_EQ(text.color.blue, 0xC0C0 * 1.5259022e-05F);
        EXPECT_EQ(text.color.alpha, 1);
    }
    ASSERT_EQ(recorder.clips.size(), 1u);
    EXPECT_EQ(recorder.clips[0].left, 10);
    EXPECT_EQ(recorder.clips[0].top, 200);
    EXPECT_EQ(recorder.clips[0].width, 150);
    EXPECT_EQ(recorder.clips[0].height, 150);
}

TEST_F(ModuleScriptControl, ShowsTextThatIsNotUtf8) {
    EXPECT_THAT(linesDrawnFor("-- \xC3\xBC\xF0\x9F\x8E\xA8\nx = 1 -- \xFF\xC3"),
                ElementsAre(hint, "-- \xC3\xBC\xF0\x9F\x8E\xA8", "x = 1 -- \xEF\xBF\xBD\xEF\xBF\xBD"));
    EXPECT_THAT(linesDrawnFor("\xFF"), ElementsAre(hint, "Error:", StartsWith("[string \"script\"]:3: ")));
}

TEST_F(ModuleScriptControl, DrawsOnlyInDrawEventsOfItsOwn) {
    const auto instance = instanceWithScript("x = 1");
    for (const char* id : {"CountX", "Gradient.Custom1", "Ramp.Custom1"}) {
        TextRecorder recorder;
        const CommandResult result = PanelReader(*instance).draw(parameterIndexOf(id), frame, recorder);
        EXPECT_EQ(result.error, PF_Err_NONE) << id;
        EXPECT_THAT(recorder.texts(), IsEmpty()) << id;
    }
    for (PF_EventType type = PF_Event_NEW_CONTEXT; type <= PF_Event_MOUSE_EXITED; ++type) {
        if (type == PF_Event_DRAW || type == PF_Event_DO_CLICK)
            continue;
        PF_EventExtra event{};
        event.e_type = type;
        event.effect_win.index = parameterIndexOf("Script");
        const CommandResult result = instance->command(PF_Cmd_EVENT, 0, &event);
        EXPECT_EQ(result.error, PF_Err_NONE) << type;
        EXPECT_EQ(event.evt_out_flags, PF_EO_NONE) << type;
        EXPECT_THAT(result.broken, IsEmpty()) << type;
    }
}

// Outside of a panel there is no drawing to be had.
TEST_F(ModuleScriptControl, DrawsNothingWhereThereIsNothingToDrawOn) {
    const auto instance = instanceWithScript("x = 1");
    PF_EventExtra event{};
    event.e_type = PF_Event_DRAW;
    event.effect_win.index = parameterIndexOf("Script");
    const CommandResult result = instance->command(PF_Cmd_EVENT, 0, &event);
    EXPECT_EQ(result.error, PF_Err_NONE);
    EXPECT_EQ(event.evt_out_flags, PF_EO_HANDLED_EVENT);
    EXPECT_THAT(result.broken, IsEmpty());
}

// Every call of a draw event in turn: its error is the event's, and everything that was lent comes back. Giving back
// has no one to tell an error.
TEST_F(ModuleScriptControl, AHostCallThatFailsEndsTheEventWithItsError) {
    const auto instance = instanceWithScript("x = 1\ny = 2");
    int failed = 0;
    FailingCommand command;
    command.run = [&] {
        TextRecorder recorder;
        return PanelReader(*instance).draw(parameterIndexOf("Script"), frame, recorder);
    };
    command.expectFailed = [&failed](const CommandResult& result, int) {
        EXPECT_THAT(result.error, AnyOf(PF_Err_INVALID_INDEX, PF_Err_BAD_CALLBACK_PARAM, PF_Err_NONE));
        EXPECT_THAT(result.broken, IsEmpty());
        failed += result.error == PF_Err_NONE ? 0 : 1;
    };
    command.expectDone = [](const CommandResult& result) { expectGood(result); };
    failEachCall(host(), PF_Err_INVALID_INDEX, command);
    // Six suites, the drawing, supplier, surface, text support, size, colour, brush, font, push, clip and three lines.
    EXPECT_EQ(failed, 19);
}

TEST_F(ModuleScriptControl, WithoutASuiteTheEventSaysSo) {
    const auto instance = instanceWithScript("x = 1");
    struct Suite {
        const char* name;
        A_long version;
        const char* message;
    };
    for (const Suite& suite : {Suite{"DRAWBOT Draw Suite", 1, "Not able to acquire AEFX Suite."},
                               Suite{"DRAWBOT Supplier Suite", 1, "Not able to acquire AEFX Suite."},
                               Suite{"DRAWBOT Surface Suite", 2, "Not able to acquire AEFX Suite."},
                               Suite{"DRAWBOT Path Suite", 1, "Not able to acquire AEFX Suite."},
                               Suite{"PF Effect Custom UI Suite", 1, ""}, Suite{"PF AE App Suite", 6, ""}}) {
        host().faults().removeSuite(suite.name, suite.version);
        TextRecorder recorder;
        const CommandResult result = PanelReader(*instance).draw(parameterIndexOf("Script"), frame, recorder);
        host().faults().clear();
        EXPECT_EQ(result.error, PF_Err_BAD_CALLBACK_PARAM) << suite.name;
        EXPECT_EQ(result.message, suite.message) << suite.name;
        EXPECT_THAT(recorder.texts(), IsEmpty()) << suite.name;
        EXPECT_THAT(result.broken, IsEmpty()) << suite.name;
    }
}

}  // namespace
}  // namespace TessavoyHost
