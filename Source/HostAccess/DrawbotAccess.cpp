#include "Source/HostAccess/DrawbotAccess.h"

#include "Source/HostAccess/SuiteHandler.h"

namespace Tessavoy {

namespace {

template <class Suite>
PF_Err acquire(PF_InData* inData, PF_OutData* outData, const Suite** suite) {
    const void* table = nullptr;
    const PF_Err error = acquireSuite(inData, outData, SuiteIdentity<Suite>::name, SuiteIdentity<Suite>::version,
                                      defaultAcquireFailure, &table);
    *suite = static_cast<const Suite*>(table);
    return error;
}

template <class Suite>
PF_Err release(PF_InData* inData, PF_OutData* outData) {
    return releaseSuite(inData, outData, SuiteIdentity<Suite>::name, SuiteIdentity<Suite>::version,
                        defaultReleaseFailure);
}

}  // namespace

PF_Err AcquireDrawbotSuites(PF_InData* inData, PF_OutData* outData, DrawbotSuites* suites) {
    if (suites == nullptr) {
        reportMessage(outData, "NULL suite pointer passed to AEFX_AcquireDrawbotSuites");
        return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    }
    PF_Err error = acquire(inData, outData, &suites->drawbot);
    if (error == PF_Err_NONE) {
        error = acquire(inData, outData, &suites->supplier);
    }
    if (error == PF_Err_NONE) {
        error = acquire(inData, outData, &suites->surface);
    }
    if (error == PF_Err_NONE) {
        error = acquire(inData, outData, &suites->path);
    }
    return error;
}

PF_Err ReleaseDrawbotSuites(PF_InData* inData, PF_OutData* outData) {
    const PF_Err errors[] = {
        release<DRAWBOT_DrawbotSuite1>(inData, outData), release<DRAWBOT_SupplierSuite1>(inData, outData),
        release<DRAWBOT_SurfaceSuite1>(inData, outData), release<DRAWBOT_PathSuite1>(inData, outData)};
    for (const PF_Err error : errors) {
        if (error != PF_Err_NONE) {
            return error;
        }
    }
    return PF_Err_NONE;
}

}  // namespace Tessavoy
