#include "Host/Drawing/CairoSurface.h"

#include <cairo.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <numbers>

#include "Host/Drawing/CairoText.h"
#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

// cairo's pixels are premultiplied 32-bit numbers with alpha highest, so blue, green, red, alpha in memory.
static_assert(std::endian::native == std::endian::little);
constexpr int channels = 4;

// No coordinate of a panel lies farther out, in pixels; cairo's own limit is near, and it searches for ever for how to
// draw an endless arc.
constexpr double farthest = 1e6;

double reachable(double value) {
    return std::clamp(value, -farthest, farthest);
}
bool isUsable(double value) {
    return std::abs(value) <= farthest;
}
bool isUsable(const DRAWBOT_PointF32& point) {
    return isUsable(point.x) && isUsable(point.y);
}

// Adds pieces to the context's path. A piece with a coordinate that is no place is left out.
struct PathTracer {
    cairo_t* context;

    void operator()(const PathPiece::Move& move) const {
        if (isUsable(move.to))
            cairo_move_to(context, move.to.x, move.to.y);
    }
    void operator()(const PathPiece::Line& line) const {
        if (isUsable(line.to))
            cairo_line_to(context, line.to.x, line.to.y);
    }
    void operator()(const PathPiece::Curve& curve) const {
        if (isUsable(curve.control1) && isUsable(curve.control2) && isUsable(curve.to))
            cairo_curve_to(context, curve.control1.x, curve.control1.y, curve.control2.x, curve.control2.y, curve.to.x,
                           curve.to.y);
    }
    void operator()(const PathPiece::Rectangle& rectangle) const {
        const DRAWBOT_RectF32& area = rectangle.area;
        if (isUsable({area.left, area.top}) && isUsable({area.width, area.height}))
            cairo_rectangle(context, area.left, area.top, area.width, area.height);
    }
    // With y downwards, cairo's growing angles go clockwise as seen.
    void operator()(const PathPiece::Arc& arc) const {
        if (!isUsable(arc.centre) || !isUsable({arc.radius, arc.start}) || !isUsable(arc.sweep))
            return;
        constexpr double radians = std::numbers::pi / 180;
        const auto draw = arc.sweep < 0 ? cairo_arc_negative : cairo_arc;
        draw(context, arc.centre.x, arc.centre.y, arc.radius, arc.start * radians,
             (arc.start + std::clamp(arc.sweep, -360.0F, 360.0F)) * radians);
    }
    void operator()(const PathPiece::Close&) const { cairo_close_path(context); }
};

// A transform that makes nothing of an area, or of which numbers can't tell, shows nothing.
bool isInvertible(const cairo_matrix_t& matrix) {
    const double area = matrix.xx * matrix.yy - matrix.xy * matrix.yx;
    const double extent = std::abs(matrix.xx) + std::abs(matrix.yx) + std::abs(matrix.xy) + std::abs(matrix.yy);
    return area != 0 && std::isfinite(area) && extent <= farthest && isUsable(matrix.x0) && isUsable(matrix.y0);
}

cairo_antialias_t antiAliasOf(DRAWBOT_AntiAliasPolicy policy) {
    return policy == kDRAWBOT_AntiAliasPolicy_None  ? CAIRO_ANTIALIAS_NONE
           : policy == kDRAWBOT_AntiAliasPolicy_Med ? CAIRO_ANTIALIAS_GOOD
                                                    : CAIRO_ANTIALIAS_BEST;
}

cairo_filter_t filterOf(DRAWBOT_InterpolationPolicy policy) {
    return policy == kDRAWBOT_InterpolationPolicy_None  ? CAIRO_FILTER_NEAREST
           : policy == kDRAWBOT_InterpolationPolicy_Med ? CAIRO_FILTER_BILINEAR
                                                        : CAIRO_FILTER_BEST;
}

void setColor(cairo_t* context, const DRAWBOT_ColorRGBA& color) {
    cairo_set_source_rgba(context, color.red, color.green, color.blue, color.alpha);
}

std::byte straight(std::byte value, int alpha) {
    const int premultiplied = std::to_integer<int>(value);
    return static_cast<std::byte>(alpha == 0 ? 0 : std::min(255, (premultiplied * 255 + alpha / 2) / alpha));
}

void convertRow(const std::byte* from, std::byte* to, int width) {
    for (int x = 0; x < width; ++x, from += channels, to += channels) {
        const int alpha = std::to_integer<int>(from[3]);
        for (int channel = 0; channel < 3; ++channel)
            to[channel] = straight(from[2 - channel], alpha);
        to[3] = from[3];
    }
}

}  // namespace

void CairoSurface::Releaser::operator()(cairo_t* context) const {
    cairo_destroy(context);
}
void CairoSurface::Releaser::operator()(cairo_surface_t* surface) const {
    cairo_surface_destroy(surface);
}

CairoSurface::CairoSurface(int width, int height, const DRAWBOT_ColorRGBA& background)
    : mSurface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height)), mContext(cairo_create(mSurface.get())) {
    requireGood();
    cairo_set_antialias(mContext.get(), antiAliasOf(kDRAWBOT_AntiAliasPolicy_Default));
    cairo_set_operator(mContext.get(), CAIRO_OPERATOR_SOURCE);
    setColor(mContext.get(), background);
    cairo_paint(mContext.get());
    cairo_set_operator(mContext.get(), CAIRO_OPERATOR_OVER);
}

void CairoSurface::requireGood() const {
    const cairo_status_t status = cairo_status(mContext.get());
    if (status != CAIRO_STATUS_SUCCESS)
        throw HostError(ExitStatus::FrameFailed,
                        std::string("drawing the panel failed: ") + cairo_status_to_string(status));
}

Image CairoSurface::image() const {
    requireGood();
    cairo_surface_flush(mSurface.get());
    Image image;
    image.width = cairo_image_surface_get_width(mSurface.get());
    image.height = cairo_image_surface_get_height(mSurface.get());
    image.samples.resize(image.rowBytes() * static_cast<std::size_t>(image.height));
    const auto* pixels = reinterpret_cast<const std::byte*>(cairo_image_surface_get_data(mSurface.get()));
    const int stride = cairo_image_surface_get_stride(mSurface.get());
    for (int y = 0; y < image.height; ++y)
        convertRow(pixels + static_cast<std::ptrdiff_t>(y) * stride, image.row<std::byte>(y), image.width);
    return image;
}

void CairoSurface::pushState() {
    cairo_save(mContext.get());
    mInterpolations.push_back(mInterpolations.back());
}

void CairoSurface::popState() {
    cairo_restore(mContext.get());
    mInterpolations.pop_back();
}

void CairoSurface::clip(const DRAWBOT_Rect32& rectangle) {
    const double left = reachable(rectangle.left), top = reachable(rectangle.top);
    const double right = reachable(static_cast<double>(rectangle.left) + rectangle.width);
    const double bottom = reachable(static_cast<double>(rectangle.top) + rectangle.height);
    cairo_new_path(mContext.get());
    cairo_rectangle(mContext.get(), left, top, std::max(0.0, right - left), std::max(0.0, bottom - top));
    cairo_clip(mContext.get());
}

void CairoSurface::hideEverything() {
    clip({0, 0, 0, 0});
}

void CairoSurface::transform(const DRAWBOT_MatrixF32& matrix) {
    const auto& m = matrix.mat;
    cairo_matrix_t added{}, before{}, product{};
    cairo_matrix_init(&added, m[0][0], m[0][1], m[1][0], m[1][1], m[2][0], m[2][1]);
    cairo_get_matrix(mContext.get(), &before);
    cairo_matrix_multiply(&product, &added, &before);
    if (isInvertible(product))
        cairo_set_matrix(mContext.get(), &product);
    else
        hideEverything();
}

void CairoSurface::setInterpolation(DRAWBOT_InterpolationPolicy policy) {
    mInterpolations.back() = policy;
}

void CairoSurface::setAntiAliasing(DRAWBOT_AntiAliasPolicy policy) {
    cairo_set_antialias(mContext.get(), antiAliasOf(policy));
}

void CairoSurface::trace(const DrawnPath& path) {
    cairo_new_path(mContext.get());
    for (const auto& piece : path)
        std::visit(PathTracer{mContext.get()}, piece);
}

void CairoSurface::paintRect(const DRAWBOT_RectF32& rectangle, const DRAWBOT_ColorRGBA& color) {
    fillPath({PathPiece::Rectangle{rectangle}}, color, kDRAWBOT_FillType_Winding);
}

void CairoSurface::fillPath(const DrawnPath& path, const DRAWBOT_ColorRGBA& color, DRAWBOT_FillType fillType) {
    trace(path);
    setColor(mContext.get(), color);
    cairo_set_fill_rule(mContext.get(),
                        fillType == kDRAWBOT_FillType_EvenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
    cairo_fill(mContext.get());
}

void CairoSurface::strokePath(const DrawnPath& path, const DRAWBOT_ColorRGBA& color, float width) {
    if (!isUsable(width))
        return;
    trace(path);
    setColor(mContext.get(), color);
    cairo_set_line_width(mContext.get(), width);
    cairo_stroke(mContext.get());
}

void CairoSurface::drawText(const DrawnText& text) {
    if (!isUsable(text.origin) || !isUsable(text.fontSize))
        return;
    cairo_t* context = mContext.get();
    chooseFont(context, text.fontSize);
    const std::string line = truncatedText(context, drawableText(text.text), text.truncation, text.truncationWidth);
    const double share = text.alignment == kDRAWBOT_TextAlignment_Center  ? 0.5
                         : text.alignment == kDRAWBOT_TextAlignment_Right ? 1
                                                                          : 0;
    cairo_move_to(context, text.origin.x - share * advanceOf(context, line), text.origin.y);
    setColor(context, text.color);
    cairo_show_text(context, line.c_str());
    cairo_new_path(context);
}

// Edge pixels go on outwards, so that interpolation doesn't fade the picture's border.
void CairoSurface::drawImage(const DrawnImage& image, const DRAWBOT_PointF32& origin, float alpha) {
    if (!isUsable(origin))
        return;
    std::vector<std::byte> samples = image.samples;
    const std::unique_ptr<cairo_surface_t, Releaser> source(
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(samples.data()), CAIRO_FORMAT_ARGB32,
                                            image.width, image.height, image.width * channels));
    cairo_t* context = mContext.get();
    cairo_save(context);
    cairo_translate(context, origin.x, origin.y);
    cairo_new_path(context);
    cairo_rectangle(context, 0, 0, image.width, image.height);
    cairo_clip(context);
    cairo_set_source_surface(context, source.get(), 0, 0);
    cairo_pattern_set_filter(cairo_get_source(context), filterOf(mInterpolations.back()));
    cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD);
    cairo_paint_with_alpha(context, alpha);
    cairo_restore(context);
}

}  // namespace TessavoyHost
