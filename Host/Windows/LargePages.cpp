#include "Host/LargePages.h"

namespace TessavoyHost {

// Large pages are a privilege there, which render accounts don't have.
void useLargePages(void*, std::size_t) noexcept {}

}  // namespace TessavoyHost
