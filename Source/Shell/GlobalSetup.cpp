#include "Source/Shell/GlobalSetup.h"

#include "HostInterface/Constants.h"
#include "Source/Gl/ThreadRenderData.h"
#include "Source/HostAccess/NewHandle.h"
#include "Source/HostAccess/SuiteHandler.h"
#include "Source/Parameter/StringTable.h"
#include "Source/Shell/ProductIdentity.h"

#include <cstring>

namespace Tessavoy {

namespace {

/// A context that can't be made is, for whatever reason, out of memory to the host.
PF_Err setUpContext() {
    try {
        AESDK_OpenGL::setUpCommonContext();
        return PF_Err_NONE;
    } catch (PF_Err error) {
        return error;
    } catch (...) {
        return PF_Err_OUT_OF_MEMORY;
    }
}

/// Registers with the host under the product's name. The editing host has no such service and gets no id.
PF_Err registerPlugin(const PF_InData* inData, SuiteHandler& suites, AEGP_PluginID& id) {
    if (inData->appl_id == ProductIdentity::editingHostId) {
        return PF_Err_NONE;
    }
    return suites.get<AEGP_UtilitySuite3>().AEGP_RegisterWithAEGP(nullptr, GetStringPtr(1), &id);
}

/// The global data is one plug-in id in a host handle, which becomes the host's once it holds the id.
PF_Err makeGlobalData(PF_InData* inData, PF_OutData* outData) {
    SuiteHandler suites(inData->pica_basicP);
    NewHandle data(suites.get<PF_HandleSuite1>(), sizeof(AEGP_PluginID));
    if (!data.exists()) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    if (data.address() == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    AEGP_PluginID id = 0;
    const PF_Err error = registerPlugin(inData, suites, id);
    if (error == PF_Err_NONE) {
        std::memcpy(data.address(), &id, sizeof id);
        outData->global_data = data.handOn();
    }
    return error;
}

}  // namespace

PF_Err GlobalSetup(PF_InData* inData, PF_OutData* outData) {
    outData->my_version = ProductIdentity::version;
    outData->out_flags = ProductIdentity::outFlags;
    outData->out_flags2 = ProductIdentity::outFlags2;
    const PF_Err error = setUpContext();
    return error != PF_Err_NONE ? error : makeGlobalData(inData, outData);
}

PF_Err GlobalSetdown(PF_InData* inData, PF_OutData* outData) {
    const PF_Err error = AESDK_OpenGL::setDownContexts();
    if (inData->global_data != nullptr) {
        inData->utils->host_dispose_handle(inData->global_data);
    }
    if (inData->sequence_data != nullptr) {
        inData->utils->host_dispose_handle(inData->sequence_data);
        outData->sequence_data = nullptr;
    }
    return error;
}

}  // namespace Tessavoy
