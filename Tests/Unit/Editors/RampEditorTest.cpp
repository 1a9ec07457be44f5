#include "Source/Editors/RampEditor.h"

#include <gtest/gtest.h>

#include <array>
#include <tuple>

namespace Tessavoy {

namespace {

using Effect = RampClick::Effect;
using Points = PositionMap<float>;

/// Positions run from x = 106 to 306 and values from y = 256 up to 56, 200 pixels each.
constexpr PF_Rect frame = {100, 50, 312, 262};

constexpr PanelPlace placeOf(double position, double value) {
    return {106 + static_cast<std::int32_t>(position * 200 + 0.5), 256 - static_cast<std::int32_t>(value * 200 + 0.5)};
}

class RampEditing : public testing::Test {
protected:
    RampClick click(PanelPlace place, std::int32_t count = 1, bool withModifier = false) {
        return RampEditor(ramp, frame).click({place, count, withModifier});
    }

    RampDrag grab(PanelPlace place) {
        const RampClick clicked = click(place);
        EXPECT_EQ(clicked.effect, Effect::DragStarted);
        return clicked.drag;
    }

    bool drag(RampDrag& drag, PanelPlace pointer) { return RampEditor(ramp, frame).drag(drag, pointer); }

    RampData ramp{RampModeAll, RampInterpolationLine, {{0.25f, 0.5f}, {0.5f, 1.0f}, {0.75f, 0.0f}}};
};

TEST_F(RampEditing, IgnoresClicksOutsideTheFrame) {
    ramp.points = {{0.0f, 1.0f}, {1.0f, 0.0f}};
    const Points before = ramp.points;
    for (const PanelPlace& place :
         {PanelPlace{99, 56}, PanelPlace{106, 49}, PanelPlace{313, 256}, PanelPlace{306, 263}}) {
        for (const std::int32_t count : {1, 2}) {
            for (const bool withModifier : {false, true}) {
                EXPECT_EQ(click(place, count, withModifier).effect, Effect::Nothing) << place.x << ", " << place.y;
            }
        }
    }
    EXPECT_EQ(ramp.points, before);
    EXPECT_EQ(ramp.interpolation, RampInterpolationLine);
    EXPECT_EQ(click({100, 50}).effect, Effect::DragStarted);
    EXPECT_EQ(click({312, 262}).effect, Effect::DragStarted);
}

TEST_F(RampEditing, TheModifierGoesThroughAllInterpolations) {
    for (const std::int32_t mode : {0, 7}) {
        for (const auto& [from, to] : {std::array{0, 3}, std::array{3, 1}, std::array{1, 2}, std::array{2, 0},
                                       std::array{9, 9}, std::array{-1, -1}}) {
            ramp.mode = mode;
            ramp.interpolation = from;
            EXPECT_EQ(click({200, 200}, 1, true).effect, Effect::Changed);
            EXPECT_EQ(ramp.interpolation, to) << from;
        }
    }
}

// Sin and the curve are not offered; the curve, once stored, stays. It counts as a change all the same.
TEST_F(RampEditing, TheModifierGoesBetweenLineAndStepWithoutSin) {
    for (const auto& [from, to] :
         {std::array{0, 1}, std::array{1, 2}, std::array{2, 1}, std::array{3, 3}, std::array{9, 9}}) {
        ramp.mode = RampModeWithoutSin;
        ramp.interpolation = from;
        EXPECT_EQ(click({200, 200}, 1, true).effect, Effect::Changed);
        EXPECT_EQ(ramp.interpolation, to) << from;
    }
}

TEST_F(RampEditing, TheModifierCountsOnPointsAndInDoubleClicksAlike) {
    const Points before = ramp.points;
    EXPECT_EQ(click(placeOf(0.5, 1), 1, true).effect, Effect::Changed);
    EXPECT_EQ(ramp.interpolation, RampInterpolationStep);
    EXPECT_EQ(click(placeOf(0.5, 1), 2, true).effect, Effect::Changed);
    EXPECT_EQ(ramp.interpolation, RampInterpolationSin);
    EXPECT_EQ(click({100, 50}, 2, true).effect, Effect::Changed);
    EXPECT_EQ(ramp.interpolation, RampInterpolationBezier);
    EXPECT_EQ(ramp.points, before);
}

TEST_F(RampEditing, HitsAPointFromLessThanTenPixelsInBothDirections) {
    ramp.points = {{0.5f, 0.5f}};
    const PanelPlace middle = placeOf(0.5, 0.5);
    for (const std::int32_t dx : {-10, -9, 0, 9, 10}) {
        for (const std::int32_t dy : {-10, -9, 0, 9, 10}) {
            const bool near = dx > -10 && dx < 10 && dy > -10 && dy < 10;
            const RampClick clicked = click({middle.x + dx, middle.y + dy});
            EXPECT_EQ(clicked.effect, near ? Effect::DragStarted : Effect::Nothing) << dx << ", " << dy;
        }
    }
}

// Both are within reach; the second is nearer.
TEST_F(RampEditing, HitsTheFirstPointInOrderAndNotTheNearest) {
    ramp.points = {{0.5f, 0.5f}, {0.53f, 0.5f}};
    EXPECT_EQ(click(placeOf(0.53, 0.5)).drag.rank, 0);
    ramp.points = {{0.5f, 0.9f}, {0.53f, 0.5f}};
    EXPECT_EQ(click(placeOf(0.53, 0.5)).drag.rank, 1);
}

TEST_F(RampEditing, ASingleClickInEmptySpaceDoesNothing) {
    const Points before = ramp.points;
    EXPECT_EQ(click(placeOf(0.6, 0.5)).effect, Effect::Nothing);
    for (const std::int32_t count : {0, 3}) {
        EXPECT_EQ(click(placeOf(0.6, 0.5), count).effect, Effect::Nothing);
        EXPECT_EQ(click(placeOf(0.25, 0.5), count).effect, Effect::Nothing);
    }
    EXPECT_EQ(ramp.points, before);
}

TEST_F(RampEditing, ADoubleClickInEmptySpaceAddsAPointThere) {
    EXPECT_EQ(click(placeOf(0.6, 0.25), 2).effect, Effect::Changed);
    EXPECT_EQ(ramp.points, (Points{{0.25f, 0.5f}, {0.5f, 1.0f}, {0.6f, 0.25f}, {0.75f, 0.0f}}));
}

// Above or below a point is empty space, but positions are unique.
TEST_F(RampEditing, ADoubleClickAboveAPointMovesItThere) {
    EXPECT_EQ(click(placeOf(0.25, 1), 2).effect, Effect::Changed);
    EXPECT_EQ(ramp.points, (Points{{0.25f, 1.0f}, {0.5f, 1.0f}, {0.75f, 0.0f}}));
}

// The margins, 6 pixels, belong to the frame but not to the range.
TEST_F(RampEditing, PointsCanBeAddedInTheMargins) {
    click({100, 50}, 2);
    click({312, 262}, 2);
    ASSERT_EQ(ramp.points.size(), 5u);
    EXPECT_EQ(ramp.points.begin()->first, -0.03f);
    EXPECT_FLOAT_EQ(ramp.points.begin()->second, 1.03f);
    EXPECT_EQ(ramp.points.rbegin()->first, 1.03f);
    EXPECT_NEAR(ramp.points.rbegin()->second, -0.03f, 1e-6);
}

TEST_F(RampEditing, DoubleClicksTakePointsAway) {
    EXPECT_EQ(click(placeOf(0.5, 1), 2).effect, Effect::Changed);
    EXPECT_EQ(ramp.points, (Points{{0.25f, 0.5f}, {0.75f, 0.0f}}));
    click({placeOf(0.25, 0.5).x + 5, placeOf(0.25, 0.5).y - 5}, 2);
    click(placeOf(0.75, 0), 2);
    EXPECT_TRUE(ramp.points.empty());
    for (const float t : {0.0f, 0.5f, 1.0f}) {
        EXPECT_EQ(EvaluateRamp(ramp, t), 1.0f) << t;
    }
}

TEST_F(RampEditing, ASingleClickOnAPointGrabsIt) {
    const Points before = ramp.points;
    const PanelPlace point = placeOf(0.25, 0.5);
    const RampDrag dragged = grab({point.x - 4, point.y + 7});
    EXPECT_EQ(dragged.grabX, 4);
    EXPECT_EQ(dragged.grabY, -7);
    EXPECT_EQ(dragged.rank, 0);
    EXPECT_EQ(grab(placeOf(0.75, 0)).rank, 2);
    EXPECT_EQ(ramp.points, before);
}

// 0.2549 and 1 - 0.3749 stand 50.98 and 125.02 pixels from their starts.
TEST_F(RampEditing, PointsBetweenPixelsAreGrabbedAtTheWholePixelBefore) {
    ramp.points = {{0.2549f, 0.3749f}};
    const RampDrag dragged = grab({106 + 50, 56 + 125});
    EXPECT_EQ(dragged.grabX, 0);
    EXPECT_EQ(dragged.grabY, 0);
}

TEST_F(RampEditing, ADraggedPointKeepsItsDistanceFromThePointer) {
    const PanelPlace point = placeOf(0.25, 0.5);
    RampDrag dragged = grab({point.x + 3, point.y - 2});
    EXPECT_TRUE(drag(dragged, {point.x + 3 + 20, point.y - 2 - 50}));
    EXPECT_EQ(ramp.points, (Points{{0.35f, 0.75f}, {0.5f, 1.0f}, {0.75f, 0.0f}}));
    EXPECT_EQ(dragged.rank, 0);
}

TEST_F(RampEditing, DraggingOutStopsAtTheRangeAndDeletesNothing) {
    RampDrag dragged = grab(placeOf(0.25, 0.5));
    for (const auto& [pointer, position, value, rank] :
         {std::tuple{PanelPlace{-500, 5000}, 0.0f, 0.0f, 0}, std::tuple{PanelPlace{5000, 5000}, 1.0f, 0.0f, 2},
          std::tuple{PanelPlace{5000, -500}, 1.0f, 1.0f, 2}, std::tuple{PanelPlace{-500, -500}, 0.0f, 1.0f, 0}}) {
        EXPECT_TRUE(drag(dragged, pointer));
        EXPECT_EQ(ramp.points, (Points{{position, value}, {0.5f, 1.0f}, {0.75f, 0.0f}}));
        EXPECT_EQ(dragged.rank, rank);
    }
}

TEST_F(RampEditing, PointsAreDraggedPastEachOther) {
    RampDrag dragged = grab(placeOf(0.25, 0.5));
    for (const double position : {0.4, 0.6, 0.8, 0.7, 0.3}) {
        EXPECT_TRUE(drag(dragged, placeOf(position, 0.5)));
        EXPECT_EQ(ramp.points, (Points{{static_cast<float>(position), 0.5f}, {0.5f, 1.0f}, {0.75f, 0.0f}}));
    }
    EXPECT_EQ(dragged.rank, 0);
}

TEST_F(RampEditing, ADraggedPointGivesWayTowardsTheMiddle) {
    RampDrag dragged = grab(placeOf(0.5, 1));
    EXPECT_TRUE(drag(dragged, placeOf(0.25, 0)));
    EXPECT_EQ(ramp.points, (Points{{0.25f, 0.5f}, {0.25f + 0.001f, 0.0f}, {0.75f, 0.0f}}));
    EXPECT_EQ(dragged.rank, 1);
    EXPECT_TRUE(drag(dragged, placeOf(0.75, 0.5)));
    EXPECT_EQ(ramp.points, (Points{{0.25f, 0.5f}, {0.75f - 0.001f, 0.5f}, {0.75f, 0.0f}}));
    EXPECT_EQ(dragged.rank, 1);
}

// A drag is a change also where the pointer hasn't moved.
TEST_F(RampEditing, APointThatIsNotMovedIsPutBack) {
    const Points before = ramp.points;
    RampDrag dragged = grab(placeOf(0.5, 1));
    EXPECT_TRUE(drag(dragged, placeOf(0.5, 1)));
    EXPECT_EQ(ramp.points, before);
    EXPECT_EQ(dragged.rank, 1);
}

// The ramp may have been replaced under the drag.
TEST_F(RampEditing, ARankBeyondThePointsIsLeftAlone) {
    const Points before = ramp.points;
    for (const std::int32_t rank : {3, 1000}) {
        RampDrag dragged{0, 0, rank};
        EXPECT_FALSE(drag(dragged, placeOf(0.1, 0.1)));
        EXPECT_EQ(dragged.rank, rank);
    }
    EXPECT_EQ(ramp.points, before);
    ramp.points.clear();
    RampDrag dragged{0, 0, 0};
    EXPECT_FALSE(drag(dragged, placeOf(0.1, 0.1)));
    EXPECT_TRUE(ramp.points.empty());
}

// Nothing is erased for a rank that is none, and a point is placed.
TEST_F(RampEditing, ARankBelowZeroStandsForANewPoint) {
    RampDrag dragged{0, 0, -1};
    EXPECT_TRUE(drag(dragged, placeOf(0.1, 0.1)));
    EXPECT_EQ(dragged.rank, 0);
    ASSERT_EQ(ramp.points.size(), 4u);
    EXPECT_FLOAT_EQ(ramp.points.at(0.1f), 0.1f);
}

TEST_F(RampEditing, AFrameWithoutARangeIsDead) {
    const Points before = ramp.points;
    for (const PF_Rect& small : {PF_Rect{0, 0, 12, 100}, PF_Rect{0, 0, 100, 12}, PF_Rect{0, 0, 0, 0}}) {
        RampEditor editor(ramp, small);
        for (const std::int32_t count : {1, 2})
            EXPECT_EQ(editor.click({{0, 0}, count, false}).effect, Effect::Nothing);
        RampDrag dragged{0, 0, 0};
        EXPECT_FALSE(editor.drag(dragged, {6, 6}));
    }
    EXPECT_EQ(ramp.points, before);
    EXPECT_EQ(ramp.interpolation, RampInterpolationLine);
}

// The interpolation has no place in the frame, so it needs none.
TEST_F(RampEditing, TheModifierTurnsTheInterpolationInAnyFrame) {
    RampEditor editor(ramp, {0, 0, 12, 100});
    EXPECT_EQ(editor.click({{6, 6}, 1, true}).effect, Effect::Changed);
    EXPECT_EQ(ramp.interpolation, RampInterpolationStep);
    EXPECT_EQ(editor.click({{13, 6}, 1, true}).effect, Effect::Nothing) << "outside";
    EXPECT_EQ(ramp.interpolation, RampInterpolationStep);
}

}  // namespace

}  // namespace Tessavoy
