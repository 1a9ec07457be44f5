#include "Source/HostAccess/HostMemory.h"

#include "HostInterface/Constants.h"

#include <cstring>

namespace Tessavoy {

void* HostAlloc(PF_InData* inData, std::size_t size) {
    const PF_UtilCallbacks& host = *inData->utils;
    PF_Handle handle = host.host_new_handle(size + sizeof(PF_Handle));
    if (handle == nullptr) {
        throw PF_Err_OUT_OF_MEMORY;
    }
    char* block = static_cast<char*>(host.host_lock_handle(handle));
    if (block == nullptr) {
        host.host_dispose_handle(handle);
        throw PF_Err_OUT_OF_MEMORY;
    }
    std::memcpy(block, &handle, sizeof handle);
    return block + sizeof handle;
}

void HostFree(PF_InData* inData, void* pointer) {
    if (pointer == nullptr) {
        return;
    }
    PF_Handle handle = nullptr;
    std::memcpy(&handle, static_cast<char*>(pointer) - sizeof handle, sizeof handle);
    inData->utils->host_unlock_handle(handle);
    inData->utils->host_dispose_handle(handle);
}

}  // namespace Tessavoy
