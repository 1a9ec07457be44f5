#pragma once

#include <cstddef>

namespace TessavoyHost {

// How a block of memory is asked of the C library.
struct BlockLayout {
    std::size_t bytes;      // as many as were wanted, or more to fill the last large page
    std::size_t alignment;  // bytes, a power of two
    bool largePages;        // the block is whole large pages, for useLargePages
};

// For a block of at least so many bytes with at least this alignment. Blocks of some megabytes lie in large pages where
// the system gives them for the asking: touched for the first time, they then cost one fault for each two megabytes in
// place of 512.
BlockLayout blockLayout(std::size_t bytes, std::size_t alignment) noexcept;

// Asks for large pages under a block of this layout, if it is laid out for them. Nothing of it is touched yet. A system
// that has none left gives ordinary ones.
void useLargePages(void* block, const BlockLayout& layout) noexcept;

}  // namespace TessavoyHost
