#include "Source/Editors/GradientDrawing.h"

#include "Source/Editors/PointEditing.h"

#include <algorithm>
#include <cmath>
#include <ranges>

namespace Tessavoy {

namespace {

constexpr std::int32_t barMargin = 3;        ///< on the left and on the right, pixels
constexpr std::int32_t checkerSquare = 6;    ///< pixels
constexpr std::int32_t markerHeight = 15;    ///< pixels
constexpr std::int32_t markerHalfWidth = 5;  ///< pixels
constexpr float outlineWidth = 1;            ///< pixels

/// A channel within 0..1; one that is not a number counts as 0.
float channelInRange(float channel) {
    return channel > 0.0f ? std::min(channel, 1.0f) : 0.0f;
}

std::uint8_t byteOf(float channel) {
    return static_cast<std::uint8_t>(channelInRange(channel) * 255.0f);
}

PanelPixel pixelOf(const DRAWBOT_ColorRGBA& color) {
    return {byteOf(color.red), byteOf(color.green), byteOf(color.blue), byteOf(color.alpha)};
}

DRAWBOT_ColorRGBA opaqueColorOf(const GradientPoint& point) {
    return {channelInRange(point.r), channelInRange(point.g), channelInRange(point.b), 1.0f};
}

/// Calls pixel(x, y) for each place of a picture, row by row.
template <class Pixel>
PanelImage makeImage(std::int32_t width, std::int32_t height, Pixel pixel) {
    PanelImage image{width, height, {}};
    image.pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            image.pixels.push_back(pixel(x, y));
        }
    }
    return image;
}

/// Places around the tip of a marker, which points upwards.
struct MarkerTip {
    float x;
    float y;

    DRAWBOT_PointF32 at(float right, float down) const { return {x + right, y + down}; }
};

void addHouse(PanelPath& path, MarkerTip tip) {
    path.moveTo(tip.at(0, 0));
    path.lineTo(tip.at(5, 5));
    path.lineTo(tip.at(5, 15));
    path.lineTo(tip.at(-5, 15));
    path.lineTo(tip.at(-5, 5));
    path.close();
}

void addDrop(PanelPath& path, MarkerTip tip) {
    path.moveTo(tip.at(0, 0));
    path.curveTo(tip.at(2.5f, 3.75f), tip.at(5, 7.5f), tip.at(5, 11.25f));
    path.curveTo(tip.at(5, 15), tip.at(2.5f, 15), tip.at(0, 15));
    path.curveTo(tip.at(-2.5f, 15), tip.at(-5, 15), tip.at(-5, 11.25f));
    path.curveTo(tip.at(-5, 7.5f), tip.at(-2.5f, 3.75f), tip.at(0, 0));
    path.close();
}

void addBottle(PanelPath& path, MarkerTip tip) {
    path.moveTo(tip.at(0, 0));
    path.lineTo(tip.at(2.5f, 3.75f));
    path.lineTo(tip.at(2.5f, 7.5f));
    path.lineTo(tip.at(5, 7.5f));
    path.lineTo(tip.at(5, 15));
    path.lineTo(tip.at(-5, 15));
    path.lineTo(tip.at(-5, 7.5f));
    path.lineTo(tip.at(-2.5f, 7.5f));
    path.lineTo(tip.at(-2.5f, 3.75f));
    path.close();
}

void addMarker(PanelPath& path, std::int32_t kind, MarkerTip tip) {
    switch (kind) {
        case GradientKindSin:
            return addDrop(path, tip);
        case GradientKindEdge:
            return addBottle(path, tip);
        default:
            return addHouse(path, tip);
    }
}

/// Where a control's parts lie in its frame, pixels of the panel.
struct GradientLayout {
    explicit GradientLayout(const PF_Rect& frame)
        : axis(frame.left, frame.right),
          barLeft(frame.left + barMargin),
          barTop(frame.top + axisMargin),
          barWidth(frame.right - frame.left - 2 * barMargin),
          barHeight(frame.bottom - axisMargin - markerHeight - barTop) {}

    bool hasBar() const { return barWidth > 0 && barHeight > 0; }

    ControlAxis axis;
    std::int32_t barLeft;
    std::int32_t barTop;
    std::int32_t barWidth;
    std::int32_t barHeight;
};

bool isOpaque(const PanelImage& image) {
    return std::ranges::all_of(image.pixels, [](const PanelPixel& pixel) { return pixel.a == 255; });
}

// Behind opaque colours a board would only shine through at the edges of a panel that is drawn enlarged.
void drawBar(const PanelDrawing& drawing, const GradientData& gradient, const GradientLayout& layout) {
    const DRAWBOT_PointF32 place = {static_cast<float>(layout.barLeft), static_cast<float>(layout.barTop)};
    const PanelImage bar = gradientBar(gradient, layout.barWidth, layout.barHeight);
    if (!isOpaque(bar)) {
        const PanelPixel light = pixelOf(drawing.themeColor(PF_App_Color_WHITE));
        const PanelPixel dark = pixelOf(drawing.themeColor(PF_App_Color_GRAY));
        drawing.drawImage(checkerboard(layout.barWidth, layout.barHeight, light, dark), place);
    }
    drawing.drawImage(bar, place);
}

/// Stored positions may be any number, and what is far outside has no place in pixels.
bool hasMarker(const ControlAxis& axis, float position) {
    constexpr float reach = axisMargin + markerHalfWidth;
    const float distance = position * axis.span();
    return distance >= -reach && distance <= axis.span() + reach;
}

void drawMarkers(const PanelDrawing& drawing, const GradientData& gradient, const GradientLayout& layout) {
    const auto pen = drawing.newPen(drawing.themeColor(PF_App_Color_TEXT), outlineWidth);
    const auto start = static_cast<float>(layout.axis.start());
    const auto tipY = static_cast<float>(layout.barTop + layout.barHeight);
    for (const auto& [position, point] : std::views::reverse(gradient.points)) {
        if (hasMarker(layout.axis, position)) {
            PanelPath path = drawing.newPath();
            addMarker(path, point.kind, {std::round(start + position * layout.axis.span()), tipY});
            drawing.fill(path, drawing.newBrush(opaqueColorOf(point)));
            drawing.stroke(path, pen);
        }
    }
}

}  // namespace

PanelImage gradientBar(const GradientData& gradient, std::int32_t width, std::int32_t height) {
    const PanelImage row = makeImage(width, 1, [&](std::int32_t x, std::int32_t) {
        float color[4];
        EvaluateGradient(gradient, static_cast<float>(x) / static_cast<float>(width), color);
        return PanelPixel{byteOf(color[0]), byteOf(color[1]), byteOf(color[2]), byteOf(color[3])};
    });
    return makeImage(width, height,
                     [&row](std::int32_t x, std::int32_t) { return row.pixels[static_cast<std::size_t>(x)]; });
}

PanelImage checkerboard(std::int32_t width, std::int32_t height, PanelPixel light, PanelPixel dark) {
    return makeImage(width, height, [&](std::int32_t x, std::int32_t y) {
        return (x / checkerSquare + y / checkerSquare) % 2 == 0 ? light : dark;
    });
}

void drawGradient(const PanelDrawing& drawing, const GradientData& gradient, const PF_Rect& frame) {
    const GradientLayout layout(frame);
    if (layout.hasBar()) {
        drawBar(drawing, gradient, layout);
    }
    if (layout.axis.hasLength()) {
        drawMarkers(drawing, gradient, layout);
    }
}

}  // namespace Tessavoy
