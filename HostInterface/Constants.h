#pragma once

#include "HostInterface/Types.h"

// The host's published numbers, as far as an effect of this kind or a host of it uses them.

// Results of host calls and of the effect. A type of its own, so that throwing one differs from throwing a PF_Err.
enum PF_ErrorValue : A_long {
    PF_Err_NONE = 0,
    PF_Err_OUT_OF_MEMORY = 4,
    PF_Err_INTERNAL_STRUCT_DAMAGED = 512,
    PF_Err_INVALID_INDEX = 513,
    PF_Err_UNRECOGNIZED_PARAM_TYPE = 514,
    PF_Err_INVALID_CALLBACK = 515,
    PF_Err_BAD_CALLBACK_PARAM = 516,
    PF_Err_CANNOT_PARSE_KEYFRAME_TEXT = 518,
    PF_Interrupt_CANCEL = 517,
};

// What EffectMain is asked to do.
enum PF_CommandNumber : A_long {
    PF_Cmd_ABOUT = 0,
    PF_Cmd_GLOBAL_SETUP = 1,
    PF_Cmd_GLOBAL_SETDOWN = 3,
    PF_Cmd_PARAMS_SETUP = 4,
    PF_Cmd_SEQUENCE_SETUP = 5,
    PF_Cmd_SEQUENCE_RESETUP = 6,
    PF_Cmd_SEQUENCE_FLATTEN = 7,
    PF_Cmd_SEQUENCE_SETDOWN = 8,
    PF_Cmd_DO_DIALOG = 9,
    PF_Cmd_FRAME_SETUP = 10,
    PF_Cmd_RENDER = 11,
    PF_Cmd_FRAME_SETDOWN = 12,
    PF_Cmd_USER_CHANGED_PARAM = 13,
    PF_Cmd_UPDATE_PARAMS_UI = 14,
    PF_Cmd_EVENT = 15,
    PF_Cmd_GET_EXTERNAL_DEPENDENCIES = 16,
    PF_Cmd_COMPLETELY_GENERAL = 17,
    PF_Cmd_QUERY_DYNAMIC_FLAGS = 18,
    PF_Cmd_AUDIO_RENDER = 19,
    PF_Cmd_AUDIO_SETUP = 20,
    PF_Cmd_AUDIO_SETDOWN = 21,
    PF_Cmd_ARBITRARY_CALLBACK = 22,
    PF_Cmd_SMART_PRE_RENDER = 23,
    PF_Cmd_SMART_RENDER = 24,
    PF_Cmd_GET_FLATTENED_SEQUENCE_DATA = 28,
    PF_Cmd_TRANSLATE_PARAMS_TO_PREFS = 29,
    PF_Cmd_SMART_RENDER_GPU = 31,
    PF_Cmd_GPU_DEVICE_SETUP = 32,
    PF_Cmd_GPU_DEVICE_SETDOWN = 33,
};

// Which application the effect runs in (PF_InData::appl_id).
enum PF_ApplicationId : A_long {
    PF_AppID_Compositing = 0x46585443,  // 'FXTC'
    PF_AppID_Editing = 0x50724D72,      // 'PrMr'
};

// Four characters in memory order, as the host stores pixel formats.
constexpr A_long pixelFormatCode(const char (&text)[5]) {
    return static_cast<A_long>(static_cast<A_u_long>(text[0]) | static_cast<A_u_long>(text[1]) << 8 |
                               static_cast<A_u_long>(text[2]) << 16 | static_cast<A_u_long>(text[3]) << 24);
}

// Pixel formats of worlds: 8 bits, 16 bits (to 32768) and 32-bit floats per channel, each as alpha, red, green, blue.
enum PF_PixelFormatCode : A_long {
    PF_PixelFormat_ARGB32 = pixelFormatCode("argb"),
    PF_PixelFormat_ARGB64 = pixelFormatCode("ae16"),
    PF_PixelFormat_ARGB128 = pixelFormatCode("ae32"),
    PF_PixelFormat_INVALID = pixelFormatCode("badf"),
};

// The bit fields of a version number (PF_OutData::my_version). Versions above 127 go on in the high bits.
enum PF_VersionField : A_long {
    PF_Vers_BUILD_BITS = 511,
    PF_Vers_BUILD_SHIFT = 0,
    PF_Vers_STAGE_BITS = 3,
    PF_Vers_STAGE_SHIFT = 9,
    PF_Vers_BUGFIX_BITS = 15,
    PF_Vers_BUGFIX_SHIFT = 11,
    PF_Vers_SUBVERS_BITS = 15,
    PF_Vers_SUBVERS_SHIFT = 15,
    PF_Vers_VERS_BITS = 7,
    PF_Vers_VERS_SHIFT = 19,
    PF_Vers_VERS_HIGH_BITS = 15,
    PF_Vers_VERS_HIGH_SHIFT = 26,
    PF_Vers_VERS_LOW_SHIFT = 3,
};

enum PF_QualityValue : A_long {
    PF_Quality_DRAWING_AUDIO = -1,
    PF_Quality_LO = 0,
    PF_Quality_HI = 1,
};

enum PF_FieldValue : A_long {
    PF_Field_FRAME = 0,
    PF_Field_UPPER = 1,
    PF_Field_LOWER = 2,
};

enum PF_InFlag : A_long {
    PF_InFlag_NONE = 0,
    PF_InFlag_PROJECT_IS_RENDER_ONLY = 1,
};

// PF_OutData::out_flags.
enum PF_OutFlag : A_long {
    PF_OutFlag_NONE = 0,
    PF_OutFlag_KEEP_RESOURCE_OPEN = 1 << 0,
    PF_OutFlag_WIDE_TIME_INPUT = 1 << 1,
    PF_OutFlag_NON_PARAM_VARY = 1 << 2,
    PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING = 1 << 4,
    PF_OutFlag_I_DO_DIALOG = 1 << 5,
    PF_OutFlag_USE_OUTPUT_EXTENT = 1 << 6,
    PF_OutFlag_SEND_DO_DIALOG = 1 << 7,
    PF_OutFlag_DISPLAY_ERROR_MESSAGE = 1 << 8,
    PF_OutFlag_I_EXPAND_BUFFER = 1 << 9,
    PF_OutFlag_PIX_INDEPENDENT = 1 << 10,
    PF_OutFlag_I_WRITE_INPUT_BUFFER = 1 << 11,
    PF_OutFlag_I_SHRINK_BUFFER = 1 << 12,
    PF_OutFlag_WORKS_IN_PLACE = 1 << 13,
    PF_OutFlag_CUSTOM_UI = 1 << 15,
    PF_OutFlag_REFRESH_UI = 1 << 17,
    PF_OutFlag_NOP_RENDER = 1 << 18,
    PF_OutFlag_I_USE_SHUTTER_ANGLE = 1 << 19,
    PF_OutFlag_FORCE_RERENDER = 1 << 22,
    PF_OutFlag_PiPL_OVERRIDES_OUTDATA_OUTFLAGS = 1 << 23,
    PF_OutFlag_I_HAVE_EXTERNAL_DEPENDENCIES = 1 << 24,
    PF_OutFlag_DEEP_COLOR_AWARE = 1 << 25,
    PF_OutFlag_SEND_UPDATE_PARAMS_UI = 1 << 26,
};

// PF_OutData::out_flags2.
enum PF_OutFlag2 : A_long {
    PF_OutFlag2_NONE = 0,
    PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS = 1 << 0,
    PF_OutFlag2_I_USE_3D_CAMERA = 1 << 1,
    PF_OutFlag2_I_USE_3D_LIGHTS = 1 << 2,
    PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG = 1 << 3,
    PF_OutFlag2_I_AM_THREADSAFE = 1 << 4,
    PF_OutFlag2_CAN_COMBINE_WITH_DESTINATION = 1 << 5,
    PF_OutFlag2_DOESNT_NEED_EMPTY_PIXELS = 1 << 6,
    PF_OutFlag2_REVEALS_ZERO_ALPHA = 1 << 7,
    PF_OutFlag2_PRESERVES_FULLY_OPAQUE_PIXELS = 1 << 8,
    PF_OutFlag2_SUPPORTS_SMART_RENDER = 1 << 10,
    PF_OutFlag2_FLOAT_COLOR_AWARE = 1 << 12,
    PF_OutFlag2_I_USE_COLORSPACE_ENUMERATION = 1 << 13,
    PF_OutFlag2_AUTOMATIC_WIDE_TIME_INPUT = 1 << 17,
    PF_OutFlag2_I_USE_TIMECODE = 1 << 18,
    PF_OutFlag2_DEPENDS_ON_UNREFERENCED_MASKS = 1 << 19,
    PF_OutFlag2_OUTPUT_IS_WATERMARKED = 1 << 20,
    PF_OutFlag2_I_MIX_GUID_DEPENDENCIES = 1 << 21,
    PF_OutFlag2_AE13_5_THREADSAFE = 1 << 22,
    PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA = 1 << 23,
    PF_OutFlag2_CUSTOM_UI_ASYNC_MANAGER = 1 << 24,
    PF_OutFlag2_SUPPORTS_GPU_RENDER_F32 = 1 << 25,
    PF_OutFlag2_SUPPORTS_THREADED_RENDERING = 1 << 27,
    PF_OutFlag2_MUTABLE_RENDER_SEQUENCE_DATA_SLOWER = 1 << 28,
    PF_OutFlag2_SUPPORTS_DIRECTX_RENDERING = 1 << 29,
};

// Kinds of parameters.
enum PF_ParamTypeValue : A_long {
    PF_Param_LAYER = 0,
    PF_Param_SLIDER = 1,
    PF_Param_FIX_SLIDER = 2,
    PF_Param_ANGLE = 3,
    PF_Param_CHECKBOX = 4,
    PF_Param_COLOR = 5,
    PF_Param_POINT = 6,
    PF_Param_POPUP = 7,
    PF_Param_CUSTOM = 8,
    PF_Param_NO_DATA = 9,
    PF_Param_FLOAT_SLIDER = 10,
    PF_Param_ARBITRARY_DATA = 11,
    PF_Param_PATH = 12,
    PF_Param_GROUP_START = 13,
    PF_Param_GROUP_END = 14,
    PF_Param_BUTTON = 15,
    PF_Param_POINT_3D = 18,
};

// PF_ParamDef::flags.
enum PF_ParamFlag : A_long {
    PF_ParamFlag_NONE = 0,
    PF_ParamFlag_CANNOT_TIME_VARY = 2,
    PF_ParamFlag_CANNOT_INTERP = 4,
    PF_ParamFlag_COLLAPSE_TWIRLY = 32,
    PF_ParamFlag_SUPERVISE = 64,
    PF_ParamFlag_START_COLLAPSED = 32,
    PF_ParamFlag_USE_VALUE_FOR_OLD_PROJECTS = 128,
    PF_ParamFlag_EXCLUDE_FROM_HAVE_INPUTS_CHANGED = 256,
    PF_ParamFlag_SKIP_REVEAL_WHEN_UNHIDDEN = 512,
};

// PF_ParamDef::ui_flags.
enum PF_ParamUIFlag : A_long {
    PF_PUI_NONE = 0,
    PF_PUI_TOPIC = 1,
    PF_PUI_CONTROL = 2,
    PF_PUI_STD_CONTROL_ONLY = 4,
    PF_PUI_NO_ECW_UI = 8,
    PF_PUI_ECW_SEPARATOR = 16,
    PF_PUI_DISABLED = 32,
    PF_PUI_DONT_ERASE_TOPIC = 64,
    PF_PUI_DONT_ERASE_CONTROL = 128,
    PF_PUI_RADIO_BUTTON = 256,
    PF_PUI_INVISIBLE = 512,
};

// PF_ParamDef::uu.change_flags.
enum PF_ChangeFlag : A_long {
    PF_ChangeFlag_NONE = 0,
    PF_ChangeFlag_CHANGED_VALUE = 1,
    PF_ChangeFlag_SET_TO_VARY = 4,
    PF_ChangeFlag_SET_TO_CONSTANT = 8,
};

// How a slider shows its number.
enum PF_ValueDisplayFlag : A_short {
    PF_ValueDisplayFlag_NONE = 0,
    PF_ValueDisplayFlag_PERCENT = 1,
    PF_ValueDisplayFlag_PIXEL = 2,
    PF_ValueDisplayFlag_REVERSE = 8,
};

// PF_LayerDef::world_flags.
enum PF_WorldFlag : A_long {
    PF_WorldFlag_DEEP = 1,
    PF_WorldFlag_WRITEABLE = 2,
};

enum PF_RenderOutputFlag : std::int16_t {
    PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS = 1,
    PF_RenderOutputFlag_GPU_RENDER_POSSIBLE = 2,
};

// What PF_Cmd_ARBITRARY_CALLBACK asks of a value.
enum PF_ArbitrarySelector : A_long {
    PF_Arbitrary_NEW_FUNC = 0,
    PF_Arbitrary_DISPOSE_FUNC = 1,
    PF_Arbitrary_COPY_FUNC = 2,
    PF_Arbitrary_FLAT_SIZE_FUNC = 3,
    PF_Arbitrary_FLATTEN_FUNC = 4,
    PF_Arbitrary_UNFLATTEN_FUNC = 5,
    PF_Arbitrary_INTERP_FUNC = 6,
    PF_Arbitrary_COMPARE_FUNC = 7,
    PF_Arbitrary_PRINT_SIZE_FUNC = 8,
    PF_Arbitrary_PRINT_FUNC = 9,
    PF_Arbitrary_SCAN_FUNC = 10,
};

enum PF_ArbCompare : A_long {
    PF_ArbCompare_EQUAL = 0,
    PF_ArbCompare_LESS = 1,
    PF_ArbCompare_MORE = 2,
    PF_ArbCompare_NOT_EQUAL = 3,
};

// Where a custom control takes events (PF_CustomUIInfo::events).
enum PF_CustomEventFlag : A_long {
    PF_CustomEFlag_NONE = 0,
    PF_CustomEFlag_COMP = 1,
    PF_CustomEFlag_LAYER = 2,
    PF_CustomEFlag_EFFECT = 4,
    PF_CustomEFlag_PREVIEW = 8,
};

enum PF_WindowValue : A_long {
    PF_Window_NONE = -1,
    PF_Window_COMP = 0,
    PF_Window_LAYER = 1,
    PF_Window_EFFECT = 2,
    PF_Window_PREVIEW = 3,
};

// Events of custom controls.
enum PF_EventValue : A_long {
    PF_Event_NONE = -1,
    PF_Event_NEW_CONTEXT = 0,
    PF_Event_ACTIVATE = 1,
    PF_Event_DO_CLICK = 2,
    PF_Event_DRAG = 3,
    PF_Event_DRAW = 4,
    PF_Event_DEACTIVATE = 5,
    PF_Event_CLOSE_CONTEXT = 6,
    PF_Event_IDLE = 7,
    PF_Event_ADJUST_CURSOR = 9,
    PF_Event_KEYDOWN = 10,
    PF_Event_MOUSE_EXITED = 11,
};

// Keys held during an event.
enum PF_Modifier : A_long {
    PF_Mod_NONE = 0,
    PF_Mod_CMD_CTRL_KEY = 256,
    PF_Mod_SHIFT_KEY = 512,
    PF_Mod_CAPS_LOCK_KEY = 1024,
    PF_Mod_OPT_ALT_KEY = 2048,
    PF_Mod_MAC_CONTROL_KEY = 4096,
};

enum PF_EffectAreaValue : A_long {
    PF_EA_NONE = 0,
    PF_EA_PARAM_TITLE = 1,
    PF_EA_CONTROL = 2,
};

enum PF_EventOutFlag : A_long {
    PF_EO_NONE = 0,
    PF_EO_HANDLED_EVENT = 1,
    PF_EO_ALWAYS_UPDATE = 2,
    PF_EO_NEVER_UPDATE = 4,
    PF_EO_UPDATE_NOW = 8,
};

// Colours of the application's theme.
enum PF_AppColorValue : A_short {
    PF_App_Color_NONE = -1,
    PF_App_Color_FRAME = 0,
    PF_App_Color_FILL = 1,
    PF_App_Color_TEXT = 2,
    PF_App_Color_LIGHT_TINGE = 3,
    PF_App_Color_DARK_TINGE = 4,
    PF_App_Color_HILITE = 5,
    PF_App_Color_SHADOW = 6,
    PF_App_Color_BUTTON_FRAME = 7,
    PF_App_Color_BUTTON_FILL = 8,
    PF_App_Color_BUTTON_TEXT = 9,
    PF_App_Color_BUTTON_LIGHT_TINGE = 10,
    PF_App_Color_BUTTON_DARK_TINGE = 11,
    PF_App_Color_BUTTON_HILITE = 12,
    PF_App_Color_BUTTON_SHADOW = 13,
    PF_App_Color_BUTTON_PRESSED_FRAME = 14,
    PF_App_Color_BUTTON_PRESSED_FILL = 15,
    PF_App_Color_BUTTON_PRESSED_TEXT = 16,
    PF_App_Color_BUTTON_PRESSED_LIGHT_TINGE = 17,
    PF_App_Color_BUTTON_PRESSED_DARK_TINGE = 18,
    PF_App_Color_BUTTON_PRESSED_HILITE = 19,
    PF_App_Color_BUTTON_PRESSED_SHADOW = 20,
    PF_App_Color_FRAME_DISABLED = 21,
    PF_App_Color_FILL_DISABLED = 22,
    PF_App_Color_TEXT_DISABLED = 23,
    PF_App_Color_LIGHT_TINGE_DISABLED = 24,
    PF_App_Color_DARK_TINGE_DISABLED = 25,
    PF_App_Color_HILITE_DISABLED = 26,
    PF_App_Color_SHADOW_DISABLED = 27,
    PF_App_Color_BUTTON_FRAME_DISABLED = 28,
    PF_App_Color_BUTTON_FILL_DISABLED = 29,
    PF_App_Color_BUTTON_TEXT_DISABLED = 30,
    PF_App_Color_BUTTON_LIGHT_TINGE_DISABLED = 31,
    PF_App_Color_BUTTON_DARK_TINGE_DISABLED = 32,
    PF_App_Color_BUTTON_HILITE_DISABLED = 33,
    PF_App_Color_BUTTON_SHADOW_DISABLED = 34,
    PF_App_Color_BUTTON_PRESSED_FRAME_DISABLED = 35,
    PF_App_Color_BUTTON_PRESSED_FILL_DISABLED = 36,
    PF_App_Color_BUTTON_PRESSED_TEXT_DISABLED = 37,
    PF_App_Color_BUTTON_PRESSED_LIGHT_TINGE_DISABLED = 38,
    PF_App_Color_BUTTON_PRESSED_DARK_TINGE_DISABLED = 39,
    PF_App_Color_BUTTON_PRESSED_HILITE_DISABLED = 40,
    PF_App_Color_BUTTON_PRESSED_SHADOW_DISABLED = 41,
    PF_App_Color_BLACK = 42,
    PF_App_Color_WHITE = 43,
    PF_App_Color_GRAY = 44,
    PF_App_Color_RED = 45,
    PF_App_Color_YELLOW = 46,
    PF_App_Color_GREEN = 47,
    PF_App_Color_CYAN = 48,
    PF_App_Color_TLW_NEEDLE_CURRENT_TIME = 49,
    PF_App_Color_TLW_NEEDLE_PREVIEW_TIME = 50,
    PF_App_Color_TLW_CACHE_MARK_MEM = 51,
    PF_App_Color_TLW_CACHE_MARK_DISK = 52,
    PF_App_Color_TLW_CACHE_MARK_MIX = 53,
    PF_App_Color_FILL_LIGHT = 54,
    PF_App_Color_HOT_TEXT = 55,
    PF_App_Color_HOT_TEXT_DISABLED = 56,
    PF_App_Color_LABEL_0 = 57,
    PF_App_Color_LABEL_1 = 58,
    PF_App_Color_LABEL_2 = 59,
    PF_App_Color_LABEL_3 = 60,
    PF_App_Color_LABEL_4 = 61,
    PF_App_Color_LABEL_5 = 62,
    PF_App_Color_LABEL_6 = 63,
    PF_App_Color_LABEL_7 = 64,
    PF_App_Color_LABEL_8 = 65,
    PF_App_Color_LABEL_9 = 66,
    PF_App_Color_LABEL_10 = 67,
    PF_App_Color_LABEL_11 = 68,
    PF_App_Color_LABEL_12 = 69,
    PF_App_Color_LABEL_13 = 70,
    PF_App_Color_LABEL_14 = 71,
    PF_App_Color_LABEL_15 = 72,
    PF_App_Color_LABEL_16 = 73,
    PF_App_Color_TLW_CACHE_MARK_MEM_DUBIOUS = 74,
    PF_App_Color_TLW_CACHE_MARK_DISK_DUBIOUS = 75,
    PF_App_Color_TLW_CACHE_MARK_MIX_DUBIOUS = 76,
    PF_App_Color_HOT_TEXT_PRESSED = 77,
    PF_App_Color_HOT_TEXT_WARNING = 78,
    PF_App_Color_PURE_BLACK = 79,
    PF_App_Color_PURE_WHITE = 80,
    PF_App_Color_PANEL_BACKGROUND = 1000,
    PF_App_Color_LIST_BOX_FILL = 1001,
    PF_App_Color_DARK_CAPTION_FILL = 1002,
    PF_App_Color_DARK_CAPTION_TEXT = 1003,
    PF_App_Color_TEXT_ON_LIGHTER_BG = 1004,
    PF_App_Color_NUMTYPES = 1005,
};

enum AEGP_MemFlagValue : A_long {
    AEGP_MemFlag_NONE = 0,
    AEGP_MemFlag_CLEAR = 1,
    AEGP_MemFlag_QUIET = 2,
};

enum AEGP_LTimeModeValue : A_short {
    AEGP_LTimeMode_LayerTime = 0,
    AEGP_LTimeMode_CompTime = 1,
};

enum AEGP_LayerStreamValue : A_long {
    AEGP_LayerStream_ZOOM = 11,
};

enum AEGP_StreamTypeValue : A_long {
    AEGP_StreamType_NO_DATA = 0,
    AEGP_StreamType_ThreeD_SPATIAL = 1,
    AEGP_StreamType_ThreeD = 2,
    AEGP_StreamType_TwoD_SPATIAL = 3,
    AEGP_StreamType_TwoD = 4,
    AEGP_StreamType_OneD = 5,
    AEGP_StreamType_COLOR = 6,
    AEGP_StreamType_ARB = 7,
    AEGP_StreamType_MARKER = 8,
    AEGP_StreamType_LAYER_ID = 9,
    AEGP_StreamType_MASK_ID = 10,
    AEGP_StreamType_MASK = 11,
    AEGP_StreamType_TEXT_DOCUMENT = 12,
};

enum AEGP_DynStreamFlag : A_u_long {
    AEGP_DynStreamFlag_ACTIVE_EYEBALL = 1,
    AEGP_DynStreamFlag_HIDDEN = 2,
    AEGP_DynStreamFlag_DISABLED = 16,
    AEGP_DynStreamFlag_ELIDED = 32,
    AEGP_DynStreamFlag_SHOWN_WHEN_EMPTY = 1024,
    AEGP_DynStreamFlag_SKIP_REVEAL_WHEN_UNHIDDEN = 65536,
};

enum DRAWBOT_FillTypeValue : std::int32_t {
    kDRAWBOT_FillType_EvenOdd = 0,
    kDRAWBOT_FillType_Winding = 1,
    kDRAWBOT_FillType_Default = 1,
};

enum DRAWBOT_PixelLayoutValue : std::int32_t {
    kDRAWBOT_PixelLayout_24RGB = 0,
    kDRAWBOT_PixelLayout_24BGR = 1,
    kDRAWBOT_PixelLayout_32RGB = 2,
    kDRAWBOT_PixelLayout_32BGR = 3,
    kDRAWBOT_PixelLayout_32ARGB_Straight = 4,
    kDRAWBOT_PixelLayout_32ARGB_Premul = 5,
    kDRAWBOT_PixelLayout_32BGRA_Straight = 6,
    kDRAWBOT_PixelLayout_32BGRA_Premul = 7,
};

enum DRAWBOT_TextAlignmentValue : std::int32_t {
    kDRAWBOT_TextAlignment_Left = 0,
    kDRAWBOT_TextAlignment_Center = 1,
    kDRAWBOT_TextAlignment_Right = 2,
    kDRAWBOT_TextAlignment_Default = 0,
};

enum DRAWBOT_TextTruncationValue : std::int32_t {
    kDRAWBOT_TextTruncation_None = 0,
    kDRAWBOT_TextTruncation_End = 1,
    kDRAWBOT_TextTruncation_EndEllipsis = 2,
    kDRAWBOT_TextTruncation_PathEllipsis = 3,
};

enum DRAWBOT_InterpolationPolicyValue : std::int32_t {
    kDRAWBOT_InterpolationPolicy_None = 0,
    kDRAWBOT_InterpolationPolicy_Med = 1,
    kDRAWBOT_InterpolationPolicy_High = 2,
    kDRAWBOT_InterpolationPolicy_Default = 0,
};

enum DRAWBOT_AntiAliasPolicyValue : std::int32_t {
    kDRAWBOT_AntiAliasPolicy_None = 0,
    kDRAWBOT_AntiAliasPolicy_Med = 1,
    kDRAWBOT_AntiAliasPolicy_High = 2,
    kDRAWBOT_AntiAliasPolicy_Default = 0,
};
