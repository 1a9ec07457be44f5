#include "Host/Drawing/CairoSurface.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Host/HostError.h"
#include "Tests/Support/DrawnPixels.h"

namespace TessavoyHost {
namespace {

constexpr DRAWBOT_ColorRGBA white = {1, 1, 1, 1}, red = {1, 0, 0, 1}, blue = {0, 0, 1, 1};
constexpr Rgba whitePixel = {255, 255, 255}, redPixel = {255, 0, 0}, bluePixel = {0, 0, 255};

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

// A white sheet of 40 by 30 pixels. What is drawn there without a fraction of a pixel has sharp edges.
class HostCairoSurface : public testing::Test {
protected:
    Rgba at(int x, int y) const { return drawnPixel(surface.image(), x, y); }
    // Where pixels are not white.
    Region ink() const { return inkOf(surface.image(), whitePixel); }

    void fillSheet() { surface.paintRect({0, 0, 40, 30}, red); }

    CairoSurface surface{40, 30, white};
};

DRAWBOT_MatrixF32 shift(float x, float y) {
    return {{{1, 0, 0}, {0, 1, 0}, {x, y, 1}}};
}
DRAWBOT_MatrixF32 scale(float x, float y) {
    return {{{x, 0, 0}, {0, y, 0}, {0, 0, 1}}};
}

TEST_F(HostCairoSurface, BeginsWithItsBackground) {
    const Image image = CairoSurface(3, 2, {1, 0, 0, 0.2F}).image();
    EXPECT_EQ(image.width, 3);
    EXPECT_EQ(image.height, 2);
    ASSERT_EQ(image.samples.size(), 24u);
    // Alpha 0.2 is 51 of 255, and the picture's colours are straight.
    EXPECT_EQ(drawnPixel(image, 2, 1), (Rgba{255, 0, 0, 51}));
    EXPECT_EQ(ink(), Region{});
}

TEST_F(HostCairoSurface, RefusesSizesThatAreNone) {
    EXPECT_THROW(CairoSurface(-1, 5, white), HostError);
    EXPECT_THROW(CairoSurface(100000, 5, white), HostError);
}

TEST_F(HostCairoSurface, ARectangleCoversItsPixelsAndNoOthers) {
    surface.paintRect({5, 6, 10, 3}, red);
    EXPECT_EQ(ink(), (Region{5, 6, 10, 3}));
    EXPECT_EQ(at(5, 6), redPixel);
    EXPECT_EQ(at(14, 8), redPixel);
}

// Half of blue and half of white is 127.5 in red and green.
TEST_F(HostCairoSurface, AlphaLaysAColourOverWhatIsThere) {
    surface.paintRect({0, 0, 4, 4}, {0, 0, 1, 0.5F});
    const Rgba mixed = at(1, 1);
    EXPECT_NEAR(mixed.red, 127.5, 1);
    EXPECT_EQ(mixed.blue, 255);
    EXPECT_EQ(mixed.alpha, 255);
}

TEST_F(HostCairoSurface, ClipsOnlyNarrow) {
    surface.clip({10, 5, 20, 20});
    surface.clip({0, 0, 15, 12});
    fillSheet();
    EXPECT_EQ(ink(), (Region{10, 5, 5, 7}));
}

TEST_F(HostCairoSurface, AnEmptyClipHidesAll) {
    surface.clip({10, 5, -3, 4});
    fillSheet();
    EXPECT_EQ(ink(), Region{});
}

TEST_F(HostCairoSurface, AClipBeyondAllNumbersHidesNothing) {
    surface.clip({-2'000'000'000, -2'000'000'000, 2'147'483'647, 2'147'483'647});
    fillSheet();
    EXPECT_EQ(ink(), (Region{0, 0, 40, 30}));
}

TEST_F(HostCairoSurface, StatesNest) {
    surface.pushState();
    surface.clip({0, 0, 10, 10});
    surface.transform(shift(4, 0));
    surface.pushState();
    surface.clip({0, 0, 3, 3});
    surface.paintRect({0, 0, 40, 30}, red);
    EXPECT_EQ(ink(), (Region{4, 0, 3, 3}));
    surface.popState();
    surface.paintRect({0, 0, 40, 5}, red);
    EXPECT_EQ(ink(), (Region{4, 0, 6, 5})) << "the outer clip and shift are back";
    surface.popState();
    fillSheet();
    EXPECT_EQ(ink(), (Region{0, 0, 40, 30}));
}

// A doubling after a shift: a point is doubled, then shifted.
TEST_F(HostCairoSurface, LaterTransformsApplyFirst) {
    surface.transform(shift(5, 1));
    surface.transform(scale(2, 3));
    surface.paintRect({1, 2, 4, 3}, red);
    EXPECT_EQ(ink(), (Region{7, 7, 8, 9}));
}

// Turned by a quarter: (x, y) comes to (20 - y, 3 + x).
TEST_F(HostCairoSurface, TheRowsOfAMatrixAreTheAxes) {
    surface.transform({{{0, 1, 0}, {-1, 0, 0}, {20, 3, 1}}});
    surface.paintRect({0, 0, 8, 5}, red);
    EXPECT_EQ(ink(), (Region{15, 3, 5, 8}));
}

TEST_F(HostCairoSurface, ATransformWithoutAnAreaHidesAllUntilItIsPopped) {
    for (const DRAWBOT_MatrixF32& matrix :
         {scale(0, 1), scale(notANumber, 1), scale(infinity, 1), shift(infinity, 0), scale(1e30F, 1e30F)}) {
        surface.pushState();
        surface.transform(matrix);
        fillSheet();
        surface.popState();
        EXPECT_EQ(ink(), Region{});
    }
    fillSheet();
    EXPECT_EQ(at(39, 29), redPixel);
}

// Two squares, the inner one wound like the outer: by the even-odd rule a point in both is outside, by the other
// inside.
TEST_F(HostCairoSurface, FillRulesDifferWhereAPathCoversItself) {
    const DrawnPath nested = {PathPiece::Rectangle{{2, 2, 12, 12}}, PathPiece::Rectangle{{5, 5, 6, 6}}};
    surface.fillPath(nested, red, kDRAWBOT_FillType_EvenOdd);
    EXPECT_EQ(at(8, 8), whitePixel);
    EXPECT_EQ(at(3, 3), redPixel);
    surface.fillPath(nested, blue, kDRAWBOT_FillType_Winding);
    EXPECT_EQ(at(8, 8), bluePixel);
    EXPECT_EQ(at(3, 3), bluePixel);
}

// Wound the other way round, the inner square takes back what the outer gave.
TEST_F(HostCairoSurface, WindingCountsDirections) {
    surface.fillPath({PathPiece::Rectangle{{2, 2, 12, 12}}, PathPiece::Move{{5, 5}}, PathPiece::Line{{5, 11}},
                      PathPiece::Line{{11, 11}}, PathPiece::Line{{11, 5}}, PathPiece::Close{}},
                     red, kDRAWBOT_FillType_Winding);
    EXPECT_EQ(at(8, 8), whitePixel);
    EXPECT_EQ(at(3, 3), redPixel);
}

// From 0 to 90 degrees lies the quarter to the right and below, as y goes downwards.
TEST_F(HostCairoSurface, ArcsGoClockwiseAsSeen) {
    surface.fillPath({PathPiece::Move{{20, 15}}, PathPiece::Arc{{20, 15}, 10, 0, 90}, PathPiece::Close{}}, red,
                     kDRAWBOT_FillType_Winding);
    EXPECT_EQ(at(25, 19), redPixel);
    EXPECT_EQ(ink(), (Region{20, 15, 10, 10}));
}

TEST_F(HostCairoSurface, ANegativeSweepGoesTheOtherWay) {
    surface.fillPath({PathPiece::Move{{20, 15}}, PathPiece::Arc{{20, 15}, 10, 0, -90}, PathPiece::Close{}}, red,
                     kDRAWBOT_FillType_Winding);
    EXPECT_EQ(at(25, 11), redPixel);
    EXPECT_EQ(ink(), (Region{20, 5, 10, 10}));
}

// Pixels whose middles lie a pixel inside of a circle are covered, those a pixel outside are not.
TEST_F(HostCairoSurface, AWholeTurnIsADisc) {
    surface.fillPath({PathPiece::Arc{{20, 15}, 9, 30, 360}}, red, kDRAWBOT_FillType_Winding);
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 40; ++x) {
            const double distance = std::hypot(x + 0.5 - 20, y + 0.5 - 15);
            if (distance < 8) {
                EXPECT_EQ(at(x, y), redPixel) << x << ' ' << y;
            } else if (distance > 10) {
                EXPECT_EQ(at(x, y), whitePixel) << x << ' ' << y;
            }
        }
    }
}

// At its middle the curve is at (p0 + 3 p1 + 3 p2 + p3) / 8: 3/4 of the way down to the control points.
TEST_F(HostCairoSurface, CurvesAreCubicBeziers) {
    surface.fillPath({PathPiece::Move{{4, 2}}, PathPiece::Curve{{4, 26}, {36, 26}, {36, 2}}, PathPiece::Close{}}, red,
                     kDRAWBOT_FillType_Winding);
    EXPECT_EQ(at(20, 18), redPixel) << "the curve is 20 down";
    EXPECT_EQ(at(20, 21), whitePixel);
}

TEST_F(HostCairoSurface, APenDrawsAroundItsLine) {
    surface.strokePath({PathPiece::Move{{5, 10}}, PathPiece::Line{{25, 10}}}, red, 4);
    EXPECT_EQ(ink(), (Region{5, 8, 20, 4}));
    surface.strokePath({PathPiece::Rectangle{{30, 20, 6, 6}}}, blue, 2);
    EXPECT_EQ(at(30, 22), bluePixel);
    EXPECT_EQ(at(29, 22), bluePixel);
    EXPECT_EQ(at(33, 23), whitePixel) << "only the outline";
}

// Without anti-aliasing a pixel is covered or not; with it the pixels along a slope are between.
TEST_F(HostCairoSurface, AntiAliasingSoftensSlopes) {
    const DrawnPath slope = {PathPiece::Move{{0, 0}}, PathPiece::Line{{40, 13}}, PathPiece::Line{{0, 30}}};
    const auto between = [this] {
        int count = 0;
        for (int y = 0; y < 30; ++y) {
            for (int x = 0; x < 40; ++x)
                count += at(x, y) != whitePixel && at(x, y) != redPixel ? 1 : 0;
        }
        return count;
    };
    surface.fillPath(slope, red, kDRAWBOT_FillType_Winding);
    EXPECT_EQ(between(), 0);
    surface.paintRect({0, 0, 40, 30}, white);
    surface.setAntiAliasing(kDRAWBOT_AntiAliasPolicy_High);
    surface.fillPath(slope, red, kDRAWBOT_FillType_Winding);
    EXPECT_GT(between(), 20);
}

DrawnImage imageOf(int width, int height, std::initializer_list<int> values) {
    DrawnImage image{width, height, {}};
    for (const int value : values)
        image.samples.push_back(static_cast<std::byte>(value));
    return image;
}

// Blue, green, red, alpha, premultiplied: opaque red, and blue at alpha 51, a fifth.
TEST_F(HostCairoSurface, ImagesArePremultiplied) {
    surface.drawImage(imageOf(2, 1, {0, 0, 255, 255, 51, 0, 0, 51}), {10, 20}, 1);
    EXPECT_EQ(ink(), (Region{10, 20, 2, 1}));
    EXPECT_EQ(at(10, 20), redPixel);
    EXPECT_EQ(at(11, 20), (Rgba{204, 204, 255}));
}

// Over white, red at half alpha leaves 127.5 of green and blue.
TEST_F(HostCairoSurface, ImagesFade) {
    surface.drawImage(imageOf(1, 1, {0, 0, 255, 255}), {3, 4}, 0.5F);
    EXPECT_EQ(at(3, 4).red, 255);
    EXPECT_NEAR(at(3, 4).green, 127.5, 1);
    surface.drawImage(imageOf(1, 1, {0, 0, 255, 255}), {7, 4}, 0);
    EXPECT_EQ(at(7, 4), whitePixel);
}

// A red and a blue pixel ten times as large: the nearest gives two fields, a finer filter colours between them.
TEST_F(HostCairoSurface, InterpolationMixesEnlargedPixels) {
    const DrawnImage pair = imageOf(2, 1, {0, 0, 255, 255, 255, 0, 0, 255});
    const auto drawn = [&](DRAWBOT_InterpolationPolicy policy) {
        surface.pushState();
        surface.setInterpolation(policy);
        surface.transform(scale(10, 10));
        surface.drawImage(pair, {0, 0}, 1);
        surface.popState();
    };
    drawn(kDRAWBOT_InterpolationPolicy_None);
    EXPECT_EQ(at(9, 5), redPixel);
    EXPECT_EQ(at(10, 5), bluePixel);
    EXPECT_EQ(ink(), (Region{0, 0, 20, 10}));
    drawn(kDRAWBOT_InterpolationPolicy_Med);
    EXPECT_NEAR(at(9, 5).red, 255 * 0.55, 4) << "0.05 of a pixel from the middle between both";
    EXPECT_NEAR(at(9, 5).blue, 255 * 0.45, 4);
    EXPECT_EQ(at(0, 0), redPixel) << "the border does not fade";
    drawn(kDRAWBOT_InterpolationPolicy_None);
    EXPECT_EQ(at(9, 5), redPixel);
}

TEST_F(HostCairoSurface, WhatIsNoPlaceIsLeftOut) {
    surface.setAntiAliasing(kDRAWBOT_AntiAliasPolicy_High);
    for (const float bad : {notANumber, infinity, -infinity, 1e30F}) {
        surface.paintRect({bad, 0, 10, 10}, red);
        surface.fillPath({PathPiece::Arc{{20, 15}, bad, 0, 360}, PathPiece::Arc{{bad, 15}, 4, 0, 360},
                          PathPiece::Curve{{0, 0}, {bad, 0}, {9, 9}}, PathPiece::Line{{bad, bad}}},
                         red, kDRAWBOT_FillType_Winding);
        surface.strokePath({PathPiece::Move{{5, bad}}, PathPiece::Line{{25, bad}}}, red, 4);
        surface.strokePath({PathPiece::Move{{5, 5}}, PathPiece::Line{{25, 5}}}, red, bad);
        surface.drawImage(imageOf(1, 1, {0, 0, 255, 255}), {bad, 0}, 1);
        surface.drawText({"text", {bad, 10}, 12, red});
        surface.drawText({"text", {10, 10}, bad, red});
        EXPECT_EQ(ink(), Region{}) << bad;
    }
    fillSheet();
    EXPECT_EQ(at(20, 15), redPixel) << "drawing goes on";
}

}  // namespace
}  // namespace TessavoyHost
