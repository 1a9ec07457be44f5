#include "Tests/Unit/RenderGrid/HeapUse.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

struct Count {
    bool watched = false;
    std::ptrdiff_t out = 0;
    std::ptrdiff_t peak = 0;

    void add(std::ptrdiff_t bytes) {
        if (watched) {
            out += bytes;
            peak = std::max(peak, out);
        }
    }
};
thread_local Count count;

void* counted(void* block) {
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    count.add(static_cast<std::ptrdiff_t>(malloc_usable_size(block)));
    return block;
}

void release(void* block) {
    count.add(-static_cast<std::ptrdiff_t>(malloc_usable_size(block)));
    std::free(block);
}

std::size_t roundedUp(std::size_t size, std::size_t alignment) {
    return (size + alignment - 1) / alignment * alignment;
}

}  // namespace

// The forms that the standard library's others are made of.
void* operator new(std::size_t size) {
    return counted(std::malloc(std::max<std::size_t>(size, 1)));
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    const std::size_t boundary = static_cast<std::size_t>(alignment);
    return counted(std::aligned_alloc(boundary, roundedUp(std::max<std::size_t>(size, 1), boundary)));
}

void operator delete(void* block) noexcept {
    release(block);
}

void operator delete(void* block, std::size_t) noexcept {
    release(block);
}

void operator delete(void* block, std::align_val_t) noexcept {
    release(block);
}

void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    release(block);
}

namespace Tessavoy {

HeapUse::HeapUse() {
    count = {true, 0, 0};
}

HeapUse::~HeapUse() {
    count.watched = false;
}

std::size_t HeapUse::peak() const {
    return static_cast<std::size_t>(count.peak);
}

}  // namespace Tessavoy
