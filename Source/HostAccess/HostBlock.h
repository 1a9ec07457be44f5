#pragma once

#include "Source/HostAccess/HostMemory.h"

#include <cstddef>
#include <utility>

namespace Tessavoy {

/// A block of host memory for the span of a scope. Throws as HostAlloc.
class HostBlock {
public:
    HostBlock(PF_InData* inData, std::size_t size) : mInData(inData), mBlock(HostAlloc(inData, size)) {}
    ~HostBlock() { HostFree(mInData, mBlock); }

    HostBlock(const HostBlock&) = delete;
    HostBlock& operator=(const HostBlock&) = delete;

    void* address() const { return mBlock; }
    char* characters() const { return static_cast<char*>(mBlock); }

    /// The block, which is the receiver's to HostFree from now on.
    char* handOn() { return static_cast<char*>(std::exchange(mBlock, nullptr)); }

private:
    PF_InData* mInData;
    void* mBlock;
};

}  // namespace Tessavoy
