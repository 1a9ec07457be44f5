#include "Host/WorldFromImage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace TessavoyHost {
namespace {

constexpr int channels = 4;

// Reading: one sample of a picture as its share of the full value.
double share(std::uint8_t sample) {
    return sample / 255.0;
}
double share(std::uint16_t sample) {
    return sample / 65535.0;
}
double share(float sample) {
    return sample;
}

// Writing: a share of the full value as a channel of a world.
template <class Channel>
Channel toChannel(double value);

template <>
std::uint8_t toChannel(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
}
template <>
std::uint16_t toChannel(double value) {
    return static_cast<std::uint16_t>(std::lround(std::clamp(value, 0.0, 1.0) * 32768));
}
template <>
float toChannel(double value) {
    return static_cast<float>(value);
}

// 8-bit samples go through a table of their 256 values.
template <class Channel>
Channel converted(std::uint8_t sample) {
    static const std::array<Channel, 256> table = [] {
        std::array<Channel, 256> values{};
        for (int value = 0; value < 256; ++value)
            values[static_cast<std::size_t>(value)] = toChannel<Channel>(value / 255.0);
        return values;
    }();
    return table[sample];
}

template <class Channel>
Channel converted(std::uint16_t sample) {
    return toChannel<Channel>(share(sample));
}

template <class Channel>
Channel converted(float sample) {
    return toChannel<Channel>(share(sample));
}

// A picture's pixel is red, green, blue, alpha; a world's is alpha, red, green, blue.
template <class Sample, class Channel>
void convertRow(const Sample* from, Channel* to, int width) {
    for (int x = 0; x < width; ++x, from += channels, to += channels) {
        to[0] = converted<Channel>(from[3]);
        for (int c = 0; c < 3; ++c)
            to[c + 1] = converted<Channel>(from[c]);
    }
}

template <class Sample, class Channel>
World convert(const Image& image, int bits) {
    World world(image.width, image.height, bits, World::Fill::None);
    for (int y = 0; y < image.height; ++y)
        convertRow(image.row<Sample>(y), reinterpret_cast<Channel*>(world.row(y)), image.width);
    return world;
}

// The part of a picture's rows or columns that one downsampled row or column covers: the first index and the covered
// length of each.
struct Box {
    int first;
    std::vector<double> weights;
};

std::vector<Box> boxes(int size, const Rational& factor) {
    const double length = factor.den / static_cast<double>(factor.num);
    std::vector<Box> result;
    for (int i = 0; i < downsampled(size, factor); ++i) {
        const double begin = i * length;
        const double end = std::min((i + 1) * length, static_cast<double>(size));
        Box box{static_cast<int>(begin), {}};
        for (int at = box.first; at < size && at < end; ++at)
            box.weights.push_back(std::min(end, at + 1.0) - std::max(begin, static_cast<double>(at)));
        result.push_back(std::move(box));
    }
    return result;
}

// Sums of alpha and of alpha times colour, with the covered area.
struct Sum {
    double red = 0, green = 0, blue = 0, alpha = 0, area = 0;
};

template <class Sample>
void addRow(const Sample* row, const Box& columns, double rowWeight, Sum& sum) {
    const Sample* pixel = row + static_cast<std::ptrdiff_t>(columns.first) * channels;
    for (const double columnWeight : columns.weights) {
        const double weight = rowWeight * columnWeight;
        const double covered = weight * share(pixel[3]);
        sum.red += covered * share(pixel[0]);
        sum.green += covered * share(pixel[1]);
        sum.blue += covered * share(pixel[2]);
        sum.alpha += covered;
        sum.area += weight;
        pixel += channels;
    }
}

template <class Channel>
void writeAverage(const Sum& sum, Channel* to) {
    const double colour = sum.alpha == 0 ? 0 : 1 / sum.alpha;
    to[0] = toChannel<Channel>(sum.alpha / sum.area);
    to[1] = toChannel<Channel>(sum.red * colour);
    to[2] = toChannel<Channel>(sum.green * colour);
    to[3] = toChannel<Channel>(sum.blue * colour);
}

template <class Sample, class Channel>
World average(const Image& image, int bits, const Rational& factorX, const Rational& factorY) {
    const std::vector<Box> columns = boxes(image.width, factorX);
    const std::vector<Box> rows = boxes(image.height, factorY);
    World world(static_cast<int>(columns.size()), static_cast<int>(rows.size()), bits, World::Fill::None);
    std::vector<Sum> sums(columns.size());
    for (int y = 0; y < world.height(); ++y) {
        const Box& band = rows[static_cast<std::size_t>(y)];
        std::fill(sums.begin(), sums.end(), Sum{});
        for (std::size_t k = 0; k < band.weights.size(); ++k) {
            const Sample* row = image.row<Sample>(band.first + static_cast<int>(k));
            for (std::size_t x = 0; x < columns.size(); ++x)
                addRow(row, columns[x], band.weights[k], sums[x]);
        }
        auto to = reinterpret_cast<Channel*>(world.row(y));
        for (const Sum& sum : sums) {
            writeAverage(sum, to);
            to += channels;
        }
    }
    return world;
}

template <class Sample, class Channel>
World make(const Image& image, int bits, const Rational& factorX, const Rational& factorY) {
    if (factorX.value() == 1 && factorY.value() == 1)
        return convert<Sample, Channel>(image, bits);
    return average<Sample, Channel>(image, bits, factorX, factorY);
}

template <class Sample>
World makeFrom(const Image& image, int bits, const Rational& factorX, const Rational& factorY) {
    switch (bits) {
        case 8:
            return make<Sample, std::uint8_t>(image, bits, factorX, factorY);
        case 16:
            return make<Sample, std::uint16_t>(image, bits, factorX, factorY);
        default:
            return make<Sample, float>(image, bits, factorX, factorY);
    }
}

}  // namespace

World makeWorld(const Image& image, int bitsPerChannel, const Rational& downsampleX, const Rational& downsampleY) {
    switch (image.format) {
        case SampleFormat::UInt8:
            return makeFrom<std::uint8_t>(image, bitsPerChannel, downsampleX, downsampleY);
        case SampleFormat::UInt16:
            return makeFrom<std::uint16_t>(image, bitsPerChannel, downsampleX, downsampleY);
        default:
            return makeFrom<float>(image, bitsPerChannel, downsampleX, downsampleY);
    }
}

}  // namespace TessavoyHost
