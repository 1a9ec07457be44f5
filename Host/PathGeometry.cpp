#include "Host/PathGeometry.h"

#include <algorithm>
#include <cmath>

namespace TessavoyHost {
namespace {

// Gauss-Legendre nodes and weights for 8 points on -1..1 (Abramowitz and Stegun, table 25.4); the other half mirrors.
constexpr std::array<double, 4> nodes = {0.1834346424956498, 0.5255324099163290, 0.7966664774136267,
                                         0.9602898564975363};
constexpr std::array<double, 4> weights = {0.3626837833783620, 0.3137066458778873, 0.2223810344533745,
                                           0.1012285362903763};

constexpr double relativeTolerance = 1e-11;
constexpr int deepest = 40;
constexpr int newtonSteps = 60;

Point2 scaled(const Point2& point, double x, double y) {
    return {point.x * x, point.y * y};
}

Point2 sum(const Point2& a, const Point2& b) {
    return {a.x + b.x, a.y + b.y};
}

Point2 curvePoint(const std::array<Point2, 4>& p, double t) {
    const double s = 1 - t;
    const double b0 = s * s * s, b1 = 3 * s * s * t, b2 = 3 * s * t * t, b3 = t * t * t;
    return {b0 * p[0].x + b1 * p[1].x + b2 * p[2].x + b3 * p[3].x,
            b0 * p[0].y + b1 * p[1].y + b2 * p[2].y + b3 * p[3].y};
}

Point2 curveVelocity(const std::array<Point2, 4>& p, double t) {
    const double s = 1 - t;
    const double b0 = 3 * s * s, b1 = 6 * s * t, b2 = 3 * t * t;
    return {b0 * (p[1].x - p[0].x) + b1 * (p[2].x - p[1].x) + b2 * (p[3].x - p[2].x),
            b0 * (p[1].y - p[0].y) + b1 * (p[2].y - p[1].y) + b2 * (p[3].y - p[2].y)};
}

double polygonLength(const std::array<Point2, 4>& p) {
    double length = 0;
    for (std::size_t i = 1; i < p.size(); ++i)
        length += std::hypot(p[i].x - p[i - 1].x, p[i].y - p[i - 1].y);
    return length;
}

}  // namespace

CurveLength::CurveLength(const std::array<Point2, 4>& controls) : mControls(controls), mKnots{{0, 0}} {
    subdivide(0, 1, measure(0, 1), polygonLength(controls) * relativeTolerance, 0);
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

// Halves a stretch until its two halves measure as much as the whole; then notes their ends.
void CurveLength::subdivide(double from, double to, double whole, double tolerance, int depth) {
    const double middle = (from + to) / 2;
    const double left = measure(from, middle), right = measure(middle, to);
    if (std::abs(left + right - whole) <= tolerance || depth == deepest) {
        mKnots.push_back({middle, mKnots.back().length + left});
        mKnots.push_back({to, mKnots.back().length + right});
        return;
    }
    subdivide(from, middle, left, tolerance / 2, depth + 1);
    subdivide(middle, to, right, tolerance / 2, depth + 1);
}

// Newton's method on the length within one stretch, held between bounds that close in.
double CurveLength::parameterAt(double distance) const {
    const auto above = std::upper_bound(mKnots.begin(), mKnots.end(), distance,
                                        [](double value, const Knot& knot) { return value < knot.length; });
    if (above == mKnots.end())
        return 1;
    if (above == mKnots.begin())
        return 0;
    const Knot start = *(above - 1);
    double low = start.t, high = above->t;
    double t = low + (high - low) * (distance - start.length) / (above->length - start.length);
    for (int step = 0; step < newtonSteps; ++step) {
        const double excess = start.length + measure(start.t, t) - distance;
        if (std::abs(excess) <= length() * relativeTolerance)
            break;
        (excess > 0 ? high : low) = t;
        const double slope = speed(t);
        const double next = slope > 0 ? t - excess / slope : low;
        t = next > low && next < high ? next : (low + high) / 2;
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
