#pragma once

#include "HostInterface/Effect.h"

// The suites that serve effects: memory, worlds, iteration, parameters, paths, custom controls and the application.

// "PF Handle Suite", version 2. Blocks of host memory, sizes in bytes. A failed allocation gives null. Locks nest.
struct PF_HandleSuite1 {
    PF_Handle (*host_new_handle)(A_HandleSize size);
    void* (*host_lock_handle)(PF_Handle handle);
    void (*host_unlock_handle)(PF_Handle handle);
    void (*host_dispose_handle)(PF_Handle handle);
    A_HandleSize (*host_get_handle_size)(PF_Handle handle);
    PF_Err (*host_resize_handle)(A_HandleSize newSize, PF_Handle* handle);
};
HOST_RECORD(PF_HandleSuite1, 48);
HOST_FIELD(PF_HandleSuite1, host_new_handle, 0);
HOST_FIELD(PF_HandleSuite1, host_lock_handle, 8);
HOST_FIELD(PF_HandleSuite1, host_unlock_handle, 16);
HOST_FIELD(PF_HandleSuite1, host_dispose_handle, 24);
HOST_FIELD(PF_HandleSuite1, host_get_handle_size, 32);
HOST_FIELD(PF_HandleSuite1, host_resize_handle, 40);

// "PF ANSI Suite", version 1. C library stand-ins of the host.
struct PF_ANSICallbacksSuite1 {
    void* reserved0[15];
    std::int32_t (*sprintf)(A_char* target, const A_char* format, ...);
    A_char* (*strcpy)(A_char* target, const A_char* source);
    void* reserved1[2];
};
HOST_RECORD(PF_ANSICallbacksSuite1, 152);
HOST_FIELD(PF_ANSICallbacksSuite1, sprintf, 120);
HOST_FIELD(PF_ANSICallbacksSuite1, strcpy, 128);

// "PF World Suite", version 2. Worlds of any depth. A new world belongs to the caller until disposed of.
struct PF_WorldSuite2 {
    PF_Err (*PF_NewWorld)(PF_ProgPtr effectRef, A_long width, A_long height, PF_Boolean clear,
                          PF_PixelFormat pixelFormat, PF_EffectWorld* world);
    PF_Err (*PF_DisposeWorld)(PF_ProgPtr effectRef, PF_EffectWorld* world);
    PF_Err (*PF_GetPixelFormat)(const PF_EffectWorld* world, PF_PixelFormat* pixelFormat);
};
HOST_RECORD(PF_WorldSuite2, 24);
HOST_FIELD(PF_WorldSuite2, PF_NewWorld, 0);
HOST_FIELD(PF_WorldSuite2, PF_DisposeWorld, 8);
HOST_FIELD(PF_WorldSuite2, PF_GetPixelFormat, 16);

// "PF Pixel Data Suite", version 1. The first pixel of a world, or null without an error where the world has another
// depth. override stands in for the address of the world when it is not null.
struct PF_PixelDataSuite1 {
    PF_Err (*get_pixel_data8)(PF_EffectWorld* world, PF_PixelPtr override, PF_Pixel8** pixels);
    PF_Err (*get_pixel_data16)(PF_EffectWorld* world, PF_PixelPtr override, PF_Pixel16** pixels);
    PF_Err (*get_pixel_data_float)(PF_EffectWorld* world, PF_PixelPtr override, PF_PixelFloat** pixels);
};
HOST_RECORD(PF_PixelDataSuite1, 24);
HOST_FIELD(PF_PixelDataSuite1, get_pixel_data8, 0);
HOST_FIELD(PF_PixelDataSuite1, get_pixel_data16, 8);
HOST_FIELD(PF_PixelDataSuite1, get_pixel_data_float, 16);

// Iteration calls a function for each pixel of area (null: all of the destination), on as many threads as the host
// likes. A result that is not 0 ends it and is passed on.
using PF_IteratePixel8Func = PF_Err(void* refcon, A_long x, A_long y, PF_Pixel* source, PF_Pixel* target);
using PF_IteratePixel16Func = PF_Err(void* refcon, A_long x, A_long y, PF_Pixel16* source, PF_Pixel16* target);
using PF_IteratePixelFloatFunc = PF_Err(void* refcon, A_long x, A_long y, PF_PixelFloat* source, PF_PixelFloat* target);
using PF_IterateGenericFunc = PF_Err(void* refcon, A_long threadIndex, A_long index, A_long iterations);

// "PF Iterate8 Suite", version 1.
struct PF_Iterate8Suite1 {
    PF_Err (*iterate)(PF_InData* inData, A_long progressBase, A_long progressFinal, PF_EffectWorld* source,
                      const PF_Rect* area, void* refcon, PF_IteratePixel8Func* function, PF_EffectWorld* target);
    PF_Err (*iterate_origin)(PF_InData* inData, A_long progressBase, A_long progressFinal, PF_EffectWorld* source,
                             const PF_Rect* area, const PF_Point* origin, void* refcon, PF_IteratePixel8Func* function,
                             PF_EffectWorld* target);
    void* reserved0;
    PF_Err (*iterate_origin_non_clip_src)(PF_InData* inData, A_long progressBase, A_long progressFinal,
                                          PF_EffectWorld* source, const PF_Rect* area, const PF_Point* origin,
                                          void* refcon, PF_IteratePixel8Func* function, PF_EffectWorld* target);
    PF_Err (*iterate_generic)(A_long iterations, void* refcon, PF_IterateGenericFunc* function);
};
HOST_RECORD(PF_Iterate8Suite1, 40);
HOST_FIELD(PF_Iterate8Suite1, iterate, 0);
HOST_FIELD(PF_Iterate8Suite1, iterate_origin, 8);
HOST_FIELD(PF_Iterate8Suite1, iterate_origin_non_clip_src, 24);
HOST_FIELD(PF_Iterate8Suite1, iterate_generic, 32);

// "PF iterate16 Suite", version 1.
struct PF_iterate16Suite1 {
    PF_Err (*iterate)(PF_InData* inData, A_long progressBase, A_long progressFinal, PF_EffectWorld* source,
                      const PF_Rect* area, void* refcon, PF_IteratePixel16Func* function, PF_EffectWorld* target);
    PF_Err (*iterate_origin)(PF_InData* inData, A_long progressBase, A_long progressFinal, PF_EffectWorld* source,
                             const PF_Rect* area, const PF_Point* origin, void* refcon, PF_IteratePixel16Func* function,
                             PF_EffectWorld* target);
    PF_Err (*iterate_origin_non_clip_src)(PF_InData* inData, A_long progressBase, A_long progressFinal,
                                          PF_EffectWorld* source, const PF_Rect* area, const PF_Point* origin,
                                          void* refcon, PF_IteratePixel16Func* function, PF_EffectWorld* target);
};
HOST_RECORD(PF_iterate16Suite1, 24);
HOST_FIELD(PF_iterate16Suite1, iterate, 0);
HOST_FIELD(PF_iterate16Suite1, iterate_origin, 8);
HOST_FIELD(PF_iterate16Suite1, iterate_origin_non_clip_src, 16);

// "PF iterateFloat Suite", version 1.
struct PF_iterateFloatSuite1 {
    PF_Err (*iterate)(PF_InData* inData, A_long progressBase, A_long progressFinal, PF_EffectWorld* source,
                      const PF_Rect* area, void* refcon, PF_IteratePixelFloatFunc* function, PF_EffectWorld* target);
    PF_Err (*iterate_origin)(PF_InData* inData, A_long progressBase, A_long progressFinal, PF_EffectWorld* source,
                             const PF_Rect* area, const PF_Point* origin, void* refcon,
                             PF_IteratePixelFloatFunc* function, PF_EffectWorld* target);
    PF_Err (*iterate_origin_non_clip_src)(PF_InData* inData, A_long progressBase, A_long progressFinal,
                                          PF_EffectWorld* source, const PF_Rect* area, const PF_Point* origin,
                                          void* refcon, PF_IteratePixelFloatFunc* function, PF_EffectWorld* target);
};
HOST_RECORD(PF_iterateFloatSuite1, 24);
HOST_FIELD(PF_iterateFloatSuite1, iterate, 0);
HOST_FIELD(PF_iterateFloatSuite1, iterate_origin, 8);
HOST_FIELD(PF_iterateFloatSuite1, iterate_origin_non_clip_src, 16);

// "PF Param Utils Suite", version 3. Changes name and appearance of a parameter, not its value.
struct PF_ParamUtilsSuite3 {
    PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effectRef, PF_ParamIndex paramIndex, const PF_ParamDef* definition);
    void* reserved0[8];
};
HOST_RECORD(PF_ParamUtilsSuite3, 72);
HOST_FIELD(PF_ParamUtilsSuite3, PF_UpdateParamUI, 0);

// "PF Effect Sequence Data Suite", version 1. The sequence data of the instance, for reading on a render thread.
struct PF_EffectSequenceDataSuite1 {
    PF_Err (*PF_GetConstSequenceData)(PF_ProgPtr effectRef, PF_ConstHandle* sequenceData);
};
HOST_RECORD(PF_EffectSequenceDataSuite1, 8);
HOST_FIELD(PF_EffectSequenceDataSuite1, PF_GetConstSequenceData, 0);

// One vertex of a path, in pixels of the downsampled layer. Tangents are relative to the vertex.
struct PF_PathVertex {
    PF_FpLong x;
    PF_FpLong y;
    PF_FpLong tan_in_x;
    PF_FpLong tan_in_y;
    PF_FpLong tan_out_x;
    PF_FpLong tan_out_y;
};
HOST_RECORD(PF_PathVertex, 48);
HOST_FIELD(PF_PathVertex, x, 0);
HOST_FIELD(PF_PathVertex, y, 8);
HOST_FIELD(PF_PathVertex, tan_in_x, 16);
HOST_FIELD(PF_PathVertex, tan_in_y, 24);
HOST_FIELD(PF_PathVertex, tan_out_x, 32);
HOST_FIELD(PF_PathVertex, tan_out_y, 40);

// "PF Path Query Suite", version 1. The masks of the effect's layer. Each checked-out path must be checked in.
struct PF_PathQuerySuite1 {
    PF_Err (*PF_NumPaths)(PF_ProgPtr effectRef, A_long* numPaths);
    PF_Err (*PF_PathInfo)(PF_ProgPtr effectRef, A_long index, PF_PathID* uniqueId);
    PF_Err (*PF_CheckoutPath)(PF_ProgPtr effectRef, PF_PathID uniqueId, A_long whatTime, A_long timeStep,
                              A_u_long timeScale, PF_PathOutlinePtr* path);
    PF_Err (*PF_CheckinPath)(PF_ProgPtr effectRef, PF_PathID uniqueId, PF_Boolean changed, PF_PathOutlinePtr path);
};
HOST_RECORD(PF_PathQuerySuite1, 32);
HOST_FIELD(PF_PathQuerySuite1, PF_NumPaths, 0);
HOST_FIELD(PF_PathQuerySuite1, PF_PathInfo, 8);
HOST_FIELD(PF_PathQuerySuite1, PF_CheckoutPath, 16);
HOST_FIELD(PF_PathQuerySuite1, PF_CheckinPath, 24);

// "PF Path Data Suite", version 1. Geometry of a checked-out path. Lengths are in pixels along the curve; a prepared
// segment must be cleaned up.
struct PF_PathDataSuite1 {
    PF_Err (*PF_PathIsOpen)(PF_ProgPtr effectRef, PF_PathOutlinePtr path, PF_Boolean* open);
    PF_Err (*PF_PathNumSegments)(PF_ProgPtr effectRef, PF_PathOutlinePtr path, A_long* numSegments);
    PF_Err (*PF_PathVertexInfo)(PF_ProgPtr effectRef, PF_PathOutlinePtr path, A_long point, PF_PathVertex* vertex);
    PF_Err (*PF_PathPrepareSegLength)(PF_ProgPtr effectRef, PF_PathOutlinePtr path, A_long segment, A_long frequency,
                                      PF_PathSegPrepPtr* preparation);
    PF_Err (*PF_PathGetSegLength)(PF_ProgPtr effectRef, PF_PathOutlinePtr path, A_long segment,
                                  PF_PathSegPrepPtr* preparation, PF_FpLong* length);
    PF_Err (*PF_PathEvalSegLength)(PF_ProgPtr effectRef, PF_PathOutlinePtr path, PF_PathSegPrepPtr* preparation,
                                   A_long segment, PF_FpLong length, PF_FpLong* x, PF_FpLong* y);
    PF_Err (*PF_PathEvalSegLengthDeriv1)(PF_ProgPtr effectRef, PF_PathOutlinePtr path, PF_PathSegPrepPtr* preparation,
                                         A_long segment, PF_FpLong length, PF_FpLong* x, PF_FpLong* y,
                                         PF_FpLong* deriv1x, PF_FpLong* deriv1y);
    PF_Err (*PF_PathCleanupSegLength)(PF_ProgPtr effectRef, PF_PathOutlinePtr path, A_long segment,
                                      PF_PathSegPrepPtr* preparation);
    PF_Err (*PF_PathIsInverted)(PF_ProgPtr effectRef, PF_PathID uniqueId, PF_Boolean* inverted);
    PF_Err (*PF_PathGetMaskMode)(PF_ProgPtr effectRef, PF_PathID uniqueId, PF_MaskMode* mode);
    PF_Err (*PF_PathGetName)(PF_ProgPtr effectRef, PF_PathID uniqueId, A_char* name);
};
HOST_RECORD(PF_PathDataSuite1, 88);
HOST_FIELD(PF_PathDataSuite1, PF_PathIsOpen, 0);
HOST_FIELD(PF_PathDataSuite1, PF_PathNumSegments, 8);
HOST_FIELD(PF_PathDataSuite1, PF_PathVertexInfo, 16);
HOST_FIELD(PF_PathDataSuite1, PF_PathPrepareSegLength, 24);
HOST_FIELD(PF_PathDataSuite1, PF_PathGetSegLength, 32);
HOST_FIELD(PF_PathDataSuite1, PF_PathEvalSegLength, 40);
HOST_FIELD(PF_PathDataSuite1, PF_PathEvalSegLengthDeriv1, 48);
HOST_FIELD(PF_PathDataSuite1, PF_PathCleanupSegLength, 56);
HOST_FIELD(PF_PathDataSuite1, PF_PathIsInverted, 64);
HOST_FIELD(PF_PathDataSuite1, PF_PathGetMaskMode, 72);
HOST_FIELD(PF_PathDataSuite1, PF_PathGetName, 80);

// "PF Effect Custom UI Suite", version 1. Where a draw event draws. The reference lives as long as the event.
struct PF_EffectCustomUISuite1 {
    PF_Err (*PF_GetDrawingReference)(PF_ContextH effectContext, DRAWBOT_DrawRef* reference);
};
HOST_RECORD(PF_EffectCustomUISuite1, 8);
HOST_FIELD(PF_EffectCustomUISuite1, PF_GetDrawingReference, 0);

struct DRAWBOT_ColorRGBA {
    float red;
    float green;
    float blue;
    float alpha;
};
HOST_RECORD(DRAWBOT_ColorRGBA, 16);
HOST_FIELD(DRAWBOT_ColorRGBA, red, 0);
HOST_FIELD(DRAWBOT_ColorRGBA, green, 4);
HOST_FIELD(DRAWBOT_ColorRGBA, blue, 8);
HOST_FIELD(DRAWBOT_ColorRGBA, alpha, 12);

// "PF Effect Custom UI Overlay Theme Suite", version 1.
struct PF_EffectCustomUIOverlayThemeSuite1 {
    PF_Err (*PF_GetPreferredForegroundColor)(DRAWBOT_ColorRGBA* foregroundColor);
    PF_Err (*PF_GetPreferredShadowColor)(DRAWBOT_ColorRGBA* shadowColor);
    PF_Err (*PF_GetPreferredStrokeWidth)(float* strokeWidth);
    PF_Err (*PF_GetPreferredVertexSize)(float* vertexSize);
    PF_Err (*PF_GetPreferredShadowOffset)(A_LPoint* shadowOffset);
    PF_Err (*PF_StrokePath)(DRAWBOT_DrawRef drawbotRef, DRAWBOT_PathRef pathRef, PF_Boolean drawShadow);
    PF_Err (*PF_FillPath)(DRAWBOT_DrawRef drawbotRef, DRAWBOT_PathRef pathRef, PF_Boolean drawShadow);
    PF_Err (*PF_FillVertex)(DRAWBOT_DrawRef drawbotRef, const A_FloatPoint* centerPoint, PF_Boolean drawShadow);
};
HOST_RECORD(PF_EffectCustomUIOverlayThemeSuite1, 64);
HOST_FIELD(PF_EffectCustomUIOverlayThemeSuite1, PF_GetPreferredForegroundColor, 0);
HOST_FIELD(PF_EffectCustomUIOverlayThemeSuite1, PF_GetPreferredShadowColor, 8);
HOST_FIELD(PF_EffectCustomUIOverlayThemeSuite1, PF_GetPreferredStrokeWidth, 16);
HOST_FIELD(PF_EffectCustomUIOverlayThemeSuite1, PF_GetPreferredVertexSize, 24);
HOST_FIELD(PF_EffectCustomUIOverlayThemeSuite1, PF_GetPreferredShadowOffset, 32);
HOST_FIELD(PF_EffectCustomUIOverlayThemeSuite1, PF_StrokePath, 40);
HOST_FIELD(PF_EffectCustomUIOverlayThemeSuite1, PF_FillPath, 48);
HOST_FIELD(PF_EffectCustomUIOverlayThemeSuite1, PF_FillVertex, 56);

// 16 bits a channel, to 65535.
struct PF_App_Color {
    A_u_short red;
    A_u_short green;
    A_u_short blue;
};
HOST_RECORD(PF_App_Color, 6);
HOST_FIELD(PF_App_Color, red, 0);
HOST_FIELD(PF_App_Color, green, 2);
HOST_FIELD(PF_App_Color, blue, 4);

// "PF AE App Suite", version 6. Theme colours and the colour picker, which gives PF_Interrupt_CANCEL when the user
// cancels.
struct PFAppSuite4 {
    PF_Err (*PF_AppGetBgColor)(PF_App_Color* bgColor);
    PF_Err (*PF_AppGetColor)(PF_App_ColorType colorType, PF_App_Color* appColor);
    void* reserved0[3];
    PF_Err (*PF_IsRenderEngine)(PF_Boolean* renderEngine);
    PF_Err (*PF_AppColorPickerDialog)(const A_char* dialogTitle, const PF_PixelFloat* sampleColor,
                                      PF_Boolean useMonitorTransform, PF_PixelFloat* newColor);
    void* reserved1;
    PF_Err (*PF_InvalidateRect)(PF_ContextH context, const PF_Rect* rect);
    void* reserved2[2];
};
HOST_RECORD(PFAppSuite4, 88);
HOST_FIELD(PFAppSuite4, PF_AppGetBgColor, 0);
HOST_FIELD(PFAppSuite4, PF_AppGetColor, 8);
HOST_FIELD(PFAppSuite4, PF_IsRenderEngine, 40);
HOST_FIELD(PFAppSuite4, PF_AppColorPickerDialog, 48);
HOST_FIELD(PFAppSuite4, PF_InvalidateRect, 64);

// "PF AE Adv App Suite", version 2.
struct PF_AdvAppSuite2 {
    PF_Err (*PF_SetProjectDirty)();
    void* reserved0[4];
    PF_Err (*PF_RefreshAllWindows)();
    PF_Err (*PF_InfoDrawText)(const A_char* line1, const A_char* line2);
    void* reserved1[4];
};
HOST_RECORD(PF_AdvAppSuite2, 88);
HOST_FIELD(PF_AdvAppSuite2, PF_SetProjectDirty, 0);
HOST_FIELD(PF_AdvAppSuite2, PF_RefreshAllWindows, 40);
HOST_FIELD(PF_AdvAppSuite2, PF_InfoDrawText, 48);
