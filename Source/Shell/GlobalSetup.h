#pragma once

#include "HostInterface/Effect.h"

namespace Tessavoy {

/// Starts the module's life: version and flags, the common GL context, the plug-in id in the global data. A GL context
/// that can't be made gives 4, global data that can't be allocated 512.
PF_Err GlobalSetup(PF_InData* inData, PF_OutData* outData);

/// Ends the module's life: all GL objects are dropped on a thread of their own, then the global data and a sequence
/// handle that the host still holds are disposed of.
PF_Err GlobalSetdown(PF_InData* inData, PF_OutData* outData);

}  // namespace Tessavoy
