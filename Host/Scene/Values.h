#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Host/Project.h"
#include "Host/Scene/JsonNode.h"
#include "Host/Scene/ParameterTable.h"

namespace TessavoyHost {

// What values of a scene can refer to by name.
struct SceneNames {
    std::vector<std::string> layers;  // by layer index
    std::vector<std::string> masks;   // mask id minus 1
};

// Positions and angles reach the module as 16.16 fixed point, and so lie in this range.
inline constexpr NumberRange fixedPointRange{-32768, 32767};

// The range of numbers without a range of their own.
inline constexpr NumberRange anyNumber{-1.0e9, 1.0e9};

// The value of a parameter of a kind that holds values, checked against what the module registered for it: range, popup
// texts, and names of the scene. Problems are noted at the node's place.
std::optional<ParameterValue> readParameterValue(const JsonNode& node, const RegisteredParameter& parameter,
                                                 const SceneNames& names);

// "#rrggbb", "#rrggbbaa", [r, g, b] or [r, g, b, a] with 0 to 255; alpha is 255 where it is left out.
std::optional<ColorValue> readColor(const JsonNode& node);

std::optional<Point2> readPoint2(const JsonNode& node, NumberRange range);
std::optional<Point3> readPoint3(const JsonNode& node, NumberRange range);

}  // namespace TessavoyHost
