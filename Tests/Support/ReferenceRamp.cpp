#include "Tests/Support/ReferenceRamp.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "Tests/Support/FlatBytes.h"

namespace Tessavoy {

namespace {

double mixed(double from, double to, double share) {
    return from + (to - from) * share;
}

/// De Casteljau's construction.
double bezierOf(double p0, double p1, double p2, double p3, double v) {
    const double a = mixed(p0, p1, v), b = mixed(p1, p2, v), c = mixed(p2, p3, v);
    return mixed(mixed(a, b, v), mixed(b, c, v), v);
}

double distance(RampKnot a, RampKnot b) {
    return std::hypot(a.position - b.position, a.value - b.value);
}

/// The curve from knot n to the next. The control points lie 0.3 of the way between the two, along the line from one
/// neighbour to the other, in proportion to the lengths on both sides.
double curveAt(const std::vector<RampKnot>& knots, std::size_t n, double place) {
    const RampKnot p1 = knots[n], p2 = knots[n + 1];
    const RampKnot p0 = n == 0 ? p1 : knots[n - 1], p3 = n + 2 == knots.size() ? p2 : knots[n + 2];
    const double length = distance(p1, p2);
    const double pull1 = 0.3 * length / (distance(p0, p1) + length);
    const double pull2 = 0.3 * length / (distance(p2, p3) + length);
    const RampKnot c1 = {p1.position + (p2.position - p0.position) * pull1, p1.value + (p2.value - p0.value) * pull1};
    const RampKnot c2 = {p2.position - (p3.position - p1.position) * pull2, p2.value - (p3.value - p1.value) * pull2};
    double low = 0.0, high = 1.0;
    for (int halving = 0; halving < 60; ++halving) {
        const double v = (low + high) / 2.0;
        const bool beyond = bezierOf(p1.position, c1.position, c2.position, p2.position, v) > place;
        (beyond ? high : low) = v;
    }
    return bezierOf(p1.value, c1.value, c2.value, p2.value, low);
}

double valueBetween(const ReferenceRamp& ramp, std::size_t n, double place) {
    const RampKnot from = ramp.knots[n], to = ramp.knots[n + 1];
    const double part = (place - from.position) / (to.position - from.position);
    const double half = std::sin(part * std::numbers::pi / 2.0);
    switch (ramp.kind) {
        case CurveKind::Sin:
            return mixed(from.value, to.value, half * half);
        case CurveKind::Line:
            return mixed(from.value, to.value, part);
        case CurveKind::Step:
            return from.value;
        case CurveKind::Bezier:
            return curveAt(ramp.knots, n, place);
    }
    return 1.0;
}

}  // namespace

std::vector<std::byte> flatRamp(const ReferenceRamp& ramp) {
    std::vector<std::byte> bytes;
    appendNumber(bytes, static_cast<std::int32_t>(ramp.mode));
    appendNumber(bytes, static_cast<std::int32_t>(ramp.kind));
    appendNumber(bytes, static_cast<std::int32_t>(ramp.knots.size()));
    for (const RampKnot& knot : ramp.knots) {
        appendNumber(bytes, static_cast<float>(knot.position));
        appendNumber(bytes, static_cast<float>(knot.value));
    }
    return bytes;
}

double rampAt(const ReferenceRamp& ramp, double place) {
    const auto& knots = ramp.knots;
    if (knots.empty()) {
        return 1.0;
    }
    const auto after =
        std::find_if(knots.begin(), knots.end(), [&](const RampKnot& knot) { return knot.position > place; });
    if (after == knots.begin() || after == knots.end()) {
        return after == knots.begin() ? knots.front().value : knots.back().value;
    }
    return std::clamp(valueBetween(ramp, static_cast<std::size_t>(after - knots.begin()) - 1, place), 0.0, 1.0);
}

}  // namespace Tessavoy
