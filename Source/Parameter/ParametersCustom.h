#pragma once

#include "HostInterface/Types.h"

#include <string>

namespace Tessavoy {

/// The kinds of custom parameters, in the order of their sections in the panel. Size is their count and no kind.
enum class CustomParameterType { Float, Color, Layer, Noise, Random, Ramp, Gradient, Path, Point2D, Point3D, Size };

inline constexpr int CustomParameterKinds = static_cast<int>(CustomParameterType::Size);

/// How many slots of a kind the user sees and can name.
inline constexpr A_long NamedSlots = 10;

/// The id of the parameter that carries a slot's name: the slot's own, or the start of its group where the slot is a
/// group. slot: 1 to 10. With Size it is an assertion that stops the process.
std::string slotNameId(CustomParameterType type, A_long slot);

}  // namespace Tessavoy
