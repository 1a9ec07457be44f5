#include "Source/Evaluate/PropertyEvaluator.h"

#include "Source/HostAccess/Exception.h"
#include "Tests/Unit/Evaluate/FakeLayers.h"
#include "Tests/Unit/Evaluate/LaneSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace Tessavoy {

namespace {

PropertyEvaluator plainProperty(const FakeLayers& layers, double value) {
    PropertyEvaluator property(layers.slots);
    property.ValueOffset = 100;
    property.Value = value;
    property.Layer.Index = 1;
    property.Layer.Source = LayerSource_Red;
    property.Noise.MultLayer.Index = 1;
    return property;
}

void addNoise(PropertyEvaluator& property, double multiplier) {
    property.Noise.Multiplier = multiplier;
    property.Noise.Seed = 4;
    property.Noise.Scale = 10;
    property.Noise.ScaleX = 7;
    property.Noise.ScaleY = 9;
    property.Noise.OffsetZ = 3;
    property.Noise.buildTable();
}

void addLayer(PropertyEvaluator& property, double multiplier, A_long slot = 1) {
    property.Layer = {multiplier, slot + 1, LayerSource_Red};
}

/// A property whose formula is its value alone, in percent of the frames.
PropertyEvaluator frameIndex(const FakeLayers& layers, double percent, bool loops) {
    PropertyEvaluator property = plainProperty(layers, percent);
    property.Flag = loops;
    return property;
}

A_long frameAt(const FakeLayers& layers, double position, bool loops, A_long frames) {
    return frameIndex(layers, position * 100, loops).evaluateIndex(0.5f, 0.5f, frames, 0.0);
}

void expectBatchesEqualSingleCalls(const PropertyEvaluator& property) {
    for (const int count : {0, 1, 3, 63, 64, 65, 129}) {
        std::vector<float> u(count);
        std::vector<float> v(count);
        for (int k = 0; k < count; ++k) {
            u[k] = static_cast<float>(k % 17) / 15.0f;
            v[k] = static_cast<float>(k) / 100.0f;
        }
        std::vector<double> values(count + 1, -7.0);
        std::vector<double> clamped(count + 1, -7.0);
        std::vector<A_long> indexes(count + 1, -7);
        property.evaluate(u.data(), v.data(), values.data(), count);
        property.evaluateClamped(u.data(), v.data(), clamped.data(), count);
        property.evaluateIndex(u.data(), v.data(), 24, 5.5, indexes.data(), count);
        for (int k = 0; k < count; ++k) {
            EXPECT_TRUE(sameBits(values[k], property.evaluate(u[k], v[k]))) << "cell " << k << " of " << count;
            EXPECT_TRUE(sameBits(clamped[k], property.evaluateClamped(u[k], v[k]))) << "cell " << k << " of " << count;
            EXPECT_EQ(indexes[k], property.evaluateIndex(u[k], v[k], 24, 5.5)) << "cell " << k << " of " << count;
        }
        EXPECT_EQ(values[count], -7.0);
        EXPECT_EQ(clamped[count], -7.0);
        EXPECT_EQ(indexes[count], -7);
    }
}

}  // namespace

TEST(PropertyEvaluator, ValueAloneIsTheSameEverywhere) {
    FakeLayers layers;
    const PropertyEvaluator property = plainProperty(layers, 12.5);
    EXPECT_TRUE(property.isConstant());
    EXPECT_EQ(property.evaluate(0.0f, 0.0f), 12.5);
    EXPECT_EQ(property.evaluate(1.5f, 0.7f), 12.5);
}

TEST(PropertyEvaluator, ValueOffsetDoesNothingWithoutNoiseAndLayer) {
    FakeLayers layers;
    PropertyEvaluator property = plainProperty(layers, 12.5);
    for (const double offset : {0.0, 37.0, 100.0, 200.0}) {
        property.ValueOffset = offset;
        EXPECT_EQ(property.evaluate(0.3f, 0.3f), 12.5);
    }
}

TEST(PropertyEvaluator, NoiseIsAddedToTheValue) {
    FakeLayers layers;
    PropertyEvaluator property = plainProperty(layers, 10);
    addNoise(property, 50);
    EXPECT_FALSE(property.isConstant());
    EXPECT_EQ(property.evaluate(0.3f, 0.6f), 10 + property.Noise.sample(0.3f, 0.6f));
}

TEST(PropertyEvaluator, ValueOffsetMovesTheRangeOfTheNoise) {
    FakeLayers layers;
    PropertyEvaluator property = plainProperty(layers, 10);
    addNoise(property, 50);
    const double neutral = property.evaluate(0.3f, 0.6f);
    property.ValueOffset = 0;
    EXPECT_NEAR(property.evaluate(0.3f, 0.6f), neutral - 25, 1e-12);
    property.ValueOffset = 200;
    EXPECT_NEAR(property.evaluate(0.3f, 0.6f), neutral + 25, 1e-12);
}

TEST(PropertyEvaluator, LayerIsAddedByItsMultiplierAndWidensTheRange) {
    FakeLayers layers;
    layers.addFloat(1, 1, {{0.25f, 0, 0, 1}});
    PropertyEvaluator property = plainProperty(layers, 10);
    addLayer(property, 40);
    EXPECT_FALSE(property.isConstant());
    EXPECT_EQ(property.evaluate(0.5f, 0.5f), 20.0);
    property.ValueOffset = 0;
    EXPECT_EQ(property.evaluate(0.5f, 0.5f), 0.0);
    property.Noise.Multiplier = 10;
    EXPECT_EQ(property.evaluate(0.5f, 0.5f), -5.0) << "the noise multiplier counts even where there is no table";
}

TEST(PropertyEvaluator, LayerIsReadAtTheCellAndPastTheEndAtTheEdge) {
    FakeLayers layers;
    layers.addFloat(2, 2, {{1, 0, 0, 1}, {2, 0, 0, 1}, {3, 0, 0, 1}, {4, 0, 0, 1}});
    PropertyEvaluator property = plainProperty(layers, 0);
    addLayer(property, 1);
    EXPECT_EQ(property.evaluate(0.0f, 0.0f), 1.0);
    EXPECT_EQ(property.evaluate(1.5f, 0.0f), 2.0);
    EXPECT_EQ(property.evaluate(0.0f, 1.0f), 3.0);
    EXPECT_EQ(property.evaluate(1.0f, 1.0f), 4.0);
}

TEST(PropertyEvaluator, LayerWithMultiplierOfZeroIsAsIfNoneWereChosen) {
    FakeLayers layers;
    layers.add8(1, 1, {{1, 1, 1, 1}});
    PropertyEvaluator property = plainProperty(layers, 10);
    addLayer(property, 0);
    property.ValueOffset = 0;
    EXPECT_TRUE(property.isConstant());
    EXPECT_EQ(property.evaluate(0.5f, 0.5f), 10.0);
    EXPECT_EQ(layers.hostCalls(), 0);
}

TEST(PropertyEvaluator, LayerIndexOfOneIsNoLayerWhateverTheMultiplier) {
    FakeLayers layers;
    layers.add8(1, 1, {{1, 1, 1, 1}});
    PropertyEvaluator property = plainProperty(layers, 10);
    property.Layer = {99, 1, LayerSource_Red};
    property.ValueOffset = 0;
    EXPECT_EQ(property.evaluate(0.5f, 0.5f), 10.0);
    EXPECT_EQ(layers.hostCalls(), 0);
}

TEST(PropertyEvaluator, EmptyLayerAddsNothingButItsWidthCounts) {
    FakeLayers layers;
    layers.addEmpty();
    PropertyEvaluator property = plainProperty(layers, 10);
    addLayer(property, 40);
    property.ValueOffset = 0;
    EXPECT_EQ(property.evaluate(0.5f, 0.5f), -10.0);
}

TEST(PropertyEvaluator, HostErrorOfTheLayerIsRaised) {
    FakeLayers layers;
    layers.add8(1, 1, {{1, 1, 1, 1}});
    layers.error8 = 513;
    PropertyEvaluator property = plainProperty(layers, 10);
    addLayer(property, 40);
    EXPECT_THROW(property.evaluate(0.5f, 0.5f), Exception);
    const float place = 0.5f;
    double out = 0;
    EXPECT_THROW(property.evaluate(&place, &place, &out, 1), Exception);
}

TEST(PropertyEvaluator, ClampRaisesToZeroAlwaysAndLowersToOneOnlyWhenCropping) {
    FakeLayers layers;
    for (const bool crops : {false, true}) {
        PropertyEvaluator alpha = plainProperty(layers, 1.7);
        alpha.Flag = crops;
        EXPECT_EQ(alpha.evaluateClamped(0.5f, 0.5f), crops ? 1.0 : 1.7);
        alpha.Value = -0.2;
        EXPECT_EQ(alpha.evaluateClamped(0.5f, 0.5f), 0.0);
        alpha.Value = 0.4;
        EXPECT_EQ(alpha.evaluateClamped(0.5f, 0.5f), 0.4);
        alpha.Value = std::numeric_limits<double>::infinity();
        EXPECT_EQ(alpha.evaluateClamped(0.5f, 0.5f), crops ? 1.0 : alpha.Value);
    }
}

TEST(PropertyEvaluator, ClampWorksOnTheWholeSum) {
    FakeLayers layers;
    layers.addFloat(1, 1, {{1, 0, 0, 1}});
    PropertyEvaluator alpha = plainProperty(layers, 0.5);
    alpha.Flag = true;
    addLayer(alpha, 0.75);
    EXPECT_EQ(alpha.evaluateClamped(0.5f, 0.5f), 1.0);
    addLayer(alpha, -0.75);
    EXPECT_EQ(alpha.evaluateClamped(0.5f, 0.5f), 0.0);
}

TEST(PropertyEvaluator, ValueOf100PercentIsTheLastFrame) {
    FakeLayers layers;
    EXPECT_EQ(frameAt(layers, 0.0, false, 10), 1);
    EXPECT_EQ(frameAt(layers, 1.0, false, 10), 10);
    // 0.5 of 9 steps is 4.5, which rounds away from zero to 5.
    EXPECT_EQ(frameAt(layers, 0.5, false, 10), 6);
}

TEST(PropertyEvaluator, PositionsBeyondTheEndsPinWithoutLoop) {
    FakeLayers layers;
    EXPECT_EQ(frameAt(layers, 1.2, false, 11), 11);
    EXPECT_EQ(frameAt(layers, -0.2, false, 11), 1);
    EXPECT_EQ(frameAt(layers, 1e300, false, 11), 11);
    EXPECT_EQ(frameAt(layers, -1e300, false, 11), 1);
}

TEST(PropertyEvaluator, PositionsBeyondTheEndsWrapWithLoop) {
    FakeLayers layers;
    EXPECT_EQ(frameAt(layers, 1.2, true, 11), 3);
    EXPECT_EQ(frameAt(layers, -0.2, true, 11), 9);
    EXPECT_EQ(frameAt(layers, -1.0, true, 11), 1);
    EXPECT_EQ(frameAt(layers, 3.0, true, 11), 1);
}

TEST(PropertyEvaluator, OneFrameIsAlwaysChosenAndNoneGivesZero) {
    FakeLayers layers;
    for (const double position : {-3.0, 0.0, 0.4, 7.5}) {
        for (const bool loops : {false, true}) {
            EXPECT_EQ(frameAt(layers, position, loops, 1), 1);
            EXPECT_EQ(frameAt(layers, position, loops, 0), 0);
            EXPECT_EQ(frameIndex(layers, position, loops).evaluateIndex(0.5f, 0.5f, 0, 3.0), 0);
        }
    }
}

TEST(PropertyEvaluator, PhaseAdvancesByFrames) {
    FakeLayers layers;
    const PropertyEvaluator index = frameIndex(layers, 0, true);
    // A phase of 5 in 20 frames is a quarter: round(19 * 0.25) + 1.
    EXPECT_EQ(index.evaluateIndex(0.5f, 0.5f, 20, 5.0), 6);
    EXPECT_EQ(index.evaluateIndex(0.5f, 0.5f, 20, 25.0), 6);
    EXPECT_EQ(index.evaluateIndex(0.5f, 0.5f, 20, -15.0), 6);
}

TEST(PropertyEvaluator, IndexTakesNoiseAndLayerInPercent) {
    FakeLayers layers;
    layers.addFloat(1, 1, {{0.5f, 0, 0, 1}});
    PropertyEvaluator index = frameIndex(layers, 10, false);
    addLayer(index, 40);
    // 0.1 + 0.4 * 0.5 = 0.3 of 100 steps.
    EXPECT_EQ(index.evaluateIndex(0.5f, 0.5f, 101, 0.0), 31);
    index.ValueOffset = 0;
    // The range of 0.4 moves down by half: 0.1 of 100 steps.
    EXPECT_EQ(index.evaluateIndex(0.5f, 0.5f, 101, 0.0), 11);
    index.ValueOffset = 100;
    addNoise(index, 20);
    const double position = 0.3 + index.Noise.sample(0.5f, 0.5f) * 0.01;
    EXPECT_EQ(index.evaluateIndex(0.5f, 0.5f, 100001, 0.0), std::lround(100000 * position) + 1);
}

TEST(PropertyEvaluator, IndexOfNoNumberIsTheFirstFrame) {
    FakeLayers layers;
    EXPECT_EQ(frameAt(layers, std::nan(""), false, 10), 1);
    EXPECT_EQ(frameAt(layers, std::nan(""), true, 10), 1);
    EXPECT_EQ(frameAt(layers, std::numeric_limits<double>::infinity(), false, 10), 10);
}

TEST(PropertyEvaluator, BatchesGiveTheBitsOfSingleCalls) {
    FakeLayers layers;
    layers.addFloat(3, 1, {{0.1f, 0, 0, 1}, {0.7f, 0, 0, 1}, {-0.4f, 0, 0, 1}});
    for (const double noise : {0.0, 35.0}) {
        for (const double layer : {0.0, -12.0}) {
            for (const bool flag : {false, true}) {
                PropertyEvaluator property = plainProperty(layers, 3.3);
                property.ValueOffset = 63;
                property.Flag = flag;
                addNoise(property, noise);
                addLayer(property, layer);
                EXPECT_EQ(property.isConstant(), noise == 0.0 && layer == 0.0);
                expectBatchesEqualSingleCalls(property);
            }
        }
    }
}

}  // namespace Tessavoy
