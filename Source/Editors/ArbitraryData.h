#pragma once

#include "HostInterface/Constants.h"
#include "HostInterface/Effect.h"
#include "HostInterface/Parameters.h"
#include "Source/HostAccess/SuiteHandler.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace Tessavoy {

/// The block of an arbitrary-data handle: one pointer to the value.
inline constexpr std::size_t arbitraryBlockBytes = sizeof(void*);

/// Makes a handle that owns `value`: a block of 8 bytes with a pointer to it on the heap.
///
/// The handle then belongs to the host, which frees it through `PF_Arbitrary_DISPOSE_FUNC`. Returns 512 when the host
/// has no handle and 4 when it can't be locked; `*out` is then left alone. Throws the plain integer 516 when the host
/// has no handle suite, and std::bad_alloc.
template <class Value>
PF_Err newArbitraryHandle(const PF_InData* inData, Value value, PF_Handle* out) {
    SuiteHandler suites(inData->pica_basicP);
    const auto& handles = suites.get<PF_HandleSuite1>();
    auto object = std::make_unique<Value>(std::move(value));
    PF_Handle handle = handles.host_new_handle(arbitraryBlockBytes);
    if (handle == nullptr) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    void* block = handles.host_lock_handle(handle);
    if (block == nullptr) {
        handles.host_dispose_handle(handle);
        return PF_Err_OUT_OF_MEMORY;
    }
    const Value* owned = object.release();
    std::memcpy(block, &owned, arbitraryBlockBytes);
    handles.host_unlock_handle(handle);
    *out = handle;
    return PF_Err_NONE;
}

/// The value in a handle that `newArbitraryHandle` made, for reading and writing. The handle stays locked while this
/// object lives, and stays the host's.
template <class Value>
class CheckOutArbitrary {
public:
    /// Throws the plain integer 4 when there is no handle, no lock or no value, and 516 without the handle suite.
    CheckOutArbitrary(const PF_InData* inData, PF_Handle handle)
        : mSuites(inData->pica_basicP), mHandles(mSuites.get<PF_HandleSuite1>()), mHandle(handle) {
        const void* block = handle == nullptr ? nullptr : mHandles.host_lock_handle(handle);
        if (block == nullptr) {
            throw PF_Err{PF_Err_OUT_OF_MEMORY};
        }
        std::memcpy(&mValue, block, arbitraryBlockBytes);
        if (mValue == nullptr) {
            mHandles.host_unlock_handle(handle);
            throw PF_Err{PF_Err_OUT_OF_MEMORY};
        }
    }

    ~CheckOutArbitrary() { mHandles.host_unlock_handle(mHandle); }

    CheckOutArbitrary(const CheckOutArbitrary&) = delete;
    CheckOutArbitrary& operator=(const CheckOutArbitrary&) = delete;

    Value& operator*() const { return *mValue; }
    Value* operator->() const { return mValue; }

private:
    SuiteHandler mSuites;
    const PF_HandleSuite1& mHandles;
    PF_Handle mHandle;
    Value* mValue = nullptr;
};

/// The host's eleven arbitrary-data functions for one kind of value.
///
/// What a value is comes from the free functions found beside its type: `flatSize`, `flatten`, `unflatten`,
/// `printText`, `scanText`, `interpolate` and `sameValue`. A value is made whole first and its handle last, so that a
/// failing host call leaves nothing behind. A flat form or a text that can't be read to its end still gives a handle,
/// with what was read, beside the error.
template <class Value>
class ArbitraryDataHandler {
public:
    using MakeDefault = Value (*)();

    /// makeDefault gives the value that new handles start from.
    ArbitraryDataHandler(const PF_InData* inData, MakeDefault makeDefault)
        : mInData(inData), mMakeDefault(makeDefault) {}

    /// Answers the record's selector; 514 for one that isn't known, 4 when memory runs out. Throws the plain integers
    /// of `CheckOutArbitrary`.
    PF_Err handle(const PF_ArbParamsExtra& extra) {
        try {
            return dispatch(extra);
        } catch (const std::bad_alloc&) {
            return PF_Err_OUT_OF_MEMORY;
        }
    }

private:
    PF_Err dispatch(const PF_ArbParamsExtra& extra) {
        switch (extra.which_function) {
            case PF_Arbitrary_NEW_FUNC:
                return newArbitraryHandle(mInData, mMakeDefault(), extra.u.new_func_params.arbPH);
            case PF_Arbitrary_DISPOSE_FUNC:
                return dispose(extra.u.dispose_func_params);
            case PF_Arbitrary_COPY_FUNC:
                return copy(extra.u.copy_func_params);
            case PF_Arbitrary_FLAT_SIZE_FUNC:
                return measureFlat(extra.u.flat_size_func_params);
            case PF_Arbitrary_FLATTEN_FUNC:
                return writeFlat(extra.u.flatten_func_params);
            case PF_Arbitrary_UNFLATTEN_FUNC:
                return readFlat(extra.u.unflatten_func_params);
            case PF_Arbitrary_INTERP_FUNC:
                return interpolateValues(extra.u.interp_func_params);
            case PF_Arbitrary_COMPARE_FUNC:
                return compare(extra.u.compare_func_params);
            case PF_Arbitrary_PRINT_SIZE_FUNC:
                return measureText(extra.u.print_size_func_params);
            case PF_Arbitrary_PRINT_FUNC:
                return writeText(extra.u.print_func_params);
            case PF_Arbitrary_SCAN_FUNC:
                return readText(extra.u.scan_func_params);
            default:
                return PF_Err_UNRECOGNIZED_PARAM_TYPE;
        }
    }

    PF_Err dispose(const PF_ArbDisposeParams& params) {
        if (params.arbH == nullptr) {
            return PF_Err_NONE;
        }
        delete &*CheckOutArbitrary<Value>(mInData, params.arbH);
        SuiteHandler suites(mInData->pica_basicP);
        suites.get<PF_HandleSuite1>().host_dispose_handle(params.arbH);
        return PF_Err_NONE;
    }

    PF_Err copy(const PF_ArbCopyParams& params) {
        const CheckOutArbitrary<Value> source(mInData, params.src_arbH);
        return newArbitraryHandle(mInData, *source, params.dst_arbPH);
    }

    PF_Err measureFlat(const PF_ArbFlatSizeParams& params) {
        const CheckOutArbitrary<Value> value(mInData, params.arbH);
        *params.flat_data_sizePLu = flatSize(*value);
        return PF_Err_NONE;
    }

    PF_Err writeFlat(const PF_ArbFlattenParams& params) {
        const CheckOutArbitrary<Value> value(mInData, params.arbH);
        const auto flat = flatten(*value);
        const auto fitting = std::min<std::size_t>(flat.size(), params.buf_sizeLu);
        std::copy_n(flat.data(), fitting, static_cast<std::byte*>(params.flat_dataPV));
        return flat.size() == params.buf_sizeLu ? PF_Err_NONE : PF_Err_INTERNAL_STRUCT_DAMAGED;
    }

    PF_Err readFlat(const PF_ArbUnflattenParams& params) {
        Value value = mMakeDefault();
        const std::span<const std::byte> flat(static_cast<const std::byte*>(params.flat_dataPV), params.buf_sizeLu);
        const PF_Err read = unflatten(flat, value) ? PF_Err_NONE : PF_Err_INTERNAL_STRUCT_DAMAGED;
        return handOver(std::move(value), params.arbPH, read);
    }

    PF_Err interpolateValues(const PF_ArbInterpParams& params) {
        const CheckOutArbitrary<Value> left(mInData, params.left_arbH);
        const CheckOutArbitrary<Value> right(mInData, params.right_arbH);
        return newArbitraryHandle(mInData, interpolate(*left, *right, params.tF), params.interpPH);
    }

    PF_Err compare(const PF_ArbCompareParams& params) {
        const CheckOutArbitrary<Value> left(mInData, params.a_arbH);
        const CheckOutArbitrary<Value> right(mInData, params.b_arbH);
        *params.compareP = sameValue(*left, *right) ? PF_ArbCompare_EQUAL : PF_ArbCompare_NOT_EQUAL;
        return PF_Err_NONE;
    }

    PF_Err measureText(const PF_ArbPrintSizeParams& params) {
        const CheckOutArbitrary<Value> value(mInData, params.arbH);
        *params.print_sizePLu = static_cast<A_u_long>(printText(*value).size() + 1);
        return PF_Err_NONE;
    }

    /// Writes what fits, always with the closing zero.
    PF_Err writeText(const PF_ArbPrintParams& params) {
        const CheckOutArbitrary<Value> value(mInData, params.arbH);
        if (params.print_sizeLu > 0) {
            const std::string text = printText(*value).substr(0, params.print_sizeLu - 1);
            std::memcpy(params.print_bufferPC, text.c_str(), text.size() + 1);
        }
        return PF_Err_NONE;
    }

    /// The text ends at its byte count or at a zero before that.
    PF_Err readText(const PF_ArbScanParams& params) {
        Value value = mMakeDefault();
        const std::string_view bytes(params.bufPC, params.bytes_to_scanLu);
        const bool good = scanText(bytes.substr(0, bytes.find('\0')), value);
        return handOver(std::move(value), params.arbPH, good ? PF_Err_NONE : PF_Err_UNRECOGNIZED_PARAM_TYPE);
    }

    /// Gives the host the value whatever reading it came to; the host's own failure to take it counts first.
    PF_Err handOver(Value value, PF_ArbitraryH* out, PF_Err readResult) {
        const PF_Err made = newArbitraryHandle(mInData, std::move(value), out);
        return made != PF_Err_NONE ? made : readResult;
    }

    const PF_InData* mInData;
    MakeDefault mMakeDefault;
};

}  // namespace Tessavoy
