#pragma once

#include "HostInterface/Effect.h"
#include "HostInterface/Suites.h"

// The suites that draw custom controls. Coordinates are in pixels of the panel, y downwards; colours run from 0 to 1.

using DRAWBOT_FillType = std::int32_t;
using DRAWBOT_PixelLayout = std::int32_t;
using DRAWBOT_TextAlignment = std::int32_t;
using DRAWBOT_TextTruncation = std::int32_t;
using DRAWBOT_InterpolationPolicy = std::int32_t;
using DRAWBOT_AntiAliasPolicy = std::int32_t;
using DRAWBOT_Boolean = ADOBESDK_Boolean;
using DRAWBOT_UTF16Char = ADOBESDK_UTF16Char;

struct DRAWBOT_PointF32 {
    float x;
    float y;
};
HOST_RECORD(DRAWBOT_PointF32, 8);
HOST_FIELD(DRAWBOT_PointF32, x, 0);
HOST_FIELD(DRAWBOT_PointF32, y, 4);

struct DRAWBOT_RectF32 {
    float left;
    float top;
    float width;
    float height;
};
HOST_RECORD(DRAWBOT_RectF32, 16);
HOST_FIELD(DRAWBOT_RectF32, left, 0);
HOST_FIELD(DRAWBOT_RectF32, top, 4);
HOST_FIELD(DRAWBOT_RectF32, width, 8);
HOST_FIELD(DRAWBOT_RectF32, height, 12);

struct DRAWBOT_Rect32 {
    std::int32_t left;
    std::int32_t top;
    std::int32_t width;
    std::int32_t height;
};
HOST_RECORD(DRAWBOT_Rect32, 16);
HOST_FIELD(DRAWBOT_Rect32, left, 0);
HOST_FIELD(DRAWBOT_Rect32, top, 4);
HOST_FIELD(DRAWBOT_Rect32, width, 8);
HOST_FIELD(DRAWBOT_Rect32, height, 12);

// Row by row, for row vectors: the translation stands in the last row.
struct DRAWBOT_MatrixF32 {
    float mat[3][3];
};
HOST_RECORD(DRAWBOT_MatrixF32, 36);
HOST_FIELD(DRAWBOT_MatrixF32, mat, 0);

// "DRAWBOT Draw Suite", version 1. Both results are borrowed for the event.
struct DRAWBOT_DrawbotSuite1 {
    SPErr (*GetSupplier)(DRAWBOT_DrawRef drawbotRef, DRAWBOT_SupplierRef* supplier);
    SPErr (*GetSurface)(DRAWBOT_DrawRef drawbotRef, DRAWBOT_SurfaceRef* surface);
};
HOST_RECORD(DRAWBOT_DrawbotSuite1, 16);
HOST_FIELD(DRAWBOT_DrawbotSuite1, GetSupplier, 0);
HOST_FIELD(DRAWBOT_DrawbotSuite1, GetSurface, 8);

// "DRAWBOT Supplier Suite", version 1. Makes drawing objects; each must be released.
struct DRAWBOT_SupplierSuite1 {
    SPErr (*NewPen)(DRAWBOT_SupplierRef supplierRef, const DRAWBOT_ColorRGBA* color, float size, DRAWBOT_PenRef* pen);
    SPErr (*NewBrush)(DRAWBOT_SupplierRef supplierRef, const DRAWBOT_ColorRGBA* color, DRAWBOT_BrushRef* brush);
    SPErr (*SupportsText)(DRAWBOT_SupplierRef supplierRef, DRAWBOT_Boolean* supportsText);
    SPErr (*GetDefaultFontSize)(DRAWBOT_SupplierRef supplierRef, float* fontSize);
    SPErr (*NewDefaultFont)(DRAWBOT_SupplierRef supplierRef, float fontSize, DRAWBOT_FontRef* font);
    SPErr (*NewImageFromBuffer)(DRAWBOT_SupplierRef supplierRef, std::int32_t width, std::int32_t height,
                                std::int32_t rowBytes, DRAWBOT_PixelLayout layout, const void* pixels,
                                DRAWBOT_ImageRef* image);
    SPErr (*NewPath)(DRAWBOT_SupplierRef supplierRef, DRAWBOT_PathRef* path);
    SPErr (*SupportsPixelLayoutBGRA)(DRAWBOT_SupplierRef supplierRef, DRAWBOT_Boolean* supportsBgra);
    SPErr (*PrefersPixelLayoutBGRA)(DRAWBOT_SupplierRef supplierRef, DRAWBOT_Boolean* prefersBgra);
    SPErr (*SupportsPixelLayoutARGB)(DRAWBOT_SupplierRef supplierRef, DRAWBOT_Boolean* supportsArgb);
    SPErr (*PrefersPixelLayoutARGB)(DRAWBOT_SupplierRef supplierRef, DRAWBOT_Boolean* prefersArgb);
    SPErr (*RetainObject)(DRAWBOT_ObjectRef objRef);
    SPErr (*ReleaseObject)(DRAWBOT_ObjectRef objRef);
};
HOST_RECORD(DRAWBOT_SupplierSuite1, 104);
HOST_FIELD(DRAWBOT_SupplierSuite1, NewPen, 0);
HOST_FIELD(DRAWBOT_SupplierSuite1, NewBrush, 8);
HOST_FIELD(DRAWBOT_SupplierSuite1, SupportsText, 16);
HOST_FIELD(DRAWBOT_SupplierSuite1, GetDefaultFontSize, 24);
HOST_FIELD(DRAWBOT_SupplierSuite1, NewDefaultFont, 32);
HOST_FIELD(DRAWBOT_SupplierSuite1, NewImageFromBuffer, 40);
HOST_FIELD(DRAWBOT_SupplierSuite1, NewPath, 48);
HOST_FIELD(DRAWBOT_SupplierSuite1, SupportsPixelLayoutBGRA, 56);
HOST_FIELD(DRAWBOT_SupplierSuite1, PrefersPixelLayoutBGRA, 64);
HOST_FIELD(DRAWBOT_SupplierSuite1, SupportsPixelLayoutARGB, 72);
HOST_FIELD(DRAWBOT_SupplierSuite1, PrefersPixelLayoutARGB, 80);
HOST_FIELD(DRAWBOT_SupplierSuite1, RetainObject, 88);
HOST_FIELD(DRAWBOT_SupplierSuite1, ReleaseObject, 96);

// "DRAWBOT Path Suite", version 1. Angles in degrees.
struct DRAWBOT_PathSuite1 {
    SPErr (*MoveTo)(DRAWBOT_PathRef pathRef, float x, float y);
    SPErr (*LineTo)(DRAWBOT_PathRef pathRef, float x, float y);
    SPErr (*BezierTo)(DRAWBOT_PathRef pathRef, const DRAWBOT_PointF32* pt1, const DRAWBOT_PointF32* pt2,
                      const DRAWBOT_PointF32* pt3);
    SPErr (*AddRect)(DRAWBOT_PathRef pathRef, const DRAWBOT_RectF32* rect);
    SPErr (*AddArc)(DRAWBOT_PathRef pathRef, const DRAWBOT_PointF32* center, float radius, float startAngle,
                    float sweep);
    SPErr (*Close)(DRAWBOT_PathRef pathRef);
};
HOST_RECORD(DRAWBOT_PathSuite1, 48);
HOST_FIELD(DRAWBOT_PathSuite1, MoveTo, 0);
HOST_FIELD(DRAWBOT_PathSuite1, LineTo, 8);
HOST_FIELD(DRAWBOT_PathSuite1, BezierTo, 16);
HOST_FIELD(DRAWBOT_PathSuite1, AddRect, 24);
HOST_FIELD(DRAWBOT_PathSuite1, AddArc, 32);
HOST_FIELD(DRAWBOT_PathSuite1, Close, 40);

// "DRAWBOT Surface Suite", version 2. The table of version 1 is the same.
struct DRAWBOT_SurfaceSuite1 {
    SPErr (*PushStateStack)(DRAWBOT_SurfaceRef surfaceRef);
    SPErr (*PopStateStack)(DRAWBOT_SurfaceRef surfaceRef);
    SPErr (*PaintRect)(DRAWBOT_SurfaceRef surfaceRef, const DRAWBOT_ColorRGBA* color, const DRAWBOT_RectF32* rect);
    SPErr (*FillPath)(DRAWBOT_SurfaceRef surfaceRef, DRAWBOT_BrushRef brushRef, DRAWBOT_PathRef pathRef,
                      DRAWBOT_FillType fillType);
    SPErr (*StrokePath)(DRAWBOT_SurfaceRef surfaceRef, DRAWBOT_PenRef penRef, DRAWBOT_PathRef pathRef);
    SPErr (*Clip)(DRAWBOT_SurfaceRef surfaceRef, DRAWBOT_SupplierRef supplierRef, const DRAWBOT_Rect32* rect);
    SPErr (*GetClipBounds)(DRAWBOT_SurfaceRef surfaceRef, DRAWBOT_Rect32* rect);
    SPErr (*IsWithinClipBounds)(DRAWBOT_SurfaceRef surfaceRef, const DRAWBOT_Rect32* rect, DRAWBOT_Boolean* within);
    SPErr (*Transform)(DRAWBOT_SurfaceRef surfaceRef, const DRAWBOT_MatrixF32* matrix);
    SPErr (*DrawString)(DRAWBOT_SurfaceRef surfaceRef, DRAWBOT_BrushRef brushRef, DRAWBOT_FontRef fontRef,
                        const DRAWBOT_UTF16Char* string, const DRAWBOT_PointF32* origin,
                        DRAWBOT_TextAlignment alignmentStyle, DRAWBOT_TextTruncation truncationStyle,
                        float truncationWidth);
    SPErr (*DrawImage)(DRAWBOT_SurfaceRef surfaceRef, DRAWBOT_ImageRef imageRef, const DRAWBOT_PointF32* origin,
                       float alpha);
    SPErr (*SetInterpolationPolicy)(DRAWBOT_SurfaceRef surfaceRef, DRAWBOT_InterpolationPolicy interp);
    SPErr (*GetInterpolationPolicy)(DRAWBOT_SurfaceRef surfaceRef, DRAWBOT_InterpolationPolicy* interp);
    SPErr (*SetAntiAliasPolicy)(DRAWBOT_SurfaceRef surfaceRef, DRAWBOT_AntiAliasPolicy policy);
    SPErr (*GetAntiAliasPolicy)(DRAWBOT_SurfaceRef surfaceRef, DRAWBOT_AntiAliasPolicy* policy);
    SPErr (*Flush)(DRAWBOT_SurfaceRef surfaceRef);
    SPErr (*GetTransformToScreenScale)(DRAWBOT_SurfaceRef surfaceRef, float* scale);
};
HOST_RECORD(DRAWBOT_SurfaceSuite1, 136);
HOST_FIELD(DRAWBOT_SurfaceSuite1, PushStateStack, 0);
HOST_FIELD(DRAWBOT_SurfaceSuite1, PopStateStack, 8);
HOST_FIELD(DRAWBOT_SurfaceSuite1, PaintRect, 16);
HOST_FIELD(DRAWBOT_SurfaceSuite1, FillPath, 24);
HOST_FIELD(DRAWBOT_SurfaceSuite1, StrokePath, 32);
HOST_FIELD(DRAWBOT_SurfaceSuite1, Clip, 40);
HOST_FIELD(DRAWBOT_SurfaceSuite1, GetClipBounds, 48);
HOST_FIELD(DRAWBOT_SurfaceSuite1, IsWithinClipBounds, 56);
HOST_FIELD(DRAWBOT_SurfaceSuite1, Transform, 64);
HOST_FIELD(DRAWBOT_SurfaceSuite1, DrawString, 72);
HOST_FIELD(DRAWBOT_SurfaceSuite1, DrawImage, 80);
HOST_FIELD(DRAWBOT_SurfaceSuite1, SetInterpolationPolicy, 88);
HOST_FIELD(DRAWBOT_SurfaceSuite1, GetInterpolationPolicy, 96);
HOST_FIELD(DRAWBOT_SurfaceSuite1, SetAntiAliasPolicy, 104);
HOST_FIELD(DRAWBOT_SurfaceSuite1, GetAntiAliasPolicy, 112);
HOST_FIELD(DRAWBOT_SurfaceSuite1, Flush, 120);
HOST_FIELD(DRAWBOT_SurfaceSuite1, GetTransformToScreenScale, 128);
