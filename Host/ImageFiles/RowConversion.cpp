#include "Host/ImageFiles/RowConversion.h"

namespace TessavoyHost {

namespace {

template <class From, class To, class Convert>
void convertRow(const From* argb, int width, To* rgba, Convert convert) {
    for (int x = 0; x < width; ++x, argb += 4, rgba += 4) {
        rgba[0] = convert(argb[1]);
        rgba[1] = convert(argb[2]);
        rgba[2] = convert(argb[3]);
        rgba[3] = convert(argb[0]);
    }
}

std::uint16_t spread(std::uint16_t value) {
    const std::uint32_t cut = value > 32768 ? 32768u : value;
    return static_cast<std::uint16_t>((cut * 65535u + 16384u) >> 15);
}

std::uint16_t quantised(float value) {
    // A comparison with NaN is false, so NaN falls to 0.
    const float cut = value > 0.0f ? (value < 1.0f ? value : 1.0f) : 0.0f;
    // Nothing is negative here, so adding a half rounds right, and is quicker than a call.
    // NOLINTNEXTLINE(bugprone-incorrect-roundings)
    return static_cast<std::uint16_t>(static_cast<double>(cut) * 65535.0 + 0.5);
}

}  // namespace

void rowToUInt8(const PixelView& pixels, int y, std::uint8_t* to) {
    convertRow(pixels.row<std::uint8_t>(y), pixels.width, to, [](std::uint8_t v) { return v; });
}

void rowToUInt16(const PixelView& pixels, int y, std::uint16_t* to) {
    if (pixels.bitsPerChannel == 16)
        convertRow(pixels.row<std::uint16_t>(y), pixels.width, to, spread);
    else
        convertRow(pixels.row<float>(y), pixels.width, to, quantised);
}

void rowToFloat(const PixelView& pixels, int y, float* to) {
    if (pixels.bitsPerChannel == 8)
        convertRow(pixels.row<std::uint8_t>(y), pixels.width, to, [](std::uint8_t v) { return v / 255.0f; });
    else if (pixels.bitsPerChannel == 16)
        convertRow(pixels.row<std::uint16_t>(y), pixels.width, to, [](std::uint16_t v) { return v / 32768.0f; });
    else
        convertRow(pixels.row<float>(y), pixels.width, to, [](float v) { return v; });
}

void premultiplyRow(float* rgba, int width) {
    for (int x = 0; x < width; ++x, rgba += 4)
        for (int channel = 0; channel < 3; ++channel)
            rgba[channel] = rgba[3] == 0.0f ? 0.0f : rgba[channel] * rgba[3];
}

}  // namespace TessavoyHost
