#pragma once

#include <cstddef>

namespace TessavoyHost {

// The memory that one script may have: blocks from the C library up to a limit, beyond which there are none.
class ScriptMemory {
public:
    explicit ScriptMemory(std::size_t limit) : mLimit(limit) {}
    ScriptMemory(const ScriptMemory&) = delete;
    ScriptMemory& operator=(const ScriptMemory&) = delete;

    // As malloc, realloc and free have it; null beyond the limit.
    void* allocate(std::size_t size) noexcept;
    void* reallocate(void* block, std::size_t size) noexcept;
    void release(void* block) noexcept;

    std::size_t used() const { return mUsed; }

private:
    const std::size_t mLimit;
    std::size_t mUsed = 0;  // bytes, without what the library adds
};

}  // namespace TessavoyHost
