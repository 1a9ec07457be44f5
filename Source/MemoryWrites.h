#pragma once

#include <xmmintrin.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

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

/// Asks for so many bytes from a place on that lies some way ahead of this one, where memory is written from front to
/// back. A processor does that by itself within a page of memory; at each new page it waits for the address and begins
/// anew. Behind the memory's end asking does no harm, and for more than a page it isn't asked.
TESSAVOY_PREFETCHING void prefetchForward(const void* place, std::size_t bytes) {
    constexpr std::uintptr_t distance = 6144;  // takes as long as memory's answer; four such places fit the first cache
    constexpr std::size_t page = 4096;
    const std::uintptr_t ahead = reinterpret_cast<std::uintptr_t>(place) + distance;
    prefetchLine(ahead);
    prefetchLine(ahead + cacheLine);
    prefetchLine(ahead + 2 * cacheLine);
    prefetchLine(ahead + 3 * cacheLine);  // a line too many costs less than asking whether it is
    for (std::size_t at = 4 * cacheLine; at < std::min(bytes, page); at += cacheLine) {
        prefetchLine(ahead + at);
    }
}

/// Whether something is too large for the caches to hold, so that writing it has to be arranged with memory.
enum class Extent { InCaches, BeyondCaches };

/// The extent of so many bytes.
constexpr Extent extentOf(std::size_t bytes) {
    constexpr std::size_t heldByCaches = std::size_t{16} << 20;
    return bytes > heldByCaches ? Extent::BeyondCaches : Extent::InCaches;
}

/// Copies to a place in something of this extent that is written from front to back in pieces, of which this is one,
/// and not read soon. Beyond the caches it goes past them, which spares its cache lines from being read first; that
/// takes an address and a size that are multiples of 16.
inline void writeForward(void* to, const void* from, std::size_t bytes, Extent extent) {
    constexpr std::size_t quad = 16;
    if (extent == Extent::InCaches) {
        std::memcpy(to, from, bytes);
    } else if ((reinterpret_cast<std::uintptr_t>(to) | bytes) % quad == 0) {
        for (std::size_t at = 0; at < bytes; at += quad) {
            _mm_stream_ps(reinterpret_cast<float*>(static_cast<std::byte*>(to) + at),
                          _mm_loadu_ps(reinterpret_cast<const float*>(static_cast<const std::byte*>(from) + at)));
        }
    } else {
        prefetchForward(to, bytes);
        std::memcpy(to, from, bytes);
    }
}

}  // namespace Tessavoy
