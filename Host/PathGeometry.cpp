#include "Host/PathGeometry.h"

#include <algorithm>
#include <cmath>

namespace TessavoyHost {
namespace {

using Complex = std::complex<double>;

// Gauss-Legendre nodes and weights for 8 points on -1..1 (Abramowitz and Stegun, table 25.4); the other half mirrors.
constexpr std::array<double, 4> nodes = {0.1834346424956498, 0.5255324099163290, 0.7966664774136267,
                                         0.9602898564975363};
constexpr std::array<double, 4> weights = {0.3626837833783620, 0.3137066458778873, 0.2223810344533745,
                                           0.1012285362903763};

// A piece of the curve this deep, 2^-30 of its parameters wide, that still has a standstill near is shorter than 1e-16
// of the curve.
constexpr int deepest = 30;
constexpr double distanceTolerance = 1e-12;
constexpr int newtonSteps = 20;

Point2 scaled(const Point2& point, double x, double y) {
    return {point.x * x, point.y * y};
}

Point2 sum(const Point2& a, const Point2& b) {
    return {a.x + b.x, a.y + b.y};
}

Point2 difference(const Point2& a, const Point2& b) {
    return {a.x - b.x, a.y - b.y};
}

// Summed from the nearer end, so that far off the origin no more than the result is rounded.
Point2 curvePoint(const std::array<Point2, 4>& p, double t) {
    const double s = 1 - t;
    const std::array<double, 4> weight = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
    const Point2& end = t < 0.5 ? p[0] : p[3];
    Point2 fromEnd;
    for (std::size_t i = 0; i < p.size(); ++i)
        fromEnd = sum(fromEnd, scaled(difference(p[i], end), weight[i], weight[i]));
    return sum(end, fromEnd);
}

Point2 curveVelocity(const std::array<Point2, 4>& p, double t) {
    const double s = 1 - t;
    const double b0 = 3 * s * s, b1 = 6 * s * t, b2 = 3 * t * t;
    return {b0 * (p[1].x - p[0].x) + b1 * (p[2].x - p[1].x) + b2 * (p[3].x - p[2].x),
            b0 * (p[1].y - p[0].y) + b1 * (p[2].y - p[1].y) + b2 * (p[3].y - p[2].y)};
}

// The differences of the control points as complex numbers, the largest part being 1.
std::array<Complex, 3> unitDifferences(const std::array<Point2, 4>& p) {
    std::array<Complex, 3> differences;
    double largest = 0;
    for (std::size_t i = 0; i < differences.size(); ++i) {
        const Point2 step = difference(p[i + 1], p[i]);
        differences[i] = {step.x, step.y};
        largest = std::max({largest, std::abs(step.x), std::abs(step.y)});
    }
    for (Complex& step : differences)
        step = largest > 0 ? step / largest : step;
    return differences;
}

// Where the velocity, x' + iy', is 0: two complex parameters, those that don't exist being not finite.
std::array<Complex, 2> standstills(const std::array<Point2, 4>& controls) {
    const auto [d0, d1, d2] = unitDifferences(controls);
    const Complex a = d0 - 2.0 * d1 + d2, halfB = d1 - d0;
    Complex root = std::sqrt(halfB * halfB - a * d0);
    // The sign that doesn't cancel.
    if (std::real(std::conj(halfB) * root) < 0)
        root = -root;
    const Complex q = -(halfB + root);
    return {q / a, d0 / q};
}

bool isNear(const Complex& standstill, double from, double to) {
    return std::abs(standstill - from) + std::abs(standstill - to) < 4 * (to - from);
}

}  // namespace

CurveLength::CurveLength(const std::array<Point2, 4>& controls) : mControls(controls), mKnots{{0, 0}} {
    measurePieces(0, 1, standstills(controls), 0);
}

double CurveLength::speed(double t) const {
    const Point2 velocity = curveVelocity(mControls, t);
    return std::hypot(velocity.x, velocity.y);
}

double CurveLength::measure(double from, double to) const {
    const double middle = (from + to) / 2, half = (to - from) / 2;
    double total = 0;
    for (std::size_t i = 0; i < nodes.size(); ++i)
        total += weights[i] * (speed(middle - half * nodes[i]) + speed(middle + half * nodes[i]));
    return total * half;
}

// The speed is proportional to |t - r| |t - s|, r and s being the standstills, and so it is analytic except there and
// at their conjugates. A piece is halved until these lie outside the ellipse whose foci are the piece's ends and whose
// long axis is 4 times its width. The Chebyshev coefficients of the speed on the piece then fall as 7.8^-k, and a rule
// that is exact to the 15th degree errs by less than 1e-13 of the piece's length.
void CurveLength::measurePieces(double from, double to, const std::array<Complex, 2>& standstills, int depth) {
    const bool smooth = !isNear(standstills[0], from, to) && !isNear(standstills[1], from, to);
    if (smooth || depth == deepest) {
        mKnots.push_back({to, mKnots.back().length + measure(from, to)});
        return;
    }
    const double middle = (from + to) / 2;
    measurePieces(from, middle, standstills, depth + 1);
    measurePieces(middle, to, standstills, depth + 1);
}

// Newton's method on the length within one piece, where the speed changes little.
double CurveLength::parameterAt(double distance) const {
    const auto above = std::upper_bound(mKnots.begin(), mKnots.end(), distance,
                                        [](double value, const Knot& knot) { return value < knot.length; });
    if (above == mKnots.end())
        return 1;
    if (above == mKnots.begin())
        return 0;
    const Knot start = *(above - 1);
    double t = start.t + (above->t - start.t) * (distance - start.length) / (above->length - start.length);
    for (int step = 0; step < newtonSteps; ++step) {
        const double excess = start.length + measure(start.t, t) - distance;
        if (std::abs(excess) <= length() * distanceTolerance)
            break;
        t = std::clamp(t - excess / speed(t), start.t, above->t);
    }
    return t;
}

Point2 CurveLength::pointAt(double distance) const {
    return curvePoint(mControls, parameterAt(std::clamp(distance, 0.0, length())));
}

// A curve stands still at an end without a tangent; the direction a little inside is the one it comes to.
Point2 CurveLength::directionAt(double distance) const {
    const double t = parameterAt(std::clamp(distance, 0.0, length()));
    for (const double inside : {t, t + (0.5 - t) * 1e-6}) {
        const Point2 velocity = curveVelocity(mControls, inside);
        const double size = std::hypot(velocity.x, velocity.y);
        if (size > 0)
            return scaled(velocity, 1 / size, 1 / size);
    }
    return {};
}

PathGeometry::PathGeometry(const Mask& mask, const Rational& downsampleX, const Rational& downsampleY)
    : mClosed(mask.closed) {
    const double x = downsampleX.value(), y = downsampleY.value();
    for (const MaskVertex& vertex : mask.vertices)
        mVertices.push_back({scaled(vertex.point, x, y), scaled(vertex.in, x, y), scaled(vertex.out, x, y)});
}

int PathGeometry::segmentCount() const {
    const int vertices = static_cast<int>(mVertices.size());
    return mClosed ? vertices : std::max(0, vertices - 1);
}

bool PathGeometry::hasVertex(int index) const {
    return !mVertices.empty() && index >= 0 && index <= segmentCount();
}

const MaskVertex& PathGeometry::vertex(int index) const {
    return mVertices.at(static_cast<std::size_t>(index) % mVertices.size());
}

std::array<Point2, 4> PathGeometry::controls(int segment) const {
    const MaskVertex& from = vertex(segment);
    const MaskVertex& to = vertex(segment + 1);
    return {from.point, sum(from.point, from.out), sum(to.point, to.in), to.point};
}

}  // namespace TessavoyHost
