#pragma once

#include "HostInterface/Effect.h"
#include "HostInterface/Events.h"

namespace Tessavoy {

/// An event of the panel's script control. PF_Event_DRAW draws a hint and below it the script's text or, when there is
/// a failure on record, "Error:" and its text: the lines of the text as they are, from top to bottom, cut off by the
/// control's frame. Other events return 0 with no effect.
///
/// A host error throws Exception with its code; a missing suite throws Exception or the plain integer 516.
PF_Err HandleScriptEvent(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_EventExtra* extra);

}  // namespace Tessavoy
