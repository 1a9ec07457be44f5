#pragma once

#include "HostInterface/Effect.h"

namespace Tessavoy {

/// PF_Cmd_USER_CHANGED_PARAM: what follows at once from a change of one parameter or the press of a button. Parameters
/// that matter to the panel as a whole are left to its update.
///
/// Hiding gives the host's first error; the depth dialog the host's error; what is wrong with a slot's name becomes a
/// message in the out-data. Other host errors throw Exception with their code.
PF_Err UserChangedParam(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[],
                        const PF_UserChangedParamExtra* extra);

}  // namespace Tessavoy
