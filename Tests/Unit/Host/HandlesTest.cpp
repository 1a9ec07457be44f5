#include "Host/Handles.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <fstream>
#include <limits>
#include <random>
#include <set>
#include <vector>

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

#ifdef TESSAVOY_DRIVER_MEMORY
// What is loaded later, as drivers are, finds the replaced function in front of the C library's.
TEST(HostDriverMemory, StandsInFrontOfTheLibrarys) {
    EXPECT_EQ(::dlsym(RTLD_DEFAULT, "posix_memalign"), reinterpret_cast<void*>(&::posix_memalign));
    EXPECT_NE(::dlsym(RTLD_NEXT, "posix_memalign"), reinterpret_cast<void*>(&::posix_memalign));
}

// Blocks of mixed sizes come and go without the heap growing over what is in use.
TEST(HostDriverMemory, LetsTheHeapUseItsMemoryAgain) {
    const auto residentPages = [] {
        std::size_t total = 0;
        std::size_t resident = 0;
        std::ifstream("/proc/self/statm") >> total >> resident;
        return resident;
    };
    constexpr std::size_t live = 8;
    std::array<void*, live> blocks{};
    std::mt19937 numbers(1);
    std::deque<std::vector<char>> between;  // what else a program keeps
    const auto exchange = [&](int times) {
        for (int k = 0; k < times; ++k) {
            between.emplace_back(numbers() % 100000, 'x');
            if (between.size() > 200)
                between.pop_front();
            void*& block = blocks[numbers() % live];
            std::free(block);
            const std::size_t bytes = (4U << 20) + numbers() % (20U << 20);
            ASSERT_EQ(::posix_memalign(&block, 64, bytes), 0);
            for (std::size_t at = 0; at < bytes; at += 4096)
                static_cast<char*>(block)[at] = 1;
        }
    };
    const std::size_t before = residentPages();
    exchange(3000);
    const std::size_t grown = (residentPages() - before) * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    for (void* block : blocks)
        std::free(block);
    // At most 8 x 24 MB are in use at a time; a heap may keep as much again in pieces.
    EXPECT_LT(grown, 2u * live * 24u << 20);
}

// The function that drivers ask must do what the C library's does.
TEST(HostDriverMemory, GivesAlignedBlocks) {
    for (const std::size_t alignment : {sizeof(void*), std::size_t{64}, std::size_t{8} << 20}) {
        for (const std::size_t bytes : {std::size_t{1}, std::size_t{100000}, std::size_t{9000001}}) {
            void* block = nullptr;
            ASSERT_EQ(::posix_memalign(&block, alignment, bytes), 0);
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignment, 0u);
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
