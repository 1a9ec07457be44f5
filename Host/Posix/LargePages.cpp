#include "Host/LargePages.h"

#include <sys/mman.h>

#include <cstdint>

namespace TessavoyHost {

// Most distributions give large pages only to programs that ask for them. The block needn't be aligned to them: a heap
// that cuts aligned blocks out of larger ones finds no use for what is left, and grows.
void useLargePages([[maybe_unused]] void* block, [[maybe_unused]] std::size_t bytes) noexcept {
#ifdef MADV_HUGEPAGE
    constexpr std::uintptr_t page = std::uintptr_t{2} << 20;
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t begin = (address + page - 1) / page * page;
    const std::uintptr_t end = (address + bytes) / page * page;
    if (begin < end)
        ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
}

}  // namespace TessavoyHost
