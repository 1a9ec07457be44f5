// Gives the software rasteriser's targets large pages. It asks the C library for them, 200 MB for a picture of
// 1920 x 1080 with multisampling, and clears them at once: in ordinary pages that is the longest stage of a first
// frame. The C library puts large blocks into large pages by itself only when the environment said so before the
// process began (glibc.malloc.hugetlb in GLIBC_TUNABLES), so the one function that the driver asks is replaced here,
// for all libraries of a program that links this file. Its blocks come from the same library and are freed as ever.

#include "Host/LargePages.h"

#include <malloc.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstddef>

namespace {

// Blocks from 32 MB on are never cut out of the C library's heap, but mapped one by one, so that they can begin with a
// large page and leave nothing unusable behind.
std::size_t usefulAlignment(std::size_t alignment, std::size_t bytes) {
    constexpr std::size_t alwaysMapped = std::size_t{32} << 20;
    constexpr std::size_t largePage = std::size_t{2} << 20;
    return bytes >= alwaysMapped ? std::max(alignment, largePage) : alignment;
}

}  // namespace

extern "C" [[gnu::visibility("default")]] int posix_memalign(void** block, std::size_t alignment,
                                                             std::size_t bytes) noexcept {
    if (!std::has_single_bit(alignment) || alignment % sizeof(void*) != 0)
        return EINVAL;
    void* const memory = ::memalign(usefulAlignment(alignment, bytes), bytes);
    if (memory == nullptr)
        return ENOMEM;
    TessavoyHost::useLargePages(memory, bytes);
    *block = memory;
    return 0;
}
