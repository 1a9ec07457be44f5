#include "Source/RenderGrid/Outline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Tessavoy {

namespace {

/// Two points of an outline closer than this, as a fraction of their distance from the origin, are one point.
constexpr double coincidence = 1e-12;

OutlineVector operator+(const OutlineVector& a, const OutlineVector& b) {
    return {a.x + b.x, a.y + b.y};
}

OutlineVector operator-(const OutlineVector& a, const OutlineVector& b) {
    return {a.x - b.x, a.y - b.y};
}

OutlineVector operator*(const OutlineVector& a, double factor) {
    return {a.x * factor, a.y * factor};
}

double dot(const OutlineVector& a, const OutlineVector& b) {
    return a.x * b.x + a.y * b.y;
}

double cross(const OutlineVector& a, const OutlineVector& b) {
    return a.x * b.y - a.y * b.x;
}

double length(const OutlineVector& a) {
    return std::sqrt(dot(a, a));
}

OutlineVector flat(const OutlinePoint& point) {
    return {point.x, point.y};
}

/// The normal of an edge with this unit direction.
OutlineVector normalOf(const OutlineVector& direction) {
    return {direction.y, -direction.x};
}

OutlineVector unitNormal(const OutlineVector& from, const OutlineVector& to) {
    return normalOf((to - from) * (1.0 / length(to - from)));
}

/// Where the line through p along u meets the line through q along v. Parallel lines give infinities or NaN.
OutlineVector intersection(const OutlineVector& p, const OutlineVector& u, const OutlineVector& q,
                           const OutlineVector& v) {
    return p + u * (cross(q - p, v) / cross(u, v));
}

/// The direction of an edge, and whether its ends are one point but for rounding.
struct Edge {
    Edge(const OutlinePoint& from, const OutlinePoint& to) {
        const OutlineVector difference = flat(to) - flat(from);
        const double squared = dot(difference, difference);
        const double size = dot(flat(from), flat(from)) + dot(flat(to), flat(to));
        hasDirection = !(squared <= coincidence * coincidence * size);
        direction = difference * (1.0 / std::sqrt(squared));
    }
    OutlineVector direction{};
    bool hasDirection = false;
};

}  // namespace

OutlineVector mitreOffset(const OutlineCorner& corner) {
    const Edge before(corner.before, corner.at);
    const Edge after(corner.at, corner.behind);
    const OutlineVector normalBefore = normalOf(before.direction);
    const OutlineVector normalAfter = normalOf(after.direction);
    if (before.hasDirection != after.hasDirection) {
        return before.hasDirection ? normalBefore : normalAfter;
    }
    return intersection(normalBefore, before.direction, normalAfter, after.direction);
}

namespace {

/// Writes one vertex, and its slot when feathered.
int put(const OutlinePoint& position, const OutlinePen& pen, OutlineVertex* out) {
    out[0] = {position, pen.colour};
    if (!pen.feathered) {
        return 1;
    }
    out[1] = {position, {pen.colour.r, pen.colour.g, pen.colour.b, 0.0F}};
    return 2;
}

OutlinePoint shifted(const OutlinePoint& point, const OutlineVector& by) {
    return {point.x + by.x, point.y + by.y, point.z};
}

}  // namespace

int EmitMitredVertex(const OutlineCorner& corner, const OutlinePen& pen, MitreSide side, OutlineVertex* out) {
    if (pen.width == 0.0) {
        return put(corner.at, pen, out);
    }
    const OutlineVector half = mitreOffset(corner) * (0.5 * pen.width);
    int count = 0;
    if (side != MitreSide::Minus) {
        count += put(shifted(corner.at, half), pen, out);
    }
    if (side != MitreSide::Plus) {
        count += put(shifted(corner.at, half * -1.0), pen, out + count);
    }
    return count;
}

namespace {

/// The unit vector at fraction t of the way from the unit vector n1 to n2, by the quaternion of the half angle.
class ArcRotation {
public:
    ArcRotation(const OutlineVector& n1, const OutlineVector& n2) : mStart(n1) {
        const double s = std::sqrt(2.0 * (dot(n1, n2) + 1.0));
        mW = 0.5 * s;
        mZ = cross(n1, n2) / s;
        mIdentity = mW < 0.0 ? -1.0 : 1.0;
        mTheta = std::acos(std::min(std::fabs(mW), 1.0));
    }

    OutlineVector at(double t) const {
        const auto [fromWeight, toWeight] = weights(t);
        const double w = mIdentity * fromWeight + mW * toWeight;
        const double z = mZ * toWeight;
        const double cosine = 1.0 - 2.0 * z * z;
        const double sine = 2.0 * w * z;
        return {mStart.x * cosine - mStart.y * sine, mStart.x * sine + mStart.y * cosine};
    }

private:
    struct Weights {
        double from;
        double to;
    };

    /// Below a small angle the plain weights are as good, and need no division by its sine.
    Weights weights(double t) const {
        if (std::fabs(mW) >= 0.999) {
            return {1.0 - t, t};
        }
        const double scale = 1.0 / std::sin(mTheta);
        return {std::sin(mTheta * (1.0 - t)) * scale, std::sin(mTheta * t) * scale};
    }

    OutlineVector mStart;
    double mW = 0.0;
    double mZ = 0.0;
    double mIdentity = 1.0;
    double mTheta = 0.0;
};

/// The arc that rounds a corner: its centre, its radius and the normals of its two sides, pointing out of the turn.
struct CornerArc {
    OutlineVector centre;
    OutlineVector n1;
    OutlineVector n2;
    double radius;
};

/// The arc of the wanted radius, or of the radius that touches both sides half the shorter side away from the corner.
CornerArc cornerArc(const OutlineCorner& corner, double wanted) {
    const OutlineVector a = flat(corner.before);
    const OutlineVector b = flat(corner.at);
    const OutlineVector c = flat(corner.behind);
    OutlineVector n1 = unitNormal(a, b);
    OutlineVector n2 = unitNormal(b, c);
    if (cross(n1, n2) < 0.0) {
        n1 = n1 * -1.0;
        n2 = n2 * -1.0;
    }
    const double reach = 0.5 * std::min(length(a - b), length(b - c));
    const OutlineVector q1 = b + (a - b) * (reach / length(a - b));
    const OutlineVector q2 = b + (c - b) * (reach / length(b - c));
    const OutlineVector limit = intersection(q1, n1, q2, n2);
    const double radius = std::min(length(q1 - limit), wanted);
    return {intersection(a - n1 * radius, b - a, b - n2 * radius, c - b), n1, n2, radius};
}

}  // namespace

int EmitCorner(const OutlineCorner& corner, const CornerRounding& rounding, const OutlinePen& pen, OutlineVertex* out) {
    if (!(rounding.radius > 0.0)) {
        return EmitMitredVertex(corner, pen, MitreSide::Both, out);
    }
    const CornerArc arc = cornerArc(corner, rounding.radius);
    const ArcRotation rotation(arc.n1, arc.n2);
    const auto onArc = [&](const OutlineVector& normal) {
        const OutlineVector point = arc.centre + normal * arc.radius;
        return OutlinePoint{point.x, point.y, corner.at.z};
    };
    const int last = std::max(rounding.dots, 0) + 1;  // the first tangent point is point 0, the second the last
    int count = 0;
    OutlinePoint before = corner.before;
    OutlinePoint here = onArc(arc.n1);
    for (int k = 0; k <= last; ++k) {
        const OutlinePoint after = k == last       ? corner.behind
                                   : k + 1 == last ? onArc(arc.n2)
                                                   : onArc(rotation.at((k + 1.0) / last));
        count += EmitMitredVertex({before, here, after}, pen, MitreSide::Both, out + count);
        before = here;
        here = after;
    }
    return count;
}

namespace {

/// Fills the slots behind every stride-th vertex of a ring of so many vertices, on one side of it.
void featherRing(OutlineVertex* first, int ringCount, std::ptrdiff_t stride, double width, MitreSide side) {
    const auto vertex = [=](int k) { return first + k * stride; };
    for (int k = 0; k < ringCount; ++k) {
        const OutlineVertex& before = *vertex(k == 0 ? ringCount - 1 : k - 1);
        const OutlineVertex& after = *vertex(k + 1 == ringCount ? 0 : k + 1);
        OutlinePen pen{vertex(k)->colour, width, false};
        pen.colour.a = 0.0F;
        EmitMitredVertex({before.position, vertex(k)->position, after.position}, pen, side, vertex(k) + 1);
    }
}

}  // namespace

void ApplyFeather(OutlineVertex* first, int count, bool stroke, double feather, double factorX, double factorY) {
    const double width = (factorX + factorY) * feather;
    if (stroke) {
        featherRing(first, count / 4, 4, width, MitreSide::Plus);
        featherRing(first + 2, count / 4, 4, width, MitreSide::Minus);
    } else {
        featherRing(first + 1, (count - 1) / 2, 2, width, MitreSide::Plus);
    }
}

}  // namespace Tessavoy
