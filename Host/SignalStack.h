#pragma once

namespace TessavoyHost {

// Gives the calling thread room for crash handlers, until the thread ends: a stack of their own, or on Windows an end
// of its own stack that is kept back. A thread whose stack has overflowed has no other. Without memory for it the
// thread goes on without.
void useSignalStack() noexcept;

}  // namespace TessavoyHost
