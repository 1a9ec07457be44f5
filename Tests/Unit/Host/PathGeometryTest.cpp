#include "Host/PathGeometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace TessavoyHost {
namespace {

constexpr double accuracy = 1e-9;

using Controls = std::array<Point2, 4>;

// A reference that trusts no quadrature: a piece of a cubic curve is at least as long as its chord and at most as long
// as its control polygon. Pieces are halved until the two agree, in extended precision and relative to the curve's
// first point.
struct WidePoint {
    long double x, y;
};
using WideControls = std::array<WidePoint, 4>;

struct Bounds {
    long double lower = 0, upper = 0;

    long double middle() const { return (lower + upper) / 2; }
};

WideControls relativeToTheFirst(const Controls& p) {
    WideControls wide;
    std::transform(p.begin(), p.end(), wide.begin(), [&](const Point2& point) {
        return WidePoint{static_cast<long double>(point.x) - p[0].x, static_cast<long double>(point.y) - p[0].y};
    });
    return wide;
}

long double span(const WidePoint& a, const WidePoint& b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

long double polygonLength(const WideControls& p) {
    return span(p[0], p[1]) + span(p[1], p[2]) + span(p[2], p[3]);
}

// The two parts of the curve, by de Casteljau.
std::array<WideControls, 2> splitAt(const WideControls& p, long double t) {
    const auto mix = [t](const WidePoint& a, const WidePoint& b) {
        return WidePoint{a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
    };
    const WidePoint a = mix(p[0], p[1]), b = mix(p[1], p[2]), c = mix(p[2], p[3]);
    const WidePoint ab = mix(a, b), bc = mix(b, c), middle = mix(ab, bc);
    return {WideControls{p[0], a, ab, middle}, WideControls{middle, bc, c, p[3]}};
}

// The tolerance falls with the width of a piece, the gap of a smooth one with the cube; at a standstill both bounds
// fall with the square and the depth ends it.
void addBounds(const WideControls& p, long double tolerance, int depth, Bounds& bounds) {
    const long double chord = span(p[0], p[3]), polygon = polygonLength(p);
    if (polygon - chord <= tolerance || depth == 0) {
        bounds.lower += chord;
        bounds.upper += polygon;
        return;
    }
    for (const WideControls& half : splitAt(p, 0.5L))
        addBounds(half, tolerance / 2, depth - 1, bounds);
}

// A curve cut at rising parameters: the exact points there and the lengths up to them, then the whole length.
struct Reference {
    std::vector<WidePoint> points;
    std::vector<long double> distances;
    Bounds whole;
};

Reference referenceOf(const Controls& controls, const std::vector<double>& parameters) {
    Reference reference;
    WideControls rest = relativeToTheFirst(controls);
    const long double tolerance = polygonLength(rest) * 1e-10L;
    long double before = 0;
    for (const double t : parameters) {
        const auto [piece, after] = splitAt(rest, (t - before) / (1 - before));
        addBounds(piece, tolerance * (t - before), 40, reference.whole);
        reference.points.push_back(piece[3]);
        reference.distances.push_back(reference.whole.middle());
        rest = after;
        before = t;
    }
    addBounds(rest, tolerance * (1 - before), 40, reference.whole);
    return reference;
}

struct NamedCurve {
    const char* name;
    Controls controls;
};

constexpr double arm = 0.5522847498;
constexpr Controls quarterCircle = {{{100, 0}, {100, 100 * arm}, {100 * arm, 100}, {0, 100}}};
constexpr Controls cusp = {{{0, 0}, {100, 100}, {0, 100}, {100, 0}}};

Controls moved(Controls controls, double by) {
    for (Point2& point : controls)
        point = {point.x + by, point.y + by};
    return controls;
}

Controls enlarged(Controls controls, double factor) {
    for (Point2& point : controls)
        point = {point.x * factor, point.y * factor};
    return controls;
}

// A cusp has a standstill at one half; the near ones pass by theirs at about the distance in their name.
const std::vector<NamedCurve> curves = {
    {"quarter circle", quarterCircle},
    {"loop", {{{0, 0}, {300, 200}, {-200, 200}, {100, 0}}}},
    {"cusp", cusp},
    {"near cusp, 1e-2", {{{0, 0}, {101, 100}, {-1, 100}, {100, 0}}}},
    {"near cusp, 1e-5", {{{0, 0}, {100.001, 100}, {-0.001, 100}, {100, 0}}}},
    {"near cusp, 1e-9", {{{0, 0}, {100 + 1e-7, 100}, {-1e-7, 100}, {100, 0}}}},
    {"cusp at two fifths", {{{0, 0}, {90, 60}, {-15, 100}, {80, -30}}}},
    {"straight", {{{10, 20}, {10, 20}, {310, 420}, {310, 420}}}},
    {"straight with even handles", {{{0, 0}, {30, 40}, {60, 80}, {90, 120}}}},
    {"there and back on a line", {{{0, 0}, {100, 50}, {-50, -25}, {70, 35}}}},
    {"out and home on a line", {{{0, 0}, {100, 50}, {100, 50}, {0, 0}}}},
    {"ends that coincide", {{{5, 5}, {105, 55}, {-95, 25}, {5, 5}}}},
    {"three points that coincide at the start", {{{0, 0}, {0, 0}, {0, 0}, {100, 50}}}},
    {"three points that coincide at the end", {{{0, 0}, {100, 50}, {100, 50}, {100, 50}}}},
    {"handle of almost no length", {{{0, 0}, {1e-9, 0}, {1e-9, 1e-9}, {100, 100}}}},
    {"handles that coincide", {{{0, 0}, {50, 90}, {50, 90}, {100, 0}}}},
    {"tangents a thousand times the chord", {{{0, 0}, {1e5, 1e4}, {-1e5, 1e4}, {100, 0}}}},
    {"as large as a layer can be", {{{-32768, -32768}, {32767, 32767}, {-32768, 32767}, {32767, -32768}}}},
    {"almost on a line", {{{-50, 0.001}, {90, 0.002}, {-70, -0.003}, {60, 0.001}}}},
    {"of 1e30", enlarged(quarterCircle, 1e28)},
    {"of 1e-30", enlarged(cusp, 1e-32)},
    {"a billion pixels off", moved(quarterCircle, 1e9)},
    // A quadrature that compares the whole with its two halves finds them equal by chance here and is 1e-3 to 1e-2 off.
    {"chance agreement of halves",
     {{{-5.6458824107152168, 94.550314260059736},
       {-34.42460442538173, 12.346058261282394},
       {11.866280421762482, 30.356088079164252},
       {-0.31082732939294644, 28.668155746306184}}}},
    {"chance agreement of halves, flat",
     {{{-17.89147737231994, -0.79995743754933546},
       {-62.297082112555792, -0.82378504067122393},
       {29.479827155549899, -0.76754578659621586},
       {-18.093587842505713, 0.19294883207488006}}}},
};

TEST(HostCurveLength, EveryLengthAndPointIsWithinABillionthOfTheCurve) {
    const std::vector<double> parameters = {0.0625, 0.1, 0.25, 0.375, 0.4, 0.5, 0.7, 0.75, 0.93, 0.999};
    for (const auto& [name, controls] : curves) {
        SCOPED_TRACE(name);
        const Reference reference = referenceOf(controls, parameters);
        const double whole = static_cast<double>(reference.whole.middle());
        ASSERT_LE(reference.whole.upper - reference.whole.lower, whole * accuracy / 2);
        const CurveLength curve(controls);
        EXPECT_NEAR(curve.length(), whole, whole * accuracy);
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            const Point2 point = curve.pointAt(static_cast<double>(reference.distances[i]));
            const WidePoint off = {point.x - controls[0].x - reference.points[i].x,
                                   point.y - controls[0].y - reference.points[i].y};
            EXPECT_LE(std::hypot(off.x, off.y), whole * accuracy) << "t " << parameters[i];
        }
    }
}

constexpr Controls straight = {{{10, 20}, {10, 20}, {310, 420}, {310, 420}}};

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

// Within the known error of the approximation the quarter circle is as long as a quarter of the circle.
TEST(HostCurveLength, MeasuresAQuarterCircleAsOne) {
    EXPECT_NEAR(CurveLength(quarterCircle).length(), 100 * M_PI / 2, 100 * M_PI / 2 * 3e-4);
}

// x goes to its first turning point, back to the second and on to 70. The speed, 30 (52 t^2 - 50 t + 10), is zero
// there.
TEST(HostCurveLength, MeasuresALineThatTurnsBackByItsTurningPoints) {
    const Controls line = {{{0, 0}, {100, 0}, {-50, 0}, {70, 0}}};
    const auto x = [](double t) { return 30 * (52 * t * t * t / 3 - 25 * t * t + 10 * t); };
    const double root = std::sqrt(50.0 * 50 - 4 * 52 * 10), first = (50 - root) / 104, second = (50 + root) / 104;
    ASSERT_NEAR(x(1), 70, 1e-12);
    const double expected = x(first) + (x(first) - x(second)) + (70 - x(second));
    const CurveLength curve(line);
    EXPECT_NEAR(curve.length(), expected, expected * accuracy);
    EXPECT_NEAR(curve.pointAt(x(first)).x, x(first), expected * accuracy);
    EXPECT_NEAR(curve.pointAt(2 * x(first) - x(second)).x, x(second), expected * accuracy);
}

// Powers of two change no digit.
TEST(HostCurveLength, IsAsExactForHugeAndTinyCurves) {
    for (const Controls& controls : {quarterCircle, cusp}) {
        for (const int power : {900, -900}) {
            const double factor = std::ldexp(1.0, power);
            const CurveLength usual(controls), scaled(enlarged(controls, factor));
            EXPECT_EQ(scaled.length(), usual.length() * factor);
            EXPECT_EQ(scaled.pointAt(scaled.length() / 4).x, usual.pointAt(usual.length() / 4).x * factor);
        }
    }
}

// There is no length to give then, but the work stays bounded.
TEST(HostCurveLength, EndsForCoordinatesThatItCannotMeasure) {
    constexpr double most = std::numeric_limits<double>::max();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double wrong : {most, -most, nan, std::numeric_limits<double>::infinity()}) {
        const CurveLength curve(Controls{{{-wrong, 0}, {wrong, 1}, {-wrong, wrong}, {wrong, 0}}});
        EXPECT_FALSE(std::isfinite(curve.length())) << wrong;
        curve.pointAt(1);
    }
}

TEST(HostCurveLength, HoldsDistancesToTheCurve) {
    const CurveLength curve(quarterCircle);
    EXPECT_EQ(curve.pointAt(-5).x, 100);
    EXPECT_EQ(curve.pointAt(1e9).y, 100);
    EXPECT_NEAR(curve.pointAt(curve.length()).x, 0, 1e-6);
}

TEST(HostCurveLength, BeginsAndEndsExactlyAtItsEnds) {
    for (const auto& [name, controls] : curves) {
        const CurveLength curve(controls);
        EXPECT_EQ(curve.pointAt(0).x, controls[0].x) << name;
        EXPECT_EQ(curve.pointAt(0).y, controls[0].y) << name;
        EXPECT_EQ(curve.pointAt(curve.length()).x, controls[3].x) << name;
        EXPECT_EQ(curve.pointAt(curve.length()).y, controls[3].y) << name;
    }
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
