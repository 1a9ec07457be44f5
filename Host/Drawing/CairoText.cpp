#include "Host/Drawing/CairoText.h"

#include <cairo.h>

#include <memory>

#include "Host/Utf16.h"

namespace TessavoyHost {
namespace {

constexpr const char* ellipsis = "\xE2\x80\xA6";
constexpr const char* tab = "    ";

struct OptionsReleaser {
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
};

bool isControl(char letter) {
    return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F;
}

// Where each code point begins, and the end of the text.
std::vector<std::size_t> codePointStarts(const std::string& text) {
    std::vector<std::size_t> starts;
    for (std::size_t place = 0; place < text.size(); ++place) {
        if ((static_cast<unsigned char>(text[place]) & 0xC0) != 0x80)
            starts.push_back(place);
    }
    starts.push_back(text.size());
    return starts;
}

// With so many code points of it.
std::string shortened(const std::string& text, const std::vector<std::size_t>& starts, std::size_t count,
                      DRAWBOT_TextTruncation truncation) {
    if (truncation == kDRAWBOT_TextTruncation_End)
        return text.substr(0, starts[count]);
    if (truncation == kDRAWBOT_TextTruncation_EndEllipsis)
        return text.substr(0, starts[count]) + ellipsis;
    const std::size_t behind = count / 2;
    return text.substr(0, starts[count - behind]) + ellipsis + text.substr(starts[starts.size() - 1 - behind]);
}

}  // namespace

// Sizes don't depend on the pixel grid, so that text scales evenly.
void chooseFont(cairo_t* context, float size) {
    const std::unique_ptr<cairo_font_options_t, OptionsReleaser> options(cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_SLIGHT);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(context, options.get());
    cairo_select_font_face(context, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, size);
}

double advanceOf(cairo_t* context, const std::string& text) {
    cairo_text_extents_t extents{};
    cairo_text_extents(context, text.c_str(), &extents);
    return extents.x_advance;
}

std::string drawableText(const std::string& text) {
    std::string drawable;
    for (const char letter : fromUtf16(toUtf16(text).c_str())) {
        if (letter == '\t')
            drawable += tab;
        else if (!isControl(letter))
            drawable += letter;
    }
    return drawable;
}

std::string truncatedText(cairo_t* context, const std::string& text, DRAWBOT_TextTruncation truncation, double width) {
    if (truncation == kDRAWBOT_TextTruncation_None || advanceOf(context, text) <= width)
        return text;
    const std::vector<std::size_t> starts = codePointStarts(text);
    // What fits lies below most, and what doesn't from it on.
    std::size_t least = 0, most = starts.size() - 1;
    while (least < most) {
        const std::size_t middle = (least + most) / 2;
        if (advanceOf(context, shortened(text, starts, middle, truncation)) <= width)
            least = middle + 1;
        else
            most = middle;
    }
    return least == 0 ? std::string() : shortened(text, starts, least - 1, truncation);
}

}  // namespace TessavoyHost
