#pragma once

#include "HostInterface/Suites.h"

#include <cstddef>
#include <cstring>

namespace Tessavoy {

/// A new host handle with a zeroed block, locked while this object lives; unlocked at its end, and disposed of unless
/// it was handed on.
class NewHandle {
public:
    /// The suite must stay acquired while this object lives. Size in bytes.
    NewHandle(const PF_HandleSuite1& handles, std::size_t size)
        : mHandles(handles), mHandle(handles.host_new_handle(size)) {
        if (mHandle != nullptr) {
            mBlock = handles.host_lock_handle(mHandle);
        }
        if (mBlock != nullptr) {
            std::memset(mBlock, 0, size);
        }
    }

    ~NewHandle() {
        if (mBlock != nullptr) {
            mHandles.host_unlock_handle(mHandle);
        }
        if (mHandle != nullptr && !mHandedOn) {
            mHandles.host_dispose_handle(mHandle);
        }
    }

    NewHandle(const NewHandle&) = delete;
    NewHandle& operator=(const NewHandle&) = delete;

    /// Whether the host gave a handle; without one there is no block either.
    bool exists() const { return mHandle != nullptr; }

    /// The block; null without a handle or a lock.
    void* address() const { return mBlock; }

    /// The handle, which is the receiver's from now on.
    PF_Handle handOn() {
        mHandedOn = true;
        return mHandle;
    }

private:
    const PF_HandleSuite1& mHandles;
    PF_Handle mHandle;
    void* mBlock = nullptr;
    bool mHandedOn = false;
};

}  // namespace Tessavoy
