#pragma once

#include "HostInterface/Types.h"

#include <string>
#include <string_view>

namespace Tessavoy {

/// The kinds of custom parameters, in the order of their sections in the panel. Size is their count and no kind.
enum class CustomParameterType { Float, Color, Layer, Noise, Random, Ramp, Gradient, Path, Point2D, Point3D, Size };

inline constexpr int CustomParameterKinds = static_cast<int>(CustomParameterType::Size);

/// How many slots of a kind the user sees and can name.
inline constexpr A_long NamedSlots = 10;

/// What the kinds' slots differ in.
struct CustomKind {
    std::string_view customSuffix;  ///< of the id that carries a slot's name: the slot is a group, or a parameter
    A_long plainLabel;              ///< row of the text table: a format of the slot's number
    A_long namedLabel;              ///< row of the text table: a format of the slot's number and its name
};

/// With Size it is an assertion that stops the process.
const CustomKind& customKind(CustomParameterType type);

/// The prefix of the ids in the kind's section. Not for Size.
std::string_view kindPrefix(CustomParameterType type);

/// The ids of a slot's parameters, slot 1 to 10, with the same assertion: of the one that carries its name, the slot's
/// own or the start of its group where the slot is a group; and of the button that names it.
std::string slotNameId(CustomParameterType type, A_long slot);
std::string slotRenameId(CustomParameterType type, A_long slot);

/// The id of the switch that shows the kind's rename buttons.
std::string renameSwitchId(CustomParameterType type);

}  // namespace Tessavoy
