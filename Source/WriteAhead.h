#pragma once

#include <xmmintrin.h>

#include <cstddef>
#include <cstdint>

// GCC takes a function that does nothing but prefetch for one that does nothing at all, and drops the calls of it;
// where the function stands in line, it stays.
#ifdef __GNUC__
#define TESSAVOY_PREFETCHING [[gnu::always_inline]] inline
#else
#define TESSAVOY_PREFETCHING inline
#endif

namespace Tessavoy {

inline constexpr std::size_t cacheLine = 64;  ///< bytes

TESSAVOY_PREFETCHING void prefetchLine(std::uintptr_t address) {
    _mm_prefetch(reinterpret_cast<const char*>(address), _MM_HINT_T0);
}

/// Asks for a record's cache lines, so that they come while other work goes on.
template <class T>
TESSAVOY_PREFETCHING void prefetch(const T& record) {
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(&record);
    for (std::size_t at = 0; at < sizeof record; at += cacheLine) {
        prefetchLine(address + at);
    }
}

/// Asks for the cache lines some way ahead of a place that is written from front to back: for as many bytes as were
/// just written. A processor does that by itself within a page of memory; at each new page it waits for the address and
/// begins anew. Behind the memory's end asking does no harm.
TESSAVOY_PREFETCHING void prefetchForward(const void* place, std::size_t bytes) {
    constexpr std::uintptr_t distance = 4096;  // takes as long as memory's answer; four such places fit the first cache
    const std::uintptr_t ahead = reinterpret_cast<std::uintptr_t>(place) + distance;
    prefetchLine(ahead);
    prefetchLine(ahead + cacheLine);
    prefetchLine(ahead + 2 * cacheLine);
    prefetchLine(ahead + 3 * cacheLine);  // a line too many costs less than asking whether it is
    for (std::size_t at = 4 * cacheLine; at < bytes; at += cacheLine) {
        prefetchLine(ahead + at);
    }
}

}  // namespace Tessavoy
