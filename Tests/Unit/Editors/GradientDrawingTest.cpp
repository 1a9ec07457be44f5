#include "Source/Editors/GradientDrawing.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace Tessavoy {

namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

PanelPixel pixelAt(const PanelImage& image, int x, int y) {
    return image.pixels.at(static_cast<std::size_t>(y * image.width + x));
}

TEST(GradientBar, HasTheSameColoursInAllRows) {
    const GradientData gradient{{{0.0f, {0, 0.0f, 1.0f, 0.0f, 1.0f}}, {1.0f, {0, 1.0f, 0.0f, 0.5f, 0.0f}}}};
    const PanelImage bar = gradientBar(gradient, 30, 3);
    EXPECT_EQ(bar.width, 30);
    EXPECT_EQ(bar.height, 3);
    ASSERT_EQ(bar.pixels.size(), 90u);
    for (int x = 0; x < 30; ++x) {
        EXPECT_EQ(pixelAt(bar, x, 1), pixelAt(bar, x, 0));
        EXPECT_EQ(pixelAt(bar, x, 2), pixelAt(bar, x, 0));
    }
}

// 255 * x / 256 of each channel, cut to whole numbers: in steps of 1/256 all of it is exact in single precision.
TEST(GradientBar, ShowsThePositionOfEachColumnCutToWholeNumbers) {
    const GradientData gradient{{{0.0f, {0, 0.0f, 1.0f, 0.0f, 1.0f}}, {1.0f, {0, 1.0f, 0.0f, 0.0f, 0.0f}}}};
    const PanelImage bar = gradientBar(gradient, 256, 1);
    for (int x = 0; x < 256; ++x) {
        const auto up = static_cast<std::uint8_t>(255 * x / 256);
        const auto down = static_cast<std::uint8_t>(255 * (256 - x) / 256);
        EXPECT_EQ(pixelAt(bar, x, 0), (PanelPixel{up, down, 0, down})) << x;
    }
}

// The last column shows a position below 1, before the last point.
TEST(GradientBar, EdgesChangeAtTheColumnOfTheirPoint) {
    const GradientData gradient{{{0.25f, {2, 1.0f, 0.0f, 0.0f, 1.0f}},
                                 {0.5f, {2, 0.0f, 1.0f, 0.0f, 0.5f}},
                                 {1.0f, {2, 0.0f, 0.0f, 1.0f, 1.0f}}}};
    const PanelImage bar = gradientBar(gradient, 100, 1);
    for (int x = 0; x < 100; ++x) {
        EXPECT_EQ(pixelAt(bar, x, 0), x < 50 ? (PanelPixel{255, 0, 0, 255}) : (PanelPixel{0, 255, 0, 127})) << x;
    }
}

TEST(GradientBar, WithoutPointsIsOpaqueBlack) {
    EXPECT_EQ(gradientBar({}, 3, 1).pixels, (std::vector<PanelPixel>(3, {0, 0, 0, 255})));
}

// Saved colours may be any numbers.
TEST(GradientBar, CutsChannelsToTheirRange) {
    const GradientData gradient{{{0.5f, {2, -1.0f, 7.5f, notANumber, infinite}}}};
    EXPECT_EQ(gradientBar(gradient, 1, 1).pixels, (std::vector<PanelPixel>{{0, 255, 0, 255}}));
    const GradientData other{{{0.5f, {2, -infinite, 1.0f, 0.9999f, -0.0f}}}};
    EXPECT_EQ(gradientBar(other, 1, 1).pixels, (std::vector<PanelPixel>{{0, 255, 254, 0}}));
}

TEST(Checkerboard, HasSquaresOfSixPixels) {
    constexpr PanelPixel light{255, 255, 255, 255}, dark{128, 128, 128, 255};
    const PanelImage board = checkerboard(20, 13, light, dark);
    EXPECT_EQ(board.width, 20);
    EXPECT_EQ(board.height, 13);
    ASSERT_EQ(board.pixels.size(), 260u);
    for (const auto& [x, y] :
         {std::pair{0, 0}, std::pair{5, 5}, std::pair{12, 0}, std::pair{6, 6}, std::pair{17, 12}}) {
        EXPECT_EQ(pixelAt(board, x, y), light) << x << ", " << y;
    }
    for (const auto& [x, y] : {std::pair{6, 0}, std::pair{11, 5}, std::pair{0, 6}, std::pair{18, 12}}) {
        EXPECT_EQ(pixelAt(board, x, y), dark) << x << ", " << y;
    }
}

}  // namespace

}  // namespace Tessavoy
