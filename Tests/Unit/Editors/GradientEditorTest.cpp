#include "Source/Editors/GradientEditor.h"

#include <gtest/gtest.h>

#include <array>

namespace Tessavoy {

namespace {

using Effect = GradientClick::Effect;
using Points = PositionMap<GradientPoint>;

/// The track runs from x = 106 to 306, 200 pixels; below y = 100 is below the control.
constexpr PF_Rect frame = {100, 50, 312, 100};
constexpr std::int32_t inside = 75;
constexpr GradientPoint red{GradientKindLinear, 1.0f, 0.0f, 0.0f, 0.5f};
constexpr GradientPoint green{GradientKindSin, 0.0f, 1.0f, 0.0f, 1.0f};
constexpr GradientPoint blue{GradientKindEdge, 0.0f, 0.0f, 1.0f, 0.25f};

constexpr std::int32_t pixelOf(double position) {
    return 106 + static_cast<std::int32_t>(position * 200 + 0.5);
}

class GradientEditing : public testing::Test {
protected:
    GradientClick click(std::int32_t x, std::int32_t count = 1, bool withModifier = false) {
        return GradientEditor(gradient, frame).click({{x, inside}, count, withModifier});
    }

    /// Begins to drag what a click at x hits.
    GradientDrag grab(std::int32_t x) {
        const GradientClick clicked = click(x);
        EXPECT_EQ(clicked.effect, Effect::DragStarted);
        return clicked.drag;
    }

    bool drag(GradientDrag& drag, std::int32_t x, std::int32_t y = inside) {
        return GradientEditor(gradient, frame).drag(drag, {x, y});
    }

    GradientData gradient{{{0.25f, red}, {0.5f, green}, {0.75f, blue}}};
};

TEST_F(GradientEditing, IgnoresClicksBesideTheFrame) {
    gradient.points = {{0.0f, red}, {1.0f, green}};
    const Points before = gradient.points;
    for (const std::int32_t x : {-1000, 99, 313, 1000}) {
        for (const std::int32_t count : {1, 2}) {
            for (const bool withModifier : {false, true}) {
                EXPECT_EQ(click(x, count, withModifier).effect, Effect::Nothing) << x;
            }
        }
    }
    EXPECT_EQ(gradient.points, before);
    EXPECT_EQ(click(100).effect, Effect::DragStarted);
    EXPECT_EQ(click(312).effect, Effect::DragStarted);
}

// Only the x of a click counts.
TEST_F(GradientEditing, TakesClicksOfAnyHeight) {
    for (const std::int32_t y : {-1000, 50, 100, 1000}) {
        EXPECT_EQ(GradientEditor(gradient, frame).click({{206, y}, 1, false}).effect, Effect::DragStarted) << y;
    }
}

TEST_F(GradientEditing, HitsAPointFromLessThanTenPixels) {
    gradient.points = {{0.5f, green}};
    for (const std::int32_t x : {197, 206, 215}) {
        EXPECT_EQ(click(x).effect, Effect::DragStarted) << x;
    }
    for (const std::int32_t x : {196, 216}) {
        EXPECT_EQ(click(x).effect, Effect::Nothing) << x;
    }
}

// 0.5 is at pixel 206 and 0.54 at 214: a click at 213 is nearer to the second.
TEST_F(GradientEditing, HitsTheFirstPointInOrderAndNotTheNearest) {
    gradient.points = {{0.5f, red}, {0.54f, green}};
    EXPECT_EQ(click(213).drag.rank, 0);
    EXPECT_EQ(click(213).drag.point, red);
    EXPECT_EQ(click(213, 2).position, 0.5f);
    EXPECT_EQ(click(216).drag.rank, 1);
}

TEST_F(GradientEditing, TheModifierTakesAHitPointToTheNextKind) {
    for (const std::int32_t count : {1, 2, 3}) {
        for (const auto& [from, to] : {std::array{0, 1}, std::array{1, 2}, std::array{2, 0}}) {
            gradient.points = {{0.5f, red}};
            gradient.points.at(0.5f).kind = from;
            EXPECT_EQ(click(206, count, true).effect, Effect::Changed);
            GradientPoint expected = red;
            expected.kind = to;
            EXPECT_EQ(gradient.points, (Points{{0.5f, expected}})) << from;
        }
    }
}

// Any other stored kind blends as linear, whose next is sin.
TEST_F(GradientEditing, TheModifierLeadsFromUnknownKindsToSin) {
    for (const std::int32_t kind : {-1, 3, 1000}) {
        gradient.points.at(0.5f).kind = kind;
        EXPECT_EQ(click(206, 1, true).effect, Effect::Changed);
        EXPECT_EQ(gradient.points.at(0.5f).kind, GradientKindSin) << kind;
    }
}

TEST_F(GradientEditing, TheModifierDoesNothingOnEmptyTrack) {
    const Points before = gradient.points;
    for (const std::int32_t count : {1, 2}) {
        EXPECT_EQ(click(pixelOf(0.6), count, true).effect, Effect::Nothing);
    }
    EXPECT_EQ(gradient.points, before);
}

TEST_F(GradientEditing, ASingleClickOnEmptyTrackDoesNothing) {
    const Points before = gradient.points;
    EXPECT_EQ(click(pixelOf(0.6)).effect, Effect::Nothing);
    EXPECT_EQ(gradient.points, before);
}

TEST_F(GradientEditing, ThirdClicksDoNothing) {
    const Points before = gradient.points;
    for (const std::int32_t count : {0, 3, 4}) {
        EXPECT_EQ(click(206, count).effect, Effect::Nothing) << count;
        EXPECT_EQ(click(pixelOf(0.6), count).effect, Effect::Nothing) << count;
    }
    EXPECT_EQ(gradient.points, before);
}

TEST_F(GradientEditing, ADoubleClickOnEmptyTrackAddsAPointOfTheColourThere) {
    // A linear stretch from red (0.25) to green (0.5), a fifth of its way: kinds start from sin.
    EXPECT_EQ(click(pixelOf(0.3), 2).effect, Effect::Changed);
    ASSERT_EQ(gradient.points.size(), 4u);
    const auto& [position, point] = *std::next(gradient.points.begin());
    EXPECT_FLOAT_EQ(position, 0.3f);
    EXPECT_EQ(point.kind, GradientKindSin);
    EXPECT_NEAR(point.r, 0.8, 1e-6);
    EXPECT_NEAR(point.g, 0.2, 1e-6);
    EXPECT_EQ(point.b, 0.0f);
    EXPECT_NEAR(point.a, 0.6, 1e-6);
}

// Where a single point decides the colour, the new one takes its kind as well.
TEST_F(GradientEditing, AddedPointsTakeTheKindOfAPointThatDecides) {
    gradient.points.at(0.5f).kind = GradientKindEdge;
    click(pixelOf(0.6), 2);
    EXPECT_EQ(gradient.points.at(0.6f), (GradientPoint{GradientKindEdge, 0.0f, 1.0f, 0.0f, 1.0f}));
    click(pixelOf(0.1), 2);
    EXPECT_EQ(gradient.points.at(0.1f), red);
    click(pixelOf(0.9), 2);
    EXPECT_EQ(gradient.points.at(0.9f), blue);
}

TEST_F(GradientEditing, APointAddedToAnEmptyGradientIsOpaqueBlackOfKindSin) {
    gradient.points.clear();
    EXPECT_EQ(click(206, 2).effect, Effect::Changed);
    EXPECT_EQ(gradient.points, (Points{{0.5f, {GradientKindSin, 0.0f, 0.0f, 0.0f, 1.0f}}}));
}

// The margins belong to the frame but not to the track.
TEST_F(GradientEditing, PointsCanBeAddedInTheMargins) {
    EXPECT_EQ(click(100, 2).effect, Effect::Changed);
    EXPECT_EQ(click(312, 2).effect, Effect::Changed);
    EXPECT_EQ(gradient.points.begin()->first, -0.03f);
    EXPECT_EQ(gradient.points.rbegin()->first, 1.03f);
}

TEST_F(GradientEditing, ADoubleClickOnAPointAsksForItsColour) {
    const Points before = gradient.points;
    for (const std::int32_t x : {206, 209, 197}) {
        const GradientClick clicked = click(x, 2);
        EXPECT_EQ(clicked.effect, Effect::ColorWanted) << x;
        EXPECT_EQ(clicked.position, 0.5f) << x;
    }
    EXPECT_EQ(gradient.points, before);
}

TEST_F(GradientEditing, RecolouringLeavesAlphaAndKind) {
    GradientEditor editor(gradient, frame);
    EXPECT_TRUE(editor.recolor(0.75f, 0.1f, 0.2f, 3.0f));
    EXPECT_FALSE(editor.recolor(0.76f, 0.1f, 0.2f, 0.3f));
    EXPECT_EQ(gradient.points,
              (Points{{0.25f, red}, {0.5f, green}, {0.75f, {GradientKindEdge, 0.1f, 0.2f, 3.0f, 0.25f}}}));
}

// 0.5 stands 100 pixels from the start of the track: 206.
TEST_F(GradientEditing, ASingleClickOnAPointGrabsIt) {
    const Points before = gradient.points;
    for (const std::int32_t x : {206, 199, 215}) {
        const GradientClick clicked = click(x);
        EXPECT_EQ(clicked.effect, Effect::DragStarted);
        EXPECT_EQ(clicked.drag.grab, 206 - x);
        EXPECT_EQ(clicked.drag.rank, 1);
        EXPECT_EQ(clicked.drag.point, green);
    }
    EXPECT_EQ(gradient.points, before);
}

TEST_F(GradientEditing, ADraggedPointKeepsItsDistanceFromThePointer) {
    GradientDrag dragged = grab(203);
    EXPECT_TRUE(drag(dragged, 223));
    EXPECT_EQ(gradient.points, (Points{{0.25f, red}, {0.6f, green}, {0.75f, blue}}));
    EXPECT_EQ(dragged.rank, 1);
    EXPECT_TRUE(drag(dragged, 183));
    EXPECT_EQ(gradient.points, (Points{{0.25f, red}, {0.4f, green}, {0.75f, blue}}));
}

TEST_F(GradientEditing, APointThatIsNotMovedIsLeftAlone) {
    const Points before = gradient.points;
    GradientDrag dragged = grab(203);
    EXPECT_FALSE(drag(dragged, 203));
    EXPECT_FALSE(drag(dragged, 203, -500));
    EXPECT_EQ(gradient.points, before);
    EXPECT_EQ(dragged.rank, 1);
}

TEST_F(GradientEditing, DraggingStopsAtTheEnds) {
    GradientDrag dragged = grab(206);
    drag(dragged, 20);
    EXPECT_EQ(gradient.points, (Points{{0.0f, green}, {0.25f, red}, {0.75f, blue}}));
    EXPECT_EQ(dragged.rank, 0);
    drag(dragged, 400);
    EXPECT_EQ(gradient.points, (Points{{0.25f, red}, {0.75f, blue}, {1.0f, green}}));
    EXPECT_EQ(dragged.rank, 2);
    EXPECT_FALSE(drag(dragged, 500));
}

TEST_F(GradientEditing, PointsAreDraggedPastEachOther) {
    GradientDrag dragged = grab(pixelOf(0.25));
    for (const double position : {0.4, 0.6, 0.8, 0.7, 0.3}) {
        drag(dragged, pixelOf(position));
        EXPECT_EQ(gradient.points.size(), 3u);
        EXPECT_EQ(gradient.points.at(static_cast<float>(position)), red);
        EXPECT_EQ(gradient.points.at(0.5f), green);
        EXPECT_EQ(gradient.points.at(0.75f), blue);
    }
    EXPECT_EQ(dragged.rank, 0);
}

// The one that stood there stays; the dragged one is put beside it, towards the middle.
TEST_F(GradientEditing, ADraggedPointGivesWay) {
    GradientDrag dragged = grab(206);
    EXPECT_TRUE(drag(dragged, pixelOf(0.25)));
    EXPECT_EQ(gradient.points.at(0.25f), red);
    EXPECT_EQ(gradient.points.at(0.25f + 0.001f), green);
    EXPECT_EQ(dragged.rank, 1);
    EXPECT_TRUE(drag(dragged, pixelOf(0.75)));
    EXPECT_EQ(gradient.points.at(0.75f), blue);
    EXPECT_EQ(gradient.points.at(0.75f - 0.001f), green);
    EXPECT_EQ(dragged.rank, 1);
    EXPECT_EQ(gradient.points.size(), 3u);
    // The point at exactly that position is still the other one, so the event counts though nothing moves.
    EXPECT_TRUE(drag(dragged, pixelOf(0.75)));
    EXPECT_EQ(gradient.points.at(0.75f - 0.001f), green);
}

// The frame's bottom is still inside.
TEST_F(GradientEditing, DraggingBelowTheControlTakesThePointOff) {
    GradientDrag dragged = grab(206);
    EXPECT_TRUE(drag(dragged, 210, 100));
    EXPECT_EQ(dragged.rank, 1);
    EXPECT_TRUE(drag(dragged, 212, 101));
    EXPECT_EQ(dragged.rank, GradientDrag::draggedOff);
    EXPECT_EQ(gradient.points, (Points{{0.25f, red}, {0.75f, blue}}));
    // below it stays off, wherever it goes
    EXPECT_FALSE(drag(dragged, 220, 101));
    EXPECT_FALSE(drag(dragged, 106, 5000));
    EXPECT_EQ(gradient.points, (Points{{0.25f, red}, {0.75f, blue}}));
    EXPECT_EQ(dragged.rank, GradientDrag::draggedOff);
}

TEST_F(GradientEditing, APointThatWasDraggedOffComesBackWithThePointer) {
    GradientDrag dragged = grab(pixelOf(0.75));
    drag(dragged, pixelOf(0.8), 101);
    EXPECT_TRUE(drag(dragged, pixelOf(0.1), 100));
    EXPECT_EQ(dragged.rank, 0);
    EXPECT_EQ(gradient.points, (Points{{0.1f, blue}, {0.25f, red}, {0.5f, green}}));
    drag(dragged, pixelOf(0.2), 101);
    EXPECT_EQ(gradient.points, (Points{{0.25f, red}, {0.5f, green}}));
    EXPECT_TRUE(drag(dragged, pixelOf(0.25), 0));
    EXPECT_EQ(dragged.rank, 1);
    EXPECT_EQ(gradient.points.at(0.25f), red);
    EXPECT_EQ(gradient.points.at(0.25f + 0.001f), blue);
}

// Whether a point is where it was comes before whether the pointer is below.
TEST_F(GradientEditing, DraggingStraightDownLeavesThePoint) {
    gradient.points = {{0.0f, red}, {1.0f, green}};
    const Points before = gradient.points;
    for (const std::int32_t x : {106, 306}) {
        GradientDrag dragged = grab(x);
        EXPECT_FALSE(drag(dragged, x, 500));
        EXPECT_FALSE(drag(dragged, x < 200 ? 0 : 500, 500));  // the ends hold it
        EXPECT_NE(dragged.rank, GradientDrag::draggedOff);
    }
    EXPECT_EQ(gradient.points, before);
}

TEST_F(GradientEditing, AllPointsCanBeDraggedOff) {
    for (const double position : {0.5, 0.25, 0.75}) {
        GradientDrag dragged = grab(pixelOf(position));
        EXPECT_TRUE(drag(dragged, pixelOf(position) + 1, 101));
    }
    EXPECT_TRUE(gradient.points.empty());
    EXPECT_EQ(click(206).effect, Effect::Nothing);
    EXPECT_EQ(click(206, 1, true).effect, Effect::Nothing);
    float colour[4];
    EvaluateGradient(gradient, 0.5f, colour);
    EXPECT_EQ(std::to_array(colour), (std::array{0.0f, 0.0f, 0.0f, 1.0f}));
}

// The gradient may have been replaced under the drag.
TEST_F(GradientEditing, ARankWithoutAPointIsLeftAlone) {
    const Points before = gradient.points;
    for (const std::int32_t rank : {3, 1000, -2}) {
        GradientDrag dragged{0, rank, blue};
        EXPECT_FALSE(drag(dragged, 150)) << rank;
        EXPECT_FALSE(drag(dragged, 150, 101)) << rank;
        EXPECT_EQ(dragged.rank, rank);
    }
    EXPECT_EQ(gradient.points, before);
}

// What comes back is what was grabbed.
TEST_F(GradientEditing, TheGrabbedColourAndKindArePlaced) {
    GradientDrag dragged = grab(206);
    gradient.points.at(0.5f) = blue;
    drag(dragged, pixelOf(0.6));
    EXPECT_EQ(gradient.points.at(0.6f), green);
}

TEST_F(GradientEditing, AFrameWithoutATrackIsDead) {
    const Points before = gradient.points;
    for (const PF_Rect& narrow : {PF_Rect{0, 0, 12, 50}, PF_Rect{0, 0, 0, 0}, PF_Rect{20, 0, 0, 50}}) {
        GradientEditor editor(gradient, narrow);
        for (const std::int32_t count : {1, 2}) {
            EXPECT_EQ(editor.click({{6, 10}, count, false}).effect, Effect::Nothing);
        }
        GradientDrag dragged{0, 0, red};
        EXPECT_FALSE(editor.drag(dragged, {6, 1000}));
    }
    EXPECT_EQ(gradient.points, before);
}

}  // namespace

}  // namespace Tessavoy
