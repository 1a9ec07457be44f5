#include "Host/ImageFiles/StraightAlpha.h"

#include <algorithm>
#include <limits>

namespace TessavoyHost {

namespace {

template <class Sample>
Sample divided(Sample colour, Sample alpha) {
    const std::uint64_t largest = std::numeric_limits<Sample>::max();
    return static_cast<Sample>(std::min<std::uint64_t>((colour * largest + alpha / 2u) / alpha, largest));
}

template <>
float divided(float colour, float alpha) {
    return colour / alpha;
}

template <class Sample>
void divideAll(Image& image) {
    const std::size_t pixelCount = static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    Sample* rgba = image.row<Sample>(0);
    for (std::size_t pixel = 0; pixel < pixelCount; ++pixel, rgba += 4)
        for (int channel = 0; channel < 3; ++channel)
            if (rgba[3] > 0)
                rgba[channel] = divided(rgba[channel], rgba[3]);
}

}  // namespace

void makeStraight(Image& image) {
    switch (image.format) {
        case SampleFormat::UInt8:
            return divideAll<std::uint8_t>(image);
        case SampleFormat::UInt16:
            return divideAll<std::uint16_t>(image);
        case SampleFormat::Float32:
            return divideAll<float>(image);
    }
}

}  // namespace TessavoyHost
