#include "Host/Drawing/Drawing.h"

#include <gtest/gtest.h>

namespace TessavoyHost {
namespace {

constexpr Region frame = {10, 20, 100, 50};

class HostDrawing : public testing::Test {
protected:
    DrawingSurface surface;
    Drawing drawing{surface, frame, nullptr};
};

TEST_F(HostDrawing, BeginsWithTheFrameAsItsClip) {
    EXPECT_EQ(drawing.clipBounds(), frame);
    EXPECT_EQ(drawing.depth(), 0);
    EXPECT_EQ(drawing.interpolation(), kDRAWBOT_InterpolationPolicy_None);
    EXPECT_EQ(drawing.antiAliasing(), kDRAWBOT_AntiAliasPolicy_None);
}

TEST_F(HostDrawing, AClipOnlyNarrows) {
    drawing.clip({50, 0, 200, 40});
    EXPECT_EQ(drawing.clipBounds(), (Region{50, 20, 60, 20}));
    drawing.clip({0, 0, 1000, 1000});
    EXPECT_EQ(drawing.clipBounds(), (Region{50, 20, 60, 20}));
    EXPECT_TRUE(drawing.isWithinClip({50, 20, 60, 20}));
    EXPECT_FALSE(drawing.isWithinClip({49, 20, 5, 5}));
    drawing.clip({0, 0, 10, 10});
    EXPECT_TRUE(drawing.clipBounds().empty());
}

// A doubling after a shift by (5, 1): the rectangle is doubled first, then shifted. Its rows are the x axis, the y axis
// and the translation.
TEST_F(HostDrawing, LaterTransformsApplyFirst) {
    drawing.transform({{{1, 0, 0}, {0, 1, 0}, {5, 1, 1}}});
    drawing.transform({{{2, 0, 0}, {0, 2, 0}, {0, 0, 1}}});
    drawing.clip({10, 12, 20, 8});
    EXPECT_EQ(drawing.clipBounds(), (Region{25, 25, 40, 16}));
}

// Turned by a quarter, the x axis points down and the y axis to the left: (x, y) comes to (60 - y, 20 + x).
TEST_F(HostDrawing, ATurnedClipIsBoundedByItsCorners) {
    drawing.transform({{{0, 1, 0}, {-1, 0, 0}, {60, 20, 1}}});
    drawing.clip({0, 0, 30, 10});
    EXPECT_EQ(drawing.clipBounds(), (Region{50, 20, 10, 30}));
}

TEST_F(HostDrawing, AFractionOfAPixelCountsAsOne) {
    drawing.transform({{{1, 0, 0}, {0, 1, 0}, {0.25F, 0.75F, 1}}});
    drawing.clip({20, 30, 10, 10});
    EXPECT_EQ(drawing.clipBounds(), (Region{20, 30, 11, 11}));
}

TEST_F(HostDrawing, ATransformWithoutMeaningClipsToNothingOrAll) {
    drawing.transform({{{1e30F, 0, 0}, {0, 1e30F, 0}, {0, 0, 1}}});
    drawing.clip({-1, -1, 2, 2});
    EXPECT_EQ(drawing.clipBounds(), frame);
}

TEST_F(HostDrawing, PoppingBringsTheWholeStateBack) {
    drawing.push();
    drawing.clip({20, 20, 5, 5});
    drawing.transform({{{2, 0, 0}, {0, 2, 0}, {0, 0, 1}}});
    drawing.setInterpolation(kDRAWBOT_InterpolationPolicy_High);
    drawing.setAntiAliasing(kDRAWBOT_AntiAliasPolicy_Med);
    EXPECT_EQ(drawing.depth(), 1);
    EXPECT_EQ(drawing.interpolation(), kDRAWBOT_InterpolationPolicy_High);
    EXPECT_EQ(drawing.antiAliasing(), kDRAWBOT_AntiAliasPolicy_Med);
    EXPECT_TRUE(drawing.pop());
    EXPECT_EQ(drawing.clipBounds(), frame);
    EXPECT_EQ(drawing.interpolation(), kDRAWBOT_InterpolationPolicy_None);
    EXPECT_EQ(drawing.antiAliasing(), kDRAWBOT_AntiAliasPolicy_None);
    drawing.clip({20, 30, 7, 7});
    EXPECT_EQ(drawing.clipBounds(), (Region{20, 30, 7, 7}));
    EXPECT_FALSE(drawing.pop());
}

TEST_F(HostDrawing, ReferencesAreApart) {
    EXPECT_NE(static_cast<void*>(drawing.reference()), static_cast<void*>(drawing.supplier()));
    EXPECT_NE(static_cast<void*>(drawing.supplier()), static_cast<void*>(drawing.surfaceReference()));
    EXPECT_NE(static_cast<void*>(drawing.reference()), static_cast<void*>(drawing.surfaceReference()));
}

}  // namespace
}  // namespace TessavoyHost
