#include "Host/BlockPool.h"

#include "Host/LargePages.h"

#include <new>

namespace TessavoyHost {
namespace {

constexpr std::size_t large = std::size_t{64} << 10;
constexpr std::size_t mostKept = std::size_t{1} << 30;
constexpr std::align_val_t alignment{64};

}  // namespace

BlockPool& BlockPool::shared() {
    static BlockPool pool;
    return pool;
}

BlockPool::~BlockPool() {
    for (const auto& [capacity, data] : mKept)
        ::operator delete(data, alignment);
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
    void* const memory = ::operator new(bytes == 0 ? 1 : bytes, alignment);
    useLargePages(memory, bytes);
    return {static_cast<std::byte*>(memory), bytes};
}

void BlockPool::give(Block block) noexcept {
    if (block.capacity < large || !keep(block))
        ::operator delete(block.data, alignment);
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
