#include "Tests/Support/ReferenceOutput.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>

namespace Tessavoy {
namespace {

ReferencePicture onePixel(const ReferenceColour& colour) {
    return {1, 1, {{colour, true}}};
}

void expectArgb(const ReferenceColour& drawn, int bits, const std::array<double, 4>& argb) {
    const ReferenceOutput output = convertOutput(onePixel(drawn), bits);
    for (std::size_t n = 0; n < 4; ++n) {
        EXPECT_NEAR(output.at(0, 0).argb[n], argb[n], 1e-9) << bits << " bits, channel " << n;
    }
}

TEST(ReferenceOutput, ColourIsDividedByAlphaAndFullIsTheDepthsFull) {
    const ReferenceColour drawn = {0.25, 0.5, 0.125, 0.5};
    expectArgb(drawn, 8, {127.5, 127.5, 255.0, 63.75});
    expectArgb(drawn, 16, {16384.0, 16384.0, 32768.0, 8192.0});
    expectArgb(drawn, 32, {0.5, 0.5, 1.0, 0.25});
}

TEST(ReferenceOutput, AlphaBelowAHundredthIsNothing) {
    for (const int bits : {8, 16, 32}) {
        expectArgb({1.0, 1.0, 1.0, 0.0099}, bits, {0.0, 0.0, 0.0, 0.0});
    }
    expectArgb({0.01, 0.0, 0.0, 0.02}, 32, {0.02, 0.5, 0.0, 0.0});
    EXPECT_FALSE(convertOutput(onePixel({0.0, 0.0, 0.0, 0.01}), 8).at(0, 0).sure);
    EXPECT_TRUE(convertOutput(onePixel({0.0, 0.0, 0.0, 0.02}), 8).at(0, 0).sure);
}

TEST(ReferenceOutput, ClampingComesBeforeDividing) {
    expectArgb({3.0, -1.0, 0.5, 2.0}, 32, {1.0, 1.0, 0.0, 0.5});
    expectArgb({3.0, 1.0, 0.5, 0.5}, 32, {0.5, 2.0, 2.0, 1.0});
    expectArgb({3.0, 1.0, 0.5, 0.5}, 16, {16384.0, 65535.0, 65535.0, 32768.0});
    expectArgb({3.0, 1.0, 0.5, 0.5}, 8, {127.5, 255.0, 255.0, 255.0});
}

/// A world of two pixels and two rows with four bytes between the rows.
template <class Number>
struct World {
    static constexpr std::ptrdiff_t rowBytes = 8 * sizeof(Number) + 4;
    std::vector<std::byte> bytes = std::vector<std::byte>(2 * rowBytes, std::byte{0x77});

    void set(int x, int y, std::array<Number, 4> argb) {
        std::memcpy(bytes.data() + y * rowBytes + x * 4 * static_cast<std::ptrdiff_t>(sizeof(Number)), argb.data(),
                    sizeof argb);
    }
};

template <class Number>
World<Number> worldOf(const ReferenceOutput& output) {
    World<Number> world;
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 2; ++x) {
            std::array<Number, 4> argb;
            for (std::size_t n = 0; n < 4; ++n) {
                argb[n] = static_cast<Number>(output.at(x, y).argb[n]);
            }
            world.set(x, y, argb);
        }
    }
    return world;
}

const ReferencePicture fourPixels = {2,
                                     2,
                                     {{{0.5, 0.25, 0.0, 0.5}, true},
                                      {{1.0, 1.0, 1.0, 1.0}, true},
                                      {{0.0, 0.0, 0.0, 0.0}, false},
                                      {{0.1, 0.2, 0.3, 1.0}, true}}};

template <class Number>
void expectFindsWhatIsWrong(int bits, Number full) {
    const ReferenceOutput output = convertOutput(fourPixels, bits);
    World<Number> world = worldOf<Number>(output);
    PictureComparison comparison = compareSurePixels(output, world.bytes.data(), world.rowBytes, 0.001);
    EXPECT_EQ(comparison.compared, 3) << bits;
    EXPECT_EQ(comparison.wrong, 0) << bits << " " << comparison.firstWrong;

    world.set(0, 1, {full, full, full, full});  // not sure
    EXPECT_EQ(compareSurePixels(output, world.bytes.data(), world.rowBytes, 0.001).wrong, 0) << bits;

    world.set(1, 1, {full, 0, 0, 0});
    world.set(1, 0, {0, 0, 0, 0});
    comparison = compareSurePixels(output, world.bytes.data(), world.rowBytes, 0.001);
    EXPECT_EQ(comparison.wrong, 2) << bits;
    EXPECT_EQ(comparison.firstWrong.substr(0, 13), "pixel (1, 0):") << bits;
}

TEST(ReferenceOutput, ComparisonFindsWrongPixelsAtEveryDepth) {
    expectFindsWhatIsWrong<std::uint8_t>(8, 255);
    expectFindsWhatIsWrong<std::uint16_t>(16, 32768);
    expectFindsWhatIsWrong<float>(32, 1.0f);
}

TEST(ReferenceOutput, ComparisonAllowsColoursMoreWhereAlphaIsSmall) {
    const ReferenceOutput output =
        convertOutput({2, 1, {{{0.5, 0.5, 0.5, 1.0}, true}, {{0.05, 0.05, 0.05, 0.1}, true}}}, 32);
    const float off[8] = {1.0f, 0.505f, 0.5f, 0.5f, 0.1f, 0.505f, 0.5f, 0.5f};
    const auto* pixels = reinterpret_cast<const std::byte*>(off);
    EXPECT_EQ(compareSurePixels(output, pixels, sizeof off, 0.001).wrong, 1);
    EXPECT_EQ(compareSurePixels(output, pixels, sizeof off, 0.006).wrong, 0);
    EXPECT_EQ(compareSurePixels(output, pixels, sizeof off, 0.0001).wrong, 2);
}

TEST(ReferenceOutput, ComparisonTakesNoNumberThatIsNone) {
    const ReferenceOutput output = convertOutput(onePixel({1.0, 1.0, 1.0, 1.0}), 32);
    const float odd[4] = {1.0f, std::numeric_limits<float>::quiet_NaN(), 1.0f, 1.0f};
    EXPECT_EQ(compareSurePixels(output, reinterpret_cast<const std::byte*>(odd), sizeof odd, 0.5).wrong, 1);
}

}  // namespace
}  // namespace Tessavoy
