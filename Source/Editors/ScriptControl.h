#pragma once

#include "HostInterface/Effect.h"
#include "HostInterface/Events.h"

namespace Tessavoy {

/// An event of the panel's script control. PF_Event_DRAW draws a hint and below it the script's text or, when there is
/// a failure on record, "Error:" and its text: the lines of the text as they are, from top to bottom, cut off by the
/// control's frame. PF_Event_DO_CLICK lets the user edit the script in a dialog and stores a changed one, with the
/// message that compiling it gives; the project then counts as changed, and panel and picture are asked for anew. Other
/// events return 0 with no effect.
///
/// A host error while drawing throws Exception with its code, while editing it is the result; 512 where there is no
/// record to store a script in. A missing suite throws Exception or the plain integer 516. Compiling a script throws
/// PF_ErrorValue when the host has no memory.
PF_Err HandleScriptEvent(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_EventExtra* extra);

}  // namespace Tessavoy
