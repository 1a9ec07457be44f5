#include "Host/PathGeometry.h"

#include <cmath>

#include <gtest/gtest.h>

namespace TessavoyHost {
namespace {

constexpr double accuracy = 1e-9;

using Controls = std::array<Point2, 4>;

Point2 curveAt(const Controls& p, double t) {
    const auto mix = [t](const Point2& a, const Point2& b) {
        return Point2{a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
    };
    const Point2 a = mix(p[0], p[1]), b = mix(p[1], p[2]), c = mix(p[2], p[3]);
    return mix(mix(a, b), mix(b, c));
}

// Chords of de Casteljau points, extrapolated twice (Richardson): the chords' error falls with the square of their
// number.
double chordLength(const Controls& p, double end, int chords) {
    double length = 0;
    Point2 before = p[0];
    for (int i = 1; i <= chords; ++i) {
        const Point2 next = curveAt(p, end * i / chords);
        length += std::hypot(next.x - before.x, next.y - before.y);
        before = next;
    }
    return length;
}

double referenceLength(const Controls& p, double end = 1) {
    const double a = chordLength(p, end, 4000), b = chordLength(p, end, 8000), c = chordLength(p, end, 16000);
    const double ab = (4 * b - a) / 3, bc = (4 * c - b) / 3;
    return (16 * bc - ab) / 15;
}

constexpr Controls straight = {{{10, 20}, {10, 20}, {310, 420}, {310, 420}}};
constexpr double arm = 0.5522847498;
constexpr Controls quarterCircle = {{{100, 0}, {100, 100 * arm}, {100 * arm, 100}, {0, 100}}};
constexpr Controls loop = {{{0, 0}, {300, 200}, {-200, 200}, {100, 0}}};
constexpr Controls cusp = {{{0, 0}, {100, 100}, {0, 100}, {100, 0}}};

TEST(HostCurveLength, MeasuresAStraightLineByItsEnds) {
    const CurveLength curve(straight);
    EXPECT_NEAR(curve.length(), 500, 500 * accuracy);
    const Point2 point = curve.pointAt(125);
    EXPECT_NEAR(point.x, 10 + 75, 500 * accuracy);
    EXPECT_NEAR(point.y, 20 + 100, 500 * accuracy);
    for (const double distance : {0.0, 125.0, 500.0}) {
        EXPECT_NEAR(curve.directionAt(distance).x, 0.6, accuracy);
        EXPECT_NEAR(curve.directionAt(distance).y, 0.8, accuracy);
    }
}

// A parabola has a closed arc length. The quadratic (0, 0), (1, 0), (2, 2) is y = x^2 / 2 for x from 0 to 2:
// (x sqrt(1 + x^2) + asinh x) / 2.
TEST(HostCurveLength, MeasuresAParabolaByItsClosedForm) {
    const Controls cubic = {{{0, 0}, {2.0 / 3, 0}, {4.0 / 3, 2.0 / 3}, {2, 2}}};
    const double expected = (2 * std::sqrt(5.0) + std::asinh(2.0)) / 2;
    EXPECT_NEAR(CurveLength(cubic).length(), expected, expected * accuracy);
}

TEST(HostCurveLength, AgreesWithExtrapolatedChords) {
    for (const Controls& controls : {quarterCircle, loop}) {
        const double expected = referenceLength(controls);
        EXPECT_NEAR(CurveLength(controls).length(), expected, expected * accuracy);
    }
    // Within the known error of the approximation the quarter circle is as long as a quarter of the circle.
    EXPECT_NEAR(CurveLength(quarterCircle).length(), 100 * M_PI / 2, 100 * M_PI / 2 * 3e-4);
}

// At a cusp the speed is no smooth function of the parameter. By symmetry both halves are the same, and each is smooth.
TEST(HostCurveLength, MeasuresAcrossACusp) {
    const double half = referenceLength(cusp, 0.5);
    EXPECT_NEAR(CurveLength(cusp).length(), 2 * half, 2 * half * accuracy);
}

TEST(HostCurveLength, FindsThePointAtADistance) {
    for (const Controls& controls : {quarterCircle, loop, cusp}) {
        const CurveLength curve(controls);
        for (const double t : {0.1, 0.25, 0.4, 0.7, 0.93}) {
            const double before = t <= 0.5 ? referenceLength(controls, t) : 0;
            const Controls reversed = {{controls[3], controls[2], controls[1], controls[0]}};
            const double distance = t <= 0.5 ? before : curve.length() - referenceLength(reversed, 1 - t);
            const Point2 point = curve.pointAt(distance), expected = curveAt(controls, t);
            EXPECT_NEAR(point.x, expected.x, curve.length() * 10 * accuracy) << "t " << t;
            EXPECT_NEAR(point.y, expected.y, curve.length() * 10 * accuracy) << "t " << t;
        }
    }
}

TEST(HostCurveLength, HoldsDistancesToTheCurve) {
    const CurveLength curve(quarterCircle);
    EXPECT_EQ(curve.pointAt(-5).x, 100);
    EXPECT_EQ(curve.pointAt(1e9).y, 100);
    EXPECT_NEAR(curve.pointAt(curve.length()).x, 0, 1e-6);
}

TEST(HostCurveLength, OfAPointIsZero) {
    const CurveLength curve(Controls{{{3, 4}, {3, 4}, {3, 4}, {3, 4}}});
    EXPECT_EQ(curve.length(), 0);
    EXPECT_EQ(curve.pointAt(0).x, 3);
    EXPECT_EQ(curve.directionAt(0).x, 0);
}

Mask triangle(bool closed) {
    return {"Triangle", closed, {{{0, 0}, {0, 0}, {10, 0}}, {{100, 0}, {-10, 0}, {0, 0}}, {{100, 80}, {0, 0}, {0, 0}}}};
}

TEST(HostPathGeometry, HasASegmentForEachVertexOnlyWhenClosed) {
    EXPECT_EQ(PathGeometry(triangle(true), {1, 1}, {1, 1}).segmentCount(), 3);
    EXPECT_EQ(PathGeometry(triangle(false), {1, 1}, {1, 1}).segmentCount(), 2);
    EXPECT_EQ(PathGeometry(Mask{"Empty", true, {}}, {1, 1}, {1, 1}).segmentCount(), 0);
    EXPECT_EQ(PathGeometry(Mask{"Empty", false, {}}, {1, 1}, {1, 1}).segmentCount(), 0);
    EXPECT_EQ(PathGeometry(Mask{"One", false, {{{1, 1}, {}, {}}}}, {1, 1}, {1, 1}).segmentCount(), 0);
}

TEST(HostPathGeometry, EndsAClosedPathAtItsFirstVertex) {
    const PathGeometry closed(triangle(true), {1, 1}, {1, 1});
    EXPECT_EQ(closed.controls(2)[0].y, 80);
    EXPECT_EQ(closed.controls(2)[3].y, 0);
    EXPECT_TRUE(closed.hasVertex(3));
    EXPECT_FALSE(closed.hasVertex(4));
    EXPECT_FALSE(PathGeometry(triangle(false), {1, 1}, {1, 1}).hasVertex(3));
}

TEST(HostPathGeometry, ScalesPointsAndTangentsByEachFactor) {
    const PathGeometry half(triangle(false), {1, 2}, {1, 4});
    const auto controls = half.controls(0);
    EXPECT_EQ(controls[1].x, 5);
    EXPECT_EQ(controls[2].x, 45);
    EXPECT_EQ(half.controls(1)[3].y, 20);
}

}  // namespace
}  // namespace TessavoyHost
