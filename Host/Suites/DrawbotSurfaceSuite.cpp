#include "Host/Drawing/DrawingObjects.h"
#include "Host/Suites/Tables.h"
#include "Host/Utf16.h"

namespace TessavoyHost {
namespace {

// A call on the surface of the present drawing.
template <class Body>
SPErr answerSurface(const char* name, DRAWBOT_SurfaceRef surface, Body&& body) noexcept {
    return answer(name, [&](CommandContext& context) {
        Drawing& drawing = drawingOf(context);
        require(surface == drawing.surfaceReference());
        body(context, drawing);
    });
}

SPErr pushState(DRAWBOT_SurfaceRef surface) noexcept {
    return answerSurface("PushStateStack", surface, [](CommandContext&, Drawing& drawing) { drawing.push(); });
}

// As all that gives something back, it does so whatever it answers.
SPErr popState(DRAWBOT_SurfaceRef surface) noexcept {
    return takeBack("PopStateStack", [&](CommandContext& context) {
        Drawing& drawing = drawingOf(context);
        require(surface == drawing.surfaceReference());
        require(drawing.pop());
    });
}

SPErr paintRect(DRAWBOT_SurfaceRef surface, const DRAWBOT_ColorRGBA* color, const DRAWBOT_RectF32* rectangle) noexcept {
    return answerSurface("PaintRect", surface, [&](CommandContext&, Drawing& drawing) {
        require(color != nullptr && rectangle != nullptr);
        drawing.surface().paintRect(*rectangle, *color);
    });
}

SPErr fillPath(DRAWBOT_SurfaceRef surface, DRAWBOT_BrushRef brush, DRAWBOT_PathRef path,
               DRAWBOT_FillType fillType) noexcept {
    return answerSurface("FillPath", surface, [&](CommandContext& context, Drawing& drawing) {
        require(fillType == kDRAWBOT_FillType_EvenOdd || fillType == kDRAWBOT_FillType_Winding);
        const auto colored = drawingObject<DrawingBrush>(context, brush);
        drawing.surface().fillPath(drawingObject<DrawingPath>(context, path)->path, colored->color, fillType);
    });
}

SPErr strokePath(DRAWBOT_SurfaceRef surface, DRAWBOT_PenRef pen, DRAWBOT_PathRef path) noexcept {
    return answerSurface("StrokePath", surface, [&](CommandContext& context, Drawing& drawing) {
        const auto drawn = drawingObject<DrawingPen>(context, pen);
        drawing.surface().strokePath(drawingObject<DrawingPath>(context, path)->path, drawn->color, drawn->width);
    });
}

SPErr clip(DRAWBOT_SurfaceRef surface, DRAWBOT_SupplierRef supplier, const DRAWBOT_Rect32* rectangle) noexcept {
    return answerSurface("Clip", surface, [&](CommandContext&, Drawing& drawing) {
        require(supplier == drawing.supplier() && rectangle != nullptr);
        drawing.clip(*rectangle);
    });
}

SPErr clipBounds(DRAWBOT_SurfaceRef surface, DRAWBOT_Rect32* rectangle) noexcept {
    return answerSurface("GetClipBounds", surface, [&](CommandContext&, Drawing& drawing) {
        require(rectangle != nullptr);
        const Region& bounds = drawing.clipBounds();
        *rectangle = {bounds.x, bounds.y, bounds.width, bounds.height};
    });
}

SPErr isWithinClip(DRAWBOT_SurfaceRef surface, const DRAWBOT_Rect32* rectangle, DRAWBOT_Boolean* within) noexcept {
    return answerSurface("IsWithinClipBounds", surface, [&](CommandContext&, Drawing& drawing) {
        require(rectangle != nullptr && within != nullptr);
        *within = drawing.isWithinClip(*rectangle) ? 1 : 0;
    });
}

SPErr transform(DRAWBOT_SurfaceRef surface, const DRAWBOT_MatrixF32* matrix) noexcept {
    return answerSurface("Transform", surface, [&](CommandContext&, Drawing& drawing) {
        require(matrix != nullptr);
        drawing.transform(*matrix);
    });
}

SPErr drawString(DRAWBOT_SurfaceRef surface, DRAWBOT_BrushRef brush, DRAWBOT_FontRef font,
                 const DRAWBOT_UTF16Char* string, const DRAWBOT_PointF32* origin, DRAWBOT_TextAlignment alignment,
                 DRAWBOT_TextTruncation truncation, float truncationWidth) noexcept {
    return answerSurface("DrawString", surface, [&](CommandContext& context, Drawing& drawing) {
        require(string != nullptr && origin != nullptr);
        require(alignment >= kDRAWBOT_TextAlignment_Left && alignment <= kDRAWBOT_TextAlignment_Right);
        require(truncation >= kDRAWBOT_TextTruncation_None && truncation <= kDRAWBOT_TextTruncation_PathEllipsis);
        DrawnText text;
        text.text = fromUtf16(string);
        text.origin = *origin;
        text.fontSize = drawingObject<DrawingFont>(context, font)->size;
        text.color = drawingObject<DrawingBrush>(context, brush)->color;
        text.alignment = alignment;
        text.truncation = truncation;
        text.truncationWidth = truncationWidth;
        drawing.surface().drawText(text);
    });
}

SPErr drawImage(DRAWBOT_SurfaceRef surface, DRAWBOT_ImageRef image, const DRAWBOT_PointF32* origin,
                float alpha) noexcept {
    return answerSurface("DrawImage", surface, [&](CommandContext& context, Drawing& drawing) {
        require(origin != nullptr);
        drawing.surface().drawImage(drawingObject<DrawingImage>(context, image)->image, *origin, alpha);
    });
}

SPErr setInterpolation(DRAWBOT_SurfaceRef surface, DRAWBOT_InterpolationPolicy policy) noexcept {
    return answerSurface("SetInterpolationPolicy", surface, [&](CommandContext&, Drawing& drawing) {
        require(policy >= kDRAWBOT_InterpolationPolicy_None && policy <= kDRAWBOT_InterpolationPolicy_High);
        drawing.setInterpolation(policy);
    });
}

SPErr interpolation(DRAWBOT_SurfaceRef surface, DRAWBOT_InterpolationPolicy* policy) noexcept {
    return answerSurface("GetInterpolationPolicy", surface, [&](CommandContext&, Drawing& drawing) {
        require(policy != nullptr);
        *policy = drawing.interpolation();
    });
}

SPErr setAntiAliasing(DRAWBOT_SurfaceRef surface, DRAWBOT_AntiAliasPolicy policy) noexcept {
    return answerSurface("SetAntiAliasPolicy", surface, [&](CommandContext&, Drawing& drawing) {
        require(policy >= kDRAWBOT_AntiAliasPolicy_None && policy <= kDRAWBOT_AntiAliasPolicy_High);
        drawing.setAntiAliasing(policy);
    });
}

SPErr antiAliasing(DRAWBOT_SurfaceRef surface, DRAWBOT_AntiAliasPolicy* policy) noexcept {
    return answerSurface("GetAntiAliasPolicy", surface, [&](CommandContext&, Drawing& drawing) {
        require(policy != nullptr);
        *policy = drawing.antiAliasing();
    });
}

// What is drawn comes out at once.
SPErr flush(DRAWBOT_SurfaceRef surface) noexcept {
    return answerSurface("Flush", surface, [](CommandContext&, Drawing&) {});
}

SPErr screenScale(DRAWBOT_SurfaceRef surface, float* scale) noexcept {
    return answerSurface("GetTransformToScreenScale", surface, [&](CommandContext&, Drawing&) {
        require(scale != nullptr);
        *scale = 1;
    });
}

}  // namespace

const DRAWBOT_SurfaceSuite1 surfaceSuite = {
    .PushStateStack = pushState,
    .PopStateStack = popState,
    .PaintRect = paintRect,
    .FillPath = fillPath,
    .StrokePath = strokePath,
    .Clip = clip,
    .GetClipBounds = clipBounds,
    .IsWithinClipBounds = isWithinClip,
    .Transform = transform,
    .DrawString = drawString,
    .DrawImage = drawImage,
    .SetInterpolationPolicy = setInterpolation,
    .GetInterpolationPolicy = interpolation,
    .SetAntiAliasPolicy = setAntiAliasing,
    .GetAntiAliasPolicy = antiAliasing,
    .Flush = flush,
    .GetTransformToScreenScale = screenScale,
};

}  // namespace TessavoyHost
