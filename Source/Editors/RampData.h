#pragma once

#include "Source/Editors/PositionMap.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Tessavoy {

/// Which interpolations the editor offers; evaluation doesn't look at it.
enum RampMode : std::int32_t {
    RampModeAll = 0,
    RampModeWithoutSin = 1,  ///< line and step only
};

/// How the whole curve runs between its points. Any other stored number evaluates to 1 between points.
enum RampInterpolation : std::int32_t {
    RampInterpolationSin = 0,     ///< a cosine ease
    RampInterpolationLine = 1,    ///< straight
    RampInterpolationStep = 2,    ///< the value of the point before
    RampInterpolationBezier = 3,  ///< a smooth curve through neighbouring points
};

/// A curve of values on 0..1; both axes run from 0 to 1. Positions that are not a number behave as in a gradient.
struct RampData {
    std::int32_t mode = RampModeAll;
    std::int32_t interpolation = RampInterpolationSin;
    PositionMap<float> points;
};

/// Points at 0 and 1, both of value 1; interpolation sin, or line for `RampModeWithoutSin`.
RampData defaultRamp(std::int32_t mode = RampModeAll);

/// The curve's value at `t`, clamped to 0..1 (a value that is not a number gives 0). 1 for a ramp without points.
float EvaluateRamp(const RampData& ramp, float t);

/// Bytes of the flat form: 12 + 8 for each point.
std::uint32_t flatSize(const RampData& ramp);

/// The flat form saved in projects, little-endian: i32 mode, i32 interpolation, i32 count, then for each point in
/// ascending order f32 position, f32 value.
std::vector<std::byte> flatten(const RampData& ramp);

/// Reads the flat form over `ramp`; false if the bytes end early.
///
/// Fewer than 12 bytes leave the ramp as it was. A count below 1 gives no points. A point that is cut off after its
/// position still counts, with value 0, before the reading fails. Nothing outside `flat` is read, and bytes after the
/// last point are ignored.
bool unflatten(std::span<const std::byte> flat, RampData& ramp);

/// The text form, as in "Ramp all  sin  t 0 v 1 t 1 v 1". Six significant digits. An unknown mode is "all"; an unknown
/// interpolation has no word and is written as its number, which doesn't scan.
std::string printText(const RampData& ramp);

/// Takes mode and interpolation from a text form and adds its points to `ramp`, overwriting at equal positions; false
/// at the first word or number that doesn't belong, and for a group that is cut off. What was read until then stays.
/// A text may end after any of its first three words.
bool scanText(std::string_view text, RampData& ramp);

/// The ramp between two others at `t`, 0 giving the first: mode and interpolation of the first, points paired by rank.
/// Against a ramp without points, the values of the other fade to 0.
RampData interpolate(const RampData& first, const RampData& second, double t);

/// Whether both are the same: mode, interpolation, count, positions exactly, and each value within 0.0001.
bool sameValue(const RampData& left, const RampData& right);

}  // namespace Tessavoy
