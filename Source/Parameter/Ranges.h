#pragma once

#include "Source/Parameter/Declaration.h"

/// The number records that several sliders share: valid range, slider range, default, digits.
namespace Tessavoy::Ranges {

inline constexpr FloatParamDefaults size = {-10000, 10000, -100, 100, 10, 1};
inline constexpr FloatParamDefaults centred = {-10000, 10000, -100, 100, 0, 1};  // rotations, anchors, lengths, colour
inline constexpr FloatParamDefaults scale = {-10000, 10000, -100, 100, 100, 1};
inline constexpr FloatParamDefaults offset = {-50000, 50000, -100, 100, 0, 1};
inline constexpr FloatParamDefaults multiplier = {-100000, 100000, -100, 100, 0, 1};
inline constexpr FloatParamDefaults unit = {-10000, 10000, -10, 10, 0, 2};
inline constexpr FloatParamDefaults loop = {0, 10000, 0, 10, 0, 2};
inline constexpr FloatParamDefaults alpha = {-10000, 10000, -1, 1, 1, 2};
inline constexpr FloatParamDefaults frameIndex = {-10000, 10000, -100, 100, 50, 1};
inline constexpr FloatParamDefaults strokeWidth = {-10000, 10000, -10, 10, 20, 1};
inline constexpr FloatParamDefaults raysCount = {-10000, 10000, -100, 100, 4, 1};
inline constexpr FloatParamDefaults valueOffset = {-100, 100, -100, 100, 0, 1};
inline constexpr FloatParamDefaults resultOffset = {-100, 100, -100, 100, 100, 1};
inline constexpr FloatParamDefaults axisScale = {-10000, 10000, -10, 10, 1, 2};
inline constexpr FloatParamDefaults gridSize = {0, 100000, 0, 100, 500, 1};
inline constexpr FloatParamDefaults upToAll = {0, 100000, 0, 100, 100, 1};
inline constexpr FloatParamDefaults centerZ = {-100000, 100000, -100, 100, 0, 1};
inline constexpr FloatParamDefaults animationSpeed = {-10000, 10000, -10, 10, 1, 2};
inline constexpr FloatParamDefaults featherPixels = {-10000, 10000, -10, 10, 1, 1};
inline constexpr FloatParamDefaults featherPercents = {-100000, 100000, -100, 100, 10, 1};
inline constexpr FloatParamDefaults roundingDots = {0, 30, 0, 30, 3, 1};
inline constexpr FloatParamDefaults share = {0, 100, 0, 100, 100, 1};  // fog opacity, probability
inline constexpr FloatParamDefaults nearDistance = {0, 1000000, 0, 100, 2200, 1};
inline constexpr FloatParamDefaults farDistance = {0, 1000000, 0, 100, 2800, 1};
inline constexpr FloatParamDefaults customFloat = {-100000, 100000, -100, 100, 0, 1};
inline constexpr FloatParamDefaults randomMin = {-1000000, 1000000, -100, 100, 0, 1};
inline constexpr FloatParamDefaults randomMax = {-1000000, 1000000, -100, 100, 100, 1};

inline constexpr SliderDefaults count = {0, 100000, 0, 100, 10};
inline constexpr SliderDefaults framesPerSide = {1, 10000, 1, 100, 2};
/// The default of 0 means no limit; the valid range binds what the user may type.
inline constexpr SliderDefaults framesLimit = {1, 10000, 1, 100, 0};
inline constexpr SliderDefaults seed = {0, 10000, 0, 1000, 0};

}  // namespace Tessavoy::Ranges
