#pragma once

#include "HostInterface/Effect.h"

namespace Tessavoy {

/// PF_Cmd_UPDATE_PARAMS_UI: shows what matters under the present settings and hides the rest, labels what changes its
/// name, and asks for new frames when anything changed. Nothing is done where the host has no streams. A host error
/// throws Exception with its code.
PF_Err UpdateParamsUi(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[]);

}  // namespace Tessavoy
