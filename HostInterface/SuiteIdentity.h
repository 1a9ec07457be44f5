#pragma once

#include "HostInterface/AegpSuites.h"
#include "HostInterface/DrawbotSuites.h"
#include "HostInterface/Suites.h"

// Under which name and version the host serves a suite: SuiteIdentity<PF_HandleSuite1>::name.
template <class Suite>
struct SuiteIdentity;

#define HOST_SUITE(Suite, suiteName, suiteVersion)      \
    template <>                                         \
    struct SuiteIdentity<Suite> {                       \
        static constexpr const char* name = suiteName;  \
        static constexpr A_long version = suiteVersion; \
    }

HOST_SUITE(PF_HandleSuite1, "PF Handle Suite", 2);
HOST_SUITE(PF_ANSICallbacksSuite1, "PF ANSI Suite", 1);
HOST_SUITE(AEGP_UtilitySuite3, "AEGP Utility Suite", 7);
HOST_SUITE(AEGP_UtilitySuite5, "AEGP Utility Suite", 11);
HOST_SUITE(PF_WorldSuite2, "PF World Suite", 2);
HOST_SUITE(PF_PixelDataSuite1, "PF Pixel Data Suite", 1);
HOST_SUITE(PF_iterateFloatSuite1, "PF iterateFloat Suite", 1);
HOST_SUITE(PF_Iterate8Suite1, "PF Iterate8 Suite", 1);
HOST_SUITE(PF_iterate16Suite1, "PF iterate16 Suite", 1);
HOST_SUITE(AEGP_PFInterfaceSuite1, "AEGP PF Interface Suite", 1);
HOST_SUITE(AEGP_EffectSuite2, "AEGP Effect Suite", 2);
HOST_SUITE(AEGP_StreamSuite2, "AEGP Stream Suite", 7);
HOST_SUITE(AEGP_StreamSuite4, "AEGP Stream Suite", 9);
HOST_SUITE(AEGP_StreamSuite5, "AEGP Stream Suite", 10);
HOST_SUITE(AEGP_DynamicStreamSuite4, "AEGP Dynamic Stream Suite", 5);
HOST_SUITE(AEGP_LayerSuite5, "AEGP Layer Suite", 11);
HOST_SUITE(AEGP_LayerSuite8, "AEGP Layer Suite", 14);
HOST_SUITE(AEGP_CompSuite4, "AEGP Comp Suite", 9);
HOST_SUITE(AEGP_ItemSuite6, "AEGP Item Suite", 10);
HOST_SUITE(AEGP_MemorySuite1, "AEGP Memory Suite", 1);
HOST_SUITE(PF_ParamUtilsSuite3, "PF Param Utils Suite", 3);
HOST_SUITE(PF_PathQuerySuite1, "PF Path Query Suite", 1);
HOST_SUITE(PF_PathDataSuite1, "PF Path Data Suite", 1);
HOST_SUITE(PF_EffectCustomUISuite1, "PF Effect Custom UI Suite", 1);
HOST_SUITE(PF_EffectCustomUIOverlayThemeSuite1, "PF Effect Custom UI Overlay Theme Suite", 1);
HOST_SUITE(PFAppSuite4, "PF AE App Suite", 6);
HOST_SUITE(PF_AdvAppSuite2, "PF AE Adv App Suite", 2);
HOST_SUITE(DRAWBOT_DrawbotSuite1, "DRAWBOT Draw Suite", 1);
HOST_SUITE(DRAWBOT_SupplierSuite1, "DRAWBOT Supplier Suite", 1);
HOST_SUITE(DRAWBOT_PathSuite1, "DRAWBOT Path Suite", 1);
HOST_SUITE(PF_EffectSequenceDataSuite1, "PF Effect Sequence Data Suite", 1);
HOST_SUITE(DRAWBOT_SurfaceSuite1, "DRAWBOT Surface Suite", 2);

#undef HOST_SUITE
