#pragma once

#include <array>

namespace Tessavoy {

/// A colour in the HSP model that Darel Rex Finley published: hue in sixths of a turn from red (0..1), saturation (0
/// grey, 1 pure) and perceived brightness, all f64.
struct HspColor {
    double hue = 0;
    double saturation = 0;
    double brightness = 0;
};

/// How much red, green and blue weigh in the perceived brightness.
inline constexpr std::array<double, 3> hspWeights = {0.299, 0.587, 0.114};

/// brightness = sqrt(0.299 r^2 + 0.587 g^2 + 0.114 b^2), saturation = 1 - smallest / largest. The largest channel is
/// looked for in the order red, green, blue, so that of equal ones the first leads the sector. Grey has hue 0 and
/// saturation 0.
HspColor toHsp(double r, double g, double b);

/// The inverse, as r, g, b. A hue of 1 is red again; channels may exceed 1 where the brightness is more than the hue
/// can show.
std::array<double, 3> toRgb(const HspColor& color);

}  // namespace Tessavoy
