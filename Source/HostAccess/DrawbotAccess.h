#pragma once

#include "HostInterface/DrawbotSuites.h"
#include "HostInterface/Effect.h"

namespace Tessavoy {

/// The four suites with which a control draws itself in the panel, all null until they are acquired.
struct DrawbotSuites {
    const DRAWBOT_DrawbotSuite1* drawbot = nullptr;
    const DRAWBOT_SupplierSuite1* supplier = nullptr;
    const DRAWBOT_SurfaceSuite1* surface = nullptr;
    const DRAWBOT_PathSuite1* path = nullptr;
};

/// Acquires the four in the order of the fields, up to the first failure, whose error is returned. A null place to put
/// them gives 514 (PF_Err_UNRECOGNIZED_PARAM_TYPE) with a message for the host to show.
PF_Err AcquireDrawbotSuites(PF_InData* inData, PF_OutData* outData, DrawbotSuites* suites);

/// Releases the four in the same order; the first error is returned, the rest are released all the same.
PF_Err ReleaseDrawbotSuites(PF_InData* inData, PF_OutData* outData);

}  // namespace Tessavoy
