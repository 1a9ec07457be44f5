// The function that gives drivers their large blocks, as Host/Command/Posix/DriverMemory.cpp replaces it. Programs
// under sanitizers have those of the sanitizer.

#ifdef TESSAVOY_DRIVER_MEMORY

#include <dlfcn.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <fstream>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace TessavoyHost {
namespace {

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

}  // namespace
}  // namespace TessavoyHost

#endif
