#include "Source/Editors/RampData.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "Tests/Support/FlatBytes.h"

namespace Tessavoy {
namespace {

constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float Infinite = std::numeric_limits<float>::infinity();

RampData ramp(std::int32_t interpolation, PositionMap<float> points, std::int32_t mode = RampModeAll) {
    return {mode, interpolation, std::move(points)};
}

bool sameFields(const RampData& left, const RampData& right) {
    return left.mode == right.mode && left.interpolation == right.interpolation && left.points == right.points;
}

struct Point {
    double x, y;
};

Point between(Point from, Point to, double part) {
    return {from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
}

/// A cubic curve by de Casteljau's construction.
struct Curve {
    std::array<Point, 4> points;

    Point at(double v) const {
        const Point a = between(points[0], points[1], v);
        const Point b = between(points[1], points[2], v);
        const Point c = between(points[2], points[3], v);
        return between(between(a, b, v), between(b, c, v), v);
    }

    /// Where the curve passes `x`, to the limit of doubles; its positions ascend.
    double parameterAt(double x) const {
        double low = 0.0;
        double high = 1.0;
        for (int n = 0; n < 100; ++n) {
            const double middle = (low + high) / 2.0;
            (at(middle).x > x ? high : low) = middle;
        }
        return low;
    }

    /// Where it passes `x` by halving the stretch [low, high] `left` times, with a straight step at the end.
    double parameterByHalving(double x, double low, double high, int left) const {
        if (at(low).x + 1e-4 >= x) {
            return low;
        }
        if (x >= at(high).x - 1e-4) {
            return high;
        }
        if (left == 0) {
            return low + (x - at(low).x) / (at(high).x - at(low).x) * (high - low);
        }
        const double middle = (low + high) / 2.0;
        return at(middle).x > x ? parameterByHalving(x, low, middle, left - 1)
                                : parameterByHalving(x, middle, high, left - 1);
    }
};

/// The curve's stretch from `p1` to `p2` with the neighbours `p0` and `p3`: the control points lie along the chord
/// between a point's neighbours.
Curve smoothCurve(Point p0, Point p1, Point p2, Point p3) {
    const double length = std::hypot(p2.x - p1.x, p2.y - p1.y);
    const double before = std::hypot(p1.x - p0.x, p1.y - p0.y);
    const double after = std::hypot(p3.x - p2.x, p3.y - p2.y);
    const Point c1 = between(p1, {p1.x + p2.x - p0.x, p1.y + p2.y - p0.y}, 0.3 * length / (before + length));
    const Point c2 = between(p2, {p2.x + p1.x - p3.x, p2.y + p1.y - p3.y}, 0.3 * length / (after + length));
    return {{p1, c1, c2, p2}};
}

const PositionMap<float> fourPoints = {{0.0f, 0.2f}, {0.25f, 0.9f}, {0.6f, 0.3f}, {1.0f, 0.75f}};

std::array<Curve, 3> curvesOfFourPoints() {
    const Point a{0.0, 0.2f}, b{0.25, 0.9f}, c{0.6f, 0.3f}, d{1.0, 0.75};
    return {smoothCurve(a, a, b, c), smoothCurve(a, b, c, d), smoothCurve(b, c, d, d)};
}

TEST(RampData, DefaultIsOneWithSinAndWithLineWhereSinIsNotOffered) {
    const PositionMap<float> ones = {{0.0f, 1.0f}, {1.0f, 1.0f}};
    EXPECT_TRUE(sameFields(defaultRamp(), {0, 0, ones}));
    EXPECT_TRUE(sameFields(defaultRamp(0), {0, 0, ones}));
    EXPECT_TRUE(sameFields(defaultRamp(1), {1, 1, ones}));
}

TEST(RampData, WithoutPointsItIsOneForEveryInterpolation) {
    for (std::int32_t interpolation = -1; interpolation <= 4; ++interpolation) {
        EXPECT_EQ(EvaluateRamp(ramp(interpolation, {}), 0.5f), 1.0f) << interpolation;
    }
}

TEST(RampData, OutsideThePointsTheEndValuesHold) {
    for (std::int32_t interpolation = -1; interpolation <= 4; ++interpolation) {
        const RampData curve = ramp(interpolation, {{0.25f, 0.125f}, {0.75f, 0.5f}});
        EXPECT_EQ(EvaluateRamp(curve, -1.0f), 0.125f) << interpolation;
        EXPECT_EQ(EvaluateRamp(curve, 0.24f), 0.125f) << interpolation;
        EXPECT_EQ(EvaluateRamp(curve, 0.75f), 0.5f) << interpolation;
        EXPECT_EQ(EvaluateRamp(curve, 2.0f), 0.5f) << interpolation;
        EXPECT_EQ(EvaluateRamp(curve, NotANumber), 0.5f) << interpolation;
        EXPECT_EQ(EvaluateRamp(ramp(interpolation, {{0.5f, 0.25f}}), 0.5f), 0.25f) << interpolation;
    }
}

// (1 - cos(pi u)) / 2 is the square of sin(pi u / 2).
TEST(RampData, SinIsAPlainCosineEase) {
    const RampData curve = ramp(0, {{0.2f, 0.75f}, {0.7f, 0.25f}});
    for (int step = 0; step <= 1000; ++step) {
        const double u = step / 1000.0;
        const double sine = std::sin(std::numbers::pi * 0.5 * u);
        EXPECT_NEAR(EvaluateRamp(curve, static_cast<float>(0.2 + 0.5 * u)), 0.75 - 0.5 * sine * sine, 1e-6) << u;
    }
}

TEST(RampData, LineIsStraight) {
    const RampData curve = ramp(1, {{0.25f, 0.0f}, {0.5f, 1.0f}, {1.0f, 0.5f}});
    EXPECT_FLOAT_EQ(EvaluateRamp(curve, 0.375f), 0.5f);
    EXPECT_FLOAT_EQ(EvaluateRamp(curve, 0.4375f), 0.75f);
    EXPECT_FLOAT_EQ(EvaluateRamp(curve, 0.75f), 0.75f);
}

TEST(RampData, StepHoldsUpToTheNextPointAndChangesExactlyThere) {
    const RampData curve = ramp(2, {{0.0f, 0.125f}, {0.5f, 0.25f}, {1.0f, 0.5f}});
    EXPECT_EQ(EvaluateRamp(curve, 0.0f), 0.125f);
    EXPECT_EQ(EvaluateRamp(curve, std::nextafter(0.5f, 0.0f)), 0.125f);
    EXPECT_EQ(EvaluateRamp(curve, 0.5f), 0.25f);
    EXPECT_EQ(EvaluateRamp(curve, std::nextafter(1.0f, 0.0f)), 0.25f);
    EXPECT_EQ(EvaluateRamp(curve, 1.0f), 0.5f);
}

TEST(RampData, UnknownInterpolationsAreOneBetweenPoints) {
    for (const std::int32_t interpolation : {-1, 4, std::numeric_limits<std::int32_t>::max()}) {
        EXPECT_EQ(EvaluateRamp(ramp(interpolation, {{0.0f, 0.25f}, {1.0f, 0.25f}}), 0.5f), 1.0f) << interpolation;
    }
}

// Both neighbours coincide with the ends, so the control points stand on the line at 0.3 and 0.7 of it.
TEST(RampData, BezierThroughTwoPointsIsTheStraightLine) {
    const RampData curve = ramp(3, {{0.0f, 0.25f}, {1.0f, 0.75f}});
    for (int step = 0; step <= 1000; ++step) {
        const double t = step / 1000.0;
        EXPECT_NEAR(EvaluateRamp(curve, static_cast<float>(t)), 0.25 + 0.5 * t, 1e-4) << t;
    }
    EXPECT_FLOAT_EQ(EvaluateRamp(curve, 0.5f), 0.5f);
}

TEST(RampData, BezierFollowsTheSmoothCurve) {
    const RampData curve = ramp(3, fourPoints);
    const auto curves = curvesOfFourPoints();
    for (int step = 0; step <= 1000; ++step) {
        const double t = step / 1000.0;
        const Curve& stretch = curves[t < 0.25 ? 0u : t < 0.6 ? 1u : 2u];
        EXPECT_NEAR(EvaluateRamp(curve, static_cast<float>(t)), stretch.at(stretch.parameterAt(t)).y, 1e-3) << t;
    }
}

// One halving picks the side, four more leave 1/32 of the parameter, and a straight step ends the search.
TEST(RampData, BezierSearchesByFiveHalvingsAndAStraightStep) {
    const RampData curve = ramp(3, fourPoints);
    const auto curves = curvesOfFourPoints();
    double largestStepError = 0.0;
    for (int step = 1; step < 1000; ++step) {
        const double t = static_cast<double>(static_cast<float>(step) / 1000.0f);
        const Curve& stretch = curves[t < 0.25 ? 0u : t < static_cast<double>(0.6f) ? 1u : 2u];
        const double expected = stretch.at(stretch.parameterByHalving(t, 0.0, 1.0, 5)).y;
        const double exact = stretch.at(stretch.parameterAt(t)).y;
        EXPECT_NEAR(EvaluateRamp(curve, static_cast<float>(t)), expected, 2e-6) << t;
        largestStepError = std::max(largestStepError, std::abs(expected - exact));
    }
    EXPECT_GT(largestStepError, 1e-5) << "the straight step must be visible for this test to say anything";
}

TEST(RampData, BezierWithinATenThousandthOfAPointIsThePoint) {
    const RampData curve = ramp(3, {{0.0f, 0.0f}, {1.0f, 1.0f}});
    EXPECT_EQ(EvaluateRamp(curve, 0.00009f), 0.0f);
    EXPECT_EQ(EvaluateRamp(curve, 0.99991f), 1.0f);
}

TEST(RampData, BezierOvershootIsClamped) {
    const Curve rise = smoothCurve({0.2, 0.0}, {0.4f, 1.0}, {0.6f, 1.0}, {0.8f, 0.0});
    ASSERT_GT(rise.at(0.5).y, 1.01);
    const RampData high = ramp(3, {{0.2f, 0.0f}, {0.4f, 1.0f}, {0.6f, 1.0f}, {0.8f, 0.0f}});
    const RampData low = ramp(3, {{0.2f, 1.0f}, {0.4f, 0.0f}, {0.6f, 0.0f}, {0.8f, 1.0f}});
    EXPECT_EQ(EvaluateRamp(high, 0.5f), 1.0f);
    EXPECT_EQ(EvaluateRamp(low, 0.5f), 0.0f);
}

TEST(RampData, EveryResultIsClampedAndNoNumberGivesZero) {
    EXPECT_EQ(EvaluateRamp(ramp(1, {{0.5f, 3.0f}}), 0.0f), 1.0f);
    EXPECT_EQ(EvaluateRamp(ramp(1, {{0.5f, -3.0f}}), 0.0f), 0.0f);
    EXPECT_EQ(EvaluateRamp(ramp(1, {{0.0f, -1.0f}, {1.0f, 3.0f}}), 0.1f), 0.0f);
    EXPECT_EQ(EvaluateRamp(ramp(1, {{0.0f, -1.0f}, {1.0f, 3.0f}}), 0.9f), 1.0f);
    EXPECT_EQ(EvaluateRamp(ramp(2, {{0.0f, NotANumber}}), 0.5f), 0.0f);
    EXPECT_EQ(EvaluateRamp(ramp(2, {{0.0f, Infinite}}), 0.5f), 1.0f);
}

TEST(RampData, ModeDoesNotChangeTheCurve) {
    const PositionMap<float> points = {{0.0f, 0.0f}, {0.5f, 0.75f}, {1.0f, 0.25f}};
    for (const std::int32_t interpolation : {0, 3}) {
        EXPECT_EQ(EvaluateRamp(ramp(interpolation, points, 1), 0.3f), EvaluateRamp(ramp(interpolation, points), 0.3f));
    }
}

TEST(RampData, EveryCurveStaysWithinTheUnitRangeForOddNumbers) {
    const std::array<float, 9> odd = {0.0f, -0.0f, 1.0f, -1e30f, 1e30f, Infinite, -Infinite, NotANumber, 1e-40f};
    for (std::int32_t interpolation = 0; interpolation <= 4; ++interpolation) {
        for (const float a : odd) {
            for (const float b : odd) {
                const RampData curve = ramp(interpolation, {{a, b}, {b, a}, {0.5f, a}});
                for (const float t : odd) {
                    const float value = EvaluateRamp(curve, t);
                    EXPECT_TRUE(value >= 0.0f && value <= 1.0f) << interpolation << " " << a << " " << b << " " << t;
                }
            }
        }
    }
}

TEST(RampData, FlatFormIsModeInterpolationCountThenTwoNumbersAPoint) {
    const RampData curve = ramp(3, {{1.0f, 0.25f}, {0.5f, 0.75f}}, 1);
    EXPECT_EQ(flatten(curve), flatBytes({1, 3, 2, 0.5f, 0.75f, 1.0f, 0.25f}));
    EXPECT_EQ(flatSize(curve), 28u);
    EXPECT_EQ(flatten(ramp(2, {})), flatBytes({0, 2, 0}));
    EXPECT_EQ(flatSize(ramp(2, {})), 12u);
}

TEST(RampData, FlatFormReadsBack) {
    const RampData curve = ramp(-7, {{-0.5f, 1e-40f}, {0.3f, 0.1f}, {2.0f, -3.0f}}, 9);
    RampData read = defaultRamp();
    ASSERT_TRUE(unflatten(flatten(curve), read));
    EXPECT_TRUE(sameFields(read, curve));
}

TEST(RampData, FewerThanTwelveBytesFailAndLeaveTheRamp) {
    const auto flat = flatten(ramp(2, {}, 1));
    for (std::size_t size = 0; size < 12; ++size) {
        RampData read = defaultRamp();
        EXPECT_FALSE(unflatten({flat.data(), size}, read)) << size;
        EXPECT_TRUE(sameFields(read, defaultRamp())) << size;
    }
}

TEST(RampData, CountsBelowOneGiveNoPoints) {
    for (const std::int32_t count : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        RampData read = defaultRamp();
        EXPECT_TRUE(unflatten(flatBytes({1, 2, count, 0.5f, 0.5f}), read)) << count;
        EXPECT_TRUE(sameFields(read, ramp(2, {}, 1))) << count;
    }
}

TEST(RampData, EveryTruncationFailsAndKeepsThePointsWhosePositionsAreThere) {
    const auto flat = flatten(ramp(1, fourPoints));
    for (std::size_t size = 12; size < flat.size(); ++size) {
        const std::vector<std::byte> cut(flat.begin(), flat.begin() + static_cast<std::ptrdiff_t>(size));
        RampData read = defaultRamp();
        EXPECT_FALSE(unflatten(cut, read)) << size;
        EXPECT_EQ(read.points.size(), (size - 12 + 4) / 8) << size;
    }
}

TEST(RampData, EveryFlippedBitReadsWithinItsBytes) {
    const auto flat = flatten(ramp(3, fourPoints));
    for (std::size_t bit = 0; bit < flat.size() * 8; ++bit) {
        auto hostile = flat;
        hostile[bit / 8] ^= static_cast<std::byte>(1 << bit % 8);
        // 4 becomes 5, 6, 12 and so on: only bit 2, which makes it 0, and the sign bit lower it
        const bool countRaised = bit >= 64 && bit < 96 && bit != 66 && bit != 95;
        RampData read;
        EXPECT_EQ(unflatten(hostile, read), !countRaised) << bit;
        EXPECT_LE(read.points.size(), 4u) << bit;
        const float value = EvaluateRamp(read, 0.4f);
        EXPECT_TRUE(value >= 0.0f && value <= 1.0f) << bit;
        EXPECT_TRUE(sameValue(read, read)) << bit;
    }
}

TEST(RampData, TextNamesModeInterpolationAndPoints) {
    EXPECT_EQ(printText(defaultRamp()), "Ramp all  sin  t 0 v 1 t 1 v 1");
    EXPECT_EQ(printText(ramp(1, {{0.5f, 0.25f}}, 1)), "Ramp withoutSin  line  t 0.5 v 0.25");
    EXPECT_EQ(printText(ramp(2, {})), "Ramp all  step ");
    EXPECT_EQ(printText(ramp(3, {{1.0f / 3.0f, 1e-7f}})), "Ramp all  bezier  t 0.333333 v 1e-07");
}

TEST(RampData, NumbersWithoutAWordPrintInAWayThatDoesNotPassForAnother) {
    EXPECT_EQ(printText(ramp(4, {}, 7)), "Ramp all  4 ");
    EXPECT_EQ(printText(ramp(-1, {}, -1)), "Ramp all  -1 ");
    RampData read = defaultRamp();
    EXPECT_FALSE(scanText(printText(ramp(4, {})), read));
}

TEST(RampData, PrintedTextScansBack) {
    for (std::int32_t interpolation = 0; interpolation < 4; ++interpolation) {
        const RampData curve = ramp(interpolation, {{0.125f, 0.5f}, {0.75f, -2.0f}}, interpolation % 2);
        RampData read;
        ASSERT_TRUE(scanText(printText(curve), read));
        EXPECT_TRUE(sameFields(read, curve)) << interpolation;
    }
}

TEST(RampData, ScannedPointsAreAddedToThoseThere) {
    RampData read = defaultRamp();
    EXPECT_TRUE(scanText("Ramp withoutSin step t 0.5 v 0.25 t 1 v 0", read));
    EXPECT_TRUE(sameFields(read, ramp(2, {{0.0f, 1.0f}, {0.5f, 0.25f}, {1.0f, 0.0f}}, 1)));
}

TEST(RampData, TextMayEndAfterEachOfItsFirstWords) {
    RampData read = defaultRamp();
    EXPECT_TRUE(scanText("Ramp", read));
    EXPECT_TRUE(sameFields(read, defaultRamp()));
    EXPECT_TRUE(scanText("Ramp withoutSin ", read));
    EXPECT_EQ(read.mode, 1);
    EXPECT_TRUE(scanText("Ramp all bezier", read));
    EXPECT_TRUE(sameFields(read, ramp(3, defaultRamp().points)));
}

TEST(RampData, AnyOtherWordEndsTheScanning) {
    const char* const bad[] = {"",
                               "ramp all sin",
                               "Gradient",
                               "Ramp none sin",
                               "Ramp sin",
                               "Ramp all all",
                               "Ramp all Sin",
                               "Ramp all sin v 0.5 t 0.5",
                               "Ramp all sin t 0.5 t 0.5",
                               "Ramp all sin t half v 0.5",
                               "Ramp all sin t 0.5 v",
                               "Ramp all sin t 0.5 v nan",
                               "Ramp all sin t 0.5",
                               "Ramp all sin t"};
    for (const char* text : bad) {
        RampData read = defaultRamp();
        EXPECT_FALSE(scanText(text, read)) << text;
        EXPECT_EQ(read.points, defaultRamp().points) << text;
    }
}

TEST(RampData, WhatWasScannedBeforeABadWordStays) {
    RampData read = defaultRamp();
    EXPECT_FALSE(scanText("Ramp withoutSin line t 0.5 v 0.25 x", read));
    EXPECT_TRUE(sameFields(read, ramp(1, {{0.0f, 1.0f}, {0.5f, 0.25f}, {1.0f, 1.0f}}, 1)));
}

TEST(RampData, InterpolationPairsByRankAndTakesTheFirstKinds) {
    const RampData first = ramp(3, {{0.0f, 0.0f}, {0.5f, 1.0f}}, 1);
    const RampData second = ramp(1, {{0.4f, 1.0f}, {0.9f, 0.0f}, {1.0f, 0.5f}});
    const RampData mixed = interpolate(first, second, 0.25);
    EXPECT_EQ(mixed.mode, 1);
    EXPECT_EQ(mixed.interpolation, 3);
    ASSERT_EQ(mixed.points.size(), 3u);
    const float positions[] = {0.1f, 0.6f, 0.625f};
    const float values[] = {0.25f, 0.75f, 0.875f};
    std::size_t n = 0;
    for (const auto& [position, value] : mixed.points) {
        EXPECT_FLOAT_EQ(position, positions[n]);
        EXPECT_FLOAT_EQ(value, values[n]);
        ++n;
    }
    EXPECT_EQ(interpolate(second, first, 0.75).interpolation, 1);
    EXPECT_EQ(interpolate(second, first, 0.75).points.size(), 3u);
}

TEST(RampData, AgainstNoPointsTheOtherFadesToZero) {
    const PositionMap<float> points = {{0.25f, 0.5f}};
    const PositionMap<float> faded = {{0.25f, 0.125f}};
    EXPECT_TRUE(sameFields(interpolate(ramp(2, {}), ramp(1, points), 0.25), ramp(2, faded)));
    EXPECT_TRUE(sameFields(interpolate(ramp(1, points), ramp(2, {}), 0.75), ramp(1, faded)));
    EXPECT_TRUE(interpolate(ramp(1, {}), ramp(2, {}), 0.5).points.empty());
}

TEST(RampData, SameValueNeedsModeInterpolationCountPositionsAndNearValues) {
    const RampData curve = ramp(1, {{0.0f, 0.5f}, {1.0f, 0.25f}});
    EXPECT_TRUE(sameValue(curve, curve));
    EXPECT_TRUE(sameValue(curve, ramp(1, {{0.0f, 0.50009f}, {1.0f, 0.24991f}})));
    EXPECT_FALSE(sameValue(curve, ramp(1, {{0.0f, 0.50011f}, {1.0f, 0.25f}})));
    EXPECT_FALSE(sameValue(curve, ramp(2, curve.points)));
    EXPECT_FALSE(sameValue(curve, ramp(1, curve.points, 1)));
    EXPECT_FALSE(sameValue(curve, ramp(1, {{0.0f, 0.5f}})));
    EXPECT_FALSE(sameValue(curve, ramp(1, {{0.0f, 0.5f}, {std::nextafter(1.0f, 0.0f), 0.25f}})));
}

}  // namespace
}  // namespace Tessavoy
