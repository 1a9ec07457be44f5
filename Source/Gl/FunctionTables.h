#pragma once

#include <cstdint>

namespace Tessavoy::AESDK_OpenGL {

/// glbinding keeps a table of entry points per context, as one slot in each of its functions, and every GL call reads
/// its thread's slot without a lock. Adding a slot moves the tables, which no thread may read at that time. So slots
/// are reserved in blocks, and a block is added only while no thread is inside a FunctionTableUse.
///
/// A thread calls OpenGL only while it holds one of these. They may nest on a thread. Taking one never waits for a
/// frame of another thread, so that a frame may wait for another frame without harm.
class FunctionTableUse {
public:
    FunctionTableUse();
    ~FunctionTableUse();

    FunctionTableUse(const FunctionTableUse&) = delete;
    FunctionTableUse& operator=(const FunctionTableUse&) = delete;
};

/// Points the calling thread's GL calls at the table of the context with this native handle, which is current on the
/// thread. On first sight of the handle a slot is taken for it; entry points are resolved at their first call. A slot
/// is never given back: a later context under the same handle finds it again.
///
/// When all reserved slots are taken (once in many contexts), the call waits until no other thread is in a frame. So a
/// thread that is in a frame must not wait for another thread's first frame.
void useFunctionTable(std::intptr_t contextHandle);

}  // namespace Tessavoy::AESDK_OpenGL
