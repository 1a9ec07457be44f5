#pragma once

#include "HostInterface/SuiteIdentity.h"

// The tables of the suites that this host serves, one file a subject. Their slots answer as the published interface
// tells; slots that no table here fills stay null.

namespace TessavoyHost {

extern const PF_HandleSuite1 handleSuite;
extern const PF_ANSICallbacksSuite1 ansiSuite;
extern const PF_WorldSuite2 worldSuite;
extern const PF_PixelDataSuite1 pixelDataSuite;
extern const PF_Iterate8Suite1 iterate8Suite;
extern const PF_iterate16Suite1 iterate16Suite;
extern const PF_iterateFloatSuite1 iterateFloatSuite;
extern const PF_ParamUtilsSuite3 paramUtilsSuite;
extern const PF_EffectSequenceDataSuite1 sequenceDataSuite;
extern const PF_PathQuerySuite1 pathQuerySuite;
extern const PF_PathDataSuite1 pathDataSuite;
extern const PFAppSuite4 appSuite;
extern const PF_AdvAppSuite2 advAppSuite;
extern const AEGP_UtilitySuite3 utilitySuite7;
extern const AEGP_UtilitySuite5 utilitySuite11;
extern const AEGP_MemorySuite1 memorySuite;
extern const AEGP_PFInterfaceSuite1 interfaceSuite;
extern const AEGP_EffectSuite2 effectSuite;
extern const AEGP_StreamSuite2 streamSuite7;
extern const AEGP_StreamSuite4 streamSuite9;
extern const AEGP_StreamSuite5 streamSuite10;
extern const AEGP_DynamicStreamSuite4 dynamicStreamSuite;
extern const AEGP_LayerSuite5 layerSuite11;
extern const AEGP_LayerSuite8 layerSuite14;
extern const AEGP_CompSuite4 compositionSuite;
extern const AEGP_ItemSuite6 itemSuite;
extern const PF_EffectCustomUISuite1 customUiSuite;
extern const DRAWBOT_DrawbotSuite1 drawbotSuite;
extern const DRAWBOT_SupplierSuite1 supplierSuite;
extern const DRAWBOT_SurfaceSuite1 surfaceSuite;
extern const DRAWBOT_PathSuite1 drawbotPathSuite;

}  // namespace TessavoyHost
