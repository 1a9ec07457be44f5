#include "Host/Drawing/CairoSurface.h"
#include "Host/HostError.h"
#include "Host/Panel/PanelPainter.h"
#include "Host/Theme.h"
#include "Tests/Support/DrawnPixels.h"
#include "Tests/Unit/Host/DrawingFixture.h"

namespace TessavoyHost {
namespace {

using FakeEffect::Data;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr DRAWBOT_ColorRGBA red = {1, 0, 0, 1};
constexpr Rgba redPixel = {255, 0, 0};

Rgba themePixel(PF_App_ColorType type) {
    const PF_App_Color color = themeColor(type);
    return {color.red / 0x101, color.green / 0x101, color.blue / 0x101};
}

// The part of a picture inside a place.
Image cut(const Image& image, const PF_Rect& place) {
    Image part;
    part.width = place.right - place.left;
    part.height = place.bottom - place.top;
    for (int y = place.top; y < place.bottom; ++y) {
        const std::byte* row = image.row<std::byte>(y) + 4 * place.left;
        part.samples.insert(part.samples.end(), row, row + 4 * part.width);
    }
    return part;
}

// The panel of the fake effect, painted at a frame.
class HostPanelPicture : public DrawingFixture {
protected:
    Image paint(int frame = 0, const PanelView& view = {}) {
        const PanelLayout layout(instance(), view);
        CairoSurface surface(layout.width(), layout.height(), {0, 0, 0, 0});
        PanelPainter(instance(), frame, surface).paint(layout);
        return surface.image();
    }

    PanelRow rowOf(int parameter, const PanelView& view = {}) { return *PanelLayout(instance(), view).find(parameter); }

    // What isn't background below the line on top of the place.
    Region inkIn(const Image& image, PF_Rect place) {
        ++place.top;
        return inkOf(cut(image, place), themePixel(PF_App_Color_PANEL_BACKGROUND));
    }
};

TEST_F(HostPanelPicture, IsPaintedInTheTheme) {
    const Image image = paint();
    const PanelLayout layout(instance(), {});
    EXPECT_EQ(image.width, layout.width());
    EXPECT_EQ(image.height, layout.height());
    EXPECT_EQ(drawnPixel(image, layout.width() - 1, 1), themePixel(PF_App_Color_DARK_CAPTION_FILL));
    EXPECT_EQ(drawnPixel(image, layout.width() - 1, layout.rows()[0].title.bottom - 1),
              themePixel(PF_App_Color_PANEL_BACKGROUND));
}

TEST_F(HostPanelPicture, NamesTheEffect) {
    const Image image = paint();
    const Region name =
        inkOf(cut(image, PanelLayout(instance(), {}).caption()), themePixel(PF_App_Color_DARK_CAPTION_FILL));
    EXPECT_GT(name.width, 15) << "the four letters of \"Fake\"";
    EXPECT_LT(name.width, 60);
}

TEST_F(HostPanelPicture, EveryParameterHasItsLabel) {
    const Image image = paint();
    const auto widthOf = [&](int parameter) { return inkIn(image, rowOf(parameter).title).width; };
    EXPECT_GT(widthOf(FakeEffect::Checkbox), widthOf(FakeEffect::Path)) << "\"Checkbox\" is longer than \"Path\"";
    EXPECT_GT(widthOf(FakeEffect::Path), 10);
    EXPECT_TRUE(inkIn(image, rowOf(FakeEffect::Button).title).empty()) << "its label is empty";
}

TEST_F(HostPanelPicture, LabelsFollowThePanel) {
    const int before = inkIn(paint(), rowOf(FakeEffect::Path).title).width;
    instance().panel().rename(FakeEffect::Path, "A label that is longer than before");
    EXPECT_GT(inkIn(paint(), rowOf(FakeEffect::Path).title).width, 2 * before);
    instance().panel().rename(FakeEffect::Path, std::string(200, 'M'));
    const Image image = paint();
    const PanelRow row = rowOf(FakeEffect::Path);
    EXPECT_LT(inkIn(image, row.title).width, row.title.right - row.title.left) << "and is cut off before the value";
}

TEST_F(HostPanelPicture, ColoursAreShown) {
    const PF_Rect& value = rowOf(FakeEffect::Color).value;
    const int y = (value.top + value.bottom) / 2;
    EXPECT_EQ(drawnPixel(paint(), value.left + 8, y), (Rgba{10, 20, 30}));
    instance().values().set(FakeEffect::Color, 0, ColorValue{200, 100, 50, 0});
    EXPECT_EQ(drawnPixel(paint(), value.left + 8, y), (Rgba{200, 100, 50})) << "whatever its alpha";
}

TEST_F(HostPanelPicture, CheckboxesAreTickedAndHaveTheirText) {
    const PF_Rect value = rowOf(FakeEffect::Checkbox).value;
    const auto bright = [](const Image& image, const PF_Rect& place) {
        int count = 0;
        for (int y = place.top; y < place.bottom; ++y) {
            for (int x = place.left; x < place.right; ++x)
                count += drawnPixel(image, x, y).green > 160 ? 1 : 0;
        }
        return count;
    };
    const PF_Rect box = {value.left, value.top, value.left + 13, value.bottom};
    const PF_Rect text = {value.left + 16, value.top, value.right, value.bottom};
    const Image ticked = paint();
    EXPECT_GT(bright(ticked, box), 5);
    EXPECT_GT(bright(ticked, text), 5) << "\"On\"";
    instance().values().set(FakeEffect::Checkbox, 0, 0.0);
    const Image clear = paint();
    EXPECT_EQ(bright(clear, box), 0);
    EXPECT_EQ(bright(clear, text), bright(ticked, text));
}

// The hand is a pixel wide and seven long; from the middle it goes up at 0 and to the right at 90 degrees.
TEST_F(HostPanelPicture, DialsPointAtTheirAngle) {
    const PF_Rect value = rowOf(FakeEffect::Angle).value;
    const int x = value.left + 8, y = (value.top + value.bottom) / 2;
    const auto hand = [&](int dx, int dy) { return drawnPixel(paint(), x + dx, y + dy).green; };
    EXPECT_GT(hand(4, 0), 90) << "the default is 90 degrees";
    EXPECT_LT(hand(0, -5), 60);
    instance().values().set(FakeEffect::Angle, 0, 0.0);
    EXPECT_GT(hand(0, -5), 90);
    EXPECT_LT(hand(4, 0), 60);
}

TEST_F(HostPanelPicture, ValuesAreThoseOfTheFrame) {
    project.parameters[FakeEffect::Slider] = {{{0, 1.0, Ease::Hold}, {1, 1000000.0, Ease::Hold}}};
    const PF_Rect value = rowOf(FakeEffect::Slider).value;
    EXPECT_GT(inkIn(paint(25), value).width, 4 * inkIn(paint(24), value).width);
}

TEST_F(HostPanelPicture, TwirlsPointDownWhenTheyAreOpen) {
    addFlags(FakeEffect::GroupStart, PF_ParamFlag_START_COLLAPSED);
    const Region closed = inkIn(paint(), rowOf(FakeEffect::GroupStart).twirl);
    const Region open = inkIn(paint(0, {.opensAll = true}), rowOf(FakeEffect::GroupStart, {.opensAll = true}).twirl);
    EXPECT_GT(closed.height, closed.width);
    EXPECT_GT(open.width, open.height);
    EXPECT_TRUE(inkIn(paint(), rowOf(FakeEffect::Slider).twirl).empty());
}

// The module paints far more than its control.
TEST_F(HostPanelPicture, ControlsAreDrawnByTheModuleInTheirPlace) {
    const Image before = paint();
    duringDraw([](DrawCalls& calls) {
        const DRAWBOT_RectF32 everything = {0, 0, 1000, 1000};
        EXPECT_EQ(calls.surfaceSuite->PaintRect(calls.surface, &red, &everything), 0);
    });
    const Image image = paint();
    const PF_Rect place = rowOf(Data).control;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            const bool inside = x >= place.left && x < place.right && y >= place.top && y < place.bottom;
            ASSERT_EQ(drawnPixel(image, x, y), inside ? redPixel : drawnPixel(before, x, y)) << x << ' ' << y;
        }
    }
    EXPECT_THAT(host().broken(), IsEmpty());
}

TEST_F(HostPanelPicture, WhatAModuleLeavesPushedDisturbsNothing) {
    const Image before = paint();
    duringDraw([](DrawCalls& calls) {
        const DRAWBOT_Rect32 nowhere = {0, 0, 0, 0};
        const DRAWBOT_MatrixF32 shift = {{{1, 0, 0}, {0, 1, 0}, {100, 0, 1}}};
        calls.surfaceSuite->Transform(calls.surface, &shift);
        calls.surfaceSuite->SetAntiAliasPolicy(calls.surface, kDRAWBOT_AntiAliasPolicy_None);
        calls.surfaceSuite->PushStateStack(calls.surface);
        calls.surfaceSuite->Clip(calls.surface, calls.supplier, &nowhere);
    });
    EXPECT_EQ(paint().samples, before.samples);
    EXPECT_THAT(host().broken(), ElementsAre(HasSubstr("1 drawing states left pushed")));
}

TEST_F(HostPanelPicture, AControlThatFailsIsNamed) {
    FakeEffect::hooks().event = [](PF_InData*, PF_OutData*, PF_ParamDef**, PF_EventExtra*) { return PF_Err{77}; };
    try {
        paint();
        FAIL() << "it was painted";
    } catch (const HostError& error) {
        EXPECT_EQ(error.status(), ExitStatus::FrameFailed);
        EXPECT_THAT(error.what(), HasSubstr("drawing the control \"Data\" failed with error 77"));
    }
}

}  // namespace
}  // namespace TessavoyHost
