#pragma once

#include <cstddef>
#include <mutex>
#include <unordered_set>

#include "Host/BlockPool.h"
#include "HostInterface/Types.h"

namespace TessavoyHost {

// Host memory behind handles: a handle points at the address of its block. Locks nest and are counted. A handle that is
// not alive is known as such and never looked into. Thread safe.
class Handles {
public:
    // With rubbish, fresh blocks are filled with bytes that are neither 0 nor a sensible number or address.
    explicit Handles(bool rubbish = false) : mRubbish(rubbish) {}
    ~Handles();
    Handles(const Handles&) = delete;
    Handles& operator=(const Handles&) = delete;

    // A new block of so many bytes. Throws std::bad_alloc.
    PF_Handle make(std::size_t bytes);
    // False when the handle is not alive.
    bool dispose(PF_Handle handle);
    // The block may move. False when the handle is not alive. Throws std::bad_alloc, and the block stays as it was.
    bool resize(PF_Handle handle, std::size_t bytes);

    // The block's address, or null when the handle is not alive.
    void* lock(PF_Handle handle);
    // False when the handle is not alive or has no lock.
    bool unlock(PF_Handle handle);

    bool alive(PF_Handle handle) const;
    std::size_t size(PF_Handle handle) const;  // bytes; 0 when it is not alive
    int locks(PF_Handle handle) const;
    std::size_t count() const;

private:
    struct Record {
        void* address;  // first, so that a handle is the address of its record
        std::size_t bytes;
        int locks;
        BlockPool::Block block;
    };

    Record* find(PF_Handle handle) const;
    BlockPool::Block freshBlock(std::size_t bytes);

    const bool mRubbish;
    mutable std::mutex mMutex;
    std::unordered_set<PF_Handle> mAlive;
};

// The byte that fresh memory is filled with when a host is asked for rubbish.
inline constexpr int rubbishByte = 0xDB;

}  // namespace TessavoyHost
