#include "Source/Evaluate/NoiseSource.h"

#include "Tests/Unit/Evaluate/FakeLayers.h"
#include "Tests/Unit/Evaluate/LaneSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace Tessavoy {

namespace {

NoiseSource noiseOver(const FakeLayers& layers) {
    NoiseSource noise(layers.slots);
    noise.Multiplier = 50;
    noise.Seed = 12;
    noise.Scale = 3;
    noise.ScaleX = 40;
    noise.ScaleY = 25;
    noise.OffsetX = 1.5;
    noise.OffsetY = -2.25;
    noise.OffsetZ = 4.5;
    noise.MultLayer.Index = 1;
    noise.MultLayer.Source = 1;
    noise.buildTable();
    return noise;
}

/// The slice of noise at a depth, before anything but the amplitude.
double sliceAt(const NoiseSource& noise, float u, float v, double depth) {
    const double x = (noise.Scale * u * noise.ScaleX - noise.OffsetX) * 0.1;
    const double y = (noise.Scale * v * noise.ScaleY - noise.OffsetY) * 0.1;
    return PerlinTable(static_cast<std::uint32_t>(noise.Seed)).perlin(x, y, depth) * noise.Multiplier;
}

void expectBatchEqualsSingle(const NoiseSource& noise) {
    for (const int count : {0, 1, 2, 3, 63, 64, 65, 131}) {
        std::vector<float> u(count);
        std::vector<float> v(count);
        for (int k = 0; k < count; ++k) {
            u[k] = static_cast<float>(k % 11) * 0.13f - 0.2f;
            v[k] = static_cast<float>(k) * 0.01f;
        }
        std::vector<double> out(count + 1, -7.0);
        noise.sample(u.data(), v.data(), out.data(), count);
        for (int k = 0; k < count; ++k) {
            EXPECT_TRUE(sameBits(out[k], noise.sample(u[k], v[k]))) << "cell " << k << " of " << count;
        }
        EXPECT_EQ(out[count], -7.0);
    }
}

}  // namespace

TEST(NoiseSource, StartsWithARangeOffsetOf100AndNoTable) {
    FakeLayers layers;
    const NoiseSource noise(layers.slots);
    EXPECT_EQ(noise.ResultOffset, 100.0);
    EXPECT_TRUE(noise.isInert());
    EXPECT_EQ(noise.sample(0.3f, 0.4f), 0.0);
}

TEST(NoiseSource, MultiplierOfZeroGivesExactlyZeroWithAnyRangeOffset) {
    FakeLayers layers;
    NoiseSource noise = noiseOver(layers);
    noise.Multiplier = 0;
    noise.ResultOffset = 0;
    noise.MultLayer.Index = 2;
    noise.buildTable();
    EXPECT_TRUE(noise.isInert());
    EXPECT_EQ(noise.sample(0.3f, 0.4f), 0.0);
    expectBatchEqualsSingle(noise);
}

TEST(NoiseSource, SeedIsTakenAsAWord) {
    FakeLayers layers;
    NoiseSource noise = noiseOver(layers);
    noise.Seed = -1;
    noise.buildTable();
    const PerlinTable expected(0xFFFFFFFFu);
    EXPECT_TRUE(std::equal(expected.entries(), expected.entries() + 512, noise.table->entries()));
}

TEST(NoiseSource, CellIsScaledAndShiftedIntoTheField) {
    FakeLayers layers;
    const NoiseSource noise = noiseOver(layers);
    // (3 * 0.5 * 40 - 1.5) * 0.1 = 5.85, (3 * 0.25 * 25 + 2.25) * 0.1 = 2.1, 4.5 * 0.1 = 0.45.
    EXPECT_NEAR(noise.sample(0.5f, 0.25f), PerlinTable(12).perlin(5.85, 2.1, 0.45) * 50, 1e-10);
}

TEST(NoiseSource, RisingOffsetMovesThePatternTowardPositiveCoordinates) {
    FakeLayers layers;
    NoiseSource noise = noiseOver(layers);
    const double before = noise.sample(0.25f, 0.5f);
    // A shift of 0.25 in u is 3 * 0.25 * 40 = 30 in the field.
    noise.OffsetX += 30;
    EXPECT_NEAR(noise.sample(0.5f, 0.5f), before, 1e-10);
}

TEST(NoiseSource, RangeFollowsTheRangeOffset) {
    FakeLayers layers;
    NoiseSource noise = noiseOver(layers);
    const double plain = noise.sample(0.3f, 0.7f);
    EXPECT_GE(plain, 0.0);
    EXPECT_LE(plain, 50.0);
    noise.ResultOffset = 0;
    EXPECT_NEAR(noise.sample(0.3f, 0.7f), plain - 25.0, 1e-12);
    noise.ResultOffset = 200;
    EXPECT_NEAR(noise.sample(0.3f, 0.7f), plain + 25.0, 1e-12);
}

TEST(NoiseSource, LoopFadesBetweenTwoSlicesOnePeriodApart) {
    FakeLayers layers;
    NoiseSource noise = noiseOver(layers);
    noise.LoopZ = 20;
    noise.OffsetZ = 65;
    // 65 / 20 leaves 0.25 of the loop: slices at 20 * 0.25 * 0.1 and (0.25 - 1) * 20 * 0.1.
    const double expected = 0.75 * sliceAt(noise, 0.3f, 0.6f, 0.5) + 0.25 * sliceAt(noise, 0.3f, 0.6f, -1.5);
    EXPECT_NEAR(noise.sample(0.3f, 0.6f), expected, 1e-10);
}

TEST(NoiseSource, WholeLoopsReadTheSliceAtZero) {
    FakeLayers layers;
    NoiseSource noise = noiseOver(layers);
    noise.LoopZ = 7;
    for (const double loops : {-3.0, 0.0, 1.0, 12.0}) {
        noise.OffsetZ = loops * 7;
        EXPECT_EQ(noise.sample(0.3f, 0.6f), sliceAt(noise, 0.3f, 0.6f, 0.0));
    }
}

TEST(NoiseSource, LoopClosesFromBothSidesAndRepeats) {
    FakeLayers layers;
    NoiseSource noise = noiseOver(layers);
    noise.LoopZ = 7;
    noise.OffsetZ = 7;
    const double seam = noise.sample(0.3f, 0.6f);
    noise.OffsetZ = 7 - 1e-9;
    EXPECT_NEAR(noise.sample(0.3f, 0.6f), seam, 1e-6);
    noise.OffsetZ = 7 + 1e-9;
    EXPECT_NEAR(noise.sample(0.3f, 0.6f), seam, 1e-6);
    for (const double evolution : {0.5, 2.0, 6.5}) {
        noise.OffsetZ = evolution;
        const double first = noise.sample(0.3f, 0.6f);
        noise.OffsetZ = evolution + 21;
        EXPECT_NEAR(noise.sample(0.3f, 0.6f), first, 1e-9);
    }
}

TEST(NoiseSource, NegativeLoopFollowsTheSameFormula) {
    FakeLayers layers;
    NoiseSource noise = noiseOver(layers);
    noise.LoopZ = -20;
    noise.OffsetZ = 5;
    // 5 / -20 = -0.25 lies 0.75 above its floor: slices at -20 * 0.75 * 0.1 and -0.25 * -20 * 0.1.
    const double expected = 0.25 * sliceAt(noise, 0.3f, 0.6f, -1.5) + 0.75 * sliceAt(noise, 0.3f, 0.6f, 0.5);
    EXPECT_NEAR(noise.sample(0.3f, 0.6f), expected, 1e-10);
}

TEST(NoiseSource, LayerMultipliesTheNoiseButNotTheRangeOffset) {
    FakeLayers layers;
    layers.addFloat(1, 1, {{0.25f, 0.5f, 2.0f, 1.0f}});
    NoiseSource noise = noiseOver(layers);
    const double plain = noise.sample(0.3f, 0.7f);
    noise.ResultOffset = 50;
    noise.MultLayer.Index = 2;
    noise.MultLayer.Source = LayerSource_Blue;
    EXPECT_NEAR(noise.sample(0.3f, 0.7f), plain * 2.0 - 12.5, 1e-12);
}

TEST(NoiseSource, LayerIsReadAtTheCellItself) {
    FakeLayers layers;
    layers.addFloat(2, 1, {{0.0f, 0, 0, 1}, {1.0f, 0, 0, 1}});
    NoiseSource noise = noiseOver(layers);
    const double atEnd = noise.sample(1.0f, 0.5f);
    noise.MultLayer.Index = 2;
    EXPECT_EQ(noise.sample(0.9f, 0.5f), 0.0);
    EXPECT_EQ(noise.sample(1.0f, 0.5f), atEnd);
}

TEST(NoiseSource, EmptyLayerSilencesTheNoiseButNotTheRangeOffset) {
    FakeLayers layers;
    layers.addEmpty();
    NoiseSource noise = noiseOver(layers);
    noise.MultLayer.Index = 2;
    noise.ResultOffset = 0;
    EXPECT_EQ(noise.sample(0.3f, 0.7f), -25.0);
}

TEST(NoiseSource, BatchesGiveTheBitsOfSingleCalls) {
    FakeLayers layers;
    layers.addFloat(
        3, 2, {{0.1f, 0, 0, 1}, {0.3f, 0, 0, 1}, {0.5f, 0, 0, 1}, {0.7f, 0, 0, 1}, {0.9f, 0, 0, 1}, {1, 0, 0, 1}});
    for (const double loop : {0.0, 3.3, -5.1}) {
        for (const A_long index : {1, 2, 3}) {
            for (const double offset : {100.0, 37.0}) {
                NoiseSource noise = noiseOver(layers);
                noise.LoopZ = loop;
                noise.MultLayer.Index = index;
                noise.ResultOffset = offset;
                expectBatchEqualsSingle(noise);
            }
        }
    }
}

TEST(NoiseSource, BatchesGiveTheBitsOfSingleCallsForOddParameters) {
    FakeLayers layers;
    for (const double odd : {1e300, -1e300, std::nan(""), HUGE_VAL}) {
        for (double NoiseSource::*field : {&NoiseSource::Multiplier, &NoiseSource::Scale, &NoiseSource::ScaleX,
                                           &NoiseSource::OffsetY, &NoiseSource::OffsetZ, &NoiseSource::LoopZ}) {
            NoiseSource noise = noiseOver(layers);
            noise.*field = odd;
            expectBatchEqualsSingle(noise);
        }
    }
}

}  // namespace Tessavoy
