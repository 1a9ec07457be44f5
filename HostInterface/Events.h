#pragma once

#include "HostInterface/Constants.h"
#include "HostInterface/Parameters.h"

// Custom control events. Positions are in pixels of the panel.
struct PF_ContextRefconData;
using PF_ContextRefcon = PF_ContextRefconData*;

struct PF_Context {
    A_u_long magic;
    PF_WindowType w_type;
    PF_ContextRefcon reserved_flt;
    A_intptr_t plugin_state[4];
    DRAWBOT_DrawRef reserved_drawref;
    void* reserved_paneP;
    void* reserved_job_manageP;
};
HOST_RECORD(PF_Context, 72);
HOST_FIELD(PF_Context, magic, 0);
HOST_FIELD(PF_Context, w_type, 4);
HOST_FIELD(PF_Context, reserved_flt, 8);
HOST_FIELD(PF_Context, plugin_state, 16);
HOST_FIELD(PF_Context, reserved_drawref, 48);
HOST_FIELD(PF_Context, reserved_paneP, 56);
HOST_FIELD(PF_Context, reserved_job_manageP, 64);
using PF_ContextH = PF_Context**;

struct PF_DoClickEventInfo {
    A_u_long when;
    PF_Point screen_point;
    A_long num_clicks;
    PF_Modifiers modifiers;
    A_intptr_t continue_refcon[4];
    PF_Boolean send_drag;
    PF_Boolean last_time;
};
HOST_RECORD(PF_DoClickEventInfo, 64);
HOST_FIELD(PF_DoClickEventInfo, when, 0);
HOST_FIELD(PF_DoClickEventInfo, screen_point, 4);
HOST_FIELD(PF_DoClickEventInfo, num_clicks, 12);
HOST_FIELD(PF_DoClickEventInfo, modifiers, 16);
HOST_FIELD(PF_DoClickEventInfo, continue_refcon, 24);
HOST_FIELD(PF_DoClickEventInfo, send_drag, 56);
HOST_FIELD(PF_DoClickEventInfo, last_time, 57);

struct PF_DrawEventInfo {
    PF_UnionableRect update_rect;
    A_long depth;
};
HOST_RECORD(PF_DrawEventInfo, 20);
HOST_FIELD(PF_DrawEventInfo, update_rect, 0);
HOST_FIELD(PF_DrawEventInfo, depth, 16);

struct PF_KeyDownEvent {
    A_u_long when;
    PF_Point screen_point;
    PF_KeyCode keycode;
    PF_Modifiers modifiers;
};
HOST_RECORD(PF_KeyDownEvent, 20);
HOST_FIELD(PF_KeyDownEvent, when, 0);
HOST_FIELD(PF_KeyDownEvent, screen_point, 4);
HOST_FIELD(PF_KeyDownEvent, keycode, 12);
HOST_FIELD(PF_KeyDownEvent, modifiers, 16);

struct PF_AdjustCursorEventInfo {
    PF_Point screen_point;
    PF_Modifiers modifiers;
    PF_CursorType set_cursor;
};
HOST_RECORD(PF_AdjustCursorEventInfo, 16);
HOST_FIELD(PF_AdjustCursorEventInfo, screen_point, 0);
HOST_FIELD(PF_AdjustCursorEventInfo, modifiers, 8);
HOST_FIELD(PF_AdjustCursorEventInfo, set_cursor, 12);

union PF_EventUnion {
    PF_DoClickEventInfo do_click;
    PF_DrawEventInfo draw;
    PF_KeyDownEvent key_down;
    PF_AdjustCursorEventInfo adjust_cursor;
};
HOST_RECORD(PF_EventUnion, 64);

struct PF_EffectWindowInfo {
    PF_ParamIndex index;
    PF_EffectArea area;
    PF_UnionableRect current_frame;  // of the control
    PF_UnionableRect param_title_frame;
    A_long horiz_offset;
};
HOST_RECORD(PF_EffectWindowInfo, 44);
HOST_FIELD(PF_EffectWindowInfo, index, 0);
HOST_FIELD(PF_EffectWindowInfo, area, 4);
HOST_FIELD(PF_EffectWindowInfo, current_frame, 8);
HOST_FIELD(PF_EffectWindowInfo, param_title_frame, 24);
HOST_FIELD(PF_EffectWindowInfo, horiz_offset, 40);

struct PF_EventCallbacks {
    void* refcon;
    PF_Err (*layer_to_comp)(void* refcon, PF_ContextH context, A_long currTime, A_long timeScale, PF_FixedPoint* pt);
    PF_Err (*comp_to_layer)(void* refcon, PF_ContextH context, A_long currTime, A_long timeScale, PF_FixedPoint* pt);
    PF_Err (*get_comp2layer_xform)(void* refcon, PF_ContextH context, A_long currTime, A_long timeScale, A_long* exists,
                                   PF_FloatMatrix* compToLayer);
    PF_Err (*get_layer2comp_xform)(void* refcon, PF_ContextH context, A_long currTime, A_long timeScale,
                                   PF_FloatMatrix* layerToComp);
    PF_Err (*source_to_frame)(void* refcon, PF_ContextH context, PF_FixedPoint* pt);
    PF_Err (*frame_to_source)(void* refcon, PF_ContextH context, PF_FixedPoint* pt);
    PF_Err (*info_draw_color)(void* refcon, PF_Pixel color);
    PF_Err (*info_draw_text)(void* refcon, const A_char* text1, const A_char* text2);
};
HOST_RECORD(PF_EventCallbacks, 72);
HOST_FIELD(PF_EventCallbacks, refcon, 0);
HOST_FIELD(PF_EventCallbacks, layer_to_comp, 8);
HOST_FIELD(PF_EventCallbacks, comp_to_layer, 16);
HOST_FIELD(PF_EventCallbacks, get_comp2layer_xform, 24);
HOST_FIELD(PF_EventCallbacks, get_layer2comp_xform, 32);
HOST_FIELD(PF_EventCallbacks, source_to_frame, 40);
HOST_FIELD(PF_EventCallbacks, frame_to_source, 48);
HOST_FIELD(PF_EventCallbacks, info_draw_color, 56);
HOST_FIELD(PF_EventCallbacks, info_draw_text, 64);

struct PF_EventExtra {
    PF_ContextH contextH;
    PF_EventType e_type;  // PF_EventValue
    PF_EventUnion u;
    PF_EffectWindowInfo effect_win;
    PF_EventCallbacks cbs;
    PF_EventInFlags evt_in_flags;
    PF_EventOutFlags evt_out_flags;  // PF_EventOutFlag
};
HOST_RECORD(PF_EventExtra, 208);
HOST_FIELD(PF_EventExtra, contextH, 0);
HOST_FIELD(PF_EventExtra, e_type, 8);
HOST_FIELD(PF_EventExtra, u, 16);
HOST_FIELD(PF_EventExtra, effect_win, 80);
HOST_FIELD(PF_EventExtra, cbs, 128);
HOST_FIELD(PF_EventExtra, evt_in_flags, 200);
HOST_FIELD(PF_EventExtra, evt_out_flags, 204);
