#pragma once

#include "HostInterface/Events.h"
#include "HostInterface/Parameters.h"
#include "HostInterface/SmartRender.h"

// What passes between the host and EffectMain: the in-data, the out-data and the entry points. The other headers hold
// worlds, parameters and the extra records of the commands. All of it belongs to the host for the length of one
// command, unless a comment differs.

struct PF_InData;
struct PF_OutData;

// The suite server. A suite acquired n times must be released n times, by the same name and version.
struct SPBasicSuite {
    SPErr (*AcquireSuite)(const char* name, std::int32_t version, const void** suite);
    SPErr (*ReleaseSuite)(const char* name, std::int32_t version);
    SPBoolean (*IsEqual)(const char* first, const char* second);
    void* reserved0[4];
};
HOST_RECORD(SPBasicSuite, 56);
HOST_FIELD(SPBasicSuite, AcquireSuite, 0);
HOST_FIELD(SPBasicSuite, ReleaseSuite, 8);
HOST_FIELD(SPBasicSuite, IsEqual, 16);

// The calls that come with every command.
struct PF_InteractCallbacks {
    PF_Err (*checkout_param)(PF_ProgPtr effectRef, PF_ParamIndex index, A_long whatTime, A_long timeStep,
                             A_u_long timeScale, PF_ParamDef* param);
    PF_Err (*checkin_param)(PF_ProgPtr effectRef, PF_ParamDef* param);
    PF_Err (*add_param)(PF_ProgPtr effectRef, PF_ParamIndex index, PF_ParamDefPtr definition);
    PF_Err (*abort)(PF_ProgPtr effectRef);
    PF_Err (*progress)(PF_ProgPtr effectRef, A_long current, A_long total);
    PF_Err (*register_ui)(PF_ProgPtr effectRef, PF_CustomUIInfo* info);
    void* reserved0[16];
};
HOST_RECORD(PF_InteractCallbacks, 176);
HOST_FIELD(PF_InteractCallbacks, checkout_param, 0);
HOST_FIELD(PF_InteractCallbacks, checkin_param, 8);
HOST_FIELD(PF_InteractCallbacks, add_param, 16);
HOST_FIELD(PF_InteractCallbacks, abort, 24);
HOST_FIELD(PF_InteractCallbacks, progress, 32);
HOST_FIELD(PF_InteractCallbacks, register_ui, 40);

// C library stand-ins of the host.
struct PF_ANSICallbacksBlock {
    void* reserved0[15];
    std::int32_t (*sprintf)(A_char* target, const A_char* format, ...);
    A_char* (*strcpy)(A_char* target, const A_char* source);
    void* reserved1[3];
};
HOST_RECORD(PF_ANSICallbacksBlock, 160);
HOST_FIELD(PF_ANSICallbacksBlock, sprintf, 120);
HOST_FIELD(PF_ANSICallbacksBlock, strcpy, 128);

// The older table of utilities that hangs on the in-data.
struct PF_UtilCallbacks {
    void* reserved0[20];
    PF_Handle (*host_new_handle)(A_u_longlong size);
    void* (*host_lock_handle)(PF_Handle handle);
    void (*host_unlock_handle)(PF_Handle handle);
    void (*host_dispose_handle)(PF_Handle handle);
    void* reserved1[2];
    PF_ANSICallbacksBlock ansi;
    void* reserved2[9];
    A_u_longlong (*host_get_handle_size)(PF_Handle handle);
    void* reserved3[2];
    PF_Err (*host_resize_handle)(A_u_longlong newSize, PF_Handle* handle);
    void* reserved4[7];
    PF_Err (*get_pixel_data8)(PF_EffectWorld* world, PF_PixelPtr override, PF_Pixel8** pixels);
    PF_Err (*get_pixel_data16)(PF_EffectWorld* world, PF_PixelPtr override, PF_Pixel16** pixels);
    void* reserved5;
};
HOST_RECORD(PF_UtilCallbacks, 552);
HOST_FIELD(PF_UtilCallbacks, host_new_handle, 160);
HOST_FIELD(PF_UtilCallbacks, host_lock_handle, 168);
HOST_FIELD(PF_UtilCallbacks, host_unlock_handle, 176);
HOST_FIELD(PF_UtilCallbacks, host_dispose_handle, 184);
HOST_FIELD(PF_UtilCallbacks, ansi, 208);
HOST_FIELD(PF_UtilCallbacks, host_get_handle_size, 440);
HOST_FIELD(PF_UtilCallbacks, host_resize_handle, 464);
HOST_FIELD(PF_UtilCallbacks, get_pixel_data8, 528);
HOST_FIELD(PF_UtilCallbacks, get_pixel_data16, 536);

// Audio that the effect neither takes nor gives.
struct PF_SoundWorld {
    void* reserved0[4];
};
HOST_RECORD(PF_SoundWorld, 32);

// What the host tells with every command. Times are in units of 1 / time_scale seconds of layer time; width and height
// are those of the full-resolution layer.
struct PF_InData {
    PF_InteractCallbacks inter;
    PF_UtilCallbacks* utils;
    PF_ProgPtr effect_ref;  // passed back to host calls
    PF_Quality quality;
    PF_SpecVersion version;
    A_long serial_num;
    A_AppID appl_id;    // PF_ApplicationId
    A_long num_params;  // with the input layer
    A_long reserved;
    A_long what_cpu;
    A_long what_fpu;
    A_long current_time;
    A_long time_step;  // one frame
    A_long total_time;
    A_long local_time_step;
    A_u_long time_scale;
    PF_Field field;          // PF_FieldValue
    PF_Fixed shutter_angle;  // 16.16, 1.0 being 360 degrees
    A_long width;
    A_long height;
    PF_Rect extent_hint;
    A_long output_origin_x;
    A_long output_origin_y;
    PF_RationalScale downsample_x;
    PF_RationalScale downsample_y;
    PF_RationalScale pixel_aspect_ratio;
    PF_InFlags in_flags;
    PF_Handle global_data;
    PF_Handle sequence_data;
    PF_Handle frame_data;
    A_long start_sampL;
    A_long dur_sampL;
    A_long total_sampL;
    PF_SoundWorld src_snd;
    SPBasicSuite* pica_basicP;
    A_long pre_effect_source_origin_x;
    A_long pre_effect_source_origin_y;
    PF_Fixed shutter_phase;
};
HOST_RECORD(PF_InData, 408);
HOST_FIELD(PF_InData, inter, 0);
HOST_FIELD(PF_InData, utils, 176);
HOST_FIELD(PF_InData, effect_ref, 184);
HOST_FIELD(PF_InData, quality, 192);
HOST_FIELD(PF_InData, version, 196);
HOST_FIELD(PF_InData, serial_num, 200);
HOST_FIELD(PF_InData, appl_id, 204);
HOST_FIELD(PF_InData, num_params, 208);
HOST_FIELD(PF_InData, reserved, 212);
HOST_FIELD(PF_InData, what_cpu, 216);
HOST_FIELD(PF_InData, what_fpu, 220);
HOST_FIELD(PF_InData, current_time, 224);
HOST_FIELD(PF_InData, time_step, 228);
HOST_FIELD(PF_InData, total_time, 232);
HOST_FIELD(PF_InData, local_time_step, 236);
HOST_FIELD(PF_InData, time_scale, 240);
HOST_FIELD(PF_InData, field, 244);
HOST_FIELD(PF_InData, shutter_angle, 248);
HOST_FIELD(PF_InData, width, 252);
HOST_FIELD(PF_InData, height, 256);
HOST_FIELD(PF_InData, extent_hint, 260);
HOST_FIELD(PF_InData, output_origin_x, 276);
HOST_FIELD(PF_InData, output_origin_y, 280);
HOST_FIELD(PF_InData, downsample_x, 284);
HOST_FIELD(PF_InData, downsample_y, 292);
HOST_FIELD(PF_InData, pixel_aspect_ratio, 300);
HOST_FIELD(PF_InData, in_flags, 308);
HOST_FIELD(PF_InData, global_data, 312);
HOST_FIELD(PF_InData, sequence_data, 320);
HOST_FIELD(PF_InData, frame_data, 328);
HOST_FIELD(PF_InData, start_sampL, 336);
HOST_FIELD(PF_InData, dur_sampL, 340);
HOST_FIELD(PF_InData, total_sampL, 344);
HOST_FIELD(PF_InData, src_snd, 352);
HOST_FIELD(PF_InData, pica_basicP, 384);
HOST_FIELD(PF_InData, pre_effect_source_origin_x, 392);
HOST_FIELD(PF_InData, pre_effect_source_origin_y, 396);
HOST_FIELD(PF_InData, shutter_phase, 400);

// What the effect answers. Zeroed by the host before each command, apart from the handles, which start as in the
// in-data.
struct PF_OutData {
    A_u_long my_version;  // PF_VersionField
    A_char name[32];
    PF_Handle global_data;
    A_long num_params;  // with the input layer
    PF_Handle sequence_data;
    A_long flat_sdata_size;
    PF_Handle frame_data;
    A_long width;
    A_long height;
    PF_Point origin;
    PF_OutFlags out_flags;
    A_char return_msg[256];  // shown when PF_OutFlag_DISPLAY_ERROR_MESSAGE is set
    A_long start_sampL;
    A_long dur_sampL;
    PF_SoundWorld dest_snd;
    PF_OutFlags2 out_flags2;
};
HOST_RECORD(PF_OutData, 408);
HOST_FIELD(PF_OutData, my_version, 0);
HOST_FIELD(PF_OutData, name, 4);
HOST_FIELD(PF_OutData, global_data, 40);
HOST_FIELD(PF_OutData, num_params, 48);
HOST_FIELD(PF_OutData, sequence_data, 56);
HOST_FIELD(PF_OutData, flat_sdata_size, 64);
HOST_FIELD(PF_OutData, frame_data, 72);
HOST_FIELD(PF_OutData, width, 80);
HOST_FIELD(PF_OutData, height, 84);
HOST_FIELD(PF_OutData, origin, 88);
HOST_FIELD(PF_OutData, out_flags, 96);
HOST_FIELD(PF_OutData, return_msg, 100);
HOST_FIELD(PF_OutData, start_sampL, 356);
HOST_FIELD(PF_OutData, dur_sampL, 360);
HOST_FIELD(PF_OutData, dest_snd, 368);
HOST_FIELD(PF_OutData, out_flags2, 400);

// The two exports of an effect module: every command goes through the first, the second tells what the module is.
using PF_EffectMain = PF_Err(PF_Cmd cmd, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[],
                             PF_LayerDef* output, void* extra);
using PF_PluginDataCB = A_Err(PF_PluginDataPtr data, const A_u_char* name, const A_u_char* matchName,
                              const A_u_char* category, const A_u_char* entryPoint, A_long kind, A_long apiMajor,
                              A_long apiMinor, A_long reservedInfo);
using PF_PluginDataEntryFunction = A_Err(PF_PluginDataPtr data, PF_PluginDataCB* callback, SPBasicSuite* basic,
                                         const char* hostName, const char* hostVersion);
