#pragma once

#include <cstddef>
#include <cstdint>

// The plain types of the host's binary interface on 64-bit targets: numbers, times, rectangles, pixels and the handles
// that only the host can look into. All function pointers use the platform's C calling convention.

// Holds a record to its published size in bytes, and a field to its published offset.
#define HOST_RECORD(Record, bytes) static_assert(sizeof(Record) == (bytes), #Record " has the wrong size")
#define HOST_FIELD(Record, field, byte) \
    static_assert(offsetof(Record, field) == (byte), #Record "::" #field " stands at the wrong offset")

// Numbers. A Boolean is one byte, 0 or not 0.
using A_char = char;
using A_u_char = std::uint8_t;
using A_short = std::int16_t;
using A_u_short = std::uint16_t;
using A_UTF16Char = A_u_short;
using A_long = std::int32_t;
using A_u_long = std::uint32_t;
using A_u_longlong = std::uint64_t;
using A_intptr_t = std::int64_t;
using A_HandleSize = A_u_longlong;
using A_FpShort = float;
using A_FpLong = double;
using A_Boolean = std::uint8_t;
using A_LegacyEnumType = A_long;
using PF_Boolean = A_char;
using PF_FpShort = A_FpShort;
using PF_FpLong = A_FpLong;
using PF_Fixed = A_long;     // 16.16
using PF_UFixed = A_u_long;  // 16.16
using SPBoolean = std::int32_t;
using ADOBESDK_Boolean = std::uint8_t;
using ADOBESDK_UTF16Char = std::uint16_t;

// Results: 0 is success, the rest are PF_ErrorValue and the host's own.
using A_Err = A_long;
using PF_Err = A_long;
using SPErr = std::int32_t;

// Host memory. A PF_Handle points at the address of its block; the block may move while it is not locked.
using A_Handle = void*;
using PF_Handle = void**;
using PF_ConstPtr = const void*;
using PF_ConstHandle = const PF_ConstPtr*;
using PF_ArbitraryH = PF_Handle;
struct Up_OpaqueMem;
using AEGP_MemHandle = Up_OpaqueMem**;
using AEGP_MemSize = A_u_long;
using AEGP_MemFlag = A_long;

// One running command of the host: the effect_ref that nearly every call takes.
struct PF_ProgressInfo;
using PF_ProgPtr = PF_ProgressInfo*;

struct PF_PluginData;
using PF_PluginDataPtr = PF_PluginData*;

using PF_Quality = A_long;
using A_AppID = A_long;
using PF_Field = A_long;
using PF_InFlags = A_long;
using PF_OutFlags = A_long;
using PF_OutFlags2 = A_long;
using PF_ChangeFlags = A_long;
using PF_ParamUIFlags = A_long;
using PF_ParamType = A_long;
using PF_ParamFlags = A_long;
using PF_WorldFlags = A_long;
using PF_ParamIndex = A_long;
using PF_ParamValue = A_long;
using PF_Precision = A_short;
using PF_ValueDisplayFlags = A_short;
using PF_FSliderFlags = A_u_long;
using PF_ModeFlags = A_long;
using PF_ChannelMask = A_long;
using PF_GPU_Framework = A_long;
using PF_RenderOutputFlags = std::int16_t;
using PF_FunctionSelector = A_long;
using PF_ArbCompareResult = A_long;
using PF_ArbPrintFlags = A_long;
using PF_EventType = A_long;
using PF_EventInFlags = A_long;
using PF_EventOutFlags = A_long;
using PF_EffectArea = A_long;
using PF_WindowType = A_long;
using PF_Modifiers = A_long;
using PF_KeyCode = A_u_long;
using PF_CursorType = A_long;
using PF_CustomEventFlags = A_long;
using PF_UIAlignment = A_long;
using PF_PixelFormat = A_long;
using PF_PathID = A_u_long;
using PF_MaskMode = A_long;
using PF_KeyIndex = A_long;
using PF_TimeDir = A_long;
using PF_App_ColorType = A_short;
using PF_EyeDropperSampleMode = A_short;
using PF_Cmd = A_long;

struct PF_SpecVersion {
    A_short major;
    A_short minor;
};
HOST_RECORD(PF_SpecVersion, 4);
HOST_FIELD(PF_SpecVersion, major, 0);
HOST_FIELD(PF_SpecVersion, minor, 2);

// A fraction, such as a downsample factor or a pixel aspect ratio.
struct PF_RationalScale {
    A_long num;
    A_u_long den;
};
HOST_RECORD(PF_RationalScale, 8);
HOST_FIELD(PF_RationalScale, num, 0);
HOST_FIELD(PF_RationalScale, den, 4);

struct A_Ratio {
    A_long num;
    A_u_long den;
};
HOST_RECORD(A_Ratio, 8);
HOST_FIELD(A_Ratio, num, 0);
HOST_FIELD(A_Ratio, den, 4);

// A moment or a stretch of time: value / scale seconds.
struct A_Time {
    A_long value;
    A_u_long scale;
};
HOST_RECORD(A_Time, 8);
HOST_FIELD(A_Time, value, 0);
HOST_FIELD(A_Time, scale, 4);

struct PF_Point {
    A_long h;
    A_long v;
};
HOST_RECORD(PF_Point, 8);
HOST_FIELD(PF_Point, h, 0);
HOST_FIELD(PF_Point, v, 4);

struct A_LPoint {
    A_long x;
    A_long y;
};
HOST_RECORD(A_LPoint, 8);
HOST_FIELD(A_LPoint, x, 0);
HOST_FIELD(A_LPoint, y, 4);

// A point in 16.16 pixels.
struct PF_FixedPoint {
    PF_Fixed x;
    PF_Fixed y;
};
HOST_RECORD(PF_FixedPoint, 8);
HOST_FIELD(PF_FixedPoint, x, 0);
HOST_FIELD(PF_FixedPoint, y, 4);

struct A_FloatPoint {
    A_FpLong x;
    A_FpLong y;
};
HOST_RECORD(A_FloatPoint, 16);
HOST_FIELD(A_FloatPoint, x, 0);
HOST_FIELD(A_FloatPoint, y, 8);

// Whole pixels; right and bottom are the first column and row outside.
struct PF_LRect {
    A_long left;
    A_long top;
    A_long right;
    A_long bottom;
};
HOST_RECORD(PF_LRect, 16);
HOST_FIELD(PF_LRect, left, 0);
HOST_FIELD(PF_LRect, top, 4);
HOST_FIELD(PF_LRect, right, 8);
HOST_FIELD(PF_LRect, bottom, 12);
using PF_Rect = PF_LRect;
using PF_UnionableRect = PF_Rect;

struct A_FloatRect {
    A_FpLong left;
    A_FpLong top;
    A_FpLong right;
    A_FpLong bottom;
};
HOST_RECORD(A_FloatRect, 32);
HOST_FIELD(A_FloatRect, left, 0);
HOST_FIELD(A_FloatRect, top, 8);
HOST_FIELD(A_FloatRect, right, 16);
HOST_FIELD(A_FloatRect, bottom, 24);

struct PF_FloatMatrix {
    PF_FpLong mat[3][3];
};
HOST_RECORD(PF_FloatMatrix, 72);
HOST_FIELD(PF_FloatMatrix, mat, 0);

// Row by row, the translation in the last row.
struct A_Matrix4 {
    A_FpLong mat[4][4];
};
HOST_RECORD(A_Matrix4, 128);
HOST_FIELD(A_Matrix4, mat, 0);

// Pixels of the three depths. 8 bits run to 255, 16 bits to 32768, floats to 1.0 and beyond.
struct PF_Pixel {
    A_u_char alpha;
    A_u_char red;
    A_u_char green;
    A_u_char blue;
};
HOST_RECORD(PF_Pixel, 4);
HOST_FIELD(PF_Pixel, alpha, 0);
HOST_FIELD(PF_Pixel, red, 1);
HOST_FIELD(PF_Pixel, green, 2);
HOST_FIELD(PF_Pixel, blue, 3);
using PF_Pixel8 = PF_Pixel;
using PF_UnionablePixel = PF_Pixel;
using PF_PixelPtr = PF_Pixel*;

struct PF_Pixel16 {
    A_u_short alpha;
    A_u_short red;
    A_u_short green;
    A_u_short blue;
};
HOST_RECORD(PF_Pixel16, 8);
HOST_FIELD(PF_Pixel16, alpha, 0);
HOST_FIELD(PF_Pixel16, red, 2);
HOST_FIELD(PF_Pixel16, green, 4);
HOST_FIELD(PF_Pixel16, blue, 6);

struct PF_PixelFloat {
    PF_FpShort alpha;
    PF_FpShort red;
    PF_FpShort green;
    PF_FpShort blue;
};
HOST_RECORD(PF_PixelFloat, 16);
HOST_FIELD(PF_PixelFloat, alpha, 0);
HOST_FIELD(PF_PixelFloat, red, 4);
HOST_FIELD(PF_PixelFloat, green, 8);
HOST_FIELD(PF_PixelFloat, blue, 12);

// A mask's outline and a prepared segment of one; both belong to the host until checked in or cleaned up.
struct PF_PathOutline;
using PF_PathOutlinePtr = PF_PathOutline*;
struct PF_PathSegPrep;
using PF_PathSegPrepPtr = PF_PathSegPrep*;

// The application's objects. References from calls with "New" in their names must be disposed of; others are borrowed.
struct AEGP_Layer;
using AEGP_LayerH = AEGP_Layer**;
struct AEGP_Effect;
using AEGP_EffectRefH = AEGP_Effect**;
struct AEGPp_Stream;
using AEGP_StreamRefH = AEGPp_Stream**;
struct AEGP_Comp;
using AEGP_CompH = AEGP_Comp**;
struct AEGP_Item;
using AEGP_ItemH = AEGP_Item**;
struct AEGP_MarkerVal;
using AEGP_MarkerValH = AEGP_MarkerVal**;
using AEGP_MarkerValP = AEGP_MarkerVal*;
struct AEGP_MaskOutline;
using AEGP_MaskOutlineValH = AEGP_MaskOutline**;
struct AEGP_TextDocument;
using AEGP_TextDocumentH = AEGP_TextDocument**;
struct AEGP_GlobalRefconData;
using AEGP_GlobalRefcon = AEGP_GlobalRefconData*;
using AEGP_PluginID = A_long;
using AEGP_LayerStream = A_long;
using AEGP_StreamType = A_long;
using AEGP_DynStreamFlags = A_u_long;
using AEGP_LTimeMode = A_short;
using AEGP_LayerIDVal = A_long;
using AEGP_MaskIDVal = A_long;

// Drawing objects of a panel. What a supplier makes is released through the supplier.
struct DRAWBOT_Draw;
using DRAWBOT_DrawRef = DRAWBOT_Draw*;
struct DRAWBOT_Supplier;
using DRAWBOT_SupplierRef = DRAWBOT_Supplier*;
struct DRAWBOT_Surface;
using DRAWBOT_SurfaceRef = DRAWBOT_Surface*;
struct DRAWBOT_Object;
using DRAWBOT_ObjectRef = DRAWBOT_Object*;
struct DRAWBOT_Path;
using DRAWBOT_PathRef = DRAWBOT_Path*;
struct DRAWBOT_Pen;
using DRAWBOT_PenRef = DRAWBOT_Pen*;
struct DRAWBOT_Brush;
using DRAWBOT_BrushRef = DRAWBOT_Brush*;
struct DRAWBOT_Font;
using DRAWBOT_FontRef = DRAWBOT_Font*;
struct DRAWBOT_Image;
using DRAWBOT_ImageRef = DRAWBOT_Image*;
