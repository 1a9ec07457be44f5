#pragma once

#include "HostInterface/Effect.h"
#include "HostInterface/Events.h"

namespace Tessavoy {

/// An event of the panel's gradient controls: PF_Event_DO_CLICK and PF_Event_DRAG edit the gradient in the handle of
/// the event's parameter as `GradientEditor` does, a colour being asked for by the host's colour picker; PF_Event_DRAW
/// draws it as `drawGradient` does. Other events, and those beside the control, return 0 with no effect.
///
/// An event that came to something is marked handled, and the parameter marked as changed where it is. Returns the
/// error of the colour picker; cancelling it is none. Throws the plain integer 4 when the handle can't be locked, and
/// else as PanelDrawing.
PF_Err HandleGradientEvent(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_EventExtra* extra);

}  // namespace Tessavoy
