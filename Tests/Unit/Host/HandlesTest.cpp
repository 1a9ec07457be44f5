#include "Host/Handles.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <set>
#include <tuple>

#include <gtest/gtest.h>

#include "Host/LargePages.h"

namespace TessavoyHost {
namespace {

TEST(HostHandles, PointAtTheAddressOfTheirBlock) {
    Handles handles;
    const PF_Handle handle = handles.make(16);
    EXPECT_EQ(handles.lock(handle), *handle);
    EXPECT_EQ(handles.size(handle), 16u);
    EXPECT_TRUE(handles.unlock(handle));
    EXPECT_TRUE(handles.dispose(handle));
    EXPECT_EQ(handles.count(), 0u);
}

TEST(HostHandles, CountNestedLocks) {
    Handles handles;
    const PF_Handle handle = handles.make(1);
    handles.lock(handle);
    handles.lock(handle);
    EXPECT_EQ(handles.locks(handle), 2);
    EXPECT_TRUE(handles.unlock(handle));
    EXPECT_TRUE(handles.unlock(handle));
    EXPECT_FALSE(handles.unlock(handle));
}

TEST(HostHandles, KnowADeadHandle) {
    Handles handles;
    const PF_Handle handle = handles.make(8);
    handles.dispose(handle);
    EXPECT_FALSE(handles.alive(handle));
    EXPECT_EQ(handles.lock(handle), nullptr);
    EXPECT_FALSE(handles.unlock(handle));
    EXPECT_FALSE(handles.dispose(handle));
    EXPECT_FALSE(handles.resize(handle, 4));
    EXPECT_EQ(handles.size(handle), 0u);
}

TEST(HostHandles, KeepTheirContentWhenResized) {
    Handles handles;
    const PF_Handle handle = handles.make(6);
    std::memcpy(*handle, "abcde", 6);
    ASSERT_TRUE(handles.resize(handle, 100000));
    EXPECT_EQ(handles.size(handle), 100000u);
    EXPECT_STREQ(static_cast<char*>(*handle), "abcde");
    ASSERT_TRUE(handles.resize(handle, 3));
    EXPECT_EQ(std::memcmp(*handle, "abc", 3), 0);
}

TEST(HostHandles, FillFreshMemoryWithRubbishWhenAskedTo) {
    Handles handles(true);
    const PF_Handle handle = handles.make(3);
    const auto bytes = static_cast<const unsigned char*>(*handle);
    EXPECT_EQ(bytes[0], rubbishByte);
    EXPECT_EQ(bytes[2], rubbishByte);
}

// A second frame allocates what the first did, and touches no fresh memory.
TEST(HostHandles, ServeLargeBlocksAgain) {
    Handles handles;
    constexpr std::size_t sizes[] = {5000000, 300000, 70000};
    const auto frame = [&] {
        std::set<PF_Handle> made;
        for (const std::size_t size : sizes)
            made.insert(handles.make(size));
        for (const PF_Handle handle : made)
            handles.dispose(handle);
    };
    frame();
    const std::size_t fresh = BlockPool::shared().freshLargeBlocks();
    frame();
    EXPECT_EQ(BlockPool::shared().freshLargeBlocks(), fresh);
}

// Whole large pages, so that nothing else lies in the last one, and kept as any other block.
TEST(HostBlockPool, LaysBlocksOfMegabytesOutInLargePages) {
    BlockPool pool;
    for (const std::size_t bytes : {std::size_t{4} << 20, std::size_t{5000001}, std::size_t{4} << 20}) {
        const BlockPool::Block block = pool.take(bytes);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block.data) % blockLayout(bytes, 64).alignment, 0u);
        EXPECT_EQ(block.capacity, blockLayout(bytes, 64).bytes);
        std::fill_n(block.data, block.capacity, std::byte{1});
        pool.give(block);
    }
    EXPECT_EQ(pool.freshLargeBlocks(), 2u);
}

TEST(HostLargePages, ServeLargeBlocksAlone) {
    constexpr std::size_t page = std::size_t{2} << 20;
    const auto layout = [](std::size_t bytes, std::size_t alignment) {
        const BlockLayout found = blockLayout(bytes, alignment);
        return std::tuple(found.bytes, found.alignment, found.largePages);
    };
    EXPECT_EQ(layout(100, 64), std::tuple(100u, 64u, false));
    EXPECT_EQ(layout(2 * page - 1, 64), std::tuple(2 * page - 1, 64u, false));
    EXPECT_EQ(layout(2 * page, 64), std::tuple(2 * page, page, true));
    EXPECT_EQ(layout(2 * page + 1, 64), std::tuple(3 * page, page, true));
    EXPECT_EQ(layout(2 * page, 4 * page), std::tuple(2 * page, 4 * page, true));
    // Filling up the last page would not be a number; such a block is refused as it is.
    constexpr std::size_t most = std::numeric_limits<std::size_t>::max();
    EXPECT_EQ(layout(most, 64), std::tuple(most, 64u, false));
}

#ifdef TESSAVOY_DRIVER_MEMORY
// The function that drivers ask must do what the C library's does.
TEST(HostDriverMemory, GivesAlignedBlocks) {
    for (const std::size_t alignment : {sizeof(void*), std::size_t{64}, std::size_t{8} << 20}) {
        for (const std::size_t bytes : {std::size_t{1}, std::size_t{100000}, std::size_t{9000001}}) {
            void* block = nullptr;
            ASSERT_EQ(::posix_memalign(&block, alignment, bytes), 0);
            const std::size_t expected = std::max(alignment, blockLayout(bytes, alignment).alignment);
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % expected, 0u);
            std::memset(block, 1, bytes);
            std::free(block);
        }
    }
}

TEST(HostDriverMemory, RefusesWhatTheLibraryRefuses) {
    int nothing = 0;
    void* const before = &nothing;
    void* block = before;
    EXPECT_EQ(::posix_memalign(&block, 3 * sizeof(void*), 100), EINVAL);
    EXPECT_EQ(::posix_memalign(&block, sizeof(void*) / 2, 100), EINVAL);
    EXPECT_EQ(::posix_memalign(&block, 0, 100), EINVAL);
    EXPECT_EQ(::posix_memalign(&block, 64, std::numeric_limits<std::size_t>::max() - 100), ENOMEM);
    EXPECT_EQ(::posix_memalign(&block, 64, std::numeric_limits<std::size_t>::max() / 4), ENOMEM);
    EXPECT_EQ(block, before);
}
#endif

TEST(HostBlockPool, GivesNoBlockThatIsFarTooLarge) {
    BlockPool pool;
    const BlockPool::Block large = pool.take(1000000);
    pool.give(large);
    const BlockPool::Block small = pool.take(100000);
    EXPECT_NE(small.data, large.data);
    const BlockPool::Block again = pool.take(600000);
    EXPECT_EQ(again.data, large.data);
    EXPECT_EQ(again.capacity, 1000000u);
    pool.give(small);
    pool.give(again);
}

}  // namespace
}  // namespace TessavoyHost
