#pragma once

#include "HostInterface/Effect.h"

namespace Tessavoy {

/// PF_Cmd_QUERY_DYNAMIC_FLAGS: whether frames differ though no parameter does (textures that play, scripts), and
/// whether the composition's camera is looked at, as flags of the out-data. A host error while reading throws Exception
/// with its code; everything that was checked out is checked in.
PF_Err QueryDynamicFlags(PF_InData* inData, PF_OutData* outData);

}  // namespace Tessavoy
