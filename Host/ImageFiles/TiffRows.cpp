#include "Host/ImageFiles/TiffRows.h"

#include <ImathConfig.h>
#include <half.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace TessavoyHost {

namespace {

// Runs work(first sample, pixel count, largest value) for the picture's sample type.
template <class Work>
void withSamples(Image& image, Work work) {
    const std::size_t count = static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    switch (image.format) {
        case SampleFormat::UInt8:
            return work(image.row<std::uint8_t>(0), count, std::numeric_limits<std::uint8_t>::max());
        case SampleFormat::UInt16:
            return work(image.row<std::uint16_t>(0), count, std::numeric_limits<std::uint16_t>::max());
        case SampleFormat::Float32:
            return work(image.row<float>(0), count, 1.0f);
    }
}

template <class Sample>
void copyChannel(Sample* rgba, const Sample* from, int columns, int step) {
    for (int x = 0; x < columns; ++x, rgba += 4, from += step)
        *rgba = *from;
}

template <class Value, class Convert>
void convertAll(std::vector<float>& to, const std::byte* from, Convert convert) {
    for (float& result : to) {
        Value value;
        std::memcpy(&value, from, sizeof value);
        result = convert(value);
        from += sizeof value;
    }
}

}  // namespace

void TiffRows::store(Image& image, int left, int y, int columns, const std::byte* from, int plane) {
    const int count = columns * mLayout.samplesTogether();
    switch (image.format) {
        case SampleFormat::UInt8:
            return spread(image.row<std::uint8_t>(y) + std::ptrdiff_t{4} * left, asBytes(from, count), columns, plane);
        case SampleFormat::UInt16:
            return spread(image.row<std::uint16_t>(y) + std::ptrdiff_t{4} * left,
                          reinterpret_cast<const std::uint16_t*>(from), columns, plane);
        case SampleFormat::Float32:
            return spread(image.row<float>(y) + std::ptrdiff_t{4} * left, asFloats(from, count), columns, plane);
    }
}

// Fewer than 8 bits stand with the first sample in the highest ones. They spread to 255; palette indices stay.
const std::uint8_t* TiffRows::asBytes(const std::byte* from, int count) {
    const int bits = mLayout.bits;
    if (bits == 8)
        return reinterpret_cast<const std::uint8_t*>(from);
    const int largest = (1 << bits) - 1;
    const int factor = mLayout.photometric == PHOTOMETRIC_PALETTE ? 1 : 255 / largest;
    mBytes.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const int shift = 8 - bits - i * bits % 8;
        const int value = (std::to_integer<int>(from[i * bits / 8]) >> shift) & largest;
        mBytes[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(value * factor);
    }
    return mBytes.data();
}

const float* TiffRows::asFloats(const std::byte* from, int count) {
    if (mLayout.bits == 32 && mLayout.kind == SAMPLEFORMAT_IEEEFP)
        return reinterpret_cast<const float*>(from);
    mFloats.resize(static_cast<std::size_t>(count));
    if (mLayout.bits == 16)
        convertAll<std::uint16_t>(mFloats, from, [](std::uint16_t v) { return imath_half_to_float(v); });
    else if (mLayout.bits == 64)
        convertAll<double>(mFloats, from, [](double v) { return static_cast<float>(v); });
    else
        convertAll<std::uint32_t>(mFloats, from, [](std::uint32_t v) { return static_cast<float>(v / 4294967295.0); });
    return mFloats.data();
}

template <class Sample>
void TiffRows::spread(Sample* rgba, const Sample* from, int columns, int plane) const {
    const int step = mLayout.samplesTogether();
    for (int offset = 0; offset < step; ++offset) {
        const int sample = plane + offset;
        if (sample < mLayout.colours)
            copyChannel(rgba + sample, from + offset, columns, step);
        if (sample == 0 && mLayout.colours == 1) {
            copyChannel(rgba + 1, from + offset, columns, step);
            copyChannel(rgba + 2, from + offset, columns, step);
        }
        if (sample == mLayout.alpha)
            copyChannel(rgba + 3, from + offset, columns, step);
    }
}

void setFullAlpha(Image& image) {
    withSamples(image, [](auto* rgba, std::size_t count, auto largest) {
        for (std::size_t pixel = 0; pixel < count; ++pixel)
            rgba[4 * pixel + 3] = largest;
    });
}

// Colour maps hold 16 bits; some writers leave 8-bit values in them, which shows in that none is above 255.
void applyPalette(Image& image, int bits, const std::uint16_t* red, const std::uint16_t* green,
                  const std::uint16_t* blue) {
    const std::uint16_t* maps[3] = {red, green, blue};
    const int entries = 1 << bits;
    const auto small = [&](const std::uint16_t* map) {
        return std::all_of(map, map + entries, [](std::uint16_t v) { return v < 256; });
    };
    const int shift = small(red) && small(green) && small(blue) ? 0 : 8;
    const std::size_t count = static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    auto* rgba = image.row<std::uint8_t>(0);
    for (std::size_t pixel = 0; pixel < count; ++pixel, rgba += 4)
        for (int channel = 0; channel < 3; ++channel)
            rgba[channel] = static_cast<std::uint8_t>(maps[channel][rgba[channel]] >> shift);
}

void invertColour(Image& image) {
    withSamples(image, [](auto* rgba, std::size_t count, auto largest) {
        for (std::size_t pixel = 0; pixel < count; ++pixel, rgba += 4)
            for (int channel = 0; channel < 3; ++channel)
                rgba[channel] = static_cast<decltype(largest)>(largest - rgba[channel]);
    });
}

Image oriented(Image&& stored, int orientation) {
    if (orientation <= ORIENTATION_TOPLEFT || orientation > ORIENTATION_LEFTBOT)
        return std::move(stored);
    const bool turned = orientation >= ORIENTATION_LEFTTOP;
    // Where the stored rows run, from the names: the first row is at the bottom, the first column at the right.
    const bool fromBottom = orientation == ORIENTATION_BOTRIGHT || orientation == ORIENTATION_BOTLEFT ||
                            orientation == ORIENTATION_RIGHTBOT || orientation == ORIENTATION_LEFTBOT;
    const bool fromRight = orientation == ORIENTATION_TOPRIGHT || orientation == ORIENTATION_BOTRIGHT ||
                           orientation == ORIENTATION_RIGHTTOP || orientation == ORIENTATION_RIGHTBOT;
    Image image{turned ? stored.height : stored.width, turned ? stored.width : stored.height, stored.format, {}};
    image.samples.resize(stored.samples.size());
    const std::size_t pixelBytes = 4 * bytesPerSample(image.format);
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            const int across = fromRight ? image.width - 1 - x : x;
            const int down = fromBottom ? image.height - 1 - y : y;
            const std::byte* from = stored.row<std::byte>(turned ? across : down) +
                                    static_cast<std::size_t>(turned ? down : across) * pixelBytes;
            std::memcpy(image.row<std::byte>(y) + static_cast<std::size_t>(x) * pixelBytes, from, pixelBytes);
        }
    return image;
}

}  // namespace TessavoyHost
