#pragma once

#include <cstddef>
#include <map>
#include <mutex>

namespace TessavoyHost {

// Memory for handles and worlds. Large blocks that are given back are kept and served again, so that a second frame of
// the same size touches no fresh memory. Blocks are aligned to 64 bytes; their content is not defined. Thread safe.
class BlockPool {
public:
    struct Block {
        std::byte* data = nullptr;
        std::size_t capacity = 0;  // bytes
    };

    // The pool of the process.
    static BlockPool& shared();

    BlockPool() = default;
    ~BlockPool();
    BlockPool(const BlockPool&) = delete;
    BlockPool& operator=(const BlockPool&) = delete;

    // A block of at least so many bytes, never null. Throws std::bad_alloc.
    Block take(std::size_t bytes);
    void give(Block block) noexcept;

    // How many large blocks had to be asked of the system so far.
    std::size_t freshLargeBlocks() const;

private:
    // Whether there was room for it among those that are kept.
    bool keep(Block block) noexcept;

    mutable std::mutex mMutex;
    std::multimap<std::size_t, std::byte*> mKept;  // by capacity
    std::size_t mKeptBytes = 0;
    std::size_t mFresh = 0;
};

}  // namespace TessavoyHost
