#include "Host/Handles.h"

#include <algorithm>
#include <cstring>
#include <set>

#include <gtest/gtest.h>

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

// Blocks of a size that large pages are used for keep what is written to them, and are kept as any other block.
TEST(HostBlockPool, ServesBlocksOfMegabytesAgain) {
    BlockPool pool;
    for (int frame = 0; frame < 2; ++frame) {
        const BlockPool::Block block = pool.take(9000001);
        EXPECT_EQ(block.capacity, 9000001u);
        std::memset(block.data, 1 + frame, block.capacity);
        EXPECT_EQ(std::count(block.data, block.data + block.capacity, std::byte(1 + frame)), 9000001);
        pool.give(block);
    }
    EXPECT_EQ(pool.freshLargeBlocks(), 1u);
}

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
