#pragma once

#include <cstddef>
#include <vector>

#include "Tests/Support/ReferenceRasteriser.h"

namespace Tessavoy {

/// How a point of a gradient goes on to the next one.
enum class StopKind { Straight = 0, Soft = 1, Edge = 2 };

struct GradientStop {
    double position = 0.0;
    StopKind kind = StopKind::Straight;
    ReferenceColour colour{};
};

/// A gradient in the form that projects keep: i32 count, then for each stop f32 position, i32 kind, f32 r, g, b, a.
std::vector<std::byte> flatGradient(const std::vector<GradientStop>& stops);

/// The colour of a gradient, of one stop at least in rising order, at a place.
ReferenceColour gradientAt(const std::vector<GradientStop>& stops, double place);

}  // namespace Tessavoy
