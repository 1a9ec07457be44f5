#pragma once

#include "HostInterface/Constants.h"
#include "HostInterface/Effect.h"
#include "HostInterface/Suites.h"
#include "Source/Assert.h"
#include "Source/HostAccess/SuiteHandler.h"

#include <cstdint>
#include <type_traits>

namespace Tessavoy {

/// A fixed-size array of plain records in one locked host handle, from "PF Handle Suite" version 2.
///
/// The elements are as the host's memory is: nothing is constructed or cleared, so every record is wholly written
/// before it is read. A count of zero allocates nothing and has a null address.
template <class T>
class Container {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    /// Throws, as PF_ErrorValue, PF_Err_INTERNAL_STRUCT_DAMAGED when the host gives no handle, and for a count that is
    /// negative or beyond what an index can hold, for which no host has memory; PF_Err_OUT_OF_MEMORY when the handle
    /// can't be locked. A host without the suite throws the plain integer 516.
    Container(PF_InData* inData, std::int64_t count)
        : mSuites(inData->pica_basicP), mCount(static_cast<A_long>(count)) {
        if (count < 0 || count > INT32_MAX) {
            throw PF_Err_INTERNAL_STRUCT_DAMAGED;
        }
        if (count > 0) {
            allocate();
        }
    }

    ~Container() {
        if (mElements != nullptr) {
            mHandles->host_unlock_handle(mHandle);
            mHandles->host_dispose_handle(mHandle);
        }
    }

    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    T& operator[](A_long ind) {
        check(ind);
        return mElements[ind];
    }
    const T& operator[](A_long ind) const {
        check(ind);
        return mElements[ind];
    }

    A_long count() const { return mCount; }

    /// The first element; null for an empty container.
    T* data() { return mElements; }
    const T* data() const { return mElements; }

private:
    void allocate() {
        mHandles = &mSuites.get<PF_HandleSuite1>();
        mHandle = mHandles->host_new_handle(static_cast<A_HandleSize>(mCount) * sizeof(T));
        if (mHandle == nullptr) {
            throw PF_Err_INTERNAL_STRUCT_DAMAGED;
        }
        mElements = static_cast<T*>(mHandles->host_lock_handle(mHandle));
        if (mElements == nullptr) {
            mHandles->host_dispose_handle(mHandle);
            throw PF_Err_OUT_OF_MEMORY;
        }
    }

    void check(A_long ind) const {
        TESSAVOY_ASSERT(ind >= 0, "ind >= 0");
        TESSAVOY_ASSERT(ind < mCount, "ind < mCount");
    }

    SuiteHandler mSuites;  // keeps the handle suite acquired until the block is given back
    const PF_HandleSuite1* mHandles = nullptr;
    A_long mCount;
    PF_Handle mHandle = nullptr;
    T* mElements = nullptr;
};

}  // namespace Tessavoy
