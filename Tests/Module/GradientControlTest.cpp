#include <cstring>
#include <optional>

#include "Tests/Module/GradientPanel.h"

namespace TessavoyHost {
namespace {

using namespace GradientPanel;
using Tessavoy::flatGradient;
using Tessavoy::StopKind;
using testing::IsEmpty;
using testing::SizeIs;

using Bytes = std::vector<std::byte>;

int pixelOf(double position) {
    return 106 + static_cast<int>(position * 200 + 0.5);
}

class ModuleGradientControl : public ModuleFixture {
protected:
    // Has the picker answer a colour from now on, and notes what it was asked.
    void pick(std::optional<PF_PixelFloat> colour) {
        host().services().hooks.pickColor = [this, colour](const std::string& title, const PF_PixelFloat& shown) {
            titles.push_back(title);
            shownColours.push_back(shown);
            return colour;
        };
    }

    std::vector<std::string> titles;
    std::vector<PF_PixelFloat> shownColours;
};

TEST_F(ModuleGradientControl, BelongsToAllElevenGradients) {
    std::vector<std::string> ids = {"FogColorGradient"};
    for (int slot = 1; slot <= 10; ++slot)
        ids.push_back("Gradient.Custom" + std::to_string(slot));
    for (const std::string& id : ids) {
        GradientInPanel panel(host(), {red, green, blue}, id);
        expectGood(panel.control.click(206, inside, 1, PF_Mod_CMD_CTRL_KEY));
        EXPECT_TRUE(panel.control.changed()) << id;
        DrawingRecorder recorder;
        expectGood(panel.control.draw(recorder));
        EXPECT_THAT(recorder.pictures, SizeIs(2)) << id;
    }
}

TEST_F(ModuleGradientControl, TheModifierGoesThroughTheKinds) {
    GradientInPanel panel(host(), {red, green, blue});
    for (const StopKind kind : {StopKind::Edge, StopKind::Straight, StopKind::Soft, StopKind::Edge}) {
        expectGood(panel.control.click(209, inside, 1, PF_Mod_CMD_CTRL_KEY | PF_Mod_SHIFT_KEY));
        EXPECT_TRUE(panel.control.changed());
        EXPECT_TRUE(panel.control.handled());
        EXPECT_FALSE(panel.control.sendsDrags());
        EXPECT_EQ(panel.control.flat(), flatGradient({red, {0.5F, kind, green.colour}, blue}));
    }
}

TEST_F(ModuleGradientControl, LeavesClicksOnNothing) {
    GradientInPanel panel(host(), {red, green, blue});
    const Bytes before = panel.control.flat();
    const struct {
        int x, count;
        PF_Modifiers modifiers;
    } clicks[] = {{pixelOf(0.6), 1, PF_Mod_NONE},
                  {pixelOf(0.6), 1, PF_Mod_CMD_CTRL_KEY},
                  {pixelOf(0.6), 2, PF_Mod_CMD_CTRL_KEY},
                  {99, 2, PF_Mod_NONE},
                  {313, 2, PF_Mod_NONE},
                  {99, 1, PF_Mod_NONE},
                  {206, 3, PF_Mod_NONE}};
    for (const auto& click : clicks) {
        expectGood(panel.control.click(click.x, inside, click.count, click.modifiers));
        EXPECT_TRUE(panel.control.untouched()) << click.x;
        EXPECT_EQ(panel.control.flat(), before);
    }
}

// Other keys than Command or Control make a plain click of it.
TEST_F(ModuleGradientControl, GrabsAPointAndMovesIt) {
    GradientInPanel panel(host(), {red, green, blue});
    const Bytes before = panel.control.flat();
    expectGood(panel.control.click(203, inside, 1, PF_Mod_SHIFT_KEY | PF_Mod_MAC_CONTROL_KEY));
    EXPECT_TRUE(panel.control.sendsDrags());
    EXPECT_TRUE(panel.control.handled());
    EXPECT_FALSE(panel.control.changed());
    EXPECT_EQ(panel.control.flat(), before);

    expectGood(panel.control.drag(203, inside));
    EXPECT_FALSE(panel.control.changed());
    EXPECT_FALSE(panel.control.handled());
    EXPECT_EQ(panel.control.flat(), before);

    expectGood(panel.control.drag(223, -500));
    EXPECT_TRUE(panel.control.changed());
    EXPECT_TRUE(panel.control.handled());
    EXPECT_TRUE(panel.control.sendsDrags());
    EXPECT_EQ(panel.control.flat(), flatGradient({red, at(0.6F, green), blue}));
}

TEST_F(ModuleGradientControl, DragsPointsPastEachOtherAndBesideEachOther) {
    GradientInPanel panel(host(), {red, green, blue});
    panel.control.click(pixelOf(0.25), inside);
    panel.control.drag(pixelOf(0.75), inside);
    EXPECT_EQ(panel.control.flat(), flatGradient({green, at(0.75F - 0.001F, red), blue}));
    panel.control.drag(pixelOf(0.9), inside);
    EXPECT_EQ(panel.control.flat(), flatGradient({green, blue, at(0.9F, red)}));
    panel.control.drag(1000, inside);
    EXPECT_EQ(panel.control.flat(), flatGradient({green, blue, at(1, red)}));
    panel.control.drag(-1000, inside);
    EXPECT_EQ(panel.control.flat(), flatGradient({at(0, red), green, blue}));
    // 0.5 belongs to the upper half, from which the middle is below
    panel.control.drag(pixelOf(0.5), inside);
    EXPECT_EQ(panel.control.flat(), flatGradient({at(0.5F - 0.001F, red), green, blue}));
}

TEST_F(ModuleGradientControl, DragsPointsOffAndBack) {
    GradientInPanel panel(host(), {red, green, blue});
    panel.control.click(206, inside);
    panel.control.drag(208, frame.bottom);
    EXPECT_EQ(panel.control.flat(), flatGradient({red, at(0.51F, green), blue}));
    expectGood(panel.control.drag(210, below));
    EXPECT_TRUE(panel.control.changed());
    EXPECT_TRUE(panel.control.sendsDrags());
    EXPECT_EQ(panel.control.flat(), flatGradient({red, blue}));
    for (const int x : {210, 50, 300}) {
        expectGood(panel.control.drag(x, below + 50));
        EXPECT_FALSE(panel.control.changed());
        EXPECT_EQ(panel.control.flat(), flatGradient({red, blue}));
    }
    expectGood(panel.control.drag(pixelOf(0.25), frame.bottom));
    EXPECT_TRUE(panel.control.changed());
    EXPECT_EQ(panel.control.flat(), flatGradient({red, at(0.25F + 0.001F, green), blue}));
    panel.control.drag(pixelOf(0.25), below);
    EXPECT_EQ(panel.control.flat(), flatGradient({red, blue}));
    // the mouse is released there, and what comes next begins anew
    panel.control.click(pixelOf(0.75), inside);
    panel.control.drag(pixelOf(0.8), inside);
    EXPECT_EQ(panel.control.flat(), flatGradient({red, at(0.8F, blue)}));
}

// A point that the pointer doesn't move stays where it is, wherever below the pointer goes.
TEST_F(ModuleGradientControl, KeepsAPointThatIsDraggedStraightDown) {
    GradientInPanel panel(host(), {at(0, red), at(1, green)});
    panel.control.click(306, inside);
    for (const int x : {306, 400}) {
        expectGood(panel.control.drag(x, below));
        EXPECT_FALSE(panel.control.changed());
        EXPECT_EQ(panel.control.flat(), flatGradient({at(0, red), at(1, green)}));
    }
}

TEST_F(ModuleGradientControl, LosesAllItsPointsAndGetsNewOnes) {
    GradientInPanel panel(host(), {red, green, blue});
    for (const double position : {0.25, 0.75, 0.5}) {
        panel.control.click(pixelOf(position), inside);
        panel.control.drag(pixelOf(position) - 1, below);
    }
    EXPECT_EQ(panel.control.flat(), flatGradient({}));
    DrawingRecorder recorder;
    expectGood(panel.control.draw(recorder));
    EXPECT_THAT(recorder.fills, IsEmpty());
    ASSERT_THAT(recorder.pictures, SizeIs(1));
    EXPECT_EQ(std::vector(recorder.pictures[0].image.samples.begin(), recorder.pictures[0].image.samples.begin() + 4),
              (Bytes{std::byte{0}, std::byte{0}, std::byte{0}, std::byte{255}}));
    expectGood(panel.control.click(206, inside, 2));
    EXPECT_TRUE(panel.control.changed());
    EXPECT_EQ(panel.control.flat(), flatGradient({{0.5F, StopKind::Soft, {0, 0, 0, 1}}}));
}

TEST_F(ModuleGradientControl, GetsAPointOfItsColourByADoubleClick) {
    GradientInPanel panel(host(), {{0.25F, StopKind::Edge, red.colour}, green, blue});
    expectGood(panel.control.click(pixelOf(0.4), inside, 2));
    EXPECT_TRUE(panel.control.changed());
    EXPECT_TRUE(panel.control.handled());
    EXPECT_FALSE(panel.control.sendsDrags());
    EXPECT_EQ(panel.control.flat(),
              flatGradient({{0.25F, StopKind::Edge, red.colour}, {0.4F, StopKind::Edge, red.colour}, green, blue}));
}

TEST_F(ModuleGradientControl, TakesThePickedColourButNotItsAlpha) {
    GradientInPanel panel(host(), {red, green, blue});
    pick(PF_PixelFloat{0.125F, 0.5F, 0.25F, 2});
    expectGood(panel.control.click(pixelOf(0.75) + 5, inside, 2));
    EXPECT_TRUE(panel.control.changed());
    EXPECT_TRUE(panel.control.handled());
    EXPECT_EQ(panel.control.flat(), flatGradient({red, green, {0.75F, StopKind::Edge, {0.5F, 0.25F, 2, 0.25F}}}));
    EXPECT_EQ(titles, (std::vector<std::string>{"Gradient Color"}));
    ASSERT_THAT(shownColours, SizeIs(1));
    EXPECT_EQ(shownColours[0].alpha, 0.25F);
    EXPECT_EQ(shownColours[0].red, 0);
    EXPECT_EQ(shownColours[0].green, 0);
    EXPECT_EQ(shownColours[0].blue, 1);
}

TEST_F(ModuleGradientControl, IsLeftAsItIsWhenThePickerIsCancelled) {
    GradientInPanel panel(host(), {red, green, blue});
    pick(std::nullopt);
    expectGood(panel.control.click(206, inside, 2));
    EXPECT_FALSE(panel.control.changed());
    EXPECT_TRUE(panel.control.handled());
    EXPECT_EQ(panel.control.flat(), flatGradient({red, green, blue}));
    EXPECT_THAT(titles, SizeIs(1));
}

TEST_F(ModuleGradientControl, ReturnsWhatThePickerFailsWith) {
    GradientInPanel panel(host(), {red, green, blue});
    for (const PF_Err given : {PF_Err{PF_Err_INVALID_INDEX}, PF_Err{PF_Err_OUT_OF_MEMORY}, PF_Err{1000}}) {
        host().faults().failNth("PF_AppColorPickerDialog", 1, given);
        const CommandResult result = panel.control.click(206, inside, 2);
        host().faults().clear();
        EXPECT_EQ(result.error, given);
        EXPECT_THAT(result.broken, IsEmpty());
        EXPECT_TRUE(panel.control.untouched());
        EXPECT_EQ(panel.control.flat(), flatGradient({red, green, blue}));
    }
}

TEST_F(ModuleGradientControl, LeavesEventsBesideTheControl) {
    GradientInPanel panel(host(), {red, green, blue});
    for (const PF_EffectArea area : {PF_EA_NONE, PF_EA_PARAM_TITLE}) {
        panel.control.event().effect_win.area = area;
        for (const int count : {1, 2}) {
            for (const PF_Modifiers modifiers : {PF_Mod_NONE, PF_Mod_CMD_CTRL_KEY}) {
                expectGood(panel.control.click(206, inside, count, modifiers));
                EXPECT_TRUE(panel.control.untouched());
            }
        }
        expectGood(panel.control.drag(150, below));
        EXPECT_TRUE(panel.control.untouched());
        panel.control.event().e_type = PF_Event_DRAW;
        expectGood(panel.instance->command(PF_Cmd_EVENT, 0, &panel.control.event()));
        EXPECT_TRUE(panel.control.untouched());
    }
    EXPECT_EQ(panel.control.flat(), flatGradient({red, green, blue}));
}

TEST_F(ModuleGradientControl, LeavesOtherEvents) {
    GradientInPanel panel(host(), {red, green, blue});
    for (PF_EventType type = PF_Event_NONE; type <= PF_Event_MOUSE_EXITED; ++type) {
        if (type == PF_Event_DO_CLICK || type == PF_Event_DRAG || type == PF_Event_DRAW)
            continue;
        panel.control.event().e_type = type;
        panel.control.event().u.do_click.screen_point = {206, inside};
        panel.control.event().u.do_click.num_clicks = 2;
        expectGood(panel.instance->command(PF_Cmd_EVENT, 0, &panel.control.event()));
        EXPECT_TRUE(panel.control.untouched()) << type;
    }
    EXPECT_EQ(panel.control.flat(), flatGradient({red, green, blue}));
}

// A move without a press comes with whatever the record holds.
TEST_F(ModuleGradientControl, SurvivesADragOfNothing) {
    GradientInPanel panel(host(), {red, green, blue});
    for (const int filling : {0x7F, 0x80, 0xFE}) {
        std::memset(panel.control.event().u.do_click.continue_refcon, filling,
                    sizeof panel.control.event().u.do_click.continue_refcon);
        expectGood(panel.control.drag(206, inside));
        EXPECT_FALSE(panel.control.changed());
        EXPECT_EQ(panel.control.flat(), flatGradient({red, green, blue}));
    }
}

TEST_F(ModuleGradientControl, WithoutAValueIsOutOfMemory) {
    GradientInPanel panel(host(), {red, green, blue});
    host().faults().failNth("host_lock_handle", 1, PF_Err_INVALID_INDEX);
    EXPECT_EQ(panel.control.click(206, inside).error, PF_Err_OUT_OF_MEMORY);
    host().faults().clear();
    host().faults().removeSuite("PF Handle Suite", 2);
    EXPECT_EQ(panel.control.click(206, inside).error, PF_Err_BAD_CALLBACK_PARAM);
    host().faults().clear();
    EXPECT_TRUE(panel.control.untouched());
}

// A suite, a lock; with the picker one more suite and the picker. What is given back tells no error.
TEST_F(ModuleGradientControl, AHostCallThatFailsEndsTheEventWithItsError) {
    GradientInPanel panel(host(), {red, green, blue});
    EXPECT_EQ(panel.control.failEachCallOf([&] { return panel.control.click(206, inside); }), 2);
    EXPECT_EQ(panel.control.failEachCallOf([&] { return panel.control.click(206, inside, 1, PF_Mod_CMD_CTRL_KEY); }),
              2);
    pick(PF_PixelFloat{1, 0.5F, 0.25F, 0.125F});
    EXPECT_EQ(panel.control.failEachCallOf([&] { return panel.control.click(206, inside, 2); }), 4);
    panel.control.click(206, inside);
    int x = 206;
    EXPECT_EQ(panel.control.failEachCallOf([&] {
        panel.control.event().u.do_click.send_drag = 0;
        return panel.control.drag(++x, inside);
    }),
              2);
}

// What the mouse makes of the gradient is what frames are drawn with: fog that covers everything is the edited colour.
TEST_F(ModuleGradientControl, EditsWhatFramesShow) {
    ModuleScene scene = fourSquaresScene();
    scene.set("FogEnabled", 1).set("FogColorWeight", 100).set("FogOpacity", 100).set("FogStart", -2).set("FogEnd", -1);
    scene.set("FogColorGradient",
              ParameterValue(ArbitraryValue{flatGradient({{0.5F, StopKind::Straight, {1, 0, 0, 1}}})}));
    const auto instance = instanceOf(scene);
    FrameResult frameBefore = instance->renderFrame({});
    expectGood(frameBefore);
    PanelControl control(*instance, "FogColorGradient", frame);
    pick(PF_PixelFloat{1, 0, 0, 1});
    expectGood(control.click(206, inside, 2));
    FrameResult frameAfter = instance->renderFrame({});
    expectGood(frameAfter);
    expectPicture(frameBefore.output, fourSquares({1, 1, 0, 0}));
    expectPicture(frameAfter.output, fourSquares({1, 0, 0, 1}));
}

}  // namespace
}  // namespace TessavoyHost
