#include "Host/LargePages.h"

#include <sys/mman.h>

#include <algorithm>
#include <limits>

namespace TessavoyHost {
namespace {

constexpr std::size_t largePage = std::size_t{2} << 20;
constexpr std::size_t smallestWorth = 2 * largePage;  // what fills up the last page is at most a half

}  // namespace

BlockLayout blockLayout(std::size_t bytes, std::size_t alignment) noexcept {
    if (bytes < smallestWorth || bytes > std::numeric_limits<std::size_t>::max() - largePage)
        return {bytes, alignment, false};
    return {(bytes + largePage - 1) / largePage * largePage, std::max(alignment, largePage), true};
}

// Most distributions give large pages only to programs that ask for them.
void useLargePages([[maybe_unused]] void* block, [[maybe_unused]] const BlockLayout& layout) noexcept {
#ifdef MADV_HUGEPAGE
    if (layout.largePages)
        ::madvise(block, layout.bytes, MADV_HUGEPAGE);
#endif
}

}  // namespace TessavoyHost
