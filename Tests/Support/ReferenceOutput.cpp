#include "Tests/Support/ReferenceOutput.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <sstream>

namespace Tessavoy {

namespace {

constexpr double TransparentAlpha = 0.01;
constexpr double TransparentMargin = 0.0005;

/// How a world of one depth counts.
struct Depth {
    double full;     ///< the number for 1
    double largest;  ///< the largest number that it holds
    double rounding;
};

Depth depthOf(int bitsPerChannel) {
    switch (bitsPerChannel) {
        case 8:
            return {255.0, 255.0, 0.5};
        case 16:
            return {32768.0, 65535.0, 0.5};
        default:
            return {1.0, std::numeric_limits<float>::max(), 0.0};
    }
}

template <class Number>
double numberAt(const std::byte* pixels, std::ptrdiff_t offset) {
    Number number;
    std::memcpy(&number, pixels + offset, sizeof number);
    return static_cast<double>(number);
}

double channelAt(const std::byte* row, int bitsPerChannel, int x, int channel) {
    const std::ptrdiff_t index = 4 * x + channel;
    switch (bitsPerChannel) {
        case 8:
            return numberAt<std::uint8_t>(row, index);
        case 16:
            return numberAt<std::uint16_t>(row, index * 2);
        default:
            return numberAt<float>(row, index * 4);
    }
}

std::string describe(const ReferenceOutputPixel& expected, const std::byte* row, int bits, int x, int y) {
    std::ostringstream text;
    text << "pixel (" << x << ", " << y << "): expected";
    for (const double number : expected.argb) {
        text << " " << number;
    }
    text << ", got";
    for (int channel = 0; channel < 4; ++channel) {
        text << " " << channelAt(row, bits, x, channel);
    }
    return text.str();
}

bool samePixel(const ReferenceOutputPixel& expected, const std::byte* row, int bits, int x, double tolerance) {
    const Depth depth = depthOf(bits);
    for (int channel = 0; channel < 4; ++channel) {
        const double spread = channel == 0 ? 1.0 : std::max(expected.alpha, TransparentAlpha);
        const double allowed = depth.rounding + tolerance * depth.full / spread;
        const double difference =
            std::abs(channelAt(row, bits, x, channel) - expected.argb[static_cast<std::size_t>(channel)]);
        if (!(difference <= allowed)) {
            return false;
        }
    }
    return true;
}

}  // namespace

ReferenceOutput convertOutput(const ReferencePicture& picture, int bitsPerChannel) {
    const Depth depth = depthOf(bitsPerChannel);
    ReferenceOutput output{picture.width, picture.height, bitsPerChannel, {}};
    for (const ReferencePixel& pixel : picture.pixels) {
        const auto channel = [&](std::size_t n) { return std::clamp(pixel.colour[n], 0.0, 1.0); };
        ReferenceOutputPixel result;
        result.alpha = channel(3);
        result.sure = pixel.sure && std::abs(result.alpha - TransparentAlpha) > TransparentMargin;
        if (result.alpha >= TransparentAlpha) {
            result.argb[0] = result.alpha * depth.full;
            for (std::size_t n = 0; n < 3; ++n) {
                result.argb[n + 1] = std::min(channel(n) / result.alpha * depth.full, depth.largest);
            }
        }
        output.pixels.push_back(result);
    }
    return output;
}

PictureComparison compareSurePixels(const ReferenceOutput& reference, const std::byte* pixels, std::ptrdiff_t rowBytes,
                                    double tolerance) {
    PictureComparison comparison;
    for (int y = 0; y < reference.height; ++y) {
        const std::byte* row = pixels + y * rowBytes;
        for (int x = 0; x < reference.width; ++x) {
            const ReferenceOutputPixel& expected = reference.at(x, y);
            if (!expected.sure) {
                continue;
            }
            ++comparison.compared;
            if (samePixel(expected, row, reference.bitsPerChannel, x, tolerance)) {
                continue;
            }
            if (comparison.wrong++ == 0) {
                comparison.firstWrong = describe(expected, row, reference.bitsPerChannel, x, y);
            }
        }
    }
    return comparison;
}

}  // namespace Tessavoy
