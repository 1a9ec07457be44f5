#include "Source/HostAccess/SuiteHandler.h"

#include <cstdio>

namespace Tessavoy {

SuiteHandler::SuiteHandler(const SPBasicSuite* basic) : mBasic(basic) {
    if (mBasic == nullptr) {
        throw PF_Err{PF_Err_BAD_CALLBACK_PARAM};
    }
}

SuiteHandler::~SuiteHandler() {
    for (const Slot& slot : mSlots) {
        if (slot.table != nullptr) {
            mBasic->ReleaseSuite(slot.name, slot.version);
        }
    }
}

const void* SuiteHandler::acquire(std::size_t index, const char* name, A_long version) {
    Slot& slot = mSlots[index];
    if (slot.table == nullptr) {
        const void* table = nullptr;
        const SPErr error = mBasic->AcquireSuite(name, version, &table);
        if (error != 0 || table == nullptr) {
            throw PF_Err{PF_Err_BAD_CALLBACK_PARAM};
        }
        slot = {table, name, version};
    }
    return slot.table;
}

namespace {

/// The in-data's own sprintf is used: the suite that has one may be the very suite that is missing.
PF_Err reportMissingSuite(PF_InData* inData, PF_OutData* outData, const char* failureText) {
    outData->out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
    inData->utils->ansi.sprintf(outData->return_msg, "%s", failureText);
    return PF_Err_BAD_CALLBACK_PARAM;
}

}  // namespace

PF_Err acquireSuite(PF_InData* inData, PF_OutData* outData, const char* name, A_long version, const char* failureText,
                    const void** suite) {
    *suite = nullptr;
    if (inData->pica_basicP != nullptr) {
        inData->pica_basicP->AcquireSuite(name, version, suite);
    }
    return *suite != nullptr ? PF_Err{PF_Err_NONE} : reportMissingSuite(inData, outData, failureText);
}

PF_Err releaseSuite(PF_InData* inData, PF_OutData* outData, const char* name, A_long version, const char* failureText) {
    if (inData->pica_basicP == nullptr) {
        return reportMissingSuite(inData, outData, failureText);
    }
    return inData->pica_basicP->ReleaseSuite(name, version);
}

void reportMessage(PF_OutData* outData, const char* text) {
    std::snprintf(outData->return_msg, sizeof outData->return_msg, "%s", text);
    outData->out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
}

}  // namespace Tessavoy
