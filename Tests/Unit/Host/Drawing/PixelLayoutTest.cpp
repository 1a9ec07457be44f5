#include "Host/Drawing/PixelLayout.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Host/HostCall.h"

namespace TessavoyHost {
namespace {

using Bytes = std::vector<std::byte>;

Bytes bytes(std::initializer_list<int> values) {
    Bytes made;
    for (const int value : values)
        made.push_back(static_cast<std::byte>(value));
    return made;
}

DrawnImage onePixel(DRAWBOT_PixelLayout layout, std::initializer_list<int> values) {
    return imageFromPixels(1, 1, 4, layout, bytes(values).data());
}

// Red 200, green 100, blue 50 at alpha 51, which is a fifth.
TEST(HostPixelLayout, BecomesPremultipliedBlueGreenRedAlpha) {
    const Bytes expected = bytes({10, 20, 40, 51});
    EXPECT_EQ(onePixel(kDRAWBOT_PixelLayout_32ARGB_Straight, {51, 200, 100, 50}).samples, expected);
    EXPECT_EQ(onePixel(kDRAWBOT_PixelLayout_32BGRA_Straight, {50, 100, 200, 51}).samples, expected);
    EXPECT_EQ(onePixel(kDRAWBOT_PixelLayout_32ARGB_Premul, {51, 40, 20, 10}).samples, expected);
    EXPECT_EQ(onePixel(kDRAWBOT_PixelLayout_32BGRA_Premul, {10, 20, 40, 51}).samples, expected);
}

TEST(HostPixelLayout, PremultiplyingRoundsToTheNearest) {
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int value = 0; value < 256; ++value) {
            const DrawnImage image = onePixel(kDRAWBOT_PixelLayout_32BGRA_Straight, {value, value, value, alpha});
            ASSERT_EQ(std::to_integer<int>(image.samples[1]), std::lround(value * alpha / 255.0)) << value << alpha;
        }
    }
}

TEST(HostPixelLayout, LeavesThePaddingOfRowsOut) {
    const Bytes pixels = bytes({1, 2, 3, 255, 99, 99, 4, 5, 6, 255});
    const DrawnImage image = imageFromPixels(1, 2, 6, kDRAWBOT_PixelLayout_32BGRA_Straight, pixels.data());
    EXPECT_EQ(image.width, 1);
    EXPECT_EQ(image.height, 2);
    EXPECT_EQ(image.samples, bytes({1, 2, 3, 255, 4, 5, 6, 255}));
}

TEST(HostPixelLayout, RefusesOtherLayoutsAndSizesThatAreNone) {
    const Bytes pixels(16);
    for (const DRAWBOT_PixelLayout layout : {-1, 0, 1, 2, 3, 8})
        EXPECT_THROW(imageFromPixels(1, 1, 4, layout, pixels.data()), HostCallFailure) << layout;
    struct Size {
        int width, height, rowBytes;
    };
    for (const Size& size : {Size{0, 1, 4}, Size{1, 0, 4}, Size{-1, 1, 4}, Size{2, 1, 7}, Size{30001, 1, 120004}}) {
        EXPECT_THROW(
            imageFromPixels(size.width, size.height, size.rowBytes, kDRAWBOT_PixelLayout_32BGRA_Premul, pixels.data()),
            HostCallFailure)
            << size.width << ' ' << size.height << ' ' << size.rowBytes;
    }
}

}  // namespace
}  // namespace TessavoyHost
