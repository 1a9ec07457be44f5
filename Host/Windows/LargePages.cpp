#include "Host/LargePages.h"

namespace TessavoyHost {

// Large pages are a privilege there, which render accounts don't have.
BlockLayout blockLayout(std::size_t bytes, std::size_t alignment) noexcept {
    return {bytes, alignment, false};
}

void useLargePages(void*, const BlockLayout&) noexcept {}

}  // namespace TessavoyHost
