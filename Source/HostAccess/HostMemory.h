#pragma once

#include "HostInterface/Effect.h"

#include <cstddef>

namespace Tessavoy {

/// A block of host memory behind a plain pointer: a handle of size plus one pointer, locked, whose first pointer-sized
/// word holds the handle itself. The block is not cleared. Throws PF_Err_OUT_OF_MEMORY (as PF_ErrorValue) when the host
/// has none.
void* HostAlloc(PF_InData* inData, std::size_t size);

/// Frees what HostAlloc gave; null is let pass.
void HostFree(PF_InData* inData, void* pointer);

}  // namespace Tessavoy
