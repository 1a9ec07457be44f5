#include "Host/Dialogs/Interpreter/ScriptMemory.h"

#include <cstdlib>
#include <cstring>

namespace TessavoyHost {
namespace {

// Each block has its size in front, in room that keeps it aligned for everything.
constexpr std::size_t headerBytes = alignof(std::max_align_t);
static_assert(headerBytes >= sizeof(std::size_t));

std::size_t sizeOf(const void* block) {
    std::size_t size = 0;
    std::memcpy(&size, static_cast<const char*>(block) - headerBytes, sizeof size);
    return size;
}

void* blockOf(void* memory, std::size_t size) {
    std::memcpy(memory, &size, sizeof size);
    return static_cast<char*>(memory) + headerBytes;
}

}  // namespace

void* ScriptMemory::allocate(std::size_t size) noexcept {
    return reallocate(nullptr, size);
}

void* ScriptMemory::reallocate(void* block, std::size_t size) noexcept {
    if (size == 0) {
        release(block);
        return nullptr;
    }
    const std::size_t before = block == nullptr ? 0 : sizeOf(block);
    if (size > mLimit - (mUsed - before))
        return nullptr;
    void* old = block == nullptr ? nullptr : static_cast<char*>(block) - headerBytes;
    void* memory = std::realloc(old, headerBytes + size);
    if (memory == nullptr)
        return nullptr;
    mUsed = mUsed - before + size;
    return blockOf(memory, size);
}

void ScriptMemory::release(void* block) noexcept {
    if (block == nullptr)
        return;
    mUsed -= sizeOf(block);
    std::free(static_cast<char*>(block) - headerBytes);
}

}  // namespace TessavoyHost
