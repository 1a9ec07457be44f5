#include "Source/RenderGrid/Outline.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>
#include <vector>

namespace Tessavoy {
namespace {

constexpr OutlineColour colour{0.1F, 0.2F, 0.3F, 0.4F};
constexpr OutlinePen fill{colour, 0.0, false};
constexpr double half = std::numbers::sqrt2 / 2.0;

void expectAt(const OutlineVertex& vertex, double x, double y) {
    EXPECT_NEAR(vertex.position.x, x, 1e-12);
    EXPECT_NEAR(vertex.position.y, y, 1e-12);
}

double distance(const OutlinePoint& a, const OutlinePoint& b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

TEST(MitreOffset, OfARightAngleIsItsDiagonal) {
    // Clockwise on the screen: along the top edge to the right, then down. Outside is up and to the right.
    const OutlineVector offset = mitreOffset({{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}});
    EXPECT_NEAR(offset.x, 1.0, 1e-15);
    EXPECT_NEAR(offset.y, -1.0, 1e-15);
}

TEST(MitreOffset, GrowsAsTheCornerGetsSharper) {
    // The mitre of a corner of angle a is 1 / sin(a / 2) long.
    for (const double degrees : {170.0, 120.0, 60.0, 20.0, 2.0}) {
        const double a = degrees * std::numbers::pi / 180.0;
        const OutlinePoint c{std::cos(a), std::sin(a), 0.0};
        const OutlineVector offset = mitreOffset({{1, 0, 0}, {0, 0, 0}, c});
        EXPECT_NEAR(std::hypot(offset.x, offset.y) * std::sin(a / 2.0), 1.0, 1e-12) << degrees;
    }
}

TEST(MitreOffset, OfParallelEdgesIsNotFinite) {
    const OutlineVector onward = mitreOffset({{-1, 0, 0}, {0, 0, 0}, {1, 0, 0}});
    EXPECT_FALSE(std::isfinite(onward.x) && std::isfinite(onward.y));
    const OutlineVector back = mitreOffset({{-1, 0, 0}, {0, 0, 0}, {-1, 0, 0}});
    EXPECT_FALSE(std::isfinite(back.x) && std::isfinite(back.y));
}

TEST(MitreOffset, OfOnePointIsNotANumber) {
    const OutlineVector offset = mitreOffset({{3, 4, 0}, {3, 4, 0}, {3, 4, 0}});
    EXPECT_TRUE(std::isnan(offset.x));
    EXPECT_TRUE(std::isnan(offset.y));
}

TEST(MitreOffset, TakesTheOtherNormalWhereTwoPointsCoincide) {
    for (const double noise : {0.0, 1e-16, -3e-16}) {
        const OutlineVector offset = mitreOffset({{1.0 + noise, 1.0 - noise, 0}, {1, 1, 0}, {2, 1, 0}});
        EXPECT_EQ(offset.x, 0.0) << noise;
        EXPECT_EQ(offset.y, -1.0) << noise;
        const OutlineVector mirrored = mitreOffset({{0, 1, 0}, {1, 1, 0}, {1.0 - noise, 1.0 + noise, 0}});
        EXPECT_EQ(mirrored.y, -1.0) << noise;
    }
}

TEST(EmitMitredVertex, WithoutAWidthIsThePointItself) {
    std::array<OutlineVertex, 4> out{};
    const OutlinePoint b{1, 2, 3};
    EXPECT_EQ(EmitMitredVertex({{0, 0, 0}, b, {5, 0, 0}}, {colour, 0.0, false}, MitreSide::Both, out.data()), 1);
    expectAt(out[0], 1.0, 2.0);
    EXPECT_EQ(out[0].position.z, 3.0);
    EXPECT_EQ(out[0].colour.a, 0.4F);
    EXPECT_EQ(EmitMitredVertex({{0, 0, 0}, b, {5, 0, 0}}, {colour, 0.0, true}, MitreSide::Both, out.data()), 2);
}

TEST(EmitMitredVertex, WritesThePlusSideBeforeTheMinusSide) {
    std::array<OutlineVertex, 4> out{};
    const OutlineCorner corner{{-1, -1, 0}, {1, -1, 7}, {1, 1, 0}};
    EXPECT_EQ(EmitMitredVertex(corner, {colour, 0.5, false}, MitreSide::Both, out.data()), 2);
    expectAt(out[0], 1.25, -1.25);
    expectAt(out[1], 0.75, -0.75);
    EXPECT_EQ(out[0].position.z, 7.0);
    EXPECT_EQ(EmitMitredVertex(corner, {colour, 0.5, true}, MitreSide::Both, out.data()), 4);
    expectAt(out[0], 1.25, -1.25);
    expectAt(out[2], 0.75, -0.75);
    EXPECT_EQ(EmitMitredVertex(corner, {colour, 0.5, false}, MitreSide::Plus, out.data()), 1);
    expectAt(out[0], 1.25, -1.25);
    EXPECT_EQ(EmitMitredVertex(corner, {colour, 0.5, false}, MitreSide::Minus, out.data()), 1);
    expectAt(out[0], 0.75, -0.75);
}

/// A corner of a square of side 2, rounded.
std::vector<OutlineVertex> roundedCorner(double radius, int dots, double width = 0.0, bool feathered = false) {
    std::vector<OutlineVertex> out(100);
    const int count =
        EmitCorner({{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}}, {radius, dots}, {colour, width, feathered}, out.data());
    out.resize(static_cast<std::size_t>(count));
    return out;
}

TEST(EmitCorner, WithoutARadiusIsOnePoint) {
    const std::vector<OutlineVertex> corner = roundedCorner(0.0, 5);
    ASSERT_EQ(corner.size(), 1U);
    expectAt(corner[0], 1.0, -1.0);
    EXPECT_EQ(roundedCorner(0.0, 5, 0.1).size(), 2U);
    EXPECT_EQ(roundedCorner(0.0, 5, 0.1, true).size(), 4U);
}

TEST(EmitCorner, WithoutDotsIsAChamfer) {
    const std::vector<OutlineVertex> corner = roundedCorner(0.25, 0);
    ASSERT_EQ(corner.size(), 2U);
    expectAt(corner[0], 0.75, -1.0);
    expectAt(corner[1], 1.0, -0.75);
}

TEST(EmitCorner, DotsLieEvenlyOnTheArc) {
    for (const int dots : {1, 2, 3, 10, 40}) {
        const std::vector<OutlineVertex> corner = roundedCorner(0.5, dots);
        ASSERT_EQ(corner.size(), static_cast<std::size_t>(dots) + 2U);
        for (int k = 0; k <= dots + 1; ++k) {
            const double angle = k * 0.5 * std::numbers::pi / (dots + 1);
            expectAt(corner[k], 0.5 + 0.5 * std::sin(angle), -0.5 - 0.5 * std::cos(angle));
        }
    }
}

TEST(EmitCorner, SmallTurnsUseThePlainWeights) {
    // Half the turn has a cosine above 0.999, so the steps are even in the quaternion and nearly so in the angle.
    const double turn = 0.05;
    std::array<OutlineVertex, 5> out{};
    const OutlinePoint c{std::cos(turn), std::sin(turn), 0.0};
    ASSERT_EQ(EmitCorner({{-1, 0, 0}, {0, 0, 0}, c}, {0.1, 3}, fill, out.data()), 5);
    for (int k = 1; k <= 3; ++k) {
        const double t = k / 4.0;
        const double w = 1.0 - t + t * std::cos(turn / 2.0);
        const double z = t * std::sin(turn / 2.0);
        const double x = 2.0 * w * z;  // the rotated normal (0, -1), by the quaternion (w, z) as it stands
        const double y = -(1.0 - 2.0 * z * z);
        const double tangent = 0.1 * std::tan(turn / 2.0);
        expectAt(out[k], -tangent + 0.1 * x, 0.1 + 0.1 * y);
    }
}

TEST(EmitCorner, NoCornerReachesBeyondTheMiddleOfItsShorterSide) {
    // Sides 2 and 1 at a right angle: the arc ends half a unit from the corner on both.
    std::array<OutlineVertex, 8> out{};
    ASSERT_EQ(EmitCorner({{-1, 0, 0}, {1, 0, 0}, {1, 1, 0}}, {100.0, 0}, fill, out.data()), 2);
    expectAt(out[0], 0.5, 0.0);
    expectAt(out[1], 1.0, 0.5);
    ASSERT_EQ(EmitCorner({{0, 0, 0}, {1, 0, 0}, {1, 2, 0}}, {100.0, 0}, fill, out.data()), 2);
    expectAt(out[0], 0.5, 0.0);
    expectAt(out[1], 1.0, 0.5);
}

TEST(EmitCorner, RoundedTriangleCornersMeetInTheMiddleOfTheSides) {
    std::array<OutlinePoint, 3> corners;
    for (int k = 0; k < 3; ++k) {
        const double angle = k * 2.0 * std::numbers::pi / 3.0;
        corners[k] = {std::sin(angle), -std::cos(angle), 0.0};
    }
    for (int k = 0; k < 3; ++k) {
        const OutlinePoint& a = corners[(k + 2) % 3];
        const OutlinePoint& c = corners[(k + 1) % 3];
        std::array<OutlineVertex, 2> out{};
        ASSERT_EQ(EmitCorner({a, corners[k], c}, {5.0, 0}, fill, out.data()), 2);
        expectAt(out[0], (a.x + corners[k].x) / 2.0, (a.y + corners[k].y) / 2.0);
        expectAt(out[1], (c.x + corners[k].x) / 2.0, (c.y + corners[k].y) / 2.0);
    }
}

TEST(EmitCorner, InwardTurnsAreRoundedOnTheirOwnSide) {
    // A turn to the left: the arc's centre lies on the other side of the path.
    std::array<OutlineVertex, 3> out{};
    ASSERT_EQ(EmitCorner({{-1, 0, 0}, {0, 0, 0}, {0, -1, 0}}, {0.25, 1}, fill, out.data()), 3);
    expectAt(out[0], -0.25, 0.0);
    expectAt(out[1], -0.25 + 0.25 * half, -0.25 + 0.25 * half);
    expectAt(out[2], 0.0, -0.25);
}

TEST(EmitCorner, StrokesOfARoundedCornerAreParallelToIt) {
    const std::vector<OutlineVertex> corner = roundedCorner(0.5, 3, 0.2);
    ASSERT_EQ(corner.size(), 10U);
    expectAt(corner[0], roundedCorner(0.5, 3)[0].position.x + 0.1 * std::tan(std::numbers::pi / 32.0), -1.1);
    for (std::size_t k = 0; k < corner.size(); k += 2) {
        // Both sides of a mitre are as far from the middle, and the band's width across a straight edge is 0.2.
        const OutlinePoint& plus = corner[k].position;
        const OutlinePoint& minus = corner[k + 1].position;
        const std::vector<OutlineVertex> middle = roundedCorner(0.5, 3);
        EXPECT_NEAR(distance(plus, middle[k / 2].position), distance(minus, middle[k / 2].position), 1e-12);
        EXPECT_GE(distance(plus, minus), 0.2);
        EXPECT_LT(distance(plus, minus), 0.21);
    }
}

/// The ring of a square of half side 1 with its centre, and room for slots.
std::vector<OutlineVertex> filledSquare() {
    std::vector<OutlineVertex> ring = {{{0, 0, 0}, colour}};
    for (const OutlinePoint& corner : {OutlinePoint{1, -1, 0}, {1, 1, 0}, {-1, 1, 0}, {-1, -1, 0}}) {
        ring.push_back({corner, colour});
        ring.push_back({{99, 99, 99}, {9, 9, 9, 9}});
    }
    return ring;
}

TEST(ApplyFeather, LiesAtTheMeanFactorTimesTheFeather) {
    std::vector<OutlineVertex> ring = filledSquare();
    ApplyFeather(ring.data(), static_cast<int>(ring.size()), false, 0.5, 1.0, 0.5);
    const double out = 1.0 + 0.5 * (1.0 + 0.5) / 2.0;
    expectAt(ring[2], out, -out);
    expectAt(ring[4], out, out);
    expectAt(ring[6], -out, out);
    expectAt(ring[8], -out, -out);
    for (const std::size_t slot : {2U, 4U, 6U, 8U}) {
        EXPECT_EQ(ring[slot].colour.r, 0.1F);
        EXPECT_EQ(ring[slot].colour.b, 0.3F);
        EXPECT_EQ(ring[slot].colour.a, 0.0F);
    }
    expectAt(ring[1], 1.0, -1.0);
    EXPECT_EQ(ring[1].colour.a, 0.4F);
}

TEST(ApplyFeather, OfAStrokeLiesOnBothSides) {
    std::vector<OutlineVertex> fours;
    for (const OutlinePoint& corner : {OutlinePoint{1, -1, 5}, {1, 1, 5}, {-1, 1, 5}, {-1, -1, 5}}) {
        fours.push_back({{corner.x * 1.1, corner.y * 1.1, corner.z}, colour});
        fours.push_back({});
        fours.push_back({{corner.x * 0.9, corner.y * 0.9, corner.z}, colour});
        fours.push_back({});
    }
    ApplyFeather(fours.data(), 16, true, 0.25, 1.0, 1.0);
    expectAt(fours[1], 1.35, -1.35);
    expectAt(fours[3], 0.65, -0.65);
    expectAt(fours[13], -1.35, -1.35);
    expectAt(fours[15], -0.65, -0.65);
    EXPECT_EQ(fours[15].colour.a, 0.0F);
    EXPECT_EQ(fours[15].colour.g, 0.2F);
    EXPECT_EQ(fours[15].position.z, 5.0);
}

}  // namespace
}  // namespace Tessavoy
