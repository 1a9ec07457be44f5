#pragma once

#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/SuiteHandler.h"

#include <utility>

namespace Tessavoy {

/// What an application call answers in memory of the host's: unlocked and freed at the end of the scope.
class MemoryHandle {
public:
    /// Throws the plain integer 516 without "AEGP Memory Suite" 1. The handler must outlive the memory.
    explicit MemoryHandle(SuiteHandler& suites) : mMemory(suites.get<AEGP_MemorySuite1>()) {}
    ~MemoryHandle() { close(); }

    MemoryHandle(const MemoryHandle&) = delete;
    MemoryHandle& operator=(const MemoryHandle&) = delete;

    /// Where the host puts the handle.
    AEGP_MemHandle* place() { return &mHandle; }

    /// Makes `address` readable; the host's error. Nothing is done where the host gave no handle.
    PF_Err lock() {
        if (mHandle == nullptr) {
            return PF_Err_NONE;
        }
        const PF_Err error = mMemory.AEGP_LockMemHandle(mHandle, &mAddress);
        mIsLocked = error == PF_Err_NONE;
        return error;
    }

    /// The block; null unless `lock` succeeded, or where the host gave none.
    const void* address() const { return mIsLocked ? mAddress : nullptr; }

    /// Size of the block in bytes; the host's error.
    PF_Err size(AEGP_MemSize& bytes) const { return mMemory.AEGP_GetMemHandleSize(mHandle, &bytes); }

    /// Gives the memory back; the host's first error. Nothing is left to do the second time.
    PF_Err close() {
        PF_Err unlocking = PF_Err_NONE;
        if (std::exchange(mIsLocked, false)) {
            unlocking = mMemory.AEGP_UnlockMemHandle(mHandle);
        }
        PF_Err freeing = PF_Err_NONE;
        if (AEGP_MemHandle handle = std::exchange(mHandle, nullptr)) {
            freeing = mMemory.AEGP_FreeMemHandle(handle);
        }
        return firstError(unlocking, freeing);
    }

private:
    const AEGP_MemorySuite1& mMemory;
    AEGP_MemHandle mHandle = nullptr;
    void* mAddress = nullptr;
    bool mIsLocked = false;  ///< a locked block may have no address
};

}  // namespace Tessavoy
