#include "Host/BlockPool.h"

#include "Host/LargePages.h"

#include <algorithm>
#include <new>

namespace TessavoyHost {
namespace {

constexpr std::size_t large = std::size_t{64} << 10;
constexpr std::size_t mostKept = std::size_t{1} << 30;
constexpr std::size_t alignment = 64;

BlockPool::Block freshBlock(std::size_t bytes) {
    const BlockLayout layout = blockLayout(std::max(bytes, std::size_t{1}), alignment);
    void* const memory = ::operator new (layout.bytes, std::align_val_t{layout.alignment});
    useLargePages(memory, layout);
    return {static_cast<std::byte*>(memory), layout.bytes};
}

// The layout of a block is that of its capacity, which it was asked with.
void freeBlock(BlockPool::Block block) noexcept {
    ::operator delete (block.data, std::align_val_t{blockLayout(block.capacity, alignment).alignment});
}

}  // namespace

BlockPool& BlockPool::shared() {
    static BlockPool pool;
    return pool;
}

BlockPool::~BlockPool() {
    for (const auto& [capacity, data] : mKept)
        freeBlock({data, capacity});
}

BlockPool::Block BlockPool::take(std::size_t bytes) {
    if (bytes >= large) {
        const std::lock_guard lock(mMutex);
        const auto found = mKept.lower_bound(bytes);
        if (found != mKept.end() && found->first <= 2 * bytes) {
            const Block block{found->second, found->first};
            mKeptBytes -= block.capacity;
            mKept.erase(found);
            return block;
        }
        ++mFresh;
    }
    return freshBlock(bytes);
}

void BlockPool::give(Block block) noexcept {
    if (block.capacity < large || !keep(block))
        freeBlock(block);
}

bool BlockPool::keep(Block block) noexcept {
    const std::lock_guard lock(mMutex);
    if (mKeptBytes + block.capacity > mostKept)
        return false;
    try {
        mKept.emplace(block.capacity, block.data);
    } catch (const std::bad_alloc&) {
        return false;
    }
    mKeptBytes += block.capacity;
    return true;
}

std::size_t BlockPool::freshLargeBlocks() const {
    const std::lock_guard lock(mMutex);
    return mFresh;
}

}  // namespace TessavoyHost
