#pragma once

#include "HostInterface/Effect.h"
#include "HostInterface/Events.h"

namespace Tessavoy {

/// An event of the panel's ramp controls: PF_Event_DO_CLICK and PF_Event_DRAG edit the ramp in the handle of the
/// event's parameter as `RampEditor` does, PF_Event_DRAW draws it as `drawRamp` does. Other events, and those beside
/// the control, return 0 with no effect.
///
/// An event that came to something is marked handled, and the parameter marked as changed where it is. Throws the plain
/// integer 4 when the handle can't be locked, and else as PanelDrawing.
PF_Err HandleRampEvent(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_EventExtra* extra);

}  // namespace Tessavoy
