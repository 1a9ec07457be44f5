#include <array>
#include <cmath>
#include <numbers>

#include "Host/Drawing/CairoSurface.h"
#include "Host/Drawing/PanelReader.h"
#include "Host/Panel/PanelPainter.h"
#include "Host/Theme.h"
#include "Tests/Module/ModuleFixture.h"
#include "Tests/Support/DrawnPixels.h"
#include "Tests/Support/FlatBytes.h"

// What the module's own controls look like in the panel, judged by the formulas of what they show.

namespace TessavoyHost {
namespace {

using Tessavoy::flatBytes;
using testing::IsEmpty;

constexpr PF_Rect gradientFrame = {10, 20, 160, 70};
constexpr PF_Rect rampFrame = {10, 20, 160, 160};
constexpr int margin = 6;  // of the track in the frame, on each side

Rgba themePixel(PF_App_ColorType type) {
    const PF_App_Color color = themeColor(type);
    return {color.red / 0x101, color.green / 0x101, color.blue / 0x101};
}

class ModulePanelPictures : public ModuleFixture {
protected:
    Image drawn(const char* id, const std::vector<std::byte>& flat, const PF_Rect& frame) {
        ModuleScene scene = fourSquaresScene();
        scene.set(id, ParameterValue(ArbitraryValue{flat}));
        const auto instance = instanceOf(scene);
        CairoSurface surface(200, 200, {0, 0, 0, 1});
        const CommandResult result = PanelReader(*instance).draw(parameterIndexOf(id), frame, surface);
        EXPECT_EQ(result.error, PF_Err_NONE);
        EXPECT_THAT(result.broken, IsEmpty());
        return surface.image();
    }

    // A row of the bar, which is 6 pixels narrower than the frame and has the frame's middle; colours of opaque points
    // from 0 to 255 at each column's position.
    template <class ColorAt>
    void expectBar(const Image& image, ColorAt colorAt) {
        const int width = gradientFrame.right - gradientFrame.left - 6;
        for (int x = 0; x < width; ++x) {
            const Rgba actual = drawnPixel(image, gradientFrame.left + 3 + x, gradientFrame.top + margin + 4);
            const std::array<double, 3> expected = colorAt(static_cast<double>(x) / width);
            EXPECT_NEAR(actual.red, expected[0], 1.01) << x;
            EXPECT_NEAR(actual.green, expected[1], 1.01) << x;
            EXPECT_NEAR(actual.blue, expected[2], 1.01) << x;
        }
    }
};

TEST_F(ModulePanelPictures, AGradientsBarGoesStraightBetweenLinearPoints) {
    const Image image =
        drawn("Gradient.Custom1", flatBytes({2, 0.0F, 0, 1.0F, 0.0F, 0.0F, 1.0F, 1.0F, 0, 0.0F, 0.5F, 1.0F, 1.0F}),
              gradientFrame);
    expectBar(image, [](double t) { return std::array{255 * (1 - t), 127.5 * t, 255 * t}; });
}

// Between points of the kind sin a share of 0.7 goes by the cosine, and 0.3 straight.
TEST_F(ModulePanelPictures, AGradientsBarEasesBetweenSinPoints) {
    const Image image =
        drawn("FogColorGradient", flatBytes({2, 0.0F, 1, 0.0F, 0.0F, 0.0F, 1.0F, 1.0F, 1, 1.0F, 1.0F, 1.0F, 1.0F}),
              gradientFrame);
    expectBar(image, [](double t) {
        const double grey = 255 * (0.7 * (1 - std::cos(std::numbers::pi * t)) / 2 + 0.3 * t);
        return std::array{grey, grey, grey};
    });
}

TEST_F(ModulePanelPictures, AGradientsBarStepsAtEdgePoints) {
    const Image image = drawn("Gradient.Custom10",
                              flatBytes({3, 0.0F, 2, 1.0F, 0.0F, 0.0F, 1.0F, 0.5F, 2, 0.0F, 1.0F, 0.0F, 1.0F, 1.0F, 2,
                                         0.0F, 0.0F, 1.0F, 1.0F}),
                              gradientFrame);
    expectBar(image, [](double t) { return t < 0.5 ? std::array{255.0, 0.0, 0.0} : std::array{0.0, 255.0, 0.0}; });
}

// Markers have their points' colours and stand on the track from 16 to 154, below the bar.
TEST_F(ModulePanelPictures, MarkersStandAtTheirPointsPositions) {
    for (const std::int32_t kind : {0, 1, 2}) {
        const Image image = drawn(
            "Gradient.Custom1",
            flatBytes({2, 0.25F, kind, 0.0F, 1.0F, 0.0F, 1.0F, 0.75F, kind, 1.0F, 0.0F, 0.0F, 1.0F}), gradientFrame);
        const auto middleOf = [&](const Rgba& color) {
            int sum = 0, count = 0;
            for (int x = gradientFrame.left; x < gradientFrame.right; ++x) {
                const bool isMarker = drawnPixel(image, x, gradientFrame.bottom - 12) == color;
                sum += isMarker ? 2 * x + 1 : 0;
                count += isMarker ? 1 : 0;
            }
            EXPECT_GT(count, 2) << kind;
            return sum / (2.0 * count);
        };
        EXPECT_NEAR(middleOf({0, 255, 0}), 16 + 0.25 * 138, 1) << kind;
        EXPECT_NEAR(middleOf({255, 0, 0}), 16 + 0.75 * 138, 1) << kind;
    }
}

// From 0.2 to 0.9; the plot is 138 by 128 pixels with the value axis upwards, the curve two pixels wide.
TEST_F(ModulePanelPictures, ARampsCurveHasTheHeightOfItsValues) {
    using Value = double (*)(double);
    struct Kind {
        std::int32_t number;
        Value shareAt;
    };
    const Rgba ink = themePixel(PF_App_Color_TEXT), paper = themePixel(PF_App_Color_PANEL_BACKGROUND);
    for (const Kind& kind : {Kind{0, [](double t) { return (1 - std::cos(std::numbers::pi * t)) / 2; }},
                             Kind{1, [](double t) { return t; }}, Kind{2, [](double) { return 0.0; }}}) {
        const Image image = drawn("Ramp.Custom3", flatBytes({0, kind.number, 2, 0.0F, 0.2F, 1.0F, 0.9F}), rampFrame);
        const int left = rampFrame.left + margin, top = rampFrame.top + margin;
        for (int x = 12; x < 126; ++x) {
            const double value = 0.2 + 0.7 * kind.shareAt(x / 138.0);
            const int y = top + static_cast<int>(std::lround((1 - value) * 128));
            const bool isThere = drawnPixel(image, left + x, y) == ink || drawnPixel(image, left + x, y - 1) == ink;
            EXPECT_TRUE(isThere) << kind.number << ": " << x;
            EXPECT_EQ(drawnPixel(image, left + x, y - 7), paper) << kind.number << ": " << x;
            EXPECT_EQ(drawnPixel(image, left + x, y + 7), paper) << kind.number << ": " << x;
        }
    }
}

// A handle reaches 5 pixels from its point, where the curve itself is one pixel wide to each side.
TEST_F(ModulePanelPictures, HandlesStandAtTheirPoints) {
    const Image image = drawn("Ramp.Custom1", flatBytes({0, 2, 3, 0.0F, 0.5F, 0.5F, 0.25F, 1.0F, 0.5F}), rampFrame);
    const int x = rampFrame.left + margin + 69, y = rampFrame.top + margin + 96;
    const Rgba paper = themePixel(PF_App_Color_PANEL_BACKGROUND);
    const auto isInked = [&](int dx, int dy) { return drawnPixel(image, x + dx, y + dy) != paper; };
    EXPECT_TRUE(isInked(0, 4) || isInked(-1, 4));
    EXPECT_TRUE(isInked(0, 5) || isInked(-1, 4) || isInked(-1, 5));
    EXPECT_FALSE(isInked(0, 8));
    EXPECT_FALSE(isInked(-8, -6)) << "outside of the handle, away from the step's own lines";
}

TEST_F(ModulePanelPictures, ThePanelPaintsEveryControl) {
    const auto instance = instanceOf(fourSquaresScene());
    const PanelLayout layout(*instance, {.opensAll = true});
    CairoSurface surface(layout.width(), layout.height(), {0, 0, 0, 1});
    PanelPainter(*instance, 0, surface).paint(layout);
    const Image image = surface.image();
    const Rgba paper = themePixel(PF_App_Color_PANEL_BACKGROUND);
    int controls = 0;
    for (const PanelRow& row : layout.rows()) {
        if (row.control.bottom == 0)
            continue;
        ++controls;
        int inked = 0;
        for (int y = row.control.top; y < row.control.bottom; ++y) {
            for (int x = row.control.left; x < row.control.right; ++x)
                inked += drawnPixel(image, x, y) != paper ? 1 : 0;
        }
        EXPECT_GT(inked, 100) << row.parameter;
    }
    EXPECT_EQ(controls, 22) << "the script, the fog's gradient, ten ramps and ten gradients";
}

}  // namespace
}  // namespace TessavoyHost
