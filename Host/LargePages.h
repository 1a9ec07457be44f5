#pragma once

#include <cstddef>

namespace TessavoyHost {

// Asks the system for large pages under a block of some megabytes, as far as whole ones fit into it: touched for the
// first time, they cost one fault for each two megabytes in place of 512. A hint: a smaller block stays as it is, and a
// system that has none gives ordinary pages. The block's content stays.
void useLargePages(void* block, std::size_t bytes) noexcept;

}  // namespace TessavoyHost
