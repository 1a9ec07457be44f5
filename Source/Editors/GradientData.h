#pragma once

#include "Source/Editors/PositionMap.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Tessavoy {

/// How the stretch from a point to the next one is blended. Any other stored number blends as `Linear` does.
enum GradientKind : std::int32_t {
    GradientKindLinear = 0,
    GradientKindSin = 1,   ///< 70 % of a cosine ease and 30 % of the straight line
    GradientKindEdge = 2,  ///< the point's own colour up to the next point
};

/// One colour of a gradient; channels nominally 0..1, straight alpha.
struct GradientPoint {
    std::int32_t kind = GradientKindLinear;
    float r = 0.0f;
    float g = 0.0f;
    float b = 0.0f;
    float a = 0.0f;

    bool operator==(const GradientPoint&) const = default;
};

/// Colour points on the range 0..1.
///
/// Stored positions may be any float. One that is not a number stands last and is after no position, so that it only
/// counts where the last point does.
struct GradientData {
    PositionMap<GradientPoint> points;
};

/// Two points of kind sin at 0 and 1, both opaque white.
GradientData defaultGradient();

/// Adds a point, overwriting one at exactly that position.
void InsertPoint(GradientData& gradient, float position, const GradientPoint& point);

/// The colour at `t` as r, g, b, a. Opaque black for a gradient without points.
///
/// `kind`, if given, is set where a single point decides (before the first, after the last, on an edge stretch) to
/// that point's kind, and to 1 for a gradient without points; between blended points it is left as it is.
void EvaluateGradient(const GradientData& gradient, float t, float color[4], std::int32_t* kind = nullptr);

/// Bytes of the flat form: 4 + 24 for each point.
std::uint32_t flatSize(const GradientData& gradient);

/// The flat form saved in projects, little-endian: i32 count, then for each point in ascending order f32 position, i32
/// kind, f32 r, g, b, a.
std::vector<std::byte> flatten(const GradientData& gradient);

/// Reads the flat form over `gradient`; false if the bytes end early.
///
/// Fewer than 4 bytes leave the gradient as it was. A count below 1 gives no points. A record that is cut off after
/// its position still adds its point, with zeroes for the cut fields, before the reading fails. Nothing outside
/// `flat` is read, and bytes after the last point are ignored.
bool unflatten(std::span<const std::byte> flat, GradientData& gradient);

/// The text form, as in "Gradient t 0 sin  r 1 g 1 b 1 a 1". Six significant digits; an unknown kind is "linear".
std::string printText(const GradientData& gradient);

/// Adds the points of a text form to `gradient`, overwriting at equal positions; false at the first word or number
/// that doesn't belong, and for a group that is cut off. What was read until then stays.
bool scanText(std::string_view text, GradientData& gradient);

/// The gradient between two others at `t`, 0 giving the first. Points are paired by rank and keep the first's kind.
/// Against a gradient without points, the other fades to opaque black in points of kind sin.
GradientData interpolate(const GradientData& first, const GradientData& second, double t);

/// Whether both have the same points: equal count, positions exactly, kinds, and each channel within 0.0001.
bool sameValue(const GradientData& left, const GradientData& right);

}  // namespace Tessavoy
