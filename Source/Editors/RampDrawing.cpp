#include "Source/Editors/RampDrawing.h"

#include "Source/Editors/PointEditing.h"

#include <ranges>

namespace Tessavoy {

namespace {

constexpr float outlineWidth = 1;  ///< pixels
constexpr float curveWidth = 2;    ///< pixels
constexpr float handleOffset = 5;  ///< from a handle's middle to its corners, pixels

/// Where the range 0..1 in both directions lies, pixels of the panel.
struct RampPlot {
    explicit RampPlot(const PF_Rect& frame) : x(frame.left, frame.right), y(frame.top, frame.bottom) {}

    DRAWBOT_RectF32 area() const {
        return {static_cast<float>(x.start()), static_cast<float>(y.start()), x.span(), y.span()};
    }

    DRAWBOT_PointF32 placeOf(float position, float value) const {
        return {static_cast<float>(x.start()) + position * x.span(),
                static_cast<float>(y.start()) + (1.0f - value) * y.span()};
    }

    ControlAxis x;
    ControlAxis y;
};

void drawOutline(const PanelDrawing& drawing, const RampPlot& plot) {
    PanelPath path = drawing.newPath();
    path.addRect(plot.area());
    drawing.stroke(path, drawing.newPen(drawing.themeColor(PF_App_Color_TEXT_DISABLED), outlineWidth));
}

void drawCurve(const PanelDrawing& drawing, const RampData& ramp, const RampPlot& plot,
               const DRAWBOT_ColorRGBA& color) {
    const auto placeAt = [&](std::int32_t pixel) {
        const float position = plot.x.positionAt(pixel);
        return plot.placeOf(position, EvaluateRamp(ramp, position));
    };
    PanelPath path = drawing.newPath();
    path.moveTo(placeAt(plot.x.start()));
    for (std::int32_t pixel = plot.x.start() + 1; pixel <= plot.x.end(); ++pixel) {
        path.lineTo(placeAt(pixel));
    }
    drawing.stroke(path, drawing.newPen(color, curveWidth));
}

/// Stored points may be any numbers, and what is far outside isn't seen.
bool hasHandle(DRAWBOT_PointF32 place, const PF_Rect& frame) {
    return place.x >= static_cast<float>(frame.left) - handleOffset &&
           place.x <= static_cast<float>(frame.right) + handleOffset &&
           place.y >= static_cast<float>(frame.top) - handleOffset &&
           place.y <= static_cast<float>(frame.bottom) + handleOffset;
}

PanelPath handleAt(const PanelDrawing& drawing, DRAWBOT_PointF32 place) {
    PanelPath path = drawing.newPath();
    path.moveTo({place.x, place.y - handleOffset});
    path.lineTo({place.x + handleOffset, place.y});
    path.lineTo({place.x, place.y + handleOffset});
    path.lineTo({place.x - handleOffset, place.y});
    path.close();
    return path;
}

}  // namespace

void drawRamp(const PanelDrawing& drawing, const RampData& ramp, const PF_Rect& frame) {
    const RampPlot plot(frame);
    if (!plot.x.hasLength() || !plot.y.hasLength()) {
        return;
    }
    const DRAWBOT_ColorRGBA color = drawing.themeColor(PF_App_Color_TEXT);
    drawOutline(drawing, plot);
    drawCurve(drawing, ramp, plot, color);

    const auto inside = drawing.newBrush(drawing.themeColor(PF_App_Color_PANEL_BACKGROUND));
    const auto outline = drawing.newPen(color, outlineWidth);
    for (const auto& [position, value] : std::views::reverse(ramp.points)) {
        const DRAWBOT_PointF32 place = plot.placeOf(position, value);
        if (hasHandle(place, frame)) {
            const PanelPath handle = handleAt(drawing, place);
            drawing.fill(handle, inside);
            drawing.stroke(handle, outline);
        }
    }
}

}  // namespace Tessavoy
