#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <optional>

#include "Tests/Module/ModuleFixture.h"
#include "Tests/Module/PanelControl.h"
#include "Tests/Support/FlatBytes.h"

namespace TessavoyHost {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

using Bytes = std::vector<std::byte>;

enum Kind : std::int32_t { Linear = 0, Sin = 1, Edge = 2 };

struct Stop {
    float position;
    std::int32_t kind;
    std::array<float, 4> colour;  // red, green, blue, alpha
};
using Stops = std::vector<Stop>;

// The saved form: a count, then each stop's position, kind and colour.
Bytes flatGradient(const Stops& stops) {
    Bytes flat;
    Tessavoy::appendNumber(flat, static_cast<std::int32_t>(stops.size()));
    for (const Stop& stop : stops) {
        Tessavoy::appendNumber(flat, stop.position);
        Tessavoy::appendNumber(flat, stop.kind);
        for (const float channel : stop.colour)
            Tessavoy::appendNumber(flat, channel);
    }
    return flat;
}

// The colour at t, in double precision: between two stops a cosine ease and a straight line blended 7 to 3, the line
// alone, or the first stop's colour. Stops in rising order, at least one.
std::array<double, 4> referenceColour(const Stops& stops, double t) {
    std::size_t after = 0;
    while (after < stops.size() && !(stops[after].position > t))
        ++after;
    const Stop& right = stops[std::min(after, stops.size() - 1)];
    const Stop& left = stops[after == 0 ? 0 : after - 1];
    double share = 0;
    if (after > 0 && after < stops.size() && left.kind != Edge) {
        share = (t - left.position) / (static_cast<double>(right.position) - left.position);
        if (left.kind == Sin)
            share = 0.7 * (1 - std::cos(share * std::numbers::pi)) / 2 + 0.3 * share;
    }
    std::array<double, 4> colour{};
    for (std::size_t channel = 0; channel < 4; ++channel)
        colour[channel] =
            left.colour[channel] + share * (static_cast<double>(right.colour[channel]) - left.colour[channel]);
    return colour;
}

// The track runs from x = 106 to 306, 200 pixels. The bar has 206 pixels from 103 on and stands from y = 56 to 79.
constexpr PF_Rect frame = {100, 50, 312, 100};
constexpr int inside = 75, below = 101;

constexpr Stop red{0.25F, Linear, {1, 0, 0, 0.5F}};
constexpr Stop green{0.5F, Sin, {0, 1, 0, 1}};
constexpr Stop blue{0.75F, Edge, {0, 0, 1, 0.25F}};

Stop at(float position, Stop stop) {
    stop.position = position;
    return stop;
}

int pixelOf(double position) {
    return 106 + static_cast<int>(position * 200 + 0.5);
}

// A gradient's control in a panel, by the id of its parameter.
struct GradientInPanel {
    GradientInPanel(EffectHost& host, const Stops& stops, const std::string& id = "Gradient.Custom1")
        : instance(host.createInstance(
              ModuleScene(fourSquaresScene()).set(id, ParameterValue(ArbitraryValue{flatGradient(stops)})).project)),
          control(*instance, id, frame) {}

    std::unique_ptr<EffectInstance> instance;
    PanelControl control;
};

void expectGoodEvent(const CommandResult& result) {
    EXPECT_EQ(result.error, PF_Err_NONE);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(result.broken, IsEmpty());
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
        expectGoodEvent(panel.control.click(206, inside, 1, PF_Mod_CMD_CTRL_KEY));
        EXPECT_TRUE(panel.control.changed()) << id;
        DrawingRecorder recorder;
        expectGoodEvent(panel.control.draw(recorder));
        EXPECT_THAT(recorder.pictures, SizeIs(2)) << id;
    }
}

TEST_F(ModuleGradientControl, TheModifierGoesThroughTheKinds) {
    GradientInPanel panel(host(), {red, green, blue});
    for (const Kind kind : {Edge, Linear, Sin, Edge}) {
        expectGoodEvent(panel.control.click(209, inside, 1, PF_Mod_CMD_CTRL_KEY | PF_Mod_SHIFT_KEY));
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
        expectGoodEvent(panel.control.click(click.x, inside, click.count, click.modifiers));
        EXPECT_TRUE(panel.control.untouched()) << click.x;
        EXPECT_EQ(panel.control.flat(), before);
    }
}

// Other keys than Command or Control make a plain click of it.
TEST_F(ModuleGradientControl, GrabsAPointAndMovesIt) {
    GradientInPanel panel(host(), {red, green, blue});
    const Bytes before = panel.control.flat();
    expectGoodEvent(panel.control.click(203, inside, 1, PF_Mod_SHIFT_KEY | PF_Mod_MAC_CONTROL_KEY));
    EXPECT_TRUE(panel.control.sendsDrags());
    EXPECT_TRUE(panel.control.handled());
    EXPECT_FALSE(panel.control.changed());
    EXPECT_EQ(panel.control.flat(), before);

    expectGoodEvent(panel.control.drag(203, inside));
    EXPECT_FALSE(panel.control.changed());
    EXPECT_FALSE(panel.control.handled());
    EXPECT_EQ(panel.control.flat(), before);

    expectGoodEvent(panel.control.drag(223, -500));
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
    expectGoodEvent(panel.control.drag(210, below));
    EXPECT_TRUE(panel.control.changed());
    EXPECT_TRUE(panel.control.sendsDrags());
    EXPECT_EQ(panel.control.flat(), flatGradient({red, blue}));
    for (const int x : {210, 50, 300}) {
        expectGoodEvent(panel.control.drag(x, below + 50));
        EXPECT_FALSE(panel.control.changed());
        EXPECT_EQ(panel.control.flat(), flatGradient({red, blue}));
    }
    expectGoodEvent(panel.control.drag(pixelOf(0.25), frame.bottom));
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
        expectGoodEvent(panel.control.drag(x, below));
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
    expectGoodEvent(panel.control.draw(recorder));
    EXPECT_THAT(recorder.fills, IsEmpty());
    ASSERT_THAT(recorder.pictures, SizeIs(2));
    EXPECT_EQ(std::vector(recorder.pictures[1].image.samples.begin(), recorder.pictures[1].image.samples.begin() + 4),
              (Bytes{std::byte{0}, std::byte{0}, std::byte{0}, std::byte{255}}));
    expectGoodEvent(panel.control.click(206, inside, 2));
    EXPECT_TRUE(panel.control.changed());
    EXPECT_EQ(panel.control.flat(), flatGradient({{0.5F, Sin, {0, 0, 0, 1}}}));
}

TEST_F(ModuleGradientControl, GetsAPointOfItsColourByADoubleClick) {
    GradientInPanel panel(host(), {{0.25F, Edge, red.colour}, green, blue});
    expectGoodEvent(panel.control.click(pixelOf(0.4), inside, 2));
    EXPECT_TRUE(panel.control.changed());
    EXPECT_TRUE(panel.control.handled());
    EXPECT_FALSE(panel.control.sendsDrags());
    EXPECT_EQ(panel.control.flat(), flatGradient({{0.25F, Edge, red.colour}, {0.4F, Edge, red.colour}, green, blue}));
}

TEST_F(ModuleGradientControl, TakesThePickedColourButNotItsAlpha) {
    GradientInPanel panel(host(), {red, green, blue});
    pick(PF_PixelFloat{0.125F, 0.5F, 0.25F, 2});
    expectGoodEvent(panel.control.click(pixelOf(0.75) + 5, inside, 2));
    EXPECT_TRUE(panel.control.changed());
    EXPECT_TRUE(panel.control.handled());
    EXPECT_EQ(panel.control.flat(), flatGradient({red, green, {0.75F, Edge, {0.5F, 0.25F, 2, 0.25F}}}));
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
    expectGoodEvent(panel.control.click(206, inside, 2));
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
                expectGoodEvent(panel.control.click(206, inside, count, modifiers));
                EXPECT_TRUE(panel.control.untouched());
            }
        }
        expectGoodEvent(panel.control.drag(150, below));
        EXPECT_TRUE(panel.control.untouched());
        panel.control.event().e_type = PF_Event_DRAW;
        expectGoodEvent(panel.instance->command(PF_Cmd_EVENT, 0, &panel.control.event()));
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
        expectGoodEvent(panel.instance->command(PF_Cmd_EVENT, 0, &panel.control.event()));
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
        expectGoodEvent(panel.control.drag(206, inside));
        EXPECT_FALSE(panel.control.changed());
        EXPECT_EQ(panel.control.flat(), flatGradient({red, green, blue}));
    }
}

TEST_F(ModuleGradientControl, FillsItsFrameAndStaysInIt) {
    GradientInPanel panel(host(), {red, green, blue});
    DrawingRecorder recorder;
    expectGoodEvent(panel.control.draw(recorder));
    ASSERT_THAT(recorder.clips, SizeIs(1));
    EXPECT_EQ(recorder.clips[0].left, 100);
    EXPECT_EQ(recorder.clips[0].top, 50);
    EXPECT_EQ(recorder.clips[0].width, 212);
    EXPECT_EQ(recorder.clips[0].height, 50);
    ASSERT_THAT(recorder.rectangles, SizeIs(1));
    EXPECT_EQ(recorder.rectangles[0].area.left, 100);
    EXPECT_EQ(recorder.rectangles[0].area.top, 50);
    EXPECT_EQ(recorder.rectangles[0].area.width, 212);
    EXPECT_EQ(recorder.rectangles[0].area.height, 50);
    EXPECT_TRUE(sameColor(recorder.rectangles[0].color, themeColorOf(host(), PF_App_Color_PANEL_BACKGROUND)));
}

// Column x of the bar, of 206, is the gradient at x / 206, cut to whole numbers. The cut may fall one short where
// single precision is a little lower than this.
TEST_F(ModuleGradientControl, DrawsABarOfItsColours) {
    const Stops stops = {{0.1F, Sin, {1, 0.2F, 0, 1}},
                         {0.3F, Linear, {0, 0.9F, 1, 1}},
                         {0.6F, Edge, {0.5F, 0.5F, 0, 1}},
                         {0.8F, Linear, {0, 0, 0.25F, 1}},
                         {0.95F, Sin, {1, 1, 1, 1}}};
    GradientInPanel panel(host(), stops);
    DrawingRecorder recorder;
    expectGoodEvent(panel.control.draw(recorder));
    ASSERT_THAT(recorder.pictures, SizeIs(2));
    const auto& [bar, origin, alpha] = recorder.pictures[1];
    EXPECT_EQ(origin.x, 103);
    EXPECT_EQ(origin.y, 56);
    EXPECT_EQ(alpha, 1);
    ASSERT_EQ(bar.width, 206);
    ASSERT_EQ(bar.height, 23);
    for (int y = 0; y < bar.height; ++y) {
        for (int x = 0; x < bar.width; ++x) {
            const std::byte* pixel = &bar.samples[static_cast<std::size_t>(y * bar.width + x) * 4];
            const auto expected = referenceColour(stops, x / 206.0);
            for (const auto& [channel, place] : {std::pair{0, 2}, std::pair{1, 1}, std::pair{2, 0}, std::pair{3, 3}})
                EXPECT_NEAR(std::to_integer<int>(pixel[place]),
                            std::floor(expected[static_cast<std::size_t>(channel)] * 255), 1)
                    << "column " << x << ", channel " << channel;
        }
    }
}

// The picture reaches the host with straight alpha, which premultiplies it; behind it a board of the theme's white and
// grey shows.
TEST_F(ModuleGradientControl, DrawsTransparentColoursOverACheckerboard) {
    GradientInPanel panel(host(), {{0.5F, Linear, {1, 0.5F, 0, 0.4F}}});
    DrawingRecorder recorder;
    expectGoodEvent(panel.control.draw(recorder));
    ASSERT_THAT(recorder.pictures, SizeIs(2));
    const DrawnImage& bar = recorder.pictures[1].image;
    // 0.4 * 255 = 102; of red 255, of green 127 * 102 / 255 = 50.8
    EXPECT_EQ(Bytes(bar.samples.begin(), bar.samples.begin() + 4),
              (Bytes{std::byte{0}, std::byte{51}, std::byte{102}, std::byte{102}}));

    const auto& [board, origin, alpha] = recorder.pictures[0];
    EXPECT_EQ(origin.x, 103);
    EXPECT_EQ(origin.y, 56);
    ASSERT_EQ(board.width, 206);
    ASSERT_EQ(board.height, 23);
    const auto greenAt = [&board = board](int x, int y) {
        return std::to_integer<int>(board.samples[static_cast<std::size_t>(y * board.width + x) * 4 + 1]);
    };
    const int light = static_cast<int>(themeColorOf(host(), PF_App_Color_WHITE).green * 255);
    const int dark = static_cast<int>(themeColorOf(host(), PF_App_Color_GRAY).green * 255);
    EXPECT_NE(light, dark);
    EXPECT_EQ(greenAt(0, 0), light);
    EXPECT_EQ(greenAt(6, 0), dark);
    EXPECT_EQ(greenAt(6, 6), light);
    EXPECT_EQ(greenAt(205, 22), (205 / 6 + 22 / 6) % 2 == 0 ? light : dark);
}

// Each is 10 pixels wide about the whole pixel of its position and 15 high, with its tip at the bar's bottom, in the
// colour of its point without the alpha, with an outline in the colour of text. The first in order comes last, in
// front.
TEST_F(ModuleGradientControl, MarksEachPointBelowTheBar) {
    const Stops stops = {at(0, red), at(0.2525F, green), at(1, blue)};
    GradientInPanel panel(host(), stops);
    DrawingRecorder recorder;
    expectGoodEvent(panel.control.draw(recorder));
    ASSERT_THAT(recorder.fills, SizeIs(3));
    ASSERT_THAT(recorder.strokes, SizeIs(3));
    const float middles[] = {106, 157, 306};  // 50.5 pixels from the start are rounded up
    for (std::size_t n = 0; n < 3; ++n) {
        const auto& fill = recorder.fills[2 - n];
        const DRAWBOT_RectF32 bounds = boundsOf(fill.path);
        EXPECT_EQ(bounds.left, middles[n] - 5) << n;
        EXPECT_EQ(bounds.width, 10) << n;
        EXPECT_EQ(bounds.top, 79) << n;
        EXPECT_EQ(bounds.height, 15) << n;
        EXPECT_EQ(cornersOf(fill.path).front().x, middles[n]) << n;
        EXPECT_EQ(cornersOf(fill.path).front().y, 79) << n;
        const auto& colour = stops[n].colour;
        EXPECT_TRUE(sameColor(fill.color, {colour[0], colour[1], colour[2], 1})) << n;

        const auto& stroke = recorder.strokes[2 - n];
        EXPECT_EQ(cornersOf(stroke.path).size(), cornersOf(fill.path).size()) << n;
        EXPECT_EQ(boundsOf(stroke.path).left, bounds.left) << n;
        EXPECT_TRUE(sameColor(stroke.color, themeColorOf(host(), PF_App_Color_TEXT))) << n;
        EXPECT_EQ(stroke.width, 1) << n;
    }
}

// Each marker is its own mirror image, so that its middle is its point's place, and is made of the offsets 2.5, 3.75,
// 5, 7.5, 11.25 and 15.
TEST_F(ModuleGradientControl, MarksEachKindByAnOutlineOfItsOwn) {
    std::vector<std::vector<std::pair<float, float>>> outlines;
    for (const std::int32_t kind : {Linear, Sin, Edge, Kind{17}}) {
        GradientInPanel panel(host(), {{0.5F, kind, {1, 1, 1, 1}}});
        DrawingRecorder recorder;
        expectGoodEvent(panel.control.draw(recorder));
        ASSERT_THAT(recorder.fills, SizeIs(1));
        std::vector<std::pair<float, float>> outline;
        for (const DRAWBOT_PointF32& corner : cornersOf(recorder.fills[0].path)) {
            outline.emplace_back(corner.x - 206, corner.y - 79);
            EXPECT_THAT(std::abs(corner.x - 206), testing::AnyOf(0, 2.5F, 5)) << kind;
            EXPECT_THAT(corner.y - 79, testing::AnyOf(0, 3.75F, 5, 7.5F, 11.25F, 15)) << kind;
        }
        for (const auto& [x, y] : outline)
            EXPECT_THAT(outline, testing::Contains(std::pair(-x, y))) << kind;
        EXPECT_TRUE(std::holds_alternative<PathPiece::Close>(recorder.fills[0].path.back())) << kind;
        outlines.push_back(outline);
    }
    EXPECT_NE(outlines[Linear], outlines[Sin]);
    EXPECT_NE(outlines[Sin], outlines[Edge]);
    EXPECT_NE(outlines[Linear], outlines[Edge]);
    EXPECT_EQ(outlines[3], outlines[Linear]);  // as which any other kind blends
}

// Saved data may hold any numbers; there is no marker where nobody would see it.
TEST_F(ModuleGradientControl, DrawsWhateverWasSaved) {
    constexpr float infinite = std::numeric_limits<float>::infinity();
    constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
    const std::array<float, 4> colour = {notANumber, infinite, -5, notANumber};
    GradientInPanel panel(host(), {{-infinite, Sin, colour},
                                   {-3e38F, Linear, colour},
                                   {-0.03F, Sin, colour},
                                   {1.03F, Edge, colour},
                                   {3e38F, Sin, colour},
                                   {notANumber, Sin, colour}});
    DrawingRecorder recorder;
    expectGoodEvent(panel.control.draw(recorder));
    ASSERT_THAT(recorder.fills, SizeIs(2));
    EXPECT_EQ(boundsOf(recorder.fills[1].path).left, 95);
    EXPECT_EQ(boundsOf(recorder.fills[0].path).left, 307);
    EXPECT_TRUE(sameColor(recorder.fills[0].color, {0, 1, 0, 1}));
    for (const int count : {1, 2}) {
        for (const int x : {100, 206, 312})
            expectGoodEvent(panel.control.click(x, inside, count));
    }
}

// The smallest frames leave out what has no room, and break nothing.
TEST_F(ModuleGradientControl, DrawsIntoAnyFrame) {
    GradientInPanel panel(host(), {red, green, blue});
    for (const auto& [width, height, pictures, markers] :
         {std::array{0, 0, 0, 0}, std::array{6, 50, 0, 0}, std::array{7, 50, 2, 0}, std::array{12, 50, 2, 0},
          std::array{13, 27, 0, 3}, std::array{13, 28, 2, 3}}) {
        panel.control.event().effect_win.current_frame = {0, 0, width, height};
        DrawingRecorder recorder;
        expectGoodEvent(panel.control.draw(recorder));
        EXPECT_THAT(recorder.pictures, SizeIs(pictures)) << width << " by " << height;
        EXPECT_THAT(recorder.fills, SizeIs(markers)) << width << " by " << height;
    }
}

// Outside of a panel there is no drawing to be had.
TEST_F(ModuleGradientControl, DrawsNothingWhereThereIsNothingToDrawOn) {
    GradientInPanel panel(host(), {red});
    panel.control.event().e_type = PF_Event_DRAW;
    expectGoodEvent(panel.instance->command(PF_Cmd_EVENT, 0, &panel.control.event()));
    EXPECT_TRUE(panel.control.handled());
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

TEST_F(ModuleGradientControl, AHostCallThatFailsEndsTheDrawingWithItsError) {
    GradientInPanel panel(host(), {red, green, blue});
    const int failed = panel.control.failEachCallOf([&] {
        panel.control.event().evt_out_flags = PF_EO_NONE;
        DrawingRecorder recorder;
        return panel.control.draw(recorder);
    });
    // The drawing: 5 suites, the reference, supplier, surface, push, clip. The background: a suite, a colour, painting.
    // The value: a suite, a lock. The bar: two suites and colours; twice two layouts, the preferred one, the image and
    // its drawing. Markers: a suite, a colour, a pen; for each a path, a brush, filling and stroking, and 6 pieces of
    // the first, 6 of the second, 10 of the third.
    EXPECT_EQ(failed, 10 + 3 + 2 + 4 + 10 + 3 + 3 * 4 + 6 + 6 + 10);
}

TEST_F(ModuleGradientControl, WithoutASuiteTheDrawingSaysSo) {
    GradientInPanel panel(host(), {red, green, blue});
    const struct {
        const char* name;
        A_long version;
        const char* message;
    } suites[] = {{"DRAWBOT Draw Suite", 1, "Not able to acquire AEFX Suite."},
                  {"DRAWBOT Supplier Suite", 1, "Not able to acquire AEFX Suite."},
                  {"DRAWBOT Surface Suite", 2, "Not able to acquire AEFX Suite."},
                  {"DRAWBOT Path Suite", 1, "Not able to acquire AEFX Suite."},
                  {"PF Effect Custom UI Suite", 1, ""},
                  {"PF AE App Suite", 6, ""},
                  {"PF Handle Suite", 2, ""}};
    for (const auto& suite : suites) {
        host().faults().removeSuite(suite.name, suite.version);
        DrawingRecorder recorder;
        const CommandResult result = panel.control.draw(recorder);
        host().faults().clear();
        EXPECT_EQ(result.error, PF_Err_BAD_CALLBACK_PARAM) << suite.name;
        EXPECT_EQ(result.message, suite.message) << suite.name;
        EXPECT_THAT(result.broken, IsEmpty()) << suite.name;
    }
}

// What the mouse makes of the gradient is what frames are drawn with: fog that covers everything is the edited colour.
TEST_F(ModuleGradientControl, EditsWhatFramesShow) {
    ModuleScene scene = fourSquaresScene();
    scene.set("FogEnabled", 1).set("FogColorWeight", 100).set("FogOpacity", 100).set("FogStart", -2).set("FogEnd", -1);
    scene.set("FogColorGradient", ParameterValue(ArbitraryValue{flatGradient({{0.5F, Linear, {1, 0, 0, 1}}})}));
    const auto instance = instanceOf(scene);
    FrameResult frameBefore = instance->renderFrame({});
    expectGood(frameBefore);
    PanelControl control(*instance, "FogColorGradient", frame);
    pick(PF_PixelFloat{1, 0, 0, 1});
    expectGoodEvent(control.click(206, inside, 2));
    FrameResult frameAfter = instance->renderFrame({});
    expectGood(frameAfter);
    expectPicture(frameBefore.output, fourSquares({1, 1, 0, 0}));
    expectPicture(frameAfter.output, fourSquares({1, 0, 0, 1}));
}

}  // namespace
}  // namespace TessavoyHost
