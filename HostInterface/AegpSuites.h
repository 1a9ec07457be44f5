#pragma once

#include "HostInterface/Effect.h"

// The suites of the application around the effect: its registration, layers, camera, streams and scripting.
// A plug-in id comes from AEGP_RegisterWithAEGP. Layers, compositions and items are borrowed; effect references,
// streams, stream values and memory handles must be given back.

// "AEGP Utility Suite", version 7.
struct AEGP_UtilitySuite3 {
    A_Err (*AEGP_ReportInfo)(AEGP_PluginID pluginId, const A_char* infoString);
    void* reserved0[6];
    A_Err (*AEGP_RegisterWithAEGP)(AEGP_GlobalRefcon globalRefcon, const A_char* pluginName, AEGP_PluginID* pluginId);
    void* reserved1[17];
};
HOST_RECORD(AEGP_UtilitySuite3, 200);
HOST_FIELD(AEGP_UtilitySuite3, AEGP_ReportInfo, 0);
HOST_FIELD(AEGP_UtilitySuite3, AEGP_RegisterWithAEGP, 56);

// "AEGP Utility Suite", version 11. A script's result is text, closed by a zero, in a memory handle that the caller
// frees; both result places may be null.
struct AEGP_UtilitySuite5 {
    A_Err (*AEGP_ReportInfo)(AEGP_PluginID pluginId, const A_char* infoString);
    void* reserved0[7];
    A_Err (*AEGP_RegisterWithAEGP)(AEGP_GlobalRefcon globalRefcon, const A_char* pluginName, AEGP_PluginID* pluginId);
    void* reserved1[17];
    A_Err (*AEGP_IsScriptingAvailable)(A_Boolean* available);
    A_Err (*AEGP_ExecuteScript)(AEGP_PluginID pluginId, const A_char* script, A_Boolean platformEncoding,
                                AEGP_MemHandle* result, AEGP_MemHandle* errorString);
    void* reserved2[3];
};
HOST_RECORD(AEGP_UtilitySuite5, 248);
HOST_FIELD(AEGP_UtilitySuite5, AEGP_ReportInfo, 0);
HOST_FIELD(AEGP_UtilitySuite5, AEGP_RegisterWithAEGP, 64);
HOST_FIELD(AEGP_UtilitySuite5, AEGP_IsScriptingAvailable, 208);
HOST_FIELD(AEGP_UtilitySuite5, AEGP_ExecuteScript, 216);

// "AEGP Memory Suite", version 1. Sizes in bytes.
struct AEGP_MemorySuite1 {
    A_Err (*AEGP_NewMemHandle)(AEGP_PluginID pluginId, const A_char* what, AEGP_MemSize size, AEGP_MemFlag flags,
                               AEGP_MemHandle* mem);
    A_Err (*AEGP_FreeMemHandle)(AEGP_MemHandle mem);
    A_Err (*AEGP_LockMemHandle)(AEGP_MemHandle mem, void** address);
    A_Err (*AEGP_UnlockMemHandle)(AEGP_MemHandle mem);
    A_Err (*AEGP_GetMemHandleSize)(AEGP_MemHandle mem, AEGP_MemSize* size);
    A_Err (*AEGP_ResizeMemHandle)(const A_char* what, AEGP_MemSize newSize, AEGP_MemHandle mem);
    void* reserved0[2];
};
HOST_RECORD(AEGP_MemorySuite1, 64);
HOST_FIELD(AEGP_MemorySuite1, AEGP_NewMemHandle, 0);
HOST_FIELD(AEGP_MemorySuite1, AEGP_FreeMemHandle, 8);
HOST_FIELD(AEGP_MemorySuite1, AEGP_LockMemHandle, 16);
HOST_FIELD(AEGP_MemorySuite1, AEGP_UnlockMemHandle, 24);
HOST_FIELD(AEGP_MemorySuite1, AEGP_GetMemHandleSize, 32);
HOST_FIELD(AEGP_MemorySuite1, AEGP_ResizeMemHandle, 40);

// "AEGP PF Interface Suite", version 1. From a running effect to the application's objects. No camera is a null
// layer, not an error.
struct AEGP_PFInterfaceSuite1 {
    A_Err (*AEGP_GetEffectLayer)(PF_ProgPtr effectRef, AEGP_LayerH* layer);
    A_Err (*AEGP_GetNewEffectForEffect)(AEGP_PluginID pluginId, PF_ProgPtr effectRef, AEGP_EffectRefH* effect);
    A_Err (*AEGP_ConvertEffectToCompTime)(PF_ProgPtr effectRef, A_long whatTime, A_u_long timeScale, A_Time* compTime);
    A_Err (*AEGP_GetEffectCamera)(PF_ProgPtr effectRef, const A_Time* compTime, AEGP_LayerH* cameraLayer);
    A_Err (*AEGP_GetEffectCameraMatrix)(PF_ProgPtr effectRef, const A_Time* compTime, A_Matrix4* cameraMatrix,
                                        A_FpLong* distToImagePlane, A_short* imagePlaneWidth,
                                        A_short* imagePlaneHeight);
};
HOST_RECORD(AEGP_PFInterfaceSuite1, 40);
HOST_FIELD(AEGP_PFInterfaceSuite1, AEGP_GetEffectLayer, 0);
HOST_FIELD(AEGP_PFInterfaceSuite1, AEGP_GetNewEffectForEffect, 8);
HOST_FIELD(AEGP_PFInterfaceSuite1, AEGP_ConvertEffectToCompTime, 16);
HOST_FIELD(AEGP_PFInterfaceSuite1, AEGP_GetEffectCamera, 24);
HOST_FIELD(AEGP_PFInterfaceSuite1, AEGP_GetEffectCameraMatrix, 32);

// "AEGP Effect Suite", version 2.
struct AEGP_EffectSuite2 {
    A_Err (*AEGP_GetLayerNumEffects)(AEGP_LayerH layer, A_long* numEffects);
    void* reserved0[7];
    A_Err (*AEGP_DisposeEffect)(AEGP_EffectRefH effectRef);
    void* reserved1[8];
};
HOST_RECORD(AEGP_EffectSuite2, 136);
HOST_FIELD(AEGP_EffectSuite2, AEGP_GetLayerNumEffects, 0);
HOST_FIELD(AEGP_EffectSuite2, AEGP_DisposeEffect, 64);

// A stream's value by its type.
struct AEGP_ColorVal {
    A_FpLong alphaF;
    A_FpLong redF;
    A_FpLong greenF;
    A_FpLong blueF;
};
HOST_RECORD(AEGP_ColorVal, 32);
HOST_FIELD(AEGP_ColorVal, alphaF, 0);
HOST_FIELD(AEGP_ColorVal, redF, 8);
HOST_FIELD(AEGP_ColorVal, greenF, 16);
HOST_FIELD(AEGP_ColorVal, blueF, 24);

struct AEGP_TwoDVal {
    A_FpLong x;
    A_FpLong y;
};
HOST_RECORD(AEGP_TwoDVal, 16);
HOST_FIELD(AEGP_TwoDVal, x, 0);
HOST_FIELD(AEGP_TwoDVal, y, 8);

struct AEGP_ThreeDVal {
    A_FpLong x;
    A_FpLong y;
    A_FpLong z;
};
HOST_RECORD(AEGP_ThreeDVal, 24);
HOST_FIELD(AEGP_ThreeDVal, x, 0);
HOST_FIELD(AEGP_ThreeDVal, y, 8);
HOST_FIELD(AEGP_ThreeDVal, z, 16);

using AEGP_FourDVal = A_FpLong[4];
using AEGP_OneDVal = A_FpLong;
using AEGP_ArbBlockVal = A_Handle;

union AEGP_StreamVal {
    AEGP_FourDVal four_d;
    AEGP_ThreeDVal three_d;
    AEGP_TwoDVal two_d;
    AEGP_OneDVal one_d;
    AEGP_ColorVal color;
    AEGP_ArbBlockVal arbH;
    AEGP_MarkerValH markerH;
    AEGP_LayerIDVal layer_id;
    AEGP_MaskIDVal mask_id;
    AEGP_MaskOutlineValH mask;
    AEGP_TextDocumentH text_documentH;
};
HOST_RECORD(AEGP_StreamVal, 32);

struct AEGP_StreamValue {
    AEGP_StreamRefH streamH;
    AEGP_StreamVal val;
};
HOST_RECORD(AEGP_StreamValue, 40);
HOST_FIELD(AEGP_StreamValue, streamH, 0);
HOST_FIELD(AEGP_StreamValue, val, 8);

union AEGP_StreamVal2 {
    AEGP_FourDVal four_d;
    AEGP_ThreeDVal three_d;
    AEGP_TwoDVal two_d;
    AEGP_OneDVal one_d;
    AEGP_ColorVal color;
    AEGP_ArbBlockVal arbH;
    AEGP_MarkerValP markerP;
    AEGP_LayerIDVal layer_id;
    AEGP_MaskIDVal mask_id;
    AEGP_MaskOutlineValH mask;
    AEGP_TextDocumentH text_documentH;
};
HOST_RECORD(AEGP_StreamVal2, 32);

struct AEGP_StreamValue2 {
    AEGP_StreamRefH streamH;
    AEGP_StreamVal2 val;
};
HOST_RECORD(AEGP_StreamValue2, 40);
HOST_FIELD(AEGP_StreamValue2, streamH, 0);
HOST_FIELD(AEGP_StreamValue2, val, 8);

// "AEGP Stream Suite", version 7. Names are written into a place of the caller's.
struct AEGP_StreamSuite2 {
    void* reserved0[3];
    A_Err (*AEGP_GetNewLayerStream)(AEGP_PluginID pluginId, AEGP_LayerH layer, AEGP_LayerStream whichStream,
                                    AEGP_StreamRefH* stream);
    A_Err (*AEGP_GetEffectNumParamStreams)(AEGP_EffectRefH effectRef, A_long* numParams);
    A_Err (*AEGP_GetNewEffectStreamByIndex)(AEGP_PluginID pluginId, AEGP_EffectRefH effectRef, PF_ParamIndex paramIndex,
                                            AEGP_StreamRefH* stream);
    void* reserved1;
    A_Err (*AEGP_DisposeStream)(AEGP_StreamRefH stream);
    A_Err (*AEGP_GetStreamName)(AEGP_StreamRefH stream, A_Boolean forceEnglish, A_char* name);
    void* reserved2[3];
    A_Err (*AEGP_GetStreamType)(AEGP_StreamRefH stream, AEGP_StreamType* streamType);
    A_Err (*AEGP_GetNewStreamValue)(AEGP_PluginID pluginId, AEGP_StreamRefH stream, AEGP_LTimeMode timeMode,
                                    const A_Time* time, A_Boolean preExpression, AEGP_StreamValue* value);
    A_Err (*AEGP_DisposeStreamValue)(AEGP_StreamValue* value);
    void* reserved3;
    A_Err (*AEGP_GetLayerStreamValue)(AEGP_LayerH layer, AEGP_LayerStream whichStream, AEGP_LTimeMode timeMode,
                                      const A_Time* time, A_Boolean preExpression, AEGP_StreamVal* streamVal,
                                      AEGP_StreamType* streamType);
    void* reserved4[5];
};
HOST_RECORD(AEGP_StreamSuite2, 176);
HOST_FIELD(AEGP_StreamSuite2, AEGP_GetNewLayerStream, 24);
HOST_FIELD(AEGP_StreamSuite2, AEGP_GetEffectNumParamStreams, 32);
HOST_FIELD(AEGP_StreamSuite2, AEGP_GetNewEffectStreamByIndex, 40);
HOST_FIELD(AEGP_StreamSuite2, AEGP_DisposeStream, 56);
HOST_FIELD(AEGP_StreamSuite2, AEGP_GetStreamName, 64);
HOST_FIELD(AEGP_StreamSuite2, AEGP_GetStreamType, 96);
HOST_FIELD(AEGP_StreamSuite2, AEGP_GetNewStreamValue, 104);
HOST_FIELD(AEGP_StreamSuite2, AEGP_DisposeStreamValue, 112);
HOST_FIELD(AEGP_StreamSuite2, AEGP_GetLayerStreamValue, 128);

// "AEGP Stream Suite", version 9. From here on names are UTF-16 in a memory handle.
struct AEGP_StreamSuite4 {
    void* reserved0[3];
    A_Err (*AEGP_GetNewLayerStream)(AEGP_PluginID pluginId, AEGP_LayerH layer, AEGP_LayerStream whichStream,
                                    AEGP_StreamRefH* stream);
    A_Err (*AEGP_GetEffectNumParamStreams)(AEGP_EffectRefH effectRef, A_long* numParams);
    A_Err (*AEGP_GetNewEffectStreamByIndex)(AEGP_PluginID pluginId, AEGP_EffectRefH effectRef, PF_ParamIndex paramIndex,
                                            AEGP_StreamRefH* stream);
    void* reserved1;
    A_Err (*AEGP_DisposeStream)(AEGP_StreamRefH stream);
    A_Err (*AEGP_GetStreamName)(AEGP_PluginID pluginId, AEGP_StreamRefH stream, A_Boolean forceEnglish,
                                AEGP_MemHandle* utfStreamName);
    void* reserved2[3];
    A_Err (*AEGP_GetStreamType)(AEGP_StreamRefH stream, AEGP_StreamType* streamType);
    A_Err (*AEGP_GetNewStreamValue)(AEGP_PluginID pluginId, AEGP_StreamRefH stream, AEGP_LTimeMode timeMode,
                                    const A_Time* time, A_Boolean preExpression, AEGP_StreamValue2* value);
    A_Err (*AEGP_DisposeStreamValue)(AEGP_StreamValue2* value);
    void* reserved3;
    A_Err (*AEGP_GetLayerStreamValue)(AEGP_LayerH layer, AEGP_LayerStream whichStream, AEGP_LTimeMode timeMode,
                                      const A_Time* time, A_Boolean preExpression, AEGP_StreamVal2* streamVal,
                                      AEGP_StreamType* streamType);
    void* reserved4[5];
};
HOST_RECORD(AEGP_StreamSuite4, 176);
HOST_FIELD(AEGP_StreamSuite4, AEGP_GetNewLayerStream, 24);
HOST_FIELD(AEGP_StreamSuite4, AEGP_GetEffectNumParamStreams, 32);
HOST_FIELD(AEGP_StreamSuite4, AEGP_GetNewEffectStreamByIndex, 40);
HOST_FIELD(AEGP_StreamSuite4, AEGP_DisposeStream, 56);
HOST_FIELD(AEGP_StreamSuite4, AEGP_GetStreamName, 64);
HOST_FIELD(AEGP_StreamSuite4, AEGP_GetStreamType, 96);
HOST_FIELD(AEGP_StreamSuite4, AEGP_GetNewStreamValue, 104);
HOST_FIELD(AEGP_StreamSuite4, AEGP_DisposeStreamValue, 112);
HOST_FIELD(AEGP_StreamSuite4, AEGP_GetLayerStreamValue, 128);

// "AEGP Stream Suite", version 10.
struct AEGP_StreamSuite5 {
    void* reserved0[3];
    A_Err (*AEGP_GetNewLayerStream)(AEGP_PluginID pluginId, AEGP_LayerH layer, AEGP_LayerStream whichStream,
                                    AEGP_StreamRefH* stream);
    A_Err (*AEGP_GetEffectNumParamStreams)(AEGP_EffectRefH effectRef, A_long* numParams);
    A_Err (*AEGP_GetNewEffectStreamByIndex)(AEGP_PluginID pluginId, AEGP_EffectRefH effectRef, PF_ParamIndex paramIndex,
                                            AEGP_StreamRefH* stream);
    void* reserved1;
    A_Err (*AEGP_DisposeStream)(AEGP_StreamRefH stream);
    A_Err (*AEGP_GetStreamName)(AEGP_PluginID pluginId, AEGP_StreamRefH stream, A_Boolean forceEnglish,
                                AEGP_MemHandle* utfStreamName);
    void* reserved2[3];
    A_Err (*AEGP_GetStreamType)(AEGP_StreamRefH stream, AEGP_StreamType* streamType);
    A_Err (*AEGP_GetNewStreamValue)(AEGP_PluginID pluginId, AEGP_StreamRefH stream, AEGP_LTimeMode timeMode,
                                    const A_Time* time, A_Boolean preExpression, AEGP_StreamValue2* value);
    A_Err (*AEGP_DisposeStreamValue)(AEGP_StreamValue2* value);
    void* reserved3;
    A_Err (*AEGP_GetLayerStreamValue)(AEGP_LayerH layer, AEGP_LayerStream whichStream, AEGP_LTimeMode timeMode,
                                      const A_Time* time, A_Boolean preExpression, AEGP_StreamVal2* streamVal,
                                      AEGP_StreamType* streamType);
    void* reserved4[5];
};
HOST_RECORD(AEGP_StreamSuite5, 176);
HOST_FIELD(AEGP_StreamSuite5, AEGP_GetNewLayerStream, 24);
HOST_FIELD(AEGP_StreamSuite5, AEGP_GetEffectNumParamStreams, 32);
HOST_FIELD(AEGP_StreamSuite5, AEGP_GetNewEffectStreamByIndex, 40);
HOST_FIELD(AEGP_StreamSuite5, AEGP_DisposeStream, 56);
HOST_FIELD(AEGP_StreamSuite5, AEGP_GetStreamName, 64);
HOST_FIELD(AEGP_StreamSuite5, AEGP_GetStreamType, 96);
HOST_FIELD(AEGP_StreamSuite5, AEGP_GetNewStreamValue, 104);
HOST_FIELD(AEGP_StreamSuite5, AEGP_DisposeStreamValue, 112);
HOST_FIELD(AEGP_StreamSuite5, AEGP_GetLayerStreamValue, 128);

// "AEGP Dynamic Stream Suite", version 5. How a stream shows in the panel. Names are UTF-16, closed by a zero.
struct AEGP_DynamicStreamSuite4 {
    void* reserved0[5];
    A_Err (*AEGP_GetDynamicStreamFlags)(AEGP_StreamRefH stream, AEGP_DynStreamFlags* streamFlags);
    A_Err (*AEGP_SetDynamicStreamFlag)(AEGP_StreamRefH stream, AEGP_DynStreamFlags oneFlag, A_Boolean undoable,
                                       A_Boolean set);
    void* reserved1[5];
    A_Err (*AEGP_SetStreamName)(AEGP_StreamRefH stream, const A_UTF16Char* name);
    void* reserved2[13];
};
HOST_RECORD(AEGP_DynamicStreamSuite4, 208);
HOST_FIELD(AEGP_DynamicStreamSuite4, AEGP_GetDynamicStreamFlags, 40);
HOST_FIELD(AEGP_DynamicStreamSuite4, AEGP_SetDynamicStreamFlag, 48);
HOST_FIELD(AEGP_DynamicStreamSuite4, AEGP_SetStreamName, 96);

// "AEGP Layer Suite", version 11.
struct AEGP_LayerSuite5 {
    A_Err (*AEGP_GetCompNumLayers)(AEGP_CompH comp, A_long* numLayers);
    A_Err (*AEGP_GetCompLayerByIndex)(AEGP_CompH comp, A_long layerIndex, AEGP_LayerH* layer);
    void* reserved0;
    A_Err (*AEGP_GetLayerIndex)(AEGP_LayerH layer, A_long* layerIndex);
    A_Err (*AEGP_GetLayerSourceItem)(AEGP_LayerH layer, AEGP_ItemH* sourceItem);
    void* reserved1;
    A_Err (*AEGP_GetLayerParentComp)(AEGP_LayerH layer, AEGP_CompH* comp);
    void* reserved2[7];
    A_Err (*AEGP_GetLayerCurrentTime)(AEGP_LayerH layer, AEGP_LTimeMode timeMode, A_Time* currTime);
    A_Err (*AEGP_GetLayerInPoint)(AEGP_LayerH layer, AEGP_LTimeMode timeMode, A_Time* inPoint);
    A_Err (*AEGP_GetLayerDuration)(AEGP_LayerH layer, AEGP_LTimeMode timeMode, A_Time* duration);
    void* reserved3;
    A_Err (*AEGP_GetLayerOffset)(AEGP_LayerH layer, A_Time* offset);
    void* reserved4[15];
    A_Err (*AEGP_ConvertCompToLayerTime)(AEGP_LayerH layer, const A_Time* compTime, A_Time* layerTime);
    A_Err (*AEGP_ConvertLayerToCompTime)(AEGP_LayerH layer, const A_Time* layerTime, A_Time* compTime);
    void* reserved5;
    A_Err (*AEGP_GetLayerID)(AEGP_LayerH layer, AEGP_LayerIDVal* idVal);
    A_Err (*AEGP_GetLayerToWorldXform)(AEGP_LayerH layer, const A_Time* compTime, A_Matrix4* transform);
    void* reserved6[6];
    A_Err (*AEGP_GetLayerFromLayerID)(AEGP_CompH parentComp, AEGP_LayerIDVal id, AEGP_LayerH* layer);
};
HOST_RECORD(AEGP_LayerSuite5, 368);
HOST_FIELD(AEGP_LayerSuite5, AEGP_GetCompNumLayers, 0);
HOST_FIELD(AEGP_LayerSuite5, AEGP_GetCompLayerByIndex, 8);
HOST_FIELD(AEGP_LayerSuite5, AEGP_GetLayerIndex, 24);
HOST_FIELD(AEGP_LayerSuite5, AEGP_GetLayerSourceItem, 32);
HOST_FIELD(AEGP_LayerSuite5, AEGP_GetLayerParentComp, 48);
HOST_FIELD(AEGP_LayerSuite5, AEGP_GetLayerCurrentTime, 112);
HOST_FIELD(AEGP_LayerSuite5, AEGP_GetLayerInPoint, 120);
HOST_FIELD(AEGP_LayerSuite5, AEGP_GetLayerDuration, 128);
HOST_FIELD(AEGP_LayerSuite5, AEGP_GetLayerOffset, 144);
HOST_FIELD(AEGP_LayerSuite5, AEGP_ConvertCompToLayerTime, 272);
HOST_FIELD(AEGP_LayerSuite5, AEGP_ConvertLayerToCompTime, 280);
HOST_FIELD(AEGP_LayerSuite5, AEGP_GetLayerID, 296);
HOST_FIELD(AEGP_LayerSuite5, AEGP_GetLayerToWorldXform, 304);
HOST_FIELD(AEGP_LayerSuite5, AEGP_GetLayerFromLayerID, 360);

// "AEGP Layer Suite", version 14.
struct AEGP_LayerSuite8 {
    A_Err (*AEGP_GetCompNumLayers)(AEGP_CompH comp, A_long* numLayers);
    A_Err (*AEGP_GetCompLayerByIndex)(AEGP_CompH comp, A_long layerIndex, AEGP_LayerH* layer);
    void* reserved0;
    A_Err (*AEGP_GetLayerIndex)(AEGP_LayerH layer, A_long* layerIndex);
    A_Err (*AEGP_GetLayerSourceItem)(AEGP_LayerH layer, AEGP_ItemH* sourceItem);
    void* reserved1;
    A_Err (*AEGP_GetLayerParentComp)(AEGP_LayerH layer, AEGP_CompH* comp);
    void* reserved2[7];
    A_Err (*AEGP_GetLayerCurrentTime)(AEGP_LayerH layer, AEGP_LTimeMode timeMode, A_Time* currTime);
    A_Err (*AEGP_GetLayerInPoint)(AEGP_LayerH layer, AEGP_LTimeMode timeMode, A_Time* inPoint);
    A_Err (*AEGP_GetLayerDuration)(AEGP_LayerH layer, AEGP_LTimeMode timeMode, A_Time* duration);
    void* reserved3;
    A_Err (*AEGP_GetLayerOffset)(AEGP_LayerH layer, A_Time* offset);
    void* reserved4[15];
    A_Err (*AEGP_ConvertCompToLayerTime)(AEGP_LayerH layer, const A_Time* compTime, A_Time* layerTime);
    A_Err (*AEGP_ConvertLayerToCompTime)(AEGP_LayerH layer, const A_Time* layerTime, A_Time* compTime);
    void* reserved5;
    A_Err (*AEGP_GetLayerID)(AEGP_LayerH layer, AEGP_LayerIDVal* idVal);
    A_Err (*AEGP_GetLayerToWorldXform)(AEGP_LayerH layer, const A_Time* compTime, A_Matrix4* transform);
    void* reserved6[6];
    A_Err (*AEGP_GetLayerFromLayerID)(AEGP_CompH parentComp, AEGP_LayerIDVal id, AEGP_LayerH* layer);
    void* reserved7[4];
};
HOST_RECORD(AEGP_LayerSuite8, 400);
HOST_FIELD(AEGP_LayerSuite8, AEGP_GetCompNumLayers, 0);
HOST_FIELD(AEGP_LayerSuite8, AEGP_GetCompLayerByIndex, 8);
HOST_FIELD(AEGP_LayerSuite8, AEGP_GetLayerIndex, 24);
HOST_FIELD(AEGP_LayerSuite8, AEGP_GetLayerSourceItem, 32);
HOST_FIELD(AEGP_LayerSuite8, AEGP_GetLayerParentComp, 48);
HOST_FIELD(AEGP_LayerSuite8, AEGP_GetLayerCurrentTime, 112);
HOST_FIELD(AEGP_LayerSuite8, AEGP_GetLayerInPoint, 120);
HOST_FIELD(AEGP_LayerSuite8, AEGP_GetLayerDuration, 128);
HOST_FIELD(AEGP_LayerSuite8, AEGP_GetLayerOffset, 144);
HOST_FIELD(AEGP_LayerSuite8, AEGP_ConvertCompToLayerTime, 272);
HOST_FIELD(AEGP_LayerSuite8, AEGP_ConvertLayerToCompTime, 280);
HOST_FIELD(AEGP_LayerSuite8, AEGP_GetLayerID, 296);
HOST_FIELD(AEGP_LayerSuite8, AEGP_GetLayerToWorldXform, 304);
HOST_FIELD(AEGP_LayerSuite8, AEGP_GetLayerFromLayerID, 360);

// "AEGP Comp Suite", version 9.
struct AEGP_CompSuite4 {
    A_Err (*AEGP_GetCompFromItem)(AEGP_ItemH item, AEGP_CompH* comp);
    A_Err (*AEGP_GetItemFromComp)(AEGP_CompH comp, AEGP_ItemH* item);
    void* reserved0[4];
    A_Err (*AEGP_GetCompFramerate)(AEGP_CompH comp, A_FpLong* fps);
    void* reserved1[21];
};
HOST_RECORD(AEGP_CompSuite4, 224);
HOST_FIELD(AEGP_CompSuite4, AEGP_GetCompFromItem, 0);
HOST_FIELD(AEGP_CompSuite4, AEGP_GetItemFromComp, 8);
HOST_FIELD(AEGP_CompSuite4, AEGP_GetCompFramerate, 48);

// "AEGP Item Suite", version 10.
struct AEGP_ItemSuite6 {
    void* reserved0[14];
    A_Err (*AEGP_GetItemDuration)(AEGP_ItemH item, A_Time* duration);
    void* reserved1;
    A_Err (*AEGP_GetItemDimensions)(AEGP_ItemH item, A_long* width, A_long* height);
    void* reserved2[9];
};
HOST_RECORD(AEGP_ItemSuite6, 208);
HOST_FIELD(AEGP_ItemSuite6, AEGP_GetItemDuration, 112);
HOST_FIELD(AEGP_ItemSuite6, AEGP_GetItemDimensions, 128);
