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
/// that an ended context has given back keeps what that one resolved: all contexts are asked of the same driver, with
/// the same pixel format, for which entry points are the same.
///
/// When all reserved slots are taken (once in many contexts), the call waits until no other thread is in a frame. So a
/// thread that is in a frame must not wait for another thread's first frame.
void useFunctionTable(std::intptr_t contextHandle);

/// Ends the use of the table that this context has, so that a later context may take it. To be called before the
/// context goes, since its handle may be another's at once. A context without a table is nothing to this.
void giveFunctionTableBack(std::intptr_t contextHandle) noexcept;

}  // namespace Tessavoy::AESDK_OpenGL
