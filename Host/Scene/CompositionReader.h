#pragma once

#include <optional>

#include "Host/Project.h"
#include "Host/Scene/JsonNode.h"

namespace TessavoyHost {

// { "width", "height", "frameRate", "duration" }, all required; at least one frame long.
std::optional<Composition> readComposition(const JsonNode& node);

// Frames a second: a number above 0, or a fraction as text, "30000/1001".
std::optional<Rational> readFrameRate(const JsonNode& node);

// The fraction with the smallest terms within a part in 10^9 of a number above 0, as 2997/100 for 29.97; nothing when
// its terms would not fit the host's 32-bit times.
std::optional<Rational> simplestFraction(double value);

}  // namespace TessavoyHost
