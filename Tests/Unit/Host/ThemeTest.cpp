#include "Host/Theme.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "HostInterface/Constants.h"

namespace TessavoyHost {
namespace {

// Relative luminance and contrast as the Web Content Accessibility Guidelines 2.1 define them.
double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(PF_App_ColorType type) {
    const DRAWBOT_ColorRGBA color = drawnThemeColor(type);
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double contrast(PF_App_ColorType first, PF_App_ColorType second) {
    const double one = luminance(first), other = luminance(second);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

TEST(HostTheme, HasEveryPublishedColourAndNoOther) {
    int count = 0;
    for (int type = -10; type < 2000; ++type)
        count += hasThemeColor(static_cast<PF_App_ColorType>(type)) ? 1 : 0;
    EXPECT_EQ(count, 81 + 5) << "0 to 80 and 1000 to 1004 are published";
    for (const int type : {-1, 81, 999, 1005})
        EXPECT_FALSE(hasThemeColor(static_cast<PF_App_ColorType>(type))) << type;
}

// 4.5 is what those guidelines ask of text.
TEST(HostTheme, TextIsReadableOnWhatItStandsOn) {
    EXPECT_GT(contrast(PF_App_Color_TEXT, PF_App_Color_FILL), 4.5);
    EXPECT_GT(contrast(PF_App_Color_TEXT, PF_App_Color_PANEL_BACKGROUND), 4.5);
    EXPECT_GT(contrast(PF_App_Color_TEXT, PF_App_Color_LIST_BOX_FILL), 4.5);
    EXPECT_GT(contrast(PF_App_Color_HOT_TEXT, PF_App_Color_PANEL_BACKGROUND), 4.5);
    EXPECT_GT(contrast(PF_App_Color_HOT_TEXT_PRESSED, PF_App_Color_PANEL_BACKGROUND), 4.5);
    EXPECT_GT(contrast(PF_App_Color_HOT_TEXT_WARNING, PF_App_Color_PANEL_BACKGROUND), 4.5);
    EXPECT_GT(contrast(PF_App_Color_BUTTON_TEXT, PF_App_Color_BUTTON_FILL), 4.5);
    EXPECT_GT(contrast(PF_App_Color_BUTTON_PRESSED_TEXT, PF_App_Color_BUTTON_PRESSED_FILL), 4.5);
    EXPECT_GT(contrast(PF_App_Color_DARK_CAPTION_TEXT, PF_App_Color_DARK_CAPTION_FILL), 4.5);
    EXPECT_GT(contrast(PF_App_Color_TEXT_ON_LIGHTER_BG, PF_App_Color_FILL_LIGHT), 4.5);
}

// It is a dark theme, lit from above.
TEST(HostTheme, HighlightsAreLighterAndShadowsDarkerThanTheFill) {
    for (const int part : {PF_App_Color_FRAME, PF_App_Color_BUTTON_FRAME, PF_App_Color_BUTTON_PRESSED_FRAME}) {
        const auto of = [part](int color) { return luminance(static_cast<PF_App_ColorType>(part + color)); };
        EXPECT_GT(of(PF_App_Color_FRAME), of(PF_App_Color_FILL)) << part;
        EXPECT_GT(of(PF_App_Color_LIGHT_TINGE), of(PF_App_Color_FILL)) << part;
        EXPECT_GT(of(PF_App_Color_HILITE), of(PF_App_Color_LIGHT_TINGE)) << part;
        EXPECT_LT(of(PF_App_Color_DARK_TINGE), of(PF_App_Color_FILL)) << part;
        EXPECT_LT(of(PF_App_Color_SHADOW), of(PF_App_Color_DARK_TINGE)) << part;
    }
}

TEST(HostTheme, DisabledColoursLieHalfwayToTheFill) {
    const int fill = themeColor(PF_App_Color_FILL).green;
    for (int type = PF_App_Color_FRAME; type < PF_App_Color_FRAME_DISABLED; ++type) {
        const int own = themeColor(static_cast<PF_App_ColorType>(type)).green;
        const int disabled =
            themeColor(static_cast<PF_App_ColorType>(type + PF_App_Color_FRAME_DISABLED - PF_App_Color_FRAME)).green;
        EXPECT_EQ(disabled, (own + fill) / 2) << type;
    }
    const int hot = themeColor(PF_App_Color_HOT_TEXT).blue;
    EXPECT_EQ(themeColor(PF_App_Color_HOT_TEXT_DISABLED).blue, (hot + themeColor(PF_App_Color_FILL).blue) / 2);
}

TEST(HostTheme, PlainColoursAreWhatTheirNamesSay) {
    EXPECT_EQ(themeColor(PF_App_Color_PURE_BLACK).red, 0);
    EXPECT_EQ(themeColor(PF_App_Color_PURE_WHITE).red, 0xFFFF);
    EXPECT_EQ(themeColor(PF_App_Color_BLACK).blue, 0);
    EXPECT_EQ(themeColor(PF_App_Color_WHITE).blue, 0xFFFF);
    const PF_App_Color red = themeColor(PF_App_Color_RED), green = themeColor(PF_App_Color_GREEN);
    EXPECT_GT(red.red, 2 * red.green);
    EXPECT_GT(green.green, green.red + green.red / 2);
    EXPECT_FLOAT_EQ(drawnThemeColor(PF_App_Color_WHITE).green, 1);
    EXPECT_FLOAT_EQ(drawnThemeColor(PF_App_Color_WHITE).alpha, 1);
}

}  // namespace
}  // namespace TessavoyHost
