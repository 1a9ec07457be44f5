#pragma once

#include <cstddef>
#include <vector>

namespace Tessavoy {

/// How a ramp runs between its knots.
enum class CurveKind { Sin = 0, Line = 1, Step = 2, Bezier = 3 };

struct RampKnot {
    double position = 0.0;
    double value = 0.0;
};

struct ReferenceRamp {
    int mode = 0;  ///< 1: only line and step are offered
    CurveKind kind = CurveKind::Sin;
    std::vector<RampKnot> knots;  ///< in rising order
};

/// A ramp in the form that projects keep: i32 mode, i32 kind, i32 count, then for each knot f32 position, f32 value.
std::vector<std::byte> flatRamp(const ReferenceRamp& ramp);

/// The ramp's value at a place, 0 to 1; where it is a curve, by solving for the place to the end.
double rampAt(const ReferenceRamp& ramp, double place);

}  // namespace Tessavoy
