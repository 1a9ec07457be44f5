#pragma once

#include <optional>

#include "Host/Project.h"
#include "Host/Scene/JsonNode.h"

namespace TessavoyHost {

// { "points": [ { "t": 0.0, "kind": "linear" | "sin" | "edge", "color": [r, g, b, a] } ] }, all numbers 0 to 1, as the
// module's flat gradient, little-endian: i32 count, then for each point by rising position f32 position, i32 kind (0
// linear, 1 sin, 2 edge), f32 r, g, b, a. Two points at one position (as f32) are a problem.
std::optional<ArbitraryValue> readGradient(const JsonNode& node);

// { "mode": "all" | "withoutSin", "interpolation": "sin" | "line" | "step" | "bezier", "points": [[t, v], ...] }, the
// mode "all" when left out, as the module's flat ramp, little-endian: i32 mode, i32 interpolation, i32 count, then for
// each point by rising position f32 position, f32 value.
std::optional<ArbitraryValue> readRamp(const JsonNode& node);

}  // namespace TessavoyHost
