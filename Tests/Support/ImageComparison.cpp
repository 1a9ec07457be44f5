#include "Tests/Support/ImageComparison.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

#include "Host/ImageFiles/ImageFiles.h"

namespace TessavoyHost {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

// A sample in 255ths of full scale.
double sampleAt(const Image& image, std::size_t index) {
    switch (image.format) {
        case SampleFormat::UInt8:
            return image.row<std::uint8_t>(0)[index];
        case SampleFormat::UInt16:
            return image.row<std::uint16_t>(0)[index] / 257.0;
        case SampleFormat::Float32:
            return image.row<float>(0)[index] * 255.0;
    }
    return 0.0;
}

double distance(double expected, double actual) {
    if (expected == actual || (std::isnan(expected) && std::isnan(actual)))
        return 0.0;
    const double result = std::fabs(expected - actual);
    return std::isnan(result) ? infinite : result;
}

bool sameSize(const Image& a, const Image& b) {
    return a.width == b.width && a.height == b.height;
}

std::size_t pixelCount(const Image& image) {
    return static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
}

// Distances of the four channels at a pixel.
std::array<double, 4> distancesAt(const Image& expected, const Image& actual, std::size_t pixel) {
    std::array<double, 4> distances;
    for (std::size_t channel = 0; channel < 4; ++channel)
        distances[channel] = distance(sampleAt(expected, 4 * pixel + channel), sampleAt(actual, 4 * pixel + channel));
    return distances;
}

template <class Sample>
void writeArgb(const std::filesystem::path& path, ImageSize size, const std::vector<Sample>& argb) {
    const PixelView view{reinterpret_cast<const std::byte*>(argb.data()), size.width, size.height,
                         static_cast<std::ptrdiff_t>(static_cast<std::size_t>(size.width) * 4 * sizeof(Sample)),
                         static_cast<int>(8 * sizeof(Sample))};
    writeImage(path, FileFormat::Png, view, {}, 1);
}

// The image's samples in the order of a world: 8 bits as they are, the rest as floats.
template <class Sample>
std::vector<Sample> asArgb(const Image& image, double scale) {
    std::vector<Sample> argb;
    argb.reserve(image.samples.size());
    for (std::size_t pixel = 0; pixel < pixelCount(image); ++pixel)
        for (const std::size_t channel : {3, 0, 1, 2})
            argb.push_back(static_cast<Sample>(sampleAt(image, 4 * pixel + channel) * scale));
    return argb;
}

void writeCopy(const std::filesystem::path& path, const Image& image) {
    const ImageSize size{image.width, image.height};
    if (image.format == SampleFormat::UInt8)
        writeArgb(path, size, asArgb<std::uint8_t>(image, 1.0));
    else
        writeArgb(path, size, asArgb<float>(image, 1.0 / 255.0));
}

void writeDifference(const std::filesystem::path& path, const Image& expected, const Image& actual) {
    std::vector<float> argb;
    float largest = 0.0f;
    for (std::size_t pixel = 0; pixel < pixelCount(expected); ++pixel) {
        const std::array<double, 4> distances = distancesAt(expected, actual, pixel);
        argb.push_back(1.0f);
        for (std::size_t channel = 0; channel < 3; ++channel) {
            // A distance without limit is drawn as full scale.
            argb.push_back(static_cast<float>(std::min(distances[channel] + distances[3], 255.0)));
            largest = std::max(largest, argb.back());
        }
    }
    for (std::size_t sample = 0; sample < argb.size(); ++sample)
        if (sample % 4 != 0 && largest > 0.0f)
            argb[sample] /= largest;
    writeArgb(path, {expected.width, expected.height}, argb);
}

std::string sizeText(const Image& image) {
    return std::to_string(image.width) + " x " + std::to_string(image.height);
}

}  // namespace

std::string ImageDifference::describe(const Image& expected, const Image& actual, double allowed) const {
    if (!sameSize)
        return "sizes differ: expected " + sizeText(expected) + ", actual " + sizeText(actual);
    std::ostringstream text;
    text << "largest difference in 255ths: red " << largest[0] << ", green " << largest[1] << ", blue " << largest[2]
         << ", alpha " << largest[3] << "; " << pixelsBeyond << " of " << pixelCount(expected) << " pixels beyond "
         << allowed;
    return text.str();
}

ImageDifference compareImages(const Image& expected, const Image& actual, double allowed) {
    ImageDifference difference;
    difference.sameSize = sameSize(expected, actual);
    if (!difference.sameSize)
        return difference;
    for (std::size_t pixel = 0; pixel < pixelCount(expected); ++pixel) {
        const std::array<double, 4> distances = distancesAt(expected, actual, pixel);
        for (std::size_t channel = 0; channel < 4; ++channel)
            difference.largest[channel] = std::max(difference.largest[channel], distances[channel]);
        if (*std::max_element(distances.begin(), distances.end()) > allowed)
            ++difference.pixelsBeyond;
    }
    return difference;
}

void writeComparison(const std::filesystem::path& folder, const std::string& name, const Image& expected,
                     const Image& actual) {
    std::error_code ignored;  // if the folder can't be made, writing into it says so
    std::filesystem::create_directories(folder, ignored);
    writeCopy(folder / (name + "-expected.png"), expected);
    writeCopy(folder / (name + "-actual.png"), actual);
    const std::filesystem::path difference = folder / (name + "-difference.png");
    if (sameSize(expected, actual))
        writeDifference(difference, expected, actual);
    else
        std::filesystem::remove(difference, ignored);  // of an earlier run
}

}  // namespace TessavoyHost
