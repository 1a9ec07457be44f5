#include "Host/Drawing/PixelLayout.h"

#include <array>
#include <cstdint>

#include "Host/HostCall.h"

namespace TessavoyHost {
namespace {

constexpr int channels = 4;
constexpr int largestSide = 30000;  // pixels; no panel is larger

// Where a pixel's blue, green, red and alpha stand, in bytes.
struct Layout {
    std::array<std::size_t, channels> place;
    bool premultiplied;
};

Layout layoutOf(DRAWBOT_PixelLayout layout) {
    constexpr std::array<std::size_t, channels> argb = {3, 2, 1, 0}, bgra = {0, 1, 2, 3};
    switch (layout) {
        case kDRAWBOT_PixelLayout_32ARGB_Straight:
            return {argb, false};
        case kDRAWBOT_PixelLayout_32ARGB_Premul:
            return {argb, true};
        case kDRAWBOT_PixelLayout_32BGRA_Straight:
            return {bgra, false};
        case kDRAWBOT_PixelLayout_32BGRA_Premul:
            return {bgra, true};
        default:
            throw HostCallFailure(PF_Err_BAD_CALLBACK_PARAM);
    }
}

// value * alpha / 255, rounded to the nearest.
std::byte premultiplied(std::byte value, std::byte alpha) {
    const int product = std::to_integer<int>(value) * std::to_integer<int>(alpha);
    return static_cast<std::byte>((2 * product + 255) / 510);
}

void appendPixel(const std::byte* pixel, const Layout& layout, std::vector<std::byte>& samples) {
    const std::byte alpha = pixel[layout.place[3]];
    for (int channel = 0; channel < 3; ++channel) {
        const std::byte value = pixel[layout.place[static_cast<std::size_t>(channel)]];
        samples.push_back(layout.premultiplied ? value : premultiplied(value, alpha));
    }
    samples.push_back(alpha);
}

}  // namespace

DrawnImage imageFromPixels(int width, int height, int rowBytes, DRAWBOT_PixelLayout layout, const std::byte* pixels) {
    const Layout places = layoutOf(layout);
    require(width > 0 && height > 0 && width <= largestSide && height <= largestSide && rowBytes / channels >= width);
    DrawnImage image{width, height, {}};
    image.samples.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * channels);
    for (int y = 0; y < height; ++y) {
        const std::byte* row = pixels + static_cast<std::ptrdiff_t>(y) * rowBytes;
        for (int x = 0; x < width; ++x)
            appendPixel(row + x * channels, places, image.samples);
    }
    return image;
}

}  // namespace TessavoyHost
