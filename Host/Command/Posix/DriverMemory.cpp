// Gives the software rasteriser's targets large pages. It asks the C library for them, 200 MB for a picture of
// 1920 x 1080 with multisampling, and clears them at once: in ordinary pages that is the longest stage of a first
// frame. The C library puts large blocks into large pages by itself only when the environment said so before the
// process began (glibc.malloc.hugetlb in GLIBC_TUNABLES), so the one function that the driver asks is replaced here,
// for all libraries of a program that links this file. Its blocks come from the same library and are freed as ever.

#include "Host/LargePages.h"

#include <malloc.h>

#include <bit>
#include <cerrno>
#include <cstddef>

extern "C" [[gnu::visibility("default")]] int posix_memalign(void** block, std::size_t alignment,
                                                             std::size_t bytes) noexcept {
    if (!std::has_single_bit(alignment) || alignment % sizeof(void*) != 0)
        return EINVAL;
    const TessavoyHost::BlockLayout layout = TessavoyHost::blockLayout(bytes, alignment);
    void* const memory = ::memalign(layout.alignment, layout.bytes);
    if (memory == nullptr)
        return ENOMEM;
    TessavoyHost::useLargePages(memory, layout);
    *block = memory;
    return 0;
}
