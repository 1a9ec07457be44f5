#include "Source/Editors/PointEditing.h"

#include <gtest/gtest.h>

#include <limits>

namespace Tessavoy {

namespace {

/// From pixel 106 to 306, so that a pixel is 0.005 of it.
const ControlAxis axis(100, 312);

TEST(ControlAxis, LiesSixPixelsInsideTheFrame) {
    EXPECT_EQ(axis.start(), 106);
    EXPECT_EQ(axis.end(), 306);
    EXPECT_EQ(axis.span(), 200.0f);
    EXPECT_EQ(axis.hitRadius(), 0.05f);
}

TEST(ControlAxis, GivesPositionsOfPixelsAlsoOutside) {
    EXPECT_EQ(axis.positionAt(106), 0.0f);
    EXPECT_EQ(axis.positionAt(156), 0.25f);
    EXPECT_EQ(axis.positionAt(306), 1.0f);
    EXPECT_EQ(axis.positionAt(100), -0.03f);
    EXPECT_EQ(axis.positionAt(312), 1.03f);
    EXPECT_EQ(axis.positionAt(150, 6), 0.25f);
    EXPECT_EQ(axis.clampedPositionAt(100, 0), 0.0f);
    EXPECT_EQ(axis.clampedPositionAt(312, 0), 1.0f);
    EXPECT_EQ(axis.clampedPositionAt(162, -6), 0.25f);
}

TEST(ControlAxis, GrabsAPositionAtItsWholePixel) {
    EXPECT_EQ(axis.grabOffset(0.25f, 150), 6);
    EXPECT_EQ(axis.grabOffset(0.2549f, 156), 0);  // 50.98 pixels from the start
    EXPECT_EQ(axis.grabOffset(-0.004f, 106), 0);  // -0.8: towards zero
    EXPECT_EQ(axis.grabOffset(1.0f, 312), -6);
}

TEST(ControlAxis, HasNoLengthInAFrameOfNothingButMargins) {
    EXPECT_TRUE(ControlAxis(0, 13).hasLength());
    EXPECT_FALSE(ControlAxis(0, 12).hasLength());
    EXPECT_FALSE(ControlAxis(5, -5).hasLength());
}

// Pointers far outside, and what an event record may hold besides, must not overflow.
TEST(ControlAxis, TakesAnyPixel) {
    constexpr auto most = std::numeric_limits<std::int32_t>::max();
    constexpr auto least = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(axis.clampedPositionAt(most, most), 1.0f);
    EXPECT_EQ(axis.clampedPositionAt(least, least), 0.0f);
}

TEST(PointRanks, CountFromZeroInAscendingOrder) {
    PositionMap<int> points{{0.1f, 10}, {0.5f, 50}, {0.9f, 90}};
    for (std::int32_t rank = 0; rank < 3; ++rank) {
        EXPECT_EQ(rankOf<int>(points, pointOfRank(points, rank)), rank);
    }
    EXPECT_EQ(pointOfRank(points, 1)->second, 50);
    for (const std::int32_t rank : {-1, 3, std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_EQ(pointOfRank(points, rank), points.end()) << rank;
    }
}

TEST(PlacedPoints, StandWhereTheyAreDraggedToWhenThatIsFree) {
    PositionMap<int> points{{0.2f, 1}, {0.8f, 2}};
    EXPECT_EQ(placePoint(points, 0.4f, 3), 1);
    EXPECT_EQ(placePoint(points, 0.0f, 4), 0);
    EXPECT_EQ(placePoint(points, 1.0f, 5), 4);
    EXPECT_EQ(points, (PositionMap<int>{{0.0f, 4}, {0.2f, 1}, {0.4f, 3}, {0.8f, 2}, {1.0f, 5}}));
}

// 0.5 itself belongs to the upper half: its way to the middle is downwards.
TEST(PlacedPoints, GiveWayTowardsTheMiddle) {
    struct Case {
        float wanted, given;
    };
    for (const Case& c :
         {Case{0.0f, 0.001f}, Case{0.25f, 0.251f}, Case{0.5f, 0.499f}, Case{0.75f, 0.749f}, Case{1.0f, 0.999f}}) {
        PositionMap<int> points{{c.wanted, 1}};
        const std::int32_t rank = placePoint(points, c.wanted, 2);
        ASSERT_EQ(points.size(), 2u) << c.wanted;
        EXPECT_EQ(points.at(c.wanted), 1) << c.wanted;
        EXPECT_EQ(pointOfRank(points, rank)->second, 2) << c.wanted;
        EXPECT_FLOAT_EQ(pointOfRank(points, rank)->first, c.given);
    }
}

TEST(PlacedPoints, GiveWayUntilAPositionIsFree) {
    PositionMap<int> points{{0.25f, 1}, {0.25f + 0.001f, 2}, {0.75f, 3}};
    EXPECT_EQ(placePoint(points, 0.25f, 4), 2);
    EXPECT_FLOAT_EQ(std::next(points.begin(), 2)->first, 0.252f);
    EXPECT_EQ(std::next(points.begin(), 2)->second, 4);
}

// The direction is that of the first try, also where the way leads across the middle.
TEST(PlacedPoints, KeepTheirDirectionAcrossTheMiddle) {
    const float first = 0.4995f;
    PositionMap<int> points{{first, 1}, {first + 0.001f, 2}};
    placePoint(points, first, 3);
    EXPECT_FLOAT_EQ(std::prev(points.end())->first, 0.5015f);
}

}  // namespace

}  // namespace Tessavoy
