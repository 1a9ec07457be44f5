#pragma once

#include "Source/RenderGrid/InstanceState.h"

namespace Tessavoy {

/// The unit vector of an angle in degrees: 0 is straight up with y growing downward, and angles grow clockwise on the
/// screen.
struct PartDirection {
    double x;
    double y;
};
PartDirection partDirection(float degrees);

/// Places the corner and link points of a cell's parts: the ends of each shelf, a flat that is tangent to the unit
/// circle, and the middle of each live link, moved to the centre by its offset. A link that would reach the centre is
/// marked as collapsed and keeps its linkMiddle, as a part without a link keeps all fields of the link.
void BuildPartPoints(InstanceState& cell);

/// The same for a run of so many parts whose directions are known.
void placePartPoints(InstancePart* parts, A_long count, const PartDirection* directions);

}  // namespace Tessavoy
