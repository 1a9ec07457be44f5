#pragma once

#include "Source/Editors/PanelDrawing.h"
#include "Source/Editors/RampData.h"

namespace Tessavoy {

/// Draws the control of a ramp into its frame: the outline of the range 0..1, the curve with its value upwards, one
/// step a pixel, and a diamond on each point; where these overlap, the one that a click takes is in front. A frame
/// without room for the range shows nothing. Errors as PanelDrawing.
void drawRamp(const PanelDrawing& drawing, const RampData& ramp, const PF_Rect& frame);

}  // namespace Tessavoy
