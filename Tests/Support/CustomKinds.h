#pragma once

#include "HostInterface/Types.h"

#include <array>

namespace Tessavoy::Testing {

/// What one kind of custom parameters is called and where its slots are, written out.
struct CustomKindFacts {
    const char* prefix;  ///< of the section's ids
    const char* suffix;  ///< of the id that carries a slot's name, which is a group's start where the slot is a group
    const char* label;   ///< of a slot, without its number
    A_long firstDiskId;  ///< of the parameter that carries the name of slot 1
    A_long diskIdStep;   ///< from one slot to the next
    PF_ParamIndex section;   ///< index of the section's group start
    PF_ParamIndex slotSize;  ///< parameters of one slot, without its button
};

/// In the panel's order.
inline constexpr std::array<CustomKindFacts, 10> customKinds = {{
    {"Float", "", "Slider", 304, 1, 553, 1},
    {"Color", "", "Color", 316, 1, 576, 1},
    {"Layer", "", "Layer", 328, 1, 599, 1},
    {"Noise", ".GroupBegin", "Noise", 404, 14, 622, 16},
    {"Random", ".GroupBegin", "Random", 546, 5, 795, 5},
    {"Ramp", "", "Ramp", 846, 1, 858, 1},
    {"Gradient", "", "Gradient", 858, 1, 881, 1},
    {"Path", "", "Path", 870, 1, 904, 1},
    {"Point2D", "", "Point 2D", 882, 1, 927, 1},
    {"Point3D", "", "Point 3D", 894, 1, 950, 1},
}};

}  // namespace Tessavoy::Testing
