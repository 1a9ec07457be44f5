#include "Source/Evaluate/HspColor.h"

#include <cmath>

namespace Tessavoy {

namespace {

enum Channel { red, green, blue };

/// One sixth of the hue circle: which channel is largest, which lies between and which is smallest. In the even sectors
/// the middle channel grows with the hue, in the odd ones it falls.
struct Sector {
    Channel largest, middle, smallest;
};

constexpr std::array<Sector, 6> sectors = {{{red, green, blue},
                                            {green, red, blue},
                                            {green, blue, red},
                                            {blue, green, red},
                                            {blue, red, green},
                                            {red, blue, green}}};

int sectorOf(double r, double g, double b) {
    if (r >= g && r >= b) {
        return b >= g ? 5 : 0;
    }
    if (g >= r && g >= b) {
        return r >= b ? 1 : 2;
    }
    return g >= r ? 3 : 4;
}

int sectorOf(double hue) {
    int sector = 0;
    while (sector < 5 && !(hue < (sector + 1) / 6.0)) {
        ++sector;
    }
    return sector;
}

bool isRising(int sector) {
    return sector % 2 == 0;
}

/// position: of the middle channel between the smallest (0) and the largest (1).
double hueAt(int sector, double position) {
    return isRising(sector) ? sector / 6.0 + position / 6.0 : (sector + 1) / 6.0 - position / 6.0;
}

double positionAt(int sector, double hue) {
    return isRising(sector) ? 6.0 * (hue - sector / 6.0) : 6.0 * ((sector + 1) / 6.0 - hue);
}

}  // namespace

HspColor toHsp(double r, double g, double b) {
    const double brightness = std::sqrt(r * r * hspWeights[red] + g * g * hspWeights[green] + b * b * hspWeights[blue]);
    if (r == g && r == b) {
        return {0.0, 0.0, brightness};
    }
    const std::array<double, 3> rgb = {r, g, b};
    const int number = sectorOf(r, g, b);
    const Sector& sector = sectors[number];
    const double largest = rgb[sector.largest];
    const double smallest = rgb[sector.smallest];
    const double position = (rgb[sector.middle] - smallest) / (largest - smallest);
    return {hueAt(number, position), 1.0 - smallest / largest, brightness};
}

std::array<double, 3> toRgb(const HspColor& color) {
    const int number = sectorOf(color.hue);
    const Sector& sector = sectors[number];
    const double largestWeight = hspWeights[sector.largest];
    const double middleWeight = hspWeights[sector.middle];
    const double position = positionAt(number, color.hue);
    const double ratio = 1.0 - color.saturation;
    const double p = color.brightness;
    std::array<double, 3> rgb{};
    if (ratio > 0.0) {
        const double middle = 1.0 + position * (1.0 / ratio - 1.0);
        const double sum = largestWeight / ratio / ratio + middleWeight * middle * middle + hspWeights[sector.smallest];
        const double smallest = p / std::sqrt(sum);
        const double largest = smallest / ratio;
        rgb[sector.largest] = largest;
        rgb[sector.middle] = smallest + position * (largest - smallest);
        rgb[sector.smallest] = smallest;
    } else {
        const double largest = std::sqrt(p * p / (largestWeight + middleWeight * position * position));
        rgb[sector.largest] = largest;
        rgb[sector.middle] = largest * position;
    }
    return rgb;
}

}  // namespace Tessavoy
