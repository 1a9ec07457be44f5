#pragma once

#include "HostInterface/Effect.h"

#if defined(_WIN32)
#define TESSAVOY_EXPORT __declspec(dllexport)
#else
#define TESSAVOY_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {

/// The one entry point behind which everything else lies. The result is the host's error value. An Exception becomes
/// its code, with its text, when there is one, as the message to show; a thrown integer is the result as it stands; all
/// other exceptions leave to the host. Rendering commands come on several threads at once.
TESSAVOY_EXPORT PF_Err EffectMain(PF_Cmd cmd, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[],
                                  PF_LayerDef* output, void* extra);

/// Tells the host what the module is, through one call of the callback; the result is the callback's.
TESSAVOY_EXPORT A_Err PluginDataEntryFunction(PF_PluginDataPtr inPtr, PF_PluginDataCB inPluginDataCallBackPtr,
                                              SPBasicSuite* inSPBasicSuitePtr, const char* inHostName,
                                              const char* inHostVersion);

}  // extern "C"
