#include "Host/Drawing/CairoText.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include "Host/Drawing/CairoSurface.h"
#include "Tests/Support/DrawnPixels.h"

namespace TessavoyHost {
namespace {

constexpr DRAWBOT_ColorRGBA white = {1, 1, 1, 1}, black = {0, 0, 0, 1};
constexpr Rgba whitePixel = {255, 255, 255};
constexpr const char* ellipsis = "\xE2\x80\xA6";

DrawnText textAt(const std::string& text, DRAWBOT_TextAlignment alignment = kDRAWBOT_TextAlignment_Left) {
    DrawnText drawn;
    drawn.text = text;
    drawn.origin = {150, 40};
    drawn.fontSize = 20;
    drawn.color = black;
    drawn.alignment = alignment;
    return drawn;
}

Region inkOf(const DrawnText& text) {
    CairoSurface surface(300, 60, white);
    surface.drawText(text);
    return inkOf(surface.image(), whitePixel);
}

TEST(HostCairoText, StandsOnItsBaseline) {
    const Region capital = inkOf(textAt("H"));
    ASSERT_FALSE(capital.empty());
    EXPECT_NEAR(capital.y + capital.height, 40, 1) << "a letter without a tail ends on the baseline";
    EXPECT_GT(capital.height, 20 * 0.5) << "capitals are more than half the font's size high";
    EXPECT_LT(capital.height, 20);
    const Region tail = inkOf(textAt("g"));
    EXPECT_GT(tail.y + tail.height, 42) << "a tail goes below";
}

TEST(HostCairoText, IsAlignedToItsOrigin) {
    const Region left = inkOf(textAt("HHHHH"));
    const Region middle = inkOf(textAt("HHHHH", kDRAWBOT_TextAlignment_Center));
    const Region right = inkOf(textAt("HHHHH", kDRAWBOT_TextAlignment_Right));
    EXPECT_GE(left.x, 150);
    EXPECT_LT(left.x, 154);
    EXPECT_LE(right.x + right.width, 150);
    EXPECT_GT(right.x + right.width, 146);
    EXPECT_NEAR(middle.x + middle.width / 2.0, 150, 1);
}

TEST(HostCairoText, HasTheSizeAndTheColourThatAreAskedFor) {
    DrawnText large = textAt("H");
    large.fontSize = 40;
    EXPECT_NEAR(inkOf(large).height, 2 * inkOf(textAt("H")).height, 2);
    CairoSurface surface(300, 60, white);
    DrawnText colored = textAt("\xE2\x96\x88");  // a full block
    colored.color = {0, 0, 1, 1};
    surface.drawText(colored);
    EXPECT_EQ(drawnPixel(surface.image(), 155, 35), (Rgba{0, 0, 255}));
}

TEST(HostCairoText, OtherLettersThanAsciiLeaveInk) {
    const Region plain = inkOf(textAt("u")), marked = inkOf(textAt("\xC3\xBC"));
    EXPECT_GT(marked.height, plain.height) << "the dots stand above";
}

TEST(HostCairoText, NoTextLeavesNoInk) {
    EXPECT_TRUE(inkOf(textAt("")).empty());
    EXPECT_TRUE(inkOf(textAt("   ")).empty());
}

TEST(HostCairoText, IsMadeDrawable) {
    EXPECT_EQ(drawableText("\tx\r\n= \x01y"), "    x= y");
    EXPECT_EQ(drawableText("a\xFF"
                           "b"),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(drawableText("\xC3\xBC\xF0\x9F\x8E\xA8"), "\xC3\xBC\xF0\x9F\x8E\xA8");
    EXPECT_FALSE(inkOf(textAt("\xFF")).empty()) << "and drawn";
}

// Cairo's own measure of a text that was truncated, and of one with a letter more.
class HostCairoTruncation : public testing::Test {
protected:
    HostCairoTruncation() { chooseFont(context, 20); }
    ~HostCairoTruncation() override {
        cairo_destroy(context);
        cairo_surface_destroy(surface);
    }

    std::string cut(DRAWBOT_TextTruncation truncation, double width, const std::string& whole = text) {
        return truncatedText(context, whole, truncation, width);
    }

    static constexpr const char* text = "folder/of/many/names/file.png";
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1);
    cairo_t* context = cairo_create(surface);
};

TEST_F(HostCairoTruncation, LeavesWhatFits) {
    const double width = advanceOf(context, text);
    for (const int truncation :
         {kDRAWBOT_TextTruncation_End, kDRAWBOT_TextTruncation_EndEllipsis, kDRAWBOT_TextTruncation_PathEllipsis})
        EXPECT_EQ(cut(truncation, width), text);
    EXPECT_EQ(cut(kDRAWBOT_TextTruncation_None, 1), text);
}

TEST_F(HostCairoTruncation, KeepsTheLongestBeginningThatFits) {
    for (double width = 0; width < 250; width += 7) {
        const std::string whole = text;
        const std::string kept = cut(kDRAWBOT_TextTruncation_End, width);
        ASSERT_TRUE(whole.starts_with(kept));
        EXPECT_LE(advanceOf(context, kept), width);
        EXPECT_GT(advanceOf(context, whole.substr(0, kept.size() + 1)), width);
    }
}

TEST_F(HostCairoTruncation, AnEllipsisStandsForWhatIsGone) {
    const double width = advanceOf(context, std::string("folder") + ellipsis) + 1;
    EXPECT_EQ(cut(kDRAWBOT_TextTruncation_EndEllipsis, width), std::string("folder") + ellipsis);
    EXPECT_EQ(cut(kDRAWBOT_TextTruncation_EndEllipsis, advanceOf(context, ellipsis)), ellipsis);
    EXPECT_EQ(cut(kDRAWBOT_TextTruncation_EndEllipsis, 1), "");
}

TEST_F(HostCairoTruncation, PathsKeepBothEnds) {
    const double width = advanceOf(context, std::string("folde") + ellipsis + ".png") + 1;
    const std::string kept = cut(kDRAWBOT_TextTruncation_PathEllipsis, width);
    EXPECT_TRUE(kept.starts_with("fold")) << kept;
    EXPECT_TRUE(kept.ends_with(".png")) << kept;
    EXPECT_NE(kept.find(ellipsis), std::string::npos);
    EXPECT_LE(advanceOf(context, kept), width);
}

// Each letter here has two bytes.
TEST_F(HostCairoTruncation, CutsBetweenLettersNotBytes) {
    const std::string whole = "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\xA4\xC3\xB6\xC3\xBC";
    for (double width = 0; width < 80; width += 3) {
        EXPECT_EQ(cut(kDRAWBOT_TextTruncation_End, width, whole).size() % 2, 0u);
        EXPECT_EQ(drawableText(cut(kDRAWBOT_TextTruncation_PathEllipsis, width, whole)),
                  cut(kDRAWBOT_TextTruncation_PathEllipsis, width, whole));
    }
}

TEST_F(HostCairoTruncation, ShortensTheInk) {
    DrawnText whole = textAt(text), shorter = whole;
    whole.origin.x = shorter.origin.x = 5;
    shorter.truncation = kDRAWBOT_TextTruncation_EndEllipsis;
    shorter.truncationWidth = 100;
    EXPECT_GT(inkOf(whole).width, 150);
    EXPECT_LE(inkOf(shorter).width, 101);
    EXPECT_GT(inkOf(shorter).width, 70);
}

}  // namespace
}  // namespace TessavoyHost
