#include "Tests/Support/ReferenceOutline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Tessavoy {

namespace {

using Plane = ReferencePlane;

constexpr Plane Up(0.0, -1.0);
constexpr Plane Clockwise(0.0, 1.0);
constexpr Plane CounterClockwise(0.0, -1.0);

/// A point with its neighbours on a closed outline.
template <class Do>
void forEachCorner(const ReferenceOutline& outline, Do what) {
    const std::size_t count = outline.size();
    for (std::size_t n = 0; n < count; ++n) {
        what(outline[(n + count - 1) % count], outline[n], outline[(n + 1) % count]);
    }
}

/// The middle of a side, moved towards the centre and no further.
Plane linkPoint(Plane from, Plane to, double offset) {
    const Plane middle = (from + to) / 2.0;
    const double distance = std::abs(middle);
    return offset >= distance ? Plane() : middle * ((distance - offset) / distance);
}

ReferenceOutline unscaled(const ReferenceShape& shape) {
    ReferenceOutline result;
    const auto corner = [&](int n) { return Up * turnBy(360.0 * n / shape.corners + shape.angle); };
    const Plane half = Clockwise * (std::max(shape.shelf, 0.0) / 2.0);
    for (int n = 0; n < shape.corners; ++n) {
        const Plane here = corner(n);
        result.push_back(here - here * half);
        if (shape.shelf > 0.0) {
            result.push_back(here + here * half);
        }
        if (shape.link != 0.0) {
            const Plane next = corner(n + 1);
            result.push_back(linkPoint(here + here * half, next - next * half, shape.link));
        }
    }
    return result;
}

/// Puts an arc in the place of every corner. Each begins and ends no further away than half of its shorter side.
ReferenceOutline rounded(const ReferenceOutline& outline, double radius, int dots) {
    ReferenceOutline result;
    forEachCorner(outline, [&](Plane before, Plane corner, Plane after) {
        const Plane in = (corner - before) / std::abs(corner - before);
        const Plane out = (after - corner) / std::abs(after - corner);
        const double turned = std::arg(out / in);  // positive where the outline turns clockwise
        const double steepness = std::tan(std::abs(turned) / 2.0);
        const double reach = std::min(std::abs(corner - before), std::abs(after - corner)) / 2.0;
        const double arm = std::min(radius * steepness, reach);
        const Plane start = corner - in * arm;
        const Plane centre = start + in * Clockwise * std::copysign(arm / steepness, turned);
        for (int dot = 0; dot <= dots + 1; ++dot) {
            result.push_back(centre + (start - centre) * std::polar(1.0, turned * dot / (dots + 1)));
        }
    });
    // arcs that reach the middle of a side meet there
    const auto same = [](Plane a, Plane b) { return std::abs(a - b) < 1e-9; };
    result.erase(std::unique(result.begin(), result.end(), same), result.end());
    if (same(result.front(), result.back())) {
        result.pop_back();
    }
    return result;
}

}  // namespace

ReferencePlane turnBy(double degrees) {
    return std::polar(1.0, degrees * std::numbers::pi / 180.0);
}

ReferenceOutline outlineOf(const ReferenceShape& shape) {
    ReferenceOutline outline = unscaled(shape);
    for (Plane& point : outline) {
        point = {point.real() * shape.scaleX, point.imag() * shape.scaleY};
    }
    return shape.rounding > 0.0 ? rounded(outline, shape.rounding, shape.roundingDots) : outline;
}

ReferenceOutline grown(const ReferenceOutline& outline, double distance) {
    ReferenceOutline result;
    forEachCorner(outline, [&](Plane before, Plane corner, Plane after) {
        const Plane first = CounterClockwise * (corner - before) / std::abs(corner - before);
        const Plane second = CounterClockwise * (after - corner) / std::abs(after - corner);
        // the mitre runs along the sum of both normals, and reaches `distance` along each
        const double along = 1.0 + (first * std::conj(second)).real();
        result.push_back(corner + (first + second) * (distance / along));
    });
    return result;
}

}  // namespace Tessavoy
