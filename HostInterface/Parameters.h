#pragma once

#include "HostInterface/Constants.h"
#include "HostInterface/Types.h"

// Worlds and parameter definitions.

// A rectangle of pixels. Rows stand rowbytes apart, which may be more than width pixels; data is null where there are
// no pixels. origin_x and origin_y place the first pixel in the (downsampled) layer.
struct PF_LayerDef {
    void* reserved0;
    void* reserved1;
    PF_WorldFlags world_flags;  // PF_WorldFlag
    PF_PixelPtr data;
    A_long rowbytes;  // bytes
    A_long width;
    A_long height;
    PF_UnionableRect extent_hint;
    void* platform_ref;
    A_long reserved_long1;
    void* reserved_long4;
    PF_RationalScale pix_aspect_ratio;
    void* reserved_long2;
    A_long origin_x;
    A_long origin_y;
    A_long reserved_long3;
    A_long dephault;
};
HOST_RECORD(PF_LayerDef, 120);
HOST_FIELD(PF_LayerDef, reserved0, 0);
HOST_FIELD(PF_LayerDef, reserved1, 8);
HOST_FIELD(PF_LayerDef, world_flags, 16);
HOST_FIELD(PF_LayerDef, data, 24);
HOST_FIELD(PF_LayerDef, rowbytes, 32);
HOST_FIELD(PF_LayerDef, width, 36);
HOST_FIELD(PF_LayerDef, height, 40);
HOST_FIELD(PF_LayerDef, extent_hint, 44);
HOST_FIELD(PF_LayerDef, platform_ref, 64);
HOST_FIELD(PF_LayerDef, reserved_long1, 72);
HOST_FIELD(PF_LayerDef, reserved_long4, 80);
HOST_FIELD(PF_LayerDef, pix_aspect_ratio, 88);
HOST_FIELD(PF_LayerDef, reserved_long2, 96);
HOST_FIELD(PF_LayerDef, origin_x, 104);
HOST_FIELD(PF_LayerDef, origin_y, 108);
HOST_FIELD(PF_LayerDef, reserved_long3, 112);
HOST_FIELD(PF_LayerDef, dephault, 116);
using PF_EffectWorld = PF_LayerDef;

// Parameter values by kind, each with its range and default.
struct PF_SliderDef {
    PF_ParamValue value;
    A_char value_str[32];
    A_char value_desc[32];
    PF_ParamValue valid_min;
    PF_ParamValue valid_max;
    PF_ParamValue slider_min;
    PF_ParamValue slider_max;
    PF_ParamValue dephault;
};
HOST_RECORD(PF_SliderDef, 88);
HOST_FIELD(PF_SliderDef, value, 0);
HOST_FIELD(PF_SliderDef, value_str, 4);
HOST_FIELD(PF_SliderDef, value_desc, 36);
HOST_FIELD(PF_SliderDef, valid_min, 68);
HOST_FIELD(PF_SliderDef, valid_max, 72);
HOST_FIELD(PF_SliderDef, slider_min, 76);
HOST_FIELD(PF_SliderDef, slider_max, 80);
HOST_FIELD(PF_SliderDef, dephault, 84);

struct PF_FixedSliderDef {
    PF_Fixed value;
    A_char value_str[32];
    A_char value_desc[32];
    PF_Fixed valid_min;
    PF_Fixed valid_max;
    PF_Fixed slider_min;
    PF_Fixed slider_max;
    PF_Fixed dephault;
    PF_Precision precision;
    PF_ValueDisplayFlags display_flags;
};
HOST_RECORD(PF_FixedSliderDef, 92);
HOST_FIELD(PF_FixedSliderDef, value, 0);
HOST_FIELD(PF_FixedSliderDef, value_str, 4);
HOST_FIELD(PF_FixedSliderDef, value_desc, 36);
HOST_FIELD(PF_FixedSliderDef, valid_min, 68);
HOST_FIELD(PF_FixedSliderDef, valid_max, 72);
HOST_FIELD(PF_FixedSliderDef, slider_min, 76);
HOST_FIELD(PF_FixedSliderDef, slider_max, 80);
HOST_FIELD(PF_FixedSliderDef, dephault, 84);
HOST_FIELD(PF_FixedSliderDef, precision, 88);
HOST_FIELD(PF_FixedSliderDef, display_flags, 90);

// Degrees in 16.16.
struct PF_AngleDef {
    PF_Fixed value;
    PF_Fixed dephault;
    PF_Fixed valid_min;
    PF_Fixed valid_max;
};
HOST_RECORD(PF_AngleDef, 16);
HOST_FIELD(PF_AngleDef, value, 0);
HOST_FIELD(PF_AngleDef, dephault, 4);
HOST_FIELD(PF_AngleDef, valid_min, 8);
HOST_FIELD(PF_AngleDef, valid_max, 12);

union PF_CheckBoxText {
    const A_char* nameptr;
};
HOST_RECORD(PF_CheckBoxText, 8);

struct PF_CheckBoxDef {
    PF_ParamValue value;
    PF_Boolean dephault;
    A_char reserved;
    A_short reserved1;
    PF_CheckBoxText u;
};
HOST_RECORD(PF_CheckBoxDef, 16);
HOST_FIELD(PF_CheckBoxDef, value, 0);
HOST_FIELD(PF_CheckBoxDef, dephault, 4);
HOST_FIELD(PF_CheckBoxDef, reserved, 5);
HOST_FIELD(PF_CheckBoxDef, reserved1, 6);
HOST_FIELD(PF_CheckBoxDef, u, 8);

struct PF_ColorDef {
    PF_UnionablePixel value;
    PF_UnionablePixel dephault;
};
HOST_RECORD(PF_ColorDef, 8);
HOST_FIELD(PF_ColorDef, value, 0);
HOST_FIELD(PF_ColorDef, dephault, 4);

// Pixels of the downsampled layer in 16.16; the defaults are percentages of the layer's size in 16.16.
struct PF_PointDef {
    PF_Fixed x_value;
    PF_Fixed y_value;
    A_char reserved[3];
    PF_Boolean restrict_bounds;
    PF_Fixed x_dephault;
    PF_Fixed y_dephault;
};
HOST_RECORD(PF_PointDef, 20);
HOST_FIELD(PF_PointDef, x_value, 0);
HOST_FIELD(PF_PointDef, y_value, 4);
HOST_FIELD(PF_PointDef, reserved, 8);
HOST_FIELD(PF_PointDef, restrict_bounds, 11);
HOST_FIELD(PF_PointDef, x_dephault, 12);
HOST_FIELD(PF_PointDef, y_dephault, 16);

union PF_PopupText {
    const A_char* namesptr;  // the entries, joined by '|'
};
HOST_RECORD(PF_PopupText, 8);

// Values count from 1.
struct PF_PopupDef {
    PF_ParamValue value;
    A_short num_choices;
    A_short dephault;
    PF_PopupText u;
};
HOST_RECORD(PF_PopupDef, 16);
HOST_FIELD(PF_PopupDef, value, 0);
HOST_FIELD(PF_PopupDef, num_choices, 4);
HOST_FIELD(PF_PopupDef, dephault, 6);
HOST_FIELD(PF_PopupDef, u, 8);

struct PF_FloatSliderDef {
    PF_FpLong value;
    PF_FpLong phase;
    A_char value_desc[32];
    PF_FpShort valid_min;
    PF_FpShort valid_max;
    PF_FpShort slider_min;
    PF_FpShort slider_max;
    PF_FpShort dephault;
    PF_Precision precision;
    PF_ValueDisplayFlags display_flags;
    PF_FSliderFlags fs_flags;
    PF_FpShort curve_tolerance;
    PF_Boolean useExponent;
    PF_FpShort exponent;
};
HOST_RECORD(PF_FloatSliderDef, 88);
HOST_FIELD(PF_FloatSliderDef, value, 0);
HOST_FIELD(PF_FloatSliderDef, phase, 8);
HOST_FIELD(PF_FloatSliderDef, value_desc, 16);
HOST_FIELD(PF_FloatSliderDef, valid_min, 48);
HOST_FIELD(PF_FloatSliderDef, valid_max, 52);
HOST_FIELD(PF_FloatSliderDef, slider_min, 56);
HOST_FIELD(PF_FloatSliderDef, slider_max, 60);
HOST_FIELD(PF_FloatSliderDef, dephault, 64);
HOST_FIELD(PF_FloatSliderDef, precision, 68);
HOST_FIELD(PF_FloatSliderDef, display_flags, 70);
HOST_FIELD(PF_FloatSliderDef, fs_flags, 72);
HOST_FIELD(PF_FloatSliderDef, curve_tolerance, 76);
HOST_FIELD(PF_FloatSliderDef, useExponent, 80);
HOST_FIELD(PF_FloatSliderDef, exponent, 84);

// A value that only the effect understands. The host owns both handles and asks the effect to copy and dispose of them.
struct PF_ArbitraryDef {
    A_short id;
    A_short pad;
    PF_ArbitraryH dephault;
    PF_ArbitraryH value;
    void* refconPV;
};
HOST_RECORD(PF_ArbitraryDef, 32);
HOST_FIELD(PF_ArbitraryDef, id, 0);
HOST_FIELD(PF_ArbitraryDef, pad, 2);
HOST_FIELD(PF_ArbitraryDef, dephault, 8);
HOST_FIELD(PF_ArbitraryDef, value, 16);
HOST_FIELD(PF_ArbitraryDef, refconPV, 24);

// path_id 0 stands for no path.
struct PF_PathDef {
    PF_PathID path_id;
    A_long reserved0;
    A_long dephault;
};
HOST_RECORD(PF_PathDef, 12);
HOST_FIELD(PF_PathDef, path_id, 0);
HOST_FIELD(PF_PathDef, reserved0, 4);
HOST_FIELD(PF_PathDef, dephault, 8);

union PF_ButtonText {
    const A_char* namesptr;
};
HOST_RECORD(PF_ButtonText, 8);

struct PF_ButtonDef {
    PF_ParamValue value;
    PF_ButtonText u;
};
HOST_RECORD(PF_ButtonDef, 16);
HOST_FIELD(PF_ButtonDef, value, 0);
HOST_FIELD(PF_ButtonDef, u, 8);

// Pixels of the downsampled layer; the defaults are percentages of the layer's size.
struct PF_Point3DDef {
    PF_FpLong x_value;
    PF_FpLong y_value;
    PF_FpLong z_value;
    PF_FpLong x_dephault;
    PF_FpLong y_dephault;
    PF_FpLong z_dephault;
    char reserved[16];
};
HOST_RECORD(PF_Point3DDef, 64);
HOST_FIELD(PF_Point3DDef, x_value, 0);
HOST_FIELD(PF_Point3DDef, y_value, 8);
HOST_FIELD(PF_Point3DDef, z_value, 16);
HOST_FIELD(PF_Point3DDef, x_dephault, 24);
HOST_FIELD(PF_Point3DDef, y_dephault, 32);
HOST_FIELD(PF_Point3DDef, z_dephault, 40);
HOST_FIELD(PF_Point3DDef, reserved, 48);

union PF_ParamDefUnion {
    PF_LayerDef ld;
    PF_SliderDef sd;
    PF_FixedSliderDef fd;
    PF_AngleDef ad;
    PF_CheckBoxDef bd;
    PF_ColorDef cd;
    PF_PointDef td;
    PF_PopupDef pd;
    PF_FloatSliderDef fs_d;
    PF_ArbitraryDef arb_d;
    PF_PathDef path_d;
    PF_ButtonDef button_d;
    PF_Point3DDef point3d_d;
};
HOST_RECORD(PF_ParamDefUnion, 120);
HOST_FIELD(PF_ParamDefUnion, ld, 0);
HOST_FIELD(PF_ParamDefUnion, sd, 0);
HOST_FIELD(PF_ParamDefUnion, fd, 0);
HOST_FIELD(PF_ParamDefUnion, ad, 0);
HOST_FIELD(PF_ParamDefUnion, bd, 0);
HOST_FIELD(PF_ParamDefUnion, cd, 0);
HOST_FIELD(PF_ParamDefUnion, td, 0);
HOST_FIELD(PF_ParamDefUnion, pd, 0);
HOST_FIELD(PF_ParamDefUnion, fs_d, 0);
HOST_FIELD(PF_ParamDefUnion, arb_d, 0);
HOST_FIELD(PF_ParamDefUnion, path_d, 0);
HOST_FIELD(PF_ParamDefUnion, button_d, 0);
HOST_FIELD(PF_ParamDefUnion, point3d_d, 0);

union PF_ParamDefId {
    A_long id;                    // at registration: the number under which the value is saved
    PF_ChangeFlags change_flags;  // afterwards
};
HOST_RECORD(PF_ParamDefId, 4);

struct PF_ParamDef {
    PF_ParamDefId uu;
    PF_ParamUIFlags ui_flags;
    A_short ui_width;  // pixels, of custom controls
    A_short ui_height;
    PF_ParamType param_type;
    A_char name[32];  // what the panel shows
    PF_ParamFlags flags;
    A_long unused;
    PF_ParamDefUnion u;
};
HOST_RECORD(PF_ParamDef, 176);
HOST_FIELD(PF_ParamDef, uu, 0);
HOST_FIELD(PF_ParamDef, ui_flags, 4);
HOST_FIELD(PF_ParamDef, ui_width, 8);
HOST_FIELD(PF_ParamDef, ui_height, 10);
HOST_FIELD(PF_ParamDef, param_type, 12);
HOST_FIELD(PF_ParamDef, name, 16);
HOST_FIELD(PF_ParamDef, flags, 48);
HOST_FIELD(PF_ParamDef, unused, 52);
HOST_FIELD(PF_ParamDef, u, 56);

using PF_ParamDefPtr = PF_ParamDef*;

// Custom controls: which windows send events, and how large the controls are.
struct PF_CustomUIInfo {
    A_long reserved;
    PF_CustomEventFlags events;
    A_long comp_ui_width;
    A_long comp_ui_height;
    PF_UIAlignment comp_ui_alignment;
    A_long layer_ui_width;
    A_long layer_ui_height;
    PF_UIAlignment layer_ui_alignment;
    A_long preview_ui_width;
    A_long preview_ui_height;
    PF_UIAlignment preview_ui_alignment;
};
HOST_RECORD(PF_CustomUIInfo, 44);
HOST_FIELD(PF_CustomUIInfo, reserved, 0);
HOST_FIELD(PF_CustomUIInfo, events, 4);
HOST_FIELD(PF_CustomUIInfo, comp_ui_width, 8);
HOST_FIELD(PF_CustomUIInfo, comp_ui_height, 12);
HOST_FIELD(PF_CustomUIInfo, comp_ui_alignment, 16);
HOST_FIELD(PF_CustomUIInfo, layer_ui_width, 20);
HOST_FIELD(PF_CustomUIInfo, layer_ui_height, 24);
HOST_FIELD(PF_CustomUIInfo, layer_ui_alignment, 28);
HOST_FIELD(PF_CustomUIInfo, preview_ui_width, 32);
HOST_FIELD(PF_CustomUIInfo, preview_ui_height, 36);
HOST_FIELD(PF_CustomUIInfo, preview_ui_alignment, 40);

// Arbitrary data: one record a selector. Handles that are only read stay the caller's.
// arbPH receives a value that the host then owns.
struct PF_ArbNewParams {
    void* refconPV;
    PF_ArbitraryH* arbPH;
};
HOST_RECORD(PF_ArbNewParams, 16);
HOST_FIELD(PF_ArbNewParams, refconPV, 0);
HOST_FIELD(PF_ArbNewParams, arbPH, 8);

struct PF_ArbDisposeParams {
    void* refconPV;
    PF_ArbitraryH arbH;
};
HOST_RECORD(PF_ArbDisposeParams, 16);
HOST_FIELD(PF_ArbDisposeParams, refconPV, 0);
HOST_FIELD(PF_ArbDisposeParams, arbH, 8);

struct PF_ArbCopyParams {
    void* refconPV;
    PF_ArbitraryH src_arbH;
    PF_ArbitraryH* dst_arbPH;
};
HOST_RECORD(PF_ArbCopyParams, 24);
HOST_FIELD(PF_ArbCopyParams, refconPV, 0);
HOST_FIELD(PF_ArbCopyParams, src_arbH, 8);
HOST_FIELD(PF_ArbCopyParams, dst_arbPH, 16);

struct PF_ArbFlatSizeParams {
    void* refconPV;
    PF_ArbitraryH arbH;
    A_u_long* flat_data_sizePLu;
};
HOST_RECORD(PF_ArbFlatSizeParams, 24);
HOST_FIELD(PF_ArbFlatSizeParams, refconPV, 0);
HOST_FIELD(PF_ArbFlatSizeParams, arbH, 8);
HOST_FIELD(PF_ArbFlatSizeParams, flat_data_sizePLu, 16);

struct PF_ArbFlattenParams {
    void* refconPV;
    PF_ArbitraryH arbH;
    A_u_long buf_sizeLu;
    void* flat_dataPV;
};
HOST_RECORD(PF_ArbFlattenParams, 32);
HOST_FIELD(PF_ArbFlattenParams, refconPV, 0);
HOST_FIELD(PF_ArbFlattenParams, arbH, 8);
HOST_FIELD(PF_ArbFlattenParams, buf_sizeLu, 16);
HOST_FIELD(PF_ArbFlattenParams, flat_dataPV, 24);

struct PF_ArbUnflattenParams {
    void* refconPV;
    A_u_long buf_sizeLu;
    const void* flat_dataPV;
    PF_ArbitraryH* arbPH;
};
HOST_RECORD(PF_ArbUnflattenParams, 32);
HOST_FIELD(PF_ArbUnflattenParams, refconPV, 0);
HOST_FIELD(PF_ArbUnflattenParams, buf_sizeLu, 8);
HOST_FIELD(PF_ArbUnflattenParams, flat_dataPV, 16);
HOST_FIELD(PF_ArbUnflattenParams, arbPH, 24);

// tF runs from 0 (left) to 1 (right).
struct PF_ArbInterpParams {
    void* refconPV;
    PF_ArbitraryH left_arbH;
    PF_ArbitraryH right_arbH;
    PF_FpLong tF;
    PF_ArbitraryH* interpPH;
};
HOST_RECORD(PF_ArbInterpParams, 40);
HOST_FIELD(PF_ArbInterpParams, refconPV, 0);
HOST_FIELD(PF_ArbInterpParams, left_arbH, 8);
HOST_FIELD(PF_ArbInterpParams, right_arbH, 16);
HOST_FIELD(PF_ArbInterpParams, tF, 24);
HOST_FIELD(PF_ArbInterpParams, interpPH, 32);

struct PF_ArbCompareParams {
    void* refconPV;
    PF_ArbitraryH a_arbH;
    PF_ArbitraryH b_arbH;
    PF_ArbCompareResult* compareP;
};
HOST_RECORD(PF_ArbCompareParams, 32);
HOST_FIELD(PF_ArbCompareParams, refconPV, 0);
HOST_FIELD(PF_ArbCompareParams, a_arbH, 8);
HOST_FIELD(PF_ArbCompareParams, b_arbH, 16);
HOST_FIELD(PF_ArbCompareParams, compareP, 24);

struct PF_ArbPrintSizeParams {
    void* refconPV;
    PF_ArbitraryH arbH;
    A_u_long* print_sizePLu;
};
HOST_RECORD(PF_ArbPrintSizeParams, 24);
HOST_FIELD(PF_ArbPrintSizeParams, refconPV, 0);
HOST_FIELD(PF_ArbPrintSizeParams, arbH, 8);
HOST_FIELD(PF_ArbPrintSizeParams, print_sizePLu, 16);

// print_sizeLu counts the closing zero.
struct PF_ArbPrintParams {
    void* refconPV;
    PF_ArbPrintFlags print_flags;
    PF_ArbitraryH arbH;
    A_u_long print_sizeLu;
    A_char* print_bufferPC;
};
HOST_RECORD(PF_ArbPrintParams, 40);
HOST_FIELD(PF_ArbPrintParams, refconPV, 0);
HOST_FIELD(PF_ArbPrintParams, print_flags, 8);
HOST_FIELD(PF_ArbPrintParams, arbH, 16);
HOST_FIELD(PF_ArbPrintParams, print_sizeLu, 24);
HOST_FIELD(PF_ArbPrintParams, print_bufferPC, 32);

struct PF_ArbScanParams {
    void* refconPV;
    const A_char* bufPC;
    A_u_long bytes_to_scanLu;
    PF_ArbitraryH* arbPH;
};
HOST_RECORD(PF_ArbScanParams, 32);
HOST_FIELD(PF_ArbScanParams, refconPV, 0);
HOST_FIELD(PF_ArbScanParams, bufPC, 8);
HOST_FIELD(PF_ArbScanParams, bytes_to_scanLu, 16);
HOST_FIELD(PF_ArbScanParams, arbPH, 24);

union PF_ArbParamsUnion {
    PF_ArbNewParams new_func_params;
    PF_ArbDisposeParams dispose_func_params;
    PF_ArbCopyParams copy_func_params;
    PF_ArbFlatSizeParams flat_size_func_params;
    PF_ArbFlattenParams flatten_func_params;
    PF_ArbUnflattenParams unflatten_func_params;
    PF_ArbInterpParams interp_func_params;
    PF_ArbCompareParams compare_func_params;
    PF_ArbPrintSizeParams print_size_func_params;
    PF_ArbPrintParams print_func_params;
    PF_ArbScanParams scan_func_params;
};
HOST_RECORD(PF_ArbParamsUnion, 40);

struct PF_ArbParamsExtra {
    PF_FunctionSelector which_function;  // PF_ArbitrarySelector
    A_short id;
    A_short padding;
    PF_ArbParamsUnion u;
};
HOST_RECORD(PF_ArbParamsExtra, 48);
HOST_FIELD(PF_ArbParamsExtra, which_function, 0);
HOST_FIELD(PF_ArbParamsExtra, id, 4);
HOST_FIELD(PF_ArbParamsExtra, padding, 6);
HOST_FIELD(PF_ArbParamsExtra, u, 8);
