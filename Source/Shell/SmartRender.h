#pragma once

#include "HostInterface/Effect.h"

namespace Tessavoy {

/// Renders one frame into the host's output world; the only way to a picture. Comes on several render threads at once:
/// what a frame needs is made on its thread and ends with it, but for the thread's GL context.
///
/// Returns the host's error value. Whatever failed, everything that was taken is given back in the same order; a
/// failure of the drawing, of whatever kind, is 4 unless it was thrown as a plain integer. A cancelled frame returns
/// what the host's abort callback says.
PF_Err SmartRender(PF_InData* inData, PF_OutData* outData, PF_SmartRenderExtra* extra);

}  // namespace Tessavoy
