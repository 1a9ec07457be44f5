#include "Source/Evaluate/ColorEvaluator.h"

#include "Source/Evaluate/HspColor.h"
#include "Source/HostAccess/Exception.h"
#include "Tests/Unit/Evaluate/FakeLayers.h"
#include "Tests/Unit/Evaluate/LaneSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace Tessavoy {

namespace {

using Rgba = std::array<float, 4>;

ColorEvaluator plainColor(const FakeLayers& layers, double r, double g, double b) {
    ColorEvaluator color(layers.slots);
    color.Color = {r, g, b, 0.25};
    color.Layer.Index = 1;
    for (PropertyEvaluator* shift : {&color.Brightness, &color.Hue, &color.Saturation}) {
        shift->ValueOffset = 100;
        shift->Layer.Index = 1;
        shift->Noise.MultLayer.Index = 1;
    }
    return color;
}

Rgba at(const ColorEvaluator& color) {
    return color.evaluate(0.5f, 0.5f);
}

void addNoise(PropertyEvaluator& shift, double multiplier) {
    shift.Noise.Multiplier = multiplier;
    shift.Noise.Scale = 10;
    shift.Noise.ScaleX = 8;
    shift.Noise.ScaleY = 8;
    shift.Noise.buildTable();
}

double brightnessOf(const Rgba& rgba) {
    return toHsp(rgba[0], rgba[1], rgba[2]).brightness;
}

void expectNear(const Rgba& actual, double r, double g, double b, double tolerance = 1e-6) {
    EXPECT_NEAR(actual[0], r, tolerance);
    EXPECT_NEAR(actual[1], g, tolerance);
    EXPECT_NEAR(actual[2], b, tolerance);
    EXPECT_EQ(actual[3], 1.0f);
}

void expectBatchEqualsSingle(const ColorEvaluator& color) {
    for (const int count : {0, 1, 3, 64, 65, 130}) {
        std::vector<float> u(count);
        std::vector<float> v(count);
        for (int k = 0; k < count; ++k) {
            u[k] = static_cast<float>(k % 9) / 8.0f;
            v[k] = static_cast<float>(k) / 130.0f;
        }
        const Rgba untouched = {-7, -7, -7, -7};
        std::vector<Rgba> out(count + 1, untouched);
        color.evaluate(u.data(), v.data(), out.data(), count);
        for (int k = 0; k < count; ++k) {
            const Rgba single = color.evaluate(u[k], v[k]);
            for (int channel = 0; channel < 4; ++channel) {
                EXPECT_TRUE(sameBits(out[k][channel], single[channel])) << "cell " << k << " of " << count;
            }
        }
        EXPECT_EQ(out[count], untouched);
    }
}

}  // namespace

TEST(ColorEvaluator, ColourWithoutShiftsComesAsItStands) {
    FakeLayers layers;
    const ColorEvaluator color = plainColor(layers, 51 / 255.0, 0.1, 1.5);
    EXPECT_TRUE(color.isConstant());
    EXPECT_EQ(at(color), (Rgba{static_cast<float>(51 / 255.0), 0.1f, 1.5f, 1.0f}));
}

TEST(ColorEvaluator, FourthComponentIsOneWhateverTheColoursAlpha) {
    FakeLayers layers;
    ColorEvaluator color = plainColor(layers, 0.5, 0.5, 0.5);
    EXPECT_EQ(at(color)[3], 1.0f);
    color.Brightness.Value = 20;
    EXPECT_EQ(at(color)[3], 1.0f);
}

TEST(ColorEvaluator, LayerColourIsAddedByItsMultiplier) {
    FakeLayers layers;
    layers.addFloat(1, 1, {{0.5f, 0.25f, 1.0f, 0.5f}});
    ColorEvaluator color = plainColor(layers, 0.5, 0.5, 0.5);
    color.Layer = {2.0, 2, ColorLayerSource_Color};
    EXPECT_FALSE(color.isConstant());
    EXPECT_EQ(at(color), (Rgba{1.5f, 1.0f, 2.5f, 1.0f}));
    color.Layer.Source = ColorLayerSource_ColorWithPremultipliedAlpha;
    EXPECT_EQ(at(color), (Rgba{1.0f, 0.75f, 1.5f, 1.0f}));
    for (const A_long other : {0, 3, 6}) {
        color.Layer.Source = other;
        EXPECT_EQ(at(color), (Rgba{0.5f, 0.5f, 0.5f, 1.0f}));
    }
}

TEST(ColorEvaluator, LayerThatIsNotActiveIsNotRead) {
    FakeLayers layers;
    layers.add8(1, 1, {{1, 1, 1, 1}});
    ColorEvaluator color = plainColor(layers, 0.5, 0.5, 0.5);
    color.Layer = {0.0, 2, ColorLayerSource_Color};
    EXPECT_EQ(at(color), (Rgba{0.5f, 0.5f, 0.5f, 1.0f}));
    color.Layer = {2.0, 1, ColorLayerSource_Color};
    EXPECT_EQ(at(color), (Rgba{0.5f, 0.5f, 0.5f, 1.0f}));
    EXPECT_EQ(layers.hostCalls(), 0);
}

TEST(ColorEvaluator, HostErrorOfTheLayerIsRaised) {
    FakeLayers layers;
    layers.add8(1, 1, {{1, 1, 1, 1}});
    layers.error8 = 513;
    ColorEvaluator color = plainColor(layers, 0.5, 0.5, 0.5);
    color.Layer = {1.0, 2, ColorLayerSource_Color};
    EXPECT_THROW(at(color), Exception);
}

TEST(ColorEvaluator, HueTurnsBySixthsThroughThePureColours) {
    FakeLayers layers;
    ColorEvaluator color = plainColor(layers, 1, 0, 0);
    const double p = std::sqrt(0.299);
    // One channel carries the whole brightness, or two share it.
    color.Hue.Value = 120;
    expectNear(at(color), 0, p / std::sqrt(0.587), 0);
    color.Hue.Value = 240;
    expectNear(at(color), 0, 0, p / std::sqrt(0.114));
    color.Hue.Value = 60;
    expectNear(at(color), p / std::sqrt(0.886), p / std::sqrt(0.886), 0);
    color.Hue.Value = -120;
    expectNear(at(color), 0, 0, p / std::sqrt(0.114));
}

TEST(ColorEvaluator, WholeTurnsKeepTheHueThroughTheModel) {
    FakeLayers layers;
    for (const double turn : {360.0, -360.0, 720.0, -1080.0}) {
        ColorEvaluator color = plainColor(layers, 0.2, 0.6, 0.4);
        color.Hue.Value = turn;
        expectNear(at(color), 0.2, 0.6, 0.4);
    }
}

TEST(ColorEvaluator, WholeTurnGoesThroughTheModelAndItsClamp) {
    FakeLayers layers;
    ColorEvaluator color = plainColor(layers, 2, 2, 2);
    EXPECT_EQ(at(color), (Rgba{2, 2, 2, 1}));
    color.Hue.Value = 360;
    expectNear(at(color), 1, 1, 1);
}

TEST(ColorEvaluator, GreyStaysGreyUnderAnyHue) {
    FakeLayers layers;
    for (const double hue : {1.0, 90.0, -200.0}) {
        ColorEvaluator color = plainColor(layers, 0.4, 0.4, 0.4);
        color.Hue.Value = hue;
        expectNear(at(color), 0.4, 0.4, 0.4);
    }
}

TEST(ColorEvaluator, BrightnessMovesThePerceivedBrightnessAndIsClamped) {
    FakeLayers layers;
    ColorEvaluator color = plainColor(layers, 0.2, 0.6, 0.4);
    const double before = brightnessOf(at(color));
    color.Brightness.Value = 20;
    EXPECT_NEAR(brightnessOf(at(color)), before + 0.2, 1e-6);
    EXPECT_NEAR(at(color)[0] / at(color)[1], 0.2 / 0.6, 1e-6);
    color.Brightness.Value = 500;
    EXPECT_NEAR(brightnessOf(at(color)), 1.0, 1e-6);
    color.Brightness.Value = -500;
    expectNear(at(color), 0, 0, 0);
}

TEST(ColorEvaluator, SaturationMovesTheRatioOfTheChannelsAndIsClamped) {
    FakeLayers layers;
    ColorEvaluator color = plainColor(layers, 0.2, 0.8, 0.5);
    const double p = brightnessOf(at(color));
    color.Saturation.Value = -25;
    EXPECT_NEAR(at(color)[0] / at(color)[1], 0.5, 1e-6);
    EXPECT_NEAR(brightnessOf(at(color)), p, 1e-6);
    color.Saturation.Value = -500;
    expectNear(at(color), p, p, p);
    color.Saturation.Value = 500;
    EXPECT_EQ(at(color)[0], 0.0f);
    EXPECT_NEAR(brightnessOf(at(color)), p, 1e-6);
}

TEST(ColorEvaluator, SaturatedGreyIsRed) {
    FakeLayers layers;
    ColorEvaluator color = plainColor(layers, 0.5, 0.5, 0.5);
    color.Saturation.Value = 100;
    // Hue 0, the whole brightness of 0.5 in the red channel.
    expectNear(at(color), 0.5 / std::sqrt(0.299), 0, 0);
}

TEST(ColorEvaluator, ShiftsApplyToTheColourWithItsLayer) {
    FakeLayers layers;
    layers.addFloat(1, 1, {{0.5f, 0.0f, 0.0f, 1.0f}});
    ColorEvaluator color = plainColor(layers, 0.5, 0, 0);
    color.Layer = {1.0, 2, ColorLayerSource_Color};
    color.Hue.Value = 120;
    expectNear(at(color), 0, std::sqrt(0.299 / 0.587), 0);
}

TEST(ColorEvaluator, BatchesGiveTheBitsOfSingleCalls) {
    FakeLayers layers;
    layers.addFloat(2, 2, {{0.5f, 0.1f, 0.2f, 1.0f}, {0, 0, 0, 0}, {-0.5f, 2.0f, 0.3f, 0.5f}, {1, 1, 1, 1}});
    for (const bool hasLayer : {false, true}) {
        for (const double noise : {0.0, 90.0}) {
            for (const double value : {0.0, 15.0}) {
                ColorEvaluator color = plainColor(layers, 0.3, 0.6, 0.1);
                color.Layer = {0.7, hasLayer ? 2 : 1, ColorLayerSource_ColorWithPremultipliedAlpha};
                color.Brightness.Value = value;
                addNoise(color.Hue, noise);
                addNoise(color.Saturation, noise);
                EXPECT_EQ(color.isConstant(), !hasLayer && noise == 0.0);
                expectBatchEqualsSingle(color);
            }
        }
    }
}

// The hue goes round more than twice, so that every sixth of the circle is met with its borders and the wrap, over
// bases of every order of channels, with the smallest channel there and gone.
TEST(ColorEvaluator, BatchesGiveTheBitsOfSingleCallsRoundTheHueCircle) {
    FakeLayers layers;
    std::vector<FakeLayers::Pixel> ramp;
    for (int k = -30; k <= 30; ++k) {
        ramp.push_back({static_cast<float>(k) * 30.0f, 0, 0, 1});
    }
    layers.addFloat(1, static_cast<A_long>(ramp.size()), ramp);
    for (const Rgba& base : {Rgba{0.9f, 0.5f, 0.1f}, Rgba{0.5f, 0.9f, 0.1f}, Rgba{0.1f, 0.9f, 0.5f},
                             Rgba{0.1f, 0.5f, 0.9f}, Rgba{0.5f, 0.1f, 0.9f}, Rgba{0.9f, 0.1f, 0.5f},
                             Rgba{0.4f, 0.4f, 0.4f}, Rgba{1.0f, 0.0f, 0.0f}, Rgba{0.0f, 0.0f, 0.0f}}) {
        for (const double saturation : {-200.0, -20.0, 0.0, 20.0, 200.0}) {
            ColorEvaluator color = plainColor(layers, base[0], base[1], base[2]);
            color.Hue.Layer = {1.0, 2, LayerSource_Red};
            color.Saturation.Value = saturation;
            color.Brightness.Layer = {saturation == 0.0 ? 0.0 : 0.1, 2, LayerSource_Red};
            expectBatchEqualsSingle(color);
        }
    }
}

// What no frame should ask for passes through the model in the same way.
TEST(ColorEvaluator, BatchesGiveTheBitsOfSingleCallsForOddShifts) {
    FakeLayers layers;
    const float infinity = std::numeric_limits<float>::infinity();
    layers.addFloat(1, 8,
                    {{0, 0, 0, 1},
                     {1e30f, 0, 0, 1},
                     {-1e30f, 0, 0, 1},
                     {infinity, 0, 0, 1},
                     {-infinity, 0, 0, 1},
                     {std::numeric_limits<float>::quiet_NaN(), 0, 0, 1},
                     {1e-38f, 0, 0, 1},
                     {-1e-38f, 0, 0, 1}});
    for (PropertyEvaluator ColorEvaluator::*shift :
         {&ColorEvaluator::Brightness, &ColorEvaluator::Hue, &ColorEvaluator::Saturation}) {
        ColorEvaluator color = plainColor(layers, 0.7, 0.2, 0.4);
        (color.*shift).Layer = {1.0, 2, LayerSource_Red};
        expectBatchEqualsSingle(color);
    }
}

TEST(ColorEvaluator, CellsWhoseShiftsAreZeroComeAsTheyStandInBatchesToo) {
    FakeLayers layers;
    layers.addFloat(2, 1, {{0, 0, 0, 1}, {1, 0, 0, 1}});
    ColorEvaluator color = plainColor(layers, 3.0, 0.5, 0.5);
    color.Brightness.Layer = {10.0, 2, LayerSource_Red};
    const float places[] = {0.0f, 1.0f};
    Rgba out[2];
    color.evaluate(places, places, out, 2);
    EXPECT_EQ(out[0], (Rgba{3.0f, 0.5f, 0.5f, 1.0f}));
    EXPECT_NEAR(brightnessOf(out[1]), 1.0, 1e-6);
}

}  // namespace Tessavoy
