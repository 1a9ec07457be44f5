#include "Source/RenderGrid/PartPoints.h"

#include <cmath>

namespace Tessavoy {

PartDirection partDirection(float degrees) {
    constexpr double pi = 3.141592653589793;
    const double radians = degrees * pi / 180.0;
    return {std::sin(radians), -std::cos(radians)};
}

namespace {

ShapePoint narrowed(double x, double y) {
    return {static_cast<float>(x), static_cast<float>(y)};
}

void placeShelf(InstancePart& part, const PartDirection& p) {
    const double h = part.shelfLength > 0.0F ? part.shelfLength * 0.5 : 0.0;
    part.shelfStart = narrowed(p.x + p.y * h, p.y - p.x * h);
    part.shelfEnd = narrowed(p.x - p.y * h, p.y + p.x * h);
}

void placeLink(InstancePart& part, const InstancePart& next) {
    if (part.linkMiddleOffset == 0.0F) {
        return;
    }
    const double x = (static_cast<double>(part.shelfEnd.x) + next.shelfStart.x) * 0.5;
    const double y = (static_cast<double>(part.shelfEnd.y) + next.shelfStart.y) * 0.5;
    const double distance = std::sqrt(x * x + y * y);
    part.linkCollapsed = part.linkMiddleOffset >= distance;
    if (part.linkCollapsed == 0) {
        const double kept = 1.0 - part.linkMiddleOffset / distance;
        part.linkMiddle = narrowed(x * kept, y * kept);
    }
}

/// directionOf(k): the direction of part k.
template <class Directions>
void placePoints(InstancePart* parts, A_long count, const Directions& directionOf) {
    for (A_long k = 0; k < count; ++k) {
        placeShelf(parts[k], directionOf(k));
    }
    for (A_long k = 0; k < count; ++k) {
        placeLink(parts[k], parts[k + 1 == count ? 0 : k + 1]);
    }
}

}  // namespace

void BuildPartPoints(InstanceState& cell) {
    placePoints(cell.parts, cell.partsCount, [&cell](A_long k) { return partDirection(cell.parts[k].angle); });
}

void placePartPoints(InstancePart* parts, A_long count, const PartDirection* directions) {
    placePoints(parts, count, [directions](A_long k) { return directions[k]; });
}

}  // namespace Tessavoy
