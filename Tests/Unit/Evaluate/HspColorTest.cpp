#include "Source/Evaluate/HspColor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tessavoy {

namespace {

constexpr double tolerance = 1e-12;

struct Row {
    double r, g, b;
    double hue;
};

}  // namespace

TEST(HspColor, HueOfPureAndMixedColoursStandsAtTheSixths) {
    // Of equal channels red leads before green and green before blue, so pure red has the hue of a whole turn.
    constexpr Row rows[] = {{1, 0, 0, 1.0},       {1, 1, 0, 1.0 / 6},   {0, 1, 0, 2.0 / 6},   {0, 1, 1, 3.0 / 6},
                            {0, 0, 1, 4.0 / 6},   {1, 0, 1, 5.0 / 6},   {1, 0.5, 0, 0.5 / 6}, {0.5, 1, 0, 1.5 / 6},
                            {0, 1, 0.5, 2.5 / 6}, {0, 0.5, 1, 3.5 / 6}, {0.5, 0, 1, 4.5 / 6}, {1, 0, 0.5, 5.5 / 6}};
    for (const Row& row : rows) {
        const HspColor color = toHsp(row.r, row.g, row.b);
        EXPECT_NEAR(color.hue, row.hue, tolerance) << row.r << " " << row.g << " " << row.b;
        EXPECT_EQ(color.saturation, 1.0);
    }
}

TEST(HspColor, BrightnessWeighsTheChannels) {
    EXPECT_NEAR(toHsp(1, 0, 0).brightness, std::sqrt(0.299), tolerance);
    EXPECT_NEAR(toHsp(0, 1, 0).brightness, std::sqrt(0.587), tolerance);
    EXPECT_NEAR(toHsp(0, 0, 1).brightness, std::sqrt(0.114), tolerance);
    EXPECT_NEAR(toHsp(1, 1, 1).brightness, 1.0, tolerance);
    EXPECT_NEAR(toHsp(0.5, 0.5, 0.5).brightness, 0.5, tolerance);
    EXPECT_NEAR(toHsp(0.2, 0.4, 0.8).brightness, std::sqrt(0.299 * 0.04 + 0.587 * 0.16 + 0.114 * 0.64), tolerance);
}

TEST(HspColor, GreyHasNoHueAndNoSaturation) {
    for (const double level : {0.0, 0.25, 1.0, 3.0, -0.5}) {
        const HspColor color = toHsp(level, level, level);
        EXPECT_EQ(color.hue, 0.0);
        EXPECT_EQ(color.saturation, 0.0);
        EXPECT_NEAR(color.brightness, std::abs(level), tolerance);
    }
}

TEST(HspColor, SaturationIsOneMinusSmallestToLargest) {
    EXPECT_NEAR(toHsp(0.8, 0.2, 0.4).saturation, 0.75, tolerance);
    EXPECT_NEAR(toHsp(0.4, 0.8, 0.6).saturation, 0.5, tolerance);
    EXPECT_NEAR(toHsp(0.9, 0.95, 1.0).saturation, 0.1, tolerance);
}

TEST(HspColor, ConversionThereAndBackKeepsEveryColour) {
    constexpr int steps = 12;
    for (int red = 0; red <= steps; ++red) {
        for (int green = 0; green <= steps; ++green) {
            for (int blue = 0; blue <= steps; ++blue) {
                const double r = red / 8.0;
                const double g = green / 8.0;
                const double b = blue / 8.0;
                const std::array<double, 3> rgb = toRgb(toHsp(r, g, b));
                EXPECT_NEAR(rgb[0], r, 1e-9) << r << " " << g << " " << b;
                EXPECT_NEAR(rgb[1], g, 1e-9) << r << " " << g << " " << b;
                EXPECT_NEAR(rgb[2], b, 1e-9) << r << " " << g << " " << b;
            }
        }
    }
}

// The three defining properties together leave one colour only: its brightness, the ratio of smallest to largest
// channel and the place of the middle one.
TEST(HspColor, InverseHasTheBrightnessTheRatioAndTheHueAskedFor) {
    for (int hueStep = 0; hueStep < 60; ++hueStep) {
        for (const double saturation : {0.0, 0.1, 0.5, 0.99, 1.0}) {
            const HspColor asked = {(hueStep + 0.5) / 60.0, saturation, 0.6};
            const auto [r, g, b] = toRgb(asked);
            EXPECT_NEAR(std::sqrt(0.299 * r * r + 0.587 * g * g + 0.114 * b * b), 0.6, 1e-12);
            const double largest = std::max({r, g, b});
            const double smallest = std::min({r, g, b});
            EXPECT_NEAR(smallest, (1 - saturation) * largest, 1e-12);
            // The angle on the colour hexagon, from the differences of the channels.
            const double width = largest - smallest;
            double hexagon = 0;
            if (width > 1e-9) {
                hexagon = largest == r ? (g - b) / width : (largest == g ? 2 + (b - r) / width : 4 + (r - g) / width);
                EXPECT_NEAR(std::remainder(hexagon / 6 - asked.hue, 1.0), 0.0, 1e-9);
            }
        }
    }
}

TEST(HspColor, HueOfOneIsRedAgain) {
    for (const double saturation : {0.5, 1.0}) {
        const auto start = toRgb({0.0, saturation, 0.4});
        const auto end = toRgb({1.0, saturation, 0.4});
        for (int channel = 0; channel < 3; ++channel) {
            EXPECT_NEAR(start[channel], end[channel], tolerance);
        }
    }
}

TEST(HspColor, DarkGreenCanBeBrighterThanBlueCan) {
    EXPECT_NEAR(toRgb({2.0 / 6, 1.0, 0.5})[1], 0.5 / std::sqrt(0.587), tolerance);
    EXPECT_NEAR(toRgb({4.0 / 6, 1.0, 0.5})[2], 0.5 / std::sqrt(0.114), tolerance);
}

TEST(HspColor, NumbersThatAreNoneEndWithoutAHang) {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(std::isnan(toHsp(notANumber, 0, 1).brightness));
    EXPECT_TRUE(std::isnan(toRgb({notANumber, 0.5, 0.5})[0]));
}

}  // namespace Tessavoy
