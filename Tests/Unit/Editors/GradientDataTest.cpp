#include "Source/Editors/GradientData.h"

#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <numbers>

#include "Tests/Support/FlatBytes.h"

namespace Tessavoy {

namespace {

using Colour = std::array<float, 4>;
constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();
constexpr std::int32_t Untouched = 99;

Colour colourAt(const GradientData& gradient, float t, std::int32_t* kind = nullptr) {
    Colour colour{};
    EvaluateGradient(gradient, t, colour.data(), kind);
    return colour;
}

std::int32_t kindAt(const GradientData& gradient, float t) {
    std::int32_t kind = Untouched;
    colourAt(gradient, t, &kind);
    return kind;
}

GradientPoint grey(std::int32_t kind, float level) {
    return {kind, level, level, level, 1.0f};
}

/// From (0, 0.2, 1, 1) at 0.25 to (1, 0.6, 0, 0.5) at 0.75.
GradientData twoPoints(std::int32_t kind) {
    return {{{0.25f, {kind, 0.0f, 0.2f, 1.0f, 1.0f}}, {0.75f, {kind, 1.0f, 0.6f, 0.0f, 0.5f}}}};
}

TEST(GradientData, DefaultIsOpaqueWhiteOfKindSinAtBothEnds) {
    const GradientPoint white{1, 1.0f, 1.0f, 1.0f, 1.0f};
    EXPECT_EQ(defaultGradient().points, (PositionMap<GradientPoint>{{0.0f, white}, {1.0f, white}}));
}

TEST(GradientData, WithoutPointsItIsOpaqueBlackOfKindSin) {
    EXPECT_EQ(colourAt({}, 0.5f), (Colour{0.0f, 0.0f, 0.0f, 1.0f}));
    EXPECT_EQ(kindAt({}, 0.5f), 1);
}

TEST(GradientData, OnePointIsItsColourEverywhere) {
    const GradientData gradient{{{0.5f, {2, 0.1f, 0.2f, 0.3f, 0.4f}}}};
    for (const float t : {-1.0f, 0.0f, 0.5f, 0.7f, 1.0f, 2.0f}) {
        EXPECT_EQ(colourAt(gradient, t), (Colour{0.1f, 0.2f, 0.3f, 0.4f})) << t;
        EXPECT_EQ(kindAt(gradient, t), 2) << t;
    }
}

TEST(GradientData, OutsideThePointsTheEndColoursAndKindsHold) {
    GradientData gradient = twoPoints(0);
    gradient.points[0.75f].kind = 2;
    EXPECT_EQ(colourAt(gradient, 0.1f), (Colour{0.0f, 0.2f, 1.0f, 1.0f}));
    EXPECT_EQ(kindAt(gradient, 0.1f), 0);
    EXPECT_EQ(colourAt(gradient, 0.9f), (Colour{1.0f, 0.6f, 0.0f, 0.5f}));
    EXPECT_EQ(kindAt(gradient, 0.9f), 2);
    EXPECT_EQ(colourAt(gradient, NotANumber), (Colour{1.0f, 0.6f, 0.0f, 0.5f}));
}

TEST(GradientData, ExactlyOnAPointItsOwnColourHolds) {
    for (const std::int32_t kind : {0, 1, 2}) {
        EXPECT_EQ(colourAt(twoPoints(kind), 0.25f), (Colour{0.0f, 0.2f, 1.0f, 1.0f})) << kind;
        EXPECT_EQ(colourAt(twoPoints(kind), 0.75f), (Colour{1.0f, 0.6f, 0.0f, 0.5f})) << kind;
    }
}

TEST(GradientData, LinearBlendsInAllFourChannelsAndLeavesTheKind) {
    const Colour quarter = colourAt(twoPoints(0), 0.375f);
    EXPECT_FLOAT_EQ(quarter[0], 0.25f);
    EXPECT_FLOAT_EQ(quarter[1], 0.3f);
    EXPECT_FLOAT_EQ(quarter[2], 0.75f);
    EXPECT_FLOAT_EQ(quarter[3], 0.875f);
    EXPECT_EQ(kindAt(twoPoints(0), 0.375f), Untouched);
}

// (1 - cos(pi u)) / 2 is the square of sin(pi u / 2).
TEST(GradientData, SinIsSevenTenthsEaseAndThreeTenthsLine) {
    const GradientData gradient{{{0.0f, grey(1, 0.0f)}, {1.0f, grey(0, 1.0f)}}};
    for (int step = 0; step < 1000; ++step) {
        const float t = static_cast<float>(step) / 1000.0f;
        const double sine = std::sin(std::numbers::pi * 0.5 * static_cast<double>(t));
        EXPECT_NEAR(colourAt(gradient, t)[0], 0.7 * sine * sine + 0.3 * static_cast<double>(t), 1e-6) << t;
    }
    EXPECT_EQ(kindAt(gradient, 0.3f), Untouched);
}

TEST(GradientData, EdgeKeepsTheFirstColourUpToTheNextPoint) {
    const GradientData gradient = twoPoints(2);
    EXPECT_EQ(colourAt(gradient, std::nextafter(0.75f, 0.0f)), (Colour{0.0f, 0.2f, 1.0f, 1.0f}));
    EXPECT_EQ(kindAt(gradient, 0.5f), 2);
    EXPECT_EQ(colourAt(gradient, 0.75f), (Colour{1.0f, 0.6f, 0.0f, 0.5f}));
}

TEST(GradientData, TheStretchTakesTheKindOfItsFirstPoint) {
    const GradientData gradient{{{0.0f, grey(2, 0.1f)}, {0.5f, grey(0, 0.3f)}, {1.0f, grey(1, 0.7f)}}};
    EXPECT_FLOAT_EQ(colourAt(gradient, 0.4f)[0], 0.1f);
    EXPECT_FLOAT_EQ(colourAt(gradient, 0.75f)[0], 0.5f);
}

TEST(GradientData, UnknownKindsBlendAsLinear) {
    for (const std::int32_t kind : {-1, 3, 1 << 30}) {
        EXPECT_EQ(colourAt(twoPoints(kind), 0.4f), colourAt(twoPoints(0), 0.4f)) << kind;
        EXPECT_EQ(kindAt(twoPoints(kind), 0.4f), Untouched) << kind;
        EXPECT_EQ(kindAt(twoPoints(kind), 0.1f), kind) << kind;
    }
}

TEST(GradientData, InsertedPointOverwritesAtExactlyItsPosition) {
    GradientData gradient = twoPoints(0);
    InsertPoint(gradient, 0.25f, grey(2, 0.5f));
    EXPECT_EQ(gradient.points.size(), 2u);
    EXPECT_EQ(gradient.points.at(0.25f), grey(2, 0.5f));
    InsertPoint(gradient, std::nextafter(0.25f, 1.0f), grey(1, 0.25f));
    EXPECT_EQ(gradient.points.size(), 3u);
}

TEST(GradientData, FlatFormIsCountThenSixNumbersAPoint) {
    const GradientData gradient{{{1.0f, {2, 0.1f, 0.2f, 0.3f, 0.4f}}, {0.5f, {1, 1.0f, 0.0f, 0.25f, 0.75f}}}};
    const auto expected = flatBytes({2, 0.5f, 1, 1.0f, 0.0f, 0.25f, 0.75f, 1.0f, 2, 0.1f, 0.2f, 0.3f, 0.4f});
    EXPECT_EQ(flatten(gradient), expected);
    EXPECT_EQ(flatSize(gradient), 52u);
    EXPECT_EQ(flatten({}), flatBytes({0}));
    EXPECT_EQ(flatSize({}), 4u);
}

TEST(GradientData, FlatFormReadsBackBitForBit) {
    const float denormal = std::numeric_limits<float>::denorm_min();
    const GradientData gradient{{{-0.0f, {7, denormal, -3.0f, 1e30f, 0.1f}}, {0.3f, grey(2, 0.7f)}}};
    GradientData read = defaultGradient();
    ASSERT_TRUE(unflatten(flatten(gradient), read));
    EXPECT_EQ(read.points, gradient.points);
    EXPECT_EQ(flatten(read), flatten(gradient));
}

TEST(GradientData, FewerThanFourBytesFailAndLeaveTheGradient) {
    for (std::size_t size = 0; size < 4; ++size) {
        GradientData gradient = defaultGradient();
        EXPECT_FALSE(unflatten(std::vector<std::byte>(size), gradient));
        EXPECT_EQ(gradient.points, defaultGradient().points);
    }
}

TEST(GradientData, CountsBelowOneGiveNoPoints) {
    for (const std::int32_t count : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        GradientData gradient = defaultGradient();
        EXPECT_TRUE(unflatten(flatBytes({count, 0.5f}), gradient)) << count;
        EXPECT_TRUE(gradient.points.empty()) << count;
    }
}

TEST(GradientData, BytesAfterTheLastPointAreIgnored) {
    auto flat = flatten(twoPoints(1));
    flat.resize(flat.size() + 100);
    GradientData gradient;
    EXPECT_TRUE(unflatten(flat, gradient));
    EXPECT_EQ(gradient.points, twoPoints(1).points);
}

TEST(GradientData, LaterPointsOverwriteEarlierOnesAtTheSamePosition) {
    GradientData gradient;
    const auto flat = flatBytes({2, 0.5f, 0, 1.0f, 1.0f, 1.0f, 1.0f, 0.5f, 2, 0.25f, 0.25f, 0.25f, 1.0f});
    EXPECT_TRUE(unflatten(flat, gradient));
    EXPECT_EQ(gradient.points, (PositionMap<GradientPoint>{{0.5f, grey(2, 0.25f)}}));
}

// A record cut off after its position leaves a point and fails; cut off within its position it leaves none.
TEST(GradientData, EveryTruncationFailsAndKeepsThePointsWhosePositionsAreThere) {
    const auto flat = flatten(twoPoints(1));
    for (std::size_t size = 4; size < flat.size(); ++size) {
        const std::vector<std::byte> cut(flat.begin(), flat.begin() + static_cast<std::ptrdiff_t>(size));
        GradientData gradient = defaultGradient();
        EXPECT_FALSE(unflatten(cut, gradient)) << size;
        const std::size_t expected = (size >= 8 ? 1u : 0u) + (size >= 32 ? 1u : 0u);
        EXPECT_EQ(gradient.points.size(), expected) << size;
    }
}

TEST(GradientData, EveryFlippedBitReadsWithinItsBytes) {
    const auto flat = flatten(twoPoints(1));
    for (std::size_t bit = 0; bit < flat.size() * 8; ++bit) {
        auto hostile = flat;
        hostile[bit / 8] ^= static_cast<std::byte>(1 << bit % 8);
        const auto count = static_cast<std::int64_t>(static_cast<std::int32_t>(
            std::to_integer<std::uint32_t>(hostile[0]) | std::to_integer<std::uint32_t>(hostile[1]) << 8 |
            std::to_integer<std::uint32_t>(hostile[2]) << 16 | std::to_integer<std::uint32_t>(hostile[3]) << 24));
        GradientData gradient;
        EXPECT_EQ(unflatten(hostile, gradient), count <= 2) << bit;
        EXPECT_LE(gradient.points.size(), 2u) << bit;
        colourAt(gradient, 0.5f);
        EXPECT_TRUE(sameValue(gradient, gradient)) << bit;
    }
}

TEST(GradientData, PositionsThatAreNoNumbersStandLastAndOnlyCountThere) {
    GradientData gradient;
    ASSERT_TRUE(unflatten(flatBytes({3, NotANumber, 0, 0.5f, 0.5f, 0.5f, 1.0f, 0.0f, 0, 0.0f, 0.0f, 0.0f, 1.0f, 1.0f, 0,
                                     1.0f, 1.0f, 1.0f, 1.0f}),
                          gradient));
    ASSERT_EQ(gradient.points.size(), 3u);
    EXPECT_EQ(colourAt(gradient, 0.25f)[0], 0.25f);
    EXPECT_EQ(colourAt(gradient, 1.0f)[0], 0.5f);
    GradientData again;
    ASSERT_TRUE(unflatten(flatten(gradient), again));
    EXPECT_EQ(again.points.size(), 3u);
}

TEST(GradientData, TextNamesEachPointInOrder) {
    EXPECT_EQ(printText(defaultGradient()), "Gradient t 0 sin  r 1 g 1 b 1 a 1 t 1 sin  r 1 g 1 b 1 a 1");
    EXPECT_EQ(printText({}), "Gradient");
    const GradientData gradient{{{1.0f / 3.0f, {0, 1e-7f, -2.0f, 123456789.0f, 0.5f}}, {1.0f, grey(2, 0.25f)}}};
    EXPECT_EQ(printText(gradient),
              "Gradient t 0.333333 linear  r 1e-07 g -2 b 1.23457e+08 a 0.5 t 1 edge  r 0.25 g 0.25 b 0.25 a 1");
}

TEST(GradientData, UnknownKindsPrintAsTheKindTheyBlendLike) {
    EXPECT_EQ(printText({{{0.0f, grey(3, 1.0f)}}}), "Gradient t 0 linear  r 1 g 1 b 1 a 1");
    EXPECT_EQ(printText({{{0.0f, grey(-1, 1.0f)}}}), "Gradient t 0 linear  r 1 g 1 b 1 a 1");
}

struct CommaPoint : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

TEST(GradientData, TextsDoNotFollowTheProgramsLocale) {
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
    const GradientData gradient{{{0.5f, grey(0, 0.25f)}}};
    const std::string text = printText(gradient);
    GradientData read;
    const bool scanned = scanText(text, read);
    std::locale::global(before);
    EXPECT_EQ(text, "Gradient t 0.5 linear  r 0.25 g 0.25 b 0.25 a 1");
    EXPECT_TRUE(scanned);
    EXPECT_EQ(read.points, gradient.points);
}

TEST(GradientData, ScannedPointsAreAddedToThoseThere) {
    GradientData gradient = defaultGradient();
    EXPECT_TRUE(scanText("Gradient t 0.5 edge r 0.1 g 0.2 b 0.3 a 0.4 t 1 linear r 0 g 0 b 0 a 0", gradient));
    const PositionMap<GradientPoint> expected = {
        {0.0f, {1, 1.0f, 1.0f, 1.0f, 1.0f}}, {0.5f, {2, 0.1f, 0.2f, 0.3f, 0.4f}}, {1.0f, {0, 0.0f, 0.0f, 0.0f, 0.0f}}};
    EXPECT_EQ(gradient.points, expected);
}

TEST(GradientData, TextOfTheFirstWordAloneKeepsThePoints) {
    for (const char* text : {"Gradient", "  Gradient\r\n\t "}) {
        GradientData gradient = defaultGradient();
        EXPECT_TRUE(scanText(text, gradient)) << text;
        EXPECT_EQ(gradient.points, defaultGradient().points);
    }
}

TEST(GradientData, PrintedTextScansBack) {
    const GradientData gradient{{{0.125f, {0, 0.5f, 0.25f, 0.75f, 1.0f}},
                                 {0.5f, {1, 0.0f, 1.0f, -2.5f, 0.5f}},
                                 {0.875f, {2, 1e-6f, 1e6f, 3.0f, 0.0f}}}};
    GradientData read;
    ASSERT_TRUE(scanText(printText(gradient), read));
    EXPECT_EQ(read.points, gradient.points);
}

TEST(GradientData, AnyOtherWordEndsTheScanning) {
    const char* const bad[] = {
        "",
        "   ",
        "gradient",
        "Gradients",
        "Gradien",
        "Gradientt 0.5 sin r 1 g 1 b 1 a 1",
        "Ramp",
        "Gradient x 0.5 sin r 1 g 1 b 1 a 1",
        "Gradient t 0.5 Sin r 1 g 1 b 1 a 1",
        "Gradient t 0.5 1 r 1 g 1 b 1 a 1",
        "Gradient t 0.5 sin g 1 r 1 b 1 a 1",
        "Gradient t 0.5 sin r 1 g 1 b 1 alpha 1",
        "Gradient t half sin r 1 g 1 b 1 a 1",
        "Gradient t nan sin r 1 g 1 b 1 a 1",
        "Gradient t inf sin r 1 g 1 b 1 a 1",
        "Gradient t 1e99 sin r 1 g 1 b 1 a 1",
        "Gradient t 0x1p0 sin r 1 g 1 b 1 a 1",
        "Gradient t 0,5 sin r 1 g 1 b 1 a 1",
        "Gradient t 0.5 sin r 1 g 1 b 1 a",
        "Gradient t 0.5 sin r 1 g 1 b 1",
        "Gradient t",
    };
    for (const char* text : bad) {
        GradientData gradient = defaultGradient();
        EXPECT_FALSE(scanText(text, gradient)) << text;
        EXPECT_EQ(gradient.points, defaultGradient().points) << text;
    }
}

TEST(GradientData, WhatWasScannedBeforeABadWordStays) {
    GradientData gradient;
    EXPECT_FALSE(scanText("Gradient t 0.5 sin r 1 g 1 b 1 a 1 t 0.6 sine r 1 g 1 b 1 a 1", gradient));
    EXPECT_EQ(gradient.points, (PositionMap<GradientPoint>{{0.5f, grey(1, 1.0f)}}));
}

TEST(GradientData, EveryTruncatedTextScansOrFailsByItself) {
    const std::string text = "Gradient t 0.5 edge r 0.1 g 0.2 b 0.3 a 0.4";
    for (std::size_t size = 0; size < text.size(); ++size) {
        GradientData gradient;
        const bool whole = size == 8 || size == 9 || size + 2 >= text.size();  // "Gradient", or a cut last number
        EXPECT_EQ(scanText(text.substr(0, size), gradient), whole) << text.substr(0, size);
    }
}

TEST(GradientData, InterpolationPairsPointsByRank) {
    const GradientData first{{{0.0f, {2, 0.0f, 0.2f, 0.4f, 1.0f}}, {0.5f, {0, 1.0f, 1.0f, 1.0f, 0.0f}}}};
    const GradientData second{{{0.4f, {1, 1.0f, 0.6f, 0.0f, 0.0f}}, {0.9f, {1, 0.0f, 0.0f, 0.0f, 1.0f}}}};
    const GradientData middle = interpolate(first, second, 0.25);
    ASSERT_EQ(middle.points.size(), 2u);
    const auto& [position, point] = *middle.points.begin();
    EXPECT_FLOAT_EQ(position, 0.1f);
    EXPECT_EQ(point.kind, 2);
    EXPECT_FLOAT_EQ(point.r, 0.25f);
    EXPECT_FLOAT_EQ(point.g, 0.3f);
    EXPECT_FLOAT_EQ(point.b, 0.3f);
    EXPECT_FLOAT_EQ(point.a, 0.75f);
    EXPECT_FLOAT_EQ(middle.points.rbegin()->first, 0.6f);
    EXPECT_EQ(middle.points.rbegin()->second.kind, 0);
}

TEST(GradientData, InterpolationAtTheEndsGivesTheSidesWithTheFirstKinds) {
    const GradientData first = twoPoints(2);
    const GradientData second{{{0.1f, grey(0, 0.3f)}, {0.3f, grey(0, 0.6f)}}};
    EXPECT_EQ(interpolate(first, second, 0.0).points, first.points);
    EXPECT_EQ(interpolate(first, second, 1.0).points,
              (PositionMap<GradientPoint>{{0.1f, grey(2, 0.3f)}, {0.3f, grey(2, 0.6f)}}));
}

TEST(GradientData, RemainingPointsPairWithTheLastOfTheShorter) {
    const GradientData one{{{0.5f, grey(2, 0.5f)}}};
    const GradientData three{{{0.1f, grey(0, 0.1f)}, {0.7f, grey(0, 0.9f)}, {0.9f, grey(1, 0.3f)}}};
    const GradientData fromOne = interpolate(one, three, 0.5);
    const GradientData fromThree = interpolate(three, one, 0.5);
    ASSERT_EQ(fromOne.points.size(), 3u);
    ASSERT_EQ(fromThree.points.size(), 3u);
    const float positions[] = {0.3f, 0.6f, 0.7f};
    const float levels[] = {0.3f, 0.7f, 0.4f};
    const std::int32_t kinds[] = {0, 0, 1};
    auto left = fromOne.points.begin();
    auto right = fromThree.points.begin();
    for (std::size_t n = 0; n < 3; ++n, ++left, ++right) {
        EXPECT_FLOAT_EQ(left->first, positions[n]);
        EXPECT_FLOAT_EQ(right->first, positions[n]);
        EXPECT_FLOAT_EQ(left->second.r, levels[n]);
        EXPECT_FLOAT_EQ(right->second.r, levels[n]);
        EXPECT_EQ(left->second.kind, 2);
        EXPECT_EQ(right->second.kind, kinds[n]);
    }
}

TEST(GradientData, AgainstNoPointsTheOtherFadesToOpaqueBlack) {
    const GradientData gradient{{{0.2f, {2, 0.4f, 0.8f, 1.0f, 0.5f}}}};
    const GradientData in = interpolate({}, gradient, 0.25);
    const GradientData out = interpolate(gradient, {}, 0.75);
    for (const GradientData& faded : {in, out}) {
        ASSERT_EQ(faded.points.size(), 1u);
        EXPECT_EQ(faded.points.begin()->first, 0.2f);
        const GradientPoint& point = faded.points.begin()->second;
        EXPECT_EQ(point.kind, 1);
        EXPECT_FLOAT_EQ(point.r, 0.1f);
        EXPECT_FLOAT_EQ(point.g, 0.2f);
        EXPECT_FLOAT_EQ(point.b, 0.25f);
        EXPECT_FLOAT_EQ(point.a, 0.875f);
    }
    EXPECT_TRUE(interpolate({}, {}, 0.5).points.empty());
}

TEST(GradientData, PointsThatMeetOverwriteEachOther) {
    const GradientData first{{{0.0f, grey(0, 0.1f)}, {1.0f, grey(1, 0.2f)}}};
    const GradientData second{{{0.0f, grey(0, 0.3f)}}};
    const GradientData met = interpolate(first, second, 1.0);
    ASSERT_EQ(met.points.size(), 1u);
    EXPECT_EQ(met.points.begin()->second.kind, 1);
}

TEST(GradientData, SameValueNeedsCountPositionsKindsAndNearChannels) {
    const GradientData gradient = twoPoints(1);
    EXPECT_TRUE(sameValue(gradient, gradient));
    EXPECT_TRUE(sameValue({}, {}));
    EXPECT_FALSE(sameValue(gradient, {}));
    EXPECT_FALSE(sameValue({}, gradient));
    EXPECT_FALSE(sameValue(gradient, twoPoints(0)));

    GradientData other = gradient;
    InsertPoint(other, 0.5f, grey(0, 0.5f));
    EXPECT_FALSE(sameValue(gradient, other));

    other = gradient;
    other.points.erase(0.75f);
    InsertPoint(other, std::nextafter(0.75f, 1.0f), gradient.points.at(0.75f));
    EXPECT_FALSE(sameValue(gradient, other));
}

TEST(GradientData, EachChannelMayDifferByATenThousandthOnly) {
    const GradientPoint base{0, 0.5f, 0.5f, 0.5f, 0.5f};
    for (float GradientPoint::*channel : {&GradientPoint::r, &GradientPoint::g, &GradientPoint::b, &GradientPoint::a}) {
        GradientPoint near = base;
        GradientPoint far = base;
        near.*channel += 0.00009f;
        far.*channel -= 0.00011f;
        EXPECT_TRUE(sameValue({{{0.0f, base}}}, {{{0.0f, near}}}));
        EXPECT_FALSE(sameValue({{{0.0f, base}}}, {{{0.0f, far}}}));
    }
}

}  // namespace
}  // namespace Tessavoy
