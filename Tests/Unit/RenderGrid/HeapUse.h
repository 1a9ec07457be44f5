#pragma once

#include <cstddef>

namespace Tessavoy {

/// Watches what this thread takes from the general heap by operator new while the object lives. One at a time on a
/// thread; the blocks of other heaps (std::malloc, the host's) don't count.
class HeapUse {
public:
    HeapUse();
    ~HeapUse();

    HeapUse(const HeapUse&) = delete;
    HeapUse& operator=(const HeapUse&) = delete;

    /// The most that was out at any moment so far, in bytes, above what was out at the beginning.
    std::size_t peak() const;
};

}  // namespace Tessavoy
