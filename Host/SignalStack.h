#pragma once

namespace TessavoyHost {

// Gives the calling thread a stack of its own for signal handlers, until the thread ends. A thread whose stack has
// overflowed has no other room for a handler. Without memory for it the thread goes on without. Does nothing on systems
// without signals of that kind.
void useSignalStack() noexcept;

}  // namespace TessavoyHost
