#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <tuple>

#include "Tests/Module/ModuleFixture.h"
#include "Tests/Module/PanelControl.h"
#include "Tests/Support/ReferenceRamp.h"

namespace TessavoyHost {
namespace {

using Tessavoy::CurveKind;
using Tessavoy::flatRamp;
using Tessavoy::rampAt;
using Tessavoy::RampKnot;
using Tessavoy::ReferenceRamp;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int all = 0, withoutSin = 1;  // modes

// Positions run from x = 106 to 306 and values from y = 256 up to 56, 200 pixels each.
constexpr PF_Rect frame = {100, 50, 312, 262};

PF_Point placeOf(double position, double value) {
    return {106 + static_cast<int>(position * 200 + 0.5), 256 - static_cast<int>(value * 200 + 0.5)};
}

struct RampInPanel : InstanceWithControl {
    RampInPanel(EffectHost& host, const ReferenceRamp& ramp, const std::string& id = "Ramp.Custom1")
        : InstanceWithControl(host, id, flatRamp(ramp), frame) {}

    CommandResult click(PF_Point place, int count = 1, PF_Modifiers modifiers = PF_Mod_NONE) {
        return control.click(place.h, place.v, count, modifiers);
    }
    CommandResult drag(PF_Point place) { return control.drag(place.h, place.v); }
};

const ReferenceRamp threeKnots = {all, CurveKind::Line, {{0.25F, 0.5F}, {0.5F, 1}, {0.75F, 0}}};

class ModuleRampControl : public ModuleFixture {};

TEST_F(ModuleRampControl, BelongsToAllTenRamps) {
    for (int slot = 1; slot <= 10; ++slot) {
        RampInPanel panel(host(), threeKnots, "Ramp.Custom" + std::to_string(slot));
        expectGood(panel.click(placeOf(0.5, 1), 2));
        EXPECT_TRUE(panel.control.changed()) << slot;
        DrawingRecorder recorder;
        expectGood(panel.control.draw(recorder));
        EXPECT_THAT(recorder.fills, SizeIs(2)) << slot;
    }
}

TEST_F(ModuleRampControl, TheModifierGoesThroughTheInterpolations) {
    for (const auto& [mode, order] :
         {std::pair{all,
                    std::array{CurveKind::Step, CurveKind::Sin, CurveKind::Bezier, CurveKind::Line, CurveKind::Step}},
          std::pair{withoutSin,
                    std::array{CurveKind::Step, CurveKind::Line, CurveKind::Step, CurveKind::Line, CurveKind::Step}}}) {
        RampInPanel panel(host(), {mode, CurveKind::Line, threeKnots.knots});
        for (const CurveKind interpolation : order) {
            expectGood(panel.click({100, 262}, 1, PF_Mod_CMD_CTRL_KEY | PF_Mod_CAPS_LOCK_KEY));
            EXPECT_TRUE(panel.control.changed());
            EXPECT_TRUE(panel.control.handled());
            EXPECT_FALSE(panel.control.sendsDrags());
            EXPECT_EQ(panel.control.flat(), flatRamp({mode, interpolation, threeKnots.knots}));
        }
    }
}

// Stored ones that the mode doesn't offer: sin leads back to line, the curve stays. Both count as a change.
TEST_F(ModuleRampControl, TheModifierNeverChoosesSinOrACurveWithoutSin) {
    for (const auto& [from, to] :
         {std::pair{CurveKind::Sin, CurveKind::Line}, std::pair{CurveKind::Bezier, CurveKind::Bezier}}) {
        RampInPanel panel(host(), {withoutSin, from, threeKnots.knots});
        expectGood(panel.click(placeOf(0.5, 1), 1, PF_Mod_CMD_CTRL_KEY));
        EXPECT_TRUE(panel.control.changed());
        EXPECT_EQ(panel.control.flat(), flatRamp({withoutSin, to, threeKnots.knots}));
    }
}

TEST_F(ModuleRampControl, LeavesClicksOnNothing) {
    RampInPanel panel(host(), threeKnots);
    const struct {
        PF_Point place;
        int count;
        PF_Modifiers modifiers;
    } clicks[] = {
        {placeOf(0.6, 0.5), 1, PF_Mod_NONE}, {placeOf(0.6, 0.5), 3, PF_Mod_NONE}, {placeOf(0.5, 1), 3, PF_Mod_NONE},
        {{99, 100}, 2, PF_Mod_NONE},         {{313, 100}, 2, PF_Mod_NONE},        {{200, 49}, 2, PF_Mod_NONE},
        {{200, 263}, 2, PF_Mod_NONE},        {{99, 100}, 1, PF_Mod_CMD_CTRL_KEY}, {{200, 263}, 1, PF_Mod_CMD_CTRL_KEY}};
    for (const auto& click : clicks) {
        expectGood(panel.click(click.place, click.count, click.modifiers));
        EXPECT_TRUE(panel.control.untouched()) << click.place.h << ", " << click.place.v;
        EXPECT_EQ(panel.control.flat(), flatRamp(threeKnots));
    }
}

TEST_F(ModuleRampControl, GetsAndLosesPointsByDoubleClicks) {
    RampInPanel panel(host(), threeKnots);
    expectGood(panel.click(placeOf(0.6, 0.25), 2));
    EXPECT_TRUE(panel.control.changed());
    EXPECT_TRUE(panel.control.handled());
    EXPECT_FALSE(panel.control.sendsDrags());
    EXPECT_EQ(panel.control.flat(),
              flatRamp({all, CurveKind::Line, {{0.25F, 0.5F}, {0.5F, 1}, {0.6F, 0.25F}, {0.75F, 0}}}));
    for (const PF_Point& place : {placeOf(0.25, 0.5), placeOf(0.5, 1), placeOf(0.75, 0), placeOf(0.6, 0.25)}) {
        expectGood(panel.click(place, 2));
        EXPECT_TRUE(panel.control.changed());
    }
    EXPECT_EQ(panel.control.flat(), flatRamp({all, CurveKind::Line, {}}));
    expectGood(panel.click(placeOf(0.25, 0.5), 2));
    EXPECT_EQ(panel.control.flat(), flatRamp({all, CurveKind::Line, {{0.25F, 0.5F}}}));
}

TEST_F(ModuleRampControl, GrabsAPointAndMovesIt) {
    RampInPanel panel(host(), threeKnots);
    const PF_Point point = placeOf(0.25, 0.5);
    expectGood(panel.click({point.h + 4, point.v - 9}, 1, PF_Mod_SHIFT_KEY));
    EXPECT_TRUE(panel.control.sendsDrags());
    EXPECT_TRUE(panel.control.handled());
    EXPECT_FALSE(panel.control.changed());
    EXPECT_EQ(panel.control.flat(), flatRamp(threeKnots));

    expectGood(panel.drag({point.h + 4 + 20, point.v - 9 + 50}));
    EXPECT_TRUE(panel.control.changed());
    EXPECT_TRUE(panel.control.handled());
    EXPECT_TRUE(panel.control.sendsDrags());
    EXPECT_EQ(panel.control.flat(), flatRamp({all, CurveKind::Line, {{0.35F, 0.25F}, {0.5F, 1}, {0.75F, 0}}}));
}

TEST_F(ModuleRampControl, DragsPointsPastEachOtherAndBesideEachOther) {
    RampInPanel panel(host(), threeKnots);
    panel.click(placeOf(0.25, 0.5));
    panel.drag(placeOf(0.75, 0.5));
    EXPECT_EQ(panel.control.flat(), flatRamp({all, CurveKind::Line, {{0.5F, 1}, {0.75F - 0.001F, 0.5F}, {0.75F, 0}}}));
    panel.drag(placeOf(0.9, 0.5));
    EXPECT_EQ(panel.control.flat(), flatRamp({all, CurveKind::Line, {{0.5F, 1}, {0.75F, 0}, {0.9F, 0.5F}}}));
    panel.drag(placeOf(0.5, 0.5));
    EXPECT_EQ(panel.control.flat(), flatRamp({all, CurveKind::Line, {{0.5F - 0.001F, 0.5F}, {0.5F, 1}, {0.75F, 0}}}));
    panel.click(placeOf(0.75, 0));
    panel.drag({50, 1000});
    EXPECT_EQ(panel.control.flat(), flatRamp({all, CurveKind::Line, {{0, 0}, {0.5F - 0.001F, 0.5F}, {0.5F, 1}}}));
    panel.click(placeOf(0.5, 1));
    EXPECT_EQ(panel.control.flat(), flatRamp({all, CurveKind::Line, {{0, 0}, {0.5F - 0.001F, 0.5F}, {0.5F, 1}}}));
    panel.drag({50, 56});
    EXPECT_EQ(panel.control.flat(), flatRamp({all, CurveKind::Line, {{0, 0}, {0.001F, 1}, {0.5F - 0.001F, 0.5F}}}));
}

// Unlike a gradient's, points of a ramp can't be dragged off.
TEST_F(ModuleRampControl, KeepsPointsThatAreDraggedOut) {
    RampInPanel panel(host(), threeKnots);
    panel.click(placeOf(0.5, 1));
    expectGood(panel.drag({206, 5000}));
    EXPECT_EQ(panel.control.flat(), flatRamp({all, CurveKind::Line, {{0.25F, 0.5F}, {0.5F, 0}, {0.75F, 0}}}));
    expectGood(panel.drag({5000, -5000}));
    EXPECT_EQ(panel.control.flat(), flatRamp({all, CurveKind::Line, {{0.25F, 0.5F}, {0.75F, 0}, {1, 1}}}));
}

TEST_F(ModuleRampControl, LeavesEventsBesideTheControlAndOtherEvents) {
    RampInPanel panel(host(), threeKnots);
    for (PF_EventType type = PF_Event_NONE; type <= PF_Event_MOUSE_EXITED; ++type) {
        const bool known = type == PF_Event_DO_CLICK || type == PF_Event_DRAG || type == PF_Event_DRAW;
        for (const PF_EffectArea area : {PF_EA_NONE, PF_EA_PARAM_TITLE, PF_EA_CONTROL}) {
            if (known && area == PF_EA_CONTROL)
                continue;
            panel.control.event().e_type = type;
            panel.control.event().effect_win.area = area;
            panel.control.event().u.do_click.screen_point = placeOf(0.5, 1);
            panel.control.event().u.do_click.num_clicks = 2;
            expectGood(panel.instance->command(PF_Cmd_EVENT, 0, &panel.control.event()));
            EXPECT_TRUE(panel.control.untouched()) << type;
        }
    }
    EXPECT_EQ(panel.control.flat(), flatRamp(threeKnots));
}

// A move without a press comes with whatever the record holds; a rank beyond the points is none of them.
TEST_F(ModuleRampControl, SurvivesADragOfNothing) {
    RampInPanel panel(host(), threeKnots);
    std::memset(panel.control.event().u.do_click.continue_refcon, 0x7F,
                sizeof panel.control.event().u.do_click.continue_refcon);
    expectGood(panel.drag(placeOf(0.5, 1)));
    EXPECT_FALSE(panel.control.changed());
    EXPECT_EQ(panel.control.flat(), flatRamp(threeKnots));
}

TEST_F(ModuleRampControl, FillsItsFrameAndStaysInIt) {
    RampInPanel panel(host(), threeKnots);
    DrawingRecorder recorder;
    expectGood(panel.control.draw(recorder));
    expectFilled(host(), recorder, frame);
    // the range's outline, the curve, a handle for each point
    ASSERT_THAT(recorder.strokes, SizeIs(5));
    const DRAWBOT_RectF32 range = boundsOf(recorder.strokes[0].path);
    EXPECT_EQ(range.left, 106);
    EXPECT_EQ(range.top, 56);
    EXPECT_EQ(range.width, 200);
    EXPECT_EQ(range.height, 200);
    EXPECT_TRUE(sameColor(recorder.strokes[0].color, themeColorOf(host(), PF_App_Color_TEXT_DISABLED)));
}

// One place a pixel from the left end to the right one, in height within 0.05 of a pixel of the formula in double
// precision. The search of a curve's parameter ends 32nds of the curve apart with a straight step, from which it may be
// half a pixel off. Steps are compared beside the knots' own columns, where single precision decides.
TEST_F(ModuleRampControl, DrawsTheCurveOfItsValuesUpwards) {
    const std::vector<RampKnot> knots = {{0.1F, 0.2F}, {0.33F, 0.9F}, {0.4F, 0.1F}, {0.72F, 0.35F}, {0.9F, 1}};
    for (const CurveKind interpolation :
         {CurveKind::Sin, CurveKind::Line, CurveKind::Step, CurveKind::Bezier, static_cast<CurveKind>(8)}) {
        const ReferenceRamp ramp{all, interpolation, knots};
        RampInPanel panel(host(), ramp);
        DrawingRecorder recorder;
        expectGood(panel.control.draw(recorder));
        ASSERT_THAT(recorder.strokes, SizeIs(7));
        const auto& curve = recorder.strokes[1];
        EXPECT_TRUE(sameColor(curve.color, themeColorOf(host(), PF_App_Color_TEXT)));
        const auto places = cornersOf(curve.path);
        ASSERT_THAT(places, SizeIs(201));
        const double tolerance = interpolation == CurveKind::Bezier ? 0.5 : 0.05;
        for (int x = 0; x <= 200; ++x) {
            const auto& place = places[static_cast<std::size_t>(x)];
            EXPECT_FLOAT_EQ(place.x, static_cast<float>(106 + x));
            const bool onKnot = std::any_of(knots.begin(), knots.end(), [x](const RampKnot& knot) {
                return std::lround(knot.position * 200) == x;
            });
            if (onKnot)
                continue;
            EXPECT_NEAR(place.y, 256 - 200 * rampAt(ramp, x / 200.0), tolerance)
                << static_cast<int>(interpolation) << ": " << x;
        }
    }
}

// A diamond of 5 pixels from the middle to each corner; the first in order comes last, in front.
TEST_F(ModuleRampControl, PutsAHandleOnEachPoint) {
    const ReferenceRamp ramp{all, CurveKind::Line, {{0, 1}, {0.2525F, 0.5F}, {1, 0}}};
    RampInPanel panel(host(), ramp);
    DrawingRecorder recorder;
    expectGood(panel.control.draw(recorder));
    ASSERT_THAT(recorder.fills, SizeIs(3));
    ASSERT_THAT(recorder.strokes, SizeIs(5));
    const float middles[][2] = {{106, 56}, {156.5F, 156}, {306, 256}};
    for (std::size_t n = 0; n < 3; ++n) {
        const auto& fill = recorder.fills[2 - n];
        const auto& stroke = recorder.strokes[4 - n];
        for (const DrawnPath& path : {fill.path, stroke.path}) {
            const auto corners = cornersOf(path);
            ASSERT_THAT(corners, SizeIs(4)) << n;
            for (const auto& [corner, right, down] :
                 {std::tuple{0, 0, -5}, std::tuple{1, 5, 0}, std::tuple{2, 0, 5}, std::tuple{3, -5, 0}}) {
                EXPECT_FLOAT_EQ(corners[static_cast<std::size_t>(corner)].x, middles[n][0] + static_cast<float>(right));
                EXPECT_FLOAT_EQ(corners[static_cast<std::size_t>(corner)].y, middles[n][1] + static_cast<float>(down));
            }
        }
        EXPECT_TRUE(sameColor(fill.color, themeColorOf(host(), PF_App_Color_PANEL_BACKGROUND))) << n;
        EXPECT_TRUE(sameColor(stroke.color, themeColorOf(host(), PF_App_Color_TEXT))) << n;
    }
}

TEST_F(ModuleRampControl, WithoutPointsIsALineAtOne) {
    RampInPanel panel(host(), {all, CurveKind::Bezier, {}});
    DrawingRecorder recorder;
    expectGood(panel.control.draw(recorder));
    EXPECT_THAT(recorder.fills, IsEmpty());
    ASSERT_THAT(recorder.strokes, SizeIs(2));
    const DRAWBOT_RectF32 curve = boundsOf(recorder.strokes[1].path);
    EXPECT_EQ(curve.left, 106);
    EXPECT_EQ(curve.width, 200);
    EXPECT_EQ(curve.top, 56);
    EXPECT_EQ(curve.height, 0);
}

// Saved data may hold any numbers; there is no handle where nobody would see it.
TEST_F(ModuleRampControl, DrawsWhateverWasSaved) {
    constexpr float infinite = std::numeric_limits<float>::infinity();
    constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
    for (const CurveKind interpolation : {CurveKind::Sin, CurveKind::Line, CurveKind::Step, CurveKind::Bezier}) {
        RampInPanel panel(host(), {99,
                                   interpolation,
                                   {{-infinite, 0.5F},
                                    {-3e38F, 2},
                                    {-0.03F, 1.03F},
                                    {0.2F, notANumber},
                                    {0.4F, infinite},
                                    {0.6F, -3e38F},
                                    {0.8F, 0},
                                    {3e38F, 0.5F},
                                    {notANumber, 0.5F}}});
        DrawingRecorder recorder;
        expectGood(panel.control.draw(recorder));
        EXPECT_THAT(recorder.fills, SizeIs(2));
        const DRAWBOT_RectF32 curve = boundsOf(recorder.strokes[1].path);
        EXPECT_GE(curve.top, 56);
        EXPECT_LE(curve.top + curve.height, 256);
        for (const int count : {1, 2})
            expectGood(panel.click({100, 50}, count));
    }
}

TEST_F(ModuleRampControl, DrawsIntoAnyFrame) {
    RampInPanel panel(host(), threeKnots);
    for (const auto& [width, height, strokes] :
         {std::array{0, 0, 0}, std::array{12, 100, 0}, std::array{100, 12, 0}, std::array{13, 13, 5}}) {
        panel.control.event().effect_win.current_frame = {0, 0, width, height};
        DrawingRecorder recorder;
        expectGood(panel.control.draw(recorder));
        EXPECT_THAT(recorder.strokes, SizeIs(strokes)) << width << " by " << height;
        EXPECT_THAT(recorder.rectangles, SizeIs(1)) << width << " by " << height;
    }
}

TEST_F(ModuleRampControl, AHostCallThatFailsEndsTheEventWithItsError) {
    RampInPanel panel(host(), threeKnots);
    const PF_Point point = placeOf(0.5, 1);
    EXPECT_EQ(panel.control.failEachCallOf([&] { return panel.click(point); }), 2);
    EXPECT_EQ(panel.control.failEachCallOf([&] { return panel.click(point, 1, PF_Mod_CMD_CTRL_KEY); }), 2);
    EXPECT_EQ(panel.control.failEachCallOf([&] { return panel.click(point, 2); }), 2);
    panel.click(placeOf(0.25, 0.5));
    EXPECT_EQ(panel.control.failEachCallOf([&] {
        panel.control.event().u.do_click.send_drag = 0;
        return panel.drag(point);
    }),
              2);
}

TEST_F(ModuleRampControl, AHostCallThatFailsEndsTheDrawingWithItsError) {
    RampInPanel panel(host(), threeKnots);
    const int failed = panel.control.failEachCallOf([&] {
        panel.control.event().evt_out_flags = PF_EO_NONE;
        DrawingRecorder recorder;
        return panel.control.draw(recorder);
    });
    // The drawing: 5 suites, the reference, supplier, surface, push, clip. The background: a suite, a colour, painting.
    // The value: a suite, a lock. The text's colour: a suite, a colour. The outline: a path, a piece, a suite, a
    // colour, a pen, stroking. The curve: a path, 201 places, a pen, stroking. Handles: a suite, a colour, a brush, a
    // pen; for each a path of 5 pieces, filling and stroking.
    EXPECT_EQ(failed, 10 + 3 + 2 + 2 + 6 + 204 + 4 + 3 * 8);
}

TEST_F(ModuleRampControl, WithoutAValueIsOutOfMemory) {
    RampInPanel panel(host(), threeKnots);
    host().faults().failNth("host_lock_handle", 1, PF_Err_INVALID_INDEX);
    EXPECT_EQ(panel.click(placeOf(0.5, 1)).error, PF_Err_OUT_OF_MEMORY);
    host().faults().clear();
    EXPECT_TRUE(panel.control.untouched());
}

}  // namespace
}  // namespace TessavoyHost
