#include "Source/RenderGrid/PartPoints.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace Tessavoy {
namespace {

/// A cell of parts in these directions, with their points.
struct PartedCell {
    explicit PartedCell(const std::vector<float>& angles, float shelf = 0.0F, float link = 0.0F)
        : parts(angles.size()) {
        for (std::size_t k = 0; k < angles.size(); ++k) {
            parts[k] = {};
            parts[k].angle = angles[k];
            parts[k].shelfLength = shelf;
            parts[k].linkMiddleOffset = link;
        }
        state.partsCount = static_cast<A_long>(parts.size());
        state.parts = parts.data();
    }

    std::vector<InstancePart> parts;
    InstanceState state{};
};

void expectPoint(const ShapePoint& point, double x, double y) {
    EXPECT_NEAR(point.x, x, 1e-7);
    EXPECT_NEAR(point.y, y, 1e-7);
}

constexpr double diagonal = std::numbers::sqrt2 / 2.0;

TEST(PartPoints, AnglesGrowClockwiseFromStraightUp) {
    PartedCell cell({0.0F, 90.0F, 180.0F, 270.0F, 45.0F, -90.0F, 405.0F});
    BuildPartPoints(cell.state);
    expectPoint(cell.parts[0].shelfStart, 0.0, -1.0);
    expectPoint(cell.parts[1].shelfStart, 1.0, 0.0);
    expectPoint(cell.parts[2].shelfStart, 0.0, 1.0);
    expectPoint(cell.parts[3].shelfStart, -1.0, 0.0);
    expectPoint(cell.parts[4].shelfStart, diagonal, -diagonal);
    expectPoint(cell.parts[5].shelfStart, -1.0, 0.0);
    expectPoint(cell.parts[6].shelfStart, diagonal, -diagonal);
    for (const InstancePart& part : cell.parts) {
        EXPECT_EQ(part.shelfStart.x, part.shelfEnd.x);
        EXPECT_EQ(part.shelfStart.y, part.shelfEnd.y);
    }
}

TEST(PartPoints, AShelfIsTangentAndRunsClockwise) {
    PartedCell cell({0.0F, 90.0F, 45.0F}, 0.5F);
    BuildPartPoints(cell.state);
    expectPoint(cell.parts[0].shelfStart, -0.25, -1.0);
    expectPoint(cell.parts[0].shelfEnd, 0.25, -1.0);
    expectPoint(cell.parts[1].shelfStart, 1.0, -0.25);
    expectPoint(cell.parts[1].shelfEnd, 1.0, 0.25);
    expectPoint(cell.parts[2].shelfStart, 0.75 * diagonal, -1.25 * diagonal);
    expectPoint(cell.parts[2].shelfEnd, 1.25 * diagonal, -0.75 * diagonal);
}

TEST(PartPoints, ALinkMovesItsMiddleTowardTheCentre) {
    PartedCell cell({45.0F, 135.0F, 225.0F, 315.0F}, 0.0F, 0.25F);
    BuildPartPoints(cell.state);
    expectPoint(cell.parts[0].linkMiddle, diagonal - 0.25, 0.0);
    expectPoint(cell.parts[1].linkMiddle, 0.0, diagonal - 0.25);
    expectPoint(cell.parts[2].linkMiddle, 0.25 - diagonal, 0.0);
    expectPoint(cell.parts[3].linkMiddle, 0.0, 0.25 - diagonal);  // the last part's next is the first
    for (const InstancePart& part : cell.parts) {
        EXPECT_EQ(part.linkCollapsed, 0);
    }
}

TEST(PartPoints, ANegativeLinkMovesItsMiddleOutward) {
    PartedCell cell({45.0F, 135.0F, 225.0F, 315.0F}, 0.0F, -0.5F);
    BuildPartPoints(cell.state);
    expectPoint(cell.parts[0].linkMiddle, diagonal + 0.5, 0.0);
    EXPECT_EQ(cell.parts[0].linkCollapsed, 0);
}

TEST(PartPoints, ALinkThatReachesTheCentreCollapses) {
    PartedCell cell({45.0F, 135.0F, 225.0F, 315.0F}, 0.0F, 0.71F);
    cell.parts[0].linkMiddle = {8.0F, 9.0F};
    BuildPartPoints(cell.state);
    EXPECT_EQ(cell.parts[0].linkCollapsed, 1);
    EXPECT_EQ(cell.parts[0].linkMiddle.x, 8.0F);  // a collapsed link has no middle of its own
    PartedCell shorter({45.0F, 135.0F, 225.0F, 315.0F}, 0.0F, 0.7F);
    BuildPartPoints(shorter.state);
    EXPECT_EQ(shorter.parts[0].linkCollapsed, 0);
}

TEST(PartPoints, PartsWithoutALinkKeepItsFields) {
    PartedCell cell({0.0F, 120.0F, 240.0F});
    cell.parts[1].linkMiddle = {8.0F, 9.0F};
    cell.parts[1].linkCollapsed = 1;
    BuildPartPoints(cell.state);
    EXPECT_EQ(cell.parts[1].linkMiddle.y, 9.0F);
    EXPECT_EQ(cell.parts[1].linkCollapsed, 1);
}

TEST(PartPoints, LinksSpanFromShelfToShelf) {
    PartedCell cell({0.0F, 90.0F, 180.0F, 270.0F}, 0.5F, 0.1F);
    BuildPartPoints(cell.state);
    // From (0.25, -1) to (1, -0.25): the middle is (0.625, -0.625), and the way to the centre is diagonal.
    expectPoint(cell.parts[0].linkMiddle, 0.625 - 0.1 * diagonal, -0.625 + 0.1 * diagonal);
}

TEST(PartPoints, ACellWithoutPartsIsLeftAlone) {
    InstanceState cell{};
    for (const A_long count : {0, -1, -1000}) {
        cell.partsCount = count;
        BuildPartPoints(cell);
    }
    EXPECT_EQ(cell.parts, nullptr);
}

TEST(PartPoints, KnownDirectionsGiveTheSameBits) {
    for (const int count : {1, 2, 3, 5, 12}) {
        std::vector<float> angles;
        std::vector<PartDirection> directions;
        for (int k = 0; k < count; ++k) {
            angles.push_back(static_cast<float>(k) * 360.0F / static_cast<float>(count) + 7.5F);
            directions.push_back(partDirection(angles.back()));
        }
        PartedCell cell(angles, 0.3F, 0.2F);
        PartedCell same(angles, 0.3F, 0.2F);
        BuildPartPoints(cell.state);
        placePartPoints(same.parts.data(), count, directions.data());
        for (int k = 0; k < count; ++k) {
            EXPECT_EQ(cell.parts[k].shelfStart.x, same.parts[k].shelfStart.x);
            EXPECT_EQ(cell.parts[k].shelfEnd.y, same.parts[k].shelfEnd.y);
            EXPECT_EQ(cell.parts[k].linkCollapsed, same.parts[k].linkCollapsed);
            EXPECT_EQ(cell.parts[k].linkMiddle.x, same.parts[k].linkMiddle.x);
        }
    }
}

}  // namespace
}  // namespace Tessavoy
