#include "Source/Evaluate/LayerSampling.h"

#include "Source/HostAccess/Exception.h"
#include "Tests/Unit/Evaluate/FakeLayers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Tessavoy {

namespace {

using Pixel = FakeLayers::Pixel;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

/// Red tells the column, green the row, both in steps of 1 / 255.
std::vector<Pixel> positions(A_long width, A_long height) {
    std::vector<Pixel> picture;
    for (A_long row = 0; row < height; ++row) {
        for (A_long column = 0; column < width; ++column) {
            picture.push_back(
                {static_cast<float>(column) / 255.0f + 0.0005f, static_cast<float>(row) / 255.0f + 0.0005f, 0, 1});
        }
    }
    return picture;
}

int columnAt(const LayerSlots& slots, float u, float v = 0.0f) {
    return static_cast<int>(std::lround(sampleLayerChannel(slots, 1, u, v, LayerSource_Red) * 255));
}

int rowAt(const LayerSlots& slots, float u, float v) {
    return static_cast<int>(std::lround(sampleLayerChannel(slots, 1, u, v, LayerSource_Green) * 255));
}

PF_Err errorOf(const LayerSlots& slots) {
    try {
        sampleLayerPixel(slots, 1, 0.5f, 0.5f);
    } catch (const Exception& failure) {
        return failure.code();
    }
    return PF_Err_NONE;
}

}  // namespace

TEST(LayerSampling, LayerOfOnePixelReadsItEverywhere) {
    FakeLayers layers;
    layers.add8(1, 1, {{0.2f, 0.4f, 0.6f, 0.8f}});
    const Pixel expected = {51 / 255.0f, 102 / 255.0f, 153 / 255.0f, 204 / 255.0f};
    for (const float u : {-infinity, -1.0f, 0.0f, 0.3f, 1.0f, 7.0f, infinity, notANumber}) {
        for (const float v : {-2.0f, 0.5f, 1.0f, 3.0f, notANumber}) {
            EXPECT_EQ(sampleLayerPixel(layers.slots, 1, u, v), expected) << u << " " << v;
        }
    }
}

TEST(LayerSampling, ColumnIsTheTruncatedPlaceBetweenFirstAndLast) {
    FakeLayers layers;
    layers.add8(100, 1, positions(100, 1));
    EXPECT_EQ(columnAt(layers.slots, 0.0f), 0);
    EXPECT_EQ(columnAt(layers.slots, 0.5f), 49);
    EXPECT_EQ(columnAt(layers.slots, 0.999f), 98);
    EXPECT_EQ(columnAt(layers.slots, 1.0f), 99);
}

TEST(LayerSampling, RowsRunFromTheTopOverThePaddedStride) {
    FakeLayers layers;
    layers.add8(3, 5, positions(3, 5));
    EXPECT_EQ(rowAt(layers.slots, 0.5f, 0.0f), 0);
    EXPECT_EQ(rowAt(layers.slots, 0.5f, 0.25f), 1);
    EXPECT_EQ(rowAt(layers.slots, 0.5f, 0.99f), 3);
    EXPECT_EQ(rowAt(layers.slots, 0.5f, 1.0f), 4);
    EXPECT_EQ(columnAt(layers.slots, 0.5f, 1.0f), 1);
}

TEST(LayerSampling, OutsideReadsTheEdge) {
    FakeLayers layers;
    layers.add8(4, 4, positions(4, 4));
    EXPECT_EQ(columnAt(layers.slots, 1.5f), 3);
    EXPECT_EQ(columnAt(layers.slots, infinity), 3);
    EXPECT_EQ(columnAt(layers.slots, -0.1f), 0);
    EXPECT_EQ(columnAt(layers.slots, -infinity), 0);
    EXPECT_EQ(columnAt(layers.slots, notANumber), 0);
    EXPECT_EQ(rowAt(layers.slots, 0.0f, 2.0f), 3);
    EXPECT_EQ(rowAt(layers.slots, 0.0f, -2.0f), 0);
}

TEST(LayerSampling, AllDepthsGiveTheSameValues) {
    FakeLayers layers;
    const std::vector<Pixel> picture = {{0.25f, 0.5f, 0.75f, 1.0f}, {1.0f, 0.0f, 1.0f, 0.5f}};
    layers.add8(2, 1, picture);
    layers.add16(2, 1, picture);
    layers.addFloat(2, 1, picture);
    for (const float u : {0.0f, 1.0f}) {
        const Pixel exact = sampleLayerPixel(layers.slots, 3, u, 0.0f);
        EXPECT_EQ(exact, picture[static_cast<std::size_t>(u)]);
        for (int channel = 0; channel < 4; ++channel) {
            EXPECT_NEAR(sampleLayerPixel(layers.slots, 1, u, 0.0f)[channel], exact[channel], 1.0 / 255);
            EXPECT_NEAR(sampleLayerPixel(layers.slots, 2, u, 0.0f)[channel], exact[channel], 1.0 / 32768);
        }
    }
}

TEST(LayerSampling, FullChannelsAreOneInEveryDepth) {
    FakeLayers layers;
    layers.add8(1, 1, {{1, 1, 1, 1}});
    layers.add16(1, 1, {{1, 1, 1, 1}});
    layers.addFloat(1, 1, {{1, 1, 1, 1}});
    for (A_long slot = 1; slot <= 3; ++slot) {
        EXPECT_EQ(sampleLayerPixel(layers.slots, slot, 0, 0), (Pixel{1, 1, 1, 1})) << "slot " << slot;
    }
}

TEST(LayerSampling, DeepChannelsAboveFullReadAboveOne) {
    FakeLayers layers;
    layers.add16(1, 1, {{65535.0f / 32768.0f, 1, 1, 1}});
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Red), 65535.0 / 32768.0);
}

TEST(LayerSampling, FloatChannelsComeUnclamped) {
    FakeLayers layers;
    layers.addFloat(1, 1, {{2.5f, -1.0f, infinity, 0.5f}});
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Red), 2.5);
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Green), -1.0);
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Blue), infinity);
}

TEST(LayerSampling, EachSourceChoosesItsChannel) {
    FakeLayers layers;
    layers.addFloat(1, 1, {{0.125f, 0.25f, 0.5f, 0.75f}});
    const auto channel = [&](A_long source) { return sampleLayerChannel(layers.slots, 1, 0, 0, source); };
    EXPECT_EQ(channel(1), 0.125);
    EXPECT_EQ(channel(2), 0.25);
    EXPECT_EQ(channel(3), 0.5);
    EXPECT_EQ(channel(4), 0.75);
    // (0.25 + 0.125 + 0.5) / 3 * 0.75, which is 7 / 32 exactly.
    EXPECT_EQ(channel(5), 0.21875);
    EXPECT_EQ(channel(6), 0.0);
    for (const A_long other : {-1, 0, 7, 100}) {
        EXPECT_EQ(channel(other), 0.0);
    }
}

TEST(LayerSampling, LightnessOfHalfTransparentWhiteIsOneHalfInAllDepths) {
    FakeLayers layers;
    layers.add8(1, 1, {{1, 1, 1, 0.5f}});
    layers.add16(1, 1, {{1, 1, 1, 0.5f}});
    layers.addFloat(1, 1, {{1, 1, 1, 0.5f}});
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Lightness), static_cast<double>(127 / 255.0f));
    EXPECT_EQ(sampleLayerChannel(layers.slots, 2, 0, 0, LayerSource_Lightness), 0.5);
    EXPECT_EQ(sampleLayerChannel(layers.slots, 3, 0, 0, LayerSource_Lightness), 0.5);
    for (A_long slot = 1; slot <= 3; ++slot) {
        EXPECT_EQ(sampleLayerChannel(layers.slots, slot, 0, 0, LayerSource_LightnessWithAlpha), 0.0);
    }
}

TEST(LayerSampling, LightnessIsSummedInSinglePrecisionFromGreenOn) {
    FakeLayers layers;
    // 1 is lost beside 2^25 in single precision; green first loses it, blue last brings 2^25 back down.
    layers.addFloat(1, 1, {{1.0f, 33554432.0f, -33554432.0f, 1.0f}});
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Lightness), 0.0);
    layers.slots.clear();
    layers.addFloat(1, 1, {{-33554432.0f, 33554432.0f, 1.0f, 1.0f}});
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Lightness), static_cast<double>(1.0f / 3.0f));
}

TEST(LayerSampling, ValuesAreNarrowedToSinglePrecision) {
    FakeLayers layers;
    layers.add8(1, 1, {{0.2f, 0.2f, 0.2f, 1.0f}});
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Red),
              static_cast<double>(static_cast<float>(51 / 255.0)));
}

TEST(LayerSampling, SlotWithoutALayerReadsAsZerosWithoutAHostCall) {
    FakeLayers layers;
    layers.addEmpty();
    EXPECT_EQ(sampleLayerPixel(layers.slots, 1, 0.5f, 0.5f), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0.5f, 0.5f, LayerSource_Alpha), 0.0);
    EXPECT_EQ(layers.hostCalls(), 0);
}

TEST(LayerSampling, SlotNumbersCountFromTheFirstLayerCheckout) {
    FakeLayers layers;
    layers.addSlider();
    layers.addSlider();
    layers.slots.firstLayerCheckout = 2;
    layers.addFloat(1, 1, {{0.25f, 0, 0, 1}});
    layers.addFloat(1, 1, {{0.5f, 0, 0, 1}});
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Red), 0.25);
    EXPECT_EQ(sampleLayerChannel(layers.slots, 2, 0, 0, LayerSource_Red), 0.5);
}

TEST(LayerSampling, SlotsBehindTheLayersReadAsZeros) {
    FakeLayers layers;
    for (int slot = 1; slot <= 10; ++slot) {
        layers.addFloat(1, 1, {{1, 1, 1, 1}});
    }
    layers.addSlider();
    for (A_long slot = 11; slot <= CustomParametersCount; ++slot) {
        EXPECT_EQ(sampleLayerPixel(layers.slots, slot, 0, 0), (Pixel{0, 0, 0, 0})) << "slot " << slot;
    }
    EXPECT_EQ(layers.hostCalls(), 0);
    EXPECT_EQ(sampleLayerPixel(layers.slots, 10, 0, 0), (Pixel{1, 1, 1, 1}));
}

TEST(LayerSampling, AddressIsAskedOncePerFrame) {
    FakeLayers layers;
    layers.add8(2, 2, positions(2, 2));
    layers.add16(2, 2, positions(2, 2));
    layers.addFloat(2, 2, positions(2, 2));
    for (int read = 0; read < 5; ++read) {
        for (A_long slot = 1; slot <= 3; ++slot) {
            sampleLayerPixel(layers.slots, slot, 0.5f, 0.5f);
        }
    }
    EXPECT_EQ(layers.calls16, 1);
    EXPECT_EQ(layers.calls8, 2) << "the float layer is asked for 8 bits first";
    EXPECT_EQ(layers.callsFloat, 1);
    EXPECT_EQ(layers.suitesOut, 0);
}

TEST(LayerSampling, ClearForgetsLayersAndAddresses) {
    FakeLayers layers;
    layers.addFloat(1, 1, {{0.25f, 0, 0, 1}});
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Red), 0.25);
    layers.slots.clear();
    EXPECT_TRUE(layers.slots.checkouts.empty());
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Red), 0.0);
    layers.slots.clear();
    layers.addFloat(1, 1, {{0.75f, 0, 0, 1}});
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Red), 0.75);
}

TEST(LayerSampling, HostErrorsAreRaisedWithTheirCode) {
    FakeLayers eight;
    eight.add8(1, 1, {{1, 1, 1, 1}});
    eight.error8 = 513;
    EXPECT_EQ(errorOf(eight.slots), 513);
    eight.error8 = 0;
    EXPECT_EQ(errorOf(eight.slots), 0) << "a failed call is asked again";

    FakeLayers deep;
    deep.add16(1, 1, {{1, 1, 1, 1}});
    deep.error16 = 514;
    EXPECT_EQ(errorOf(deep.slots), 514);

    FakeLayers floats;
    floats.addFloat(1, 1, {{1, 1, 1, 1}});
    floats.errorFloat = 25;
    EXPECT_EQ(errorOf(floats.slots), 25);
    EXPECT_EQ(floats.suitesOut, 0) << "the suite is released on the way out";
}

TEST(LayerSampling, ErrorOfTheByteCallKeepsTheFloatCallFromBeingMade) {
    FakeLayers layers;
    layers.addFloat(1, 1, {{1, 1, 1, 1}});
    layers.error8 = 13;
    EXPECT_EQ(errorOf(layers.slots), 13);
    EXPECT_EQ(layers.callsFloat, 0);
}

TEST(LayerSampling, FloatLayerWithoutThePixelSuiteRaises516) {
    FakeLayers layers;
    layers.addFloat(1, 1, {{1, 1, 1, 1}});
    layers.hasPixelSuite = false;
    EXPECT_EQ(errorOf(layers.slots), PF_Err_BAD_CALLBACK_PARAM);
    layers.withoutBasicSuite();
    EXPECT_EQ(errorOf(layers.slots), PF_Err_BAD_CALLBACK_PARAM);
}

TEST(LayerSampling, ByteAndDeepLayersNeedNoSuite) {
    FakeLayers layers;
    layers.add8(1, 1, {{1, 1, 1, 1}});
    layers.add16(1, 1, {{1, 1, 1, 1}});
    layers.withoutBasicSuite();
    EXPECT_EQ(sampleLayerChannel(layers.slots, 1, 0, 0, LayerSource_Red), 1.0);
    EXPECT_EQ(sampleLayerChannel(layers.slots, 2, 0, 0, LayerSource_Red), 1.0);
}

TEST(LayerSampling, DeepLayerForWhichTheHostGivesNothingReadsAsZeros) {
    FakeLayers layers;
    layers.add16(1, 1, {{1, 1, 1, 1}});
    layers.hideDeepPixels = true;
    EXPECT_EQ(sampleLayerPixel(layers.slots, 1, 0, 0), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(layers.callsFloat, 0);
}

TEST(LayerSampling, BatchesGiveTheValuesOfSingleReads) {
    FakeLayers layers;
    layers.add8(7, 5, positions(7, 5));
    layers.add16(7, 5, positions(7, 5));
    layers.addFloat(7, 5, positions(7, 5));
    layers.addEmpty();
    const std::vector<float> u = {0.0f, 0.1f, 0.33f, 0.5f, 0.99f, 1.0f, 1.5f, -3.0f, notANumber};
    const std::vector<float> v = {1.0f, 0.9f, 0.13f, -0.5f, 0.0f, 2.0f, 0.5f, 0.7f, 0.2f};
    const int count = static_cast<int>(u.size());
    for (A_long slot = 1; slot <= 4; ++slot) {
        std::vector<Pixel> pixels(u.size());
        sampleLayerPixels(layers.slots, slot, u.data(), v.data(), count, pixels.data());
        for (A_long source = 0; source <= 7; ++source) {
            std::vector<double> channels(u.size());
            sampleLayerChannels(layers.slots, slot, u.data(), v.data(), source, count, channels.data());
            for (int k = 0; k < count; ++k) {
                EXPECT_EQ(pixels[k], sampleLayerPixel(layers.slots, slot, u[k], v[k]));
                EXPECT_EQ(channels[k], sampleLayerChannel(layers.slots, slot, u[k], v[k], source));
            }
        }
    }
}

TEST(LayerSamplingDeathTest, SlotsOutsideTheTableStopTheProcess) {
    FakeLayers layers;
    layers.addEmpty();
    EXPECT_DEATH(sampleLayerPixel(layers.slots, 0, 0, 0), "layerInd >= 1");
    EXPECT_DEATH(sampleLayerChannel(layers.slots, -1, 0, 0, 1), "layerInd >= 1");
    EXPECT_DEATH(sampleLayerPixel(layers.slots, 24, 0, 0), "layerInd <= CustomParametersCount");
    EXPECT_EQ(sampleLayerChannel(layers.slots, 23, 0, 0, 1), 0.0);
}

}  // namespace Tessavoy
