#pragma once

#include "Source/Editors/GradientData.h"
#include "Source/Editors/PanelDrawing.h"
#include "Source/Editors/PanelImage.h"

#include <cstdint>

namespace Tessavoy {

/// The gradient's colours from left to right, all rows alike: column x shows the position x / width. Channels are cut
/// to 0..1 and then to whole 255ths, downwards. Width and height above 0.
PanelImage gradientBar(const GradientData& gradient, std::int32_t width, std::int32_t height);

/// Squares of 6 pixels, a light one at the top left. Width and height above 0.
PanelImage checkerboard(std::int32_t width, std::int32_t height, PanelPixel light, PanelPixel dark);

/// Draws the control of a gradient into its frame: a bar of its colours, where transparent over a checkerboard, and
/// below it a marker for each point, in the point's colour without its alpha. The outline of a marker says the kind:
/// straight sides (linear), a drop (sin), a bottle (edge). Where markers overlap, the one that a click takes is in
/// front. Errors as PanelDrawing.
///
/// The bar is as wide as the frame but for 3 pixels on each side, the track of the markers but for 6: both have their
/// middle in common, and the bar's end columns stand out by 3 pixels beyond the markers of positions 0 and 1.
void drawGradient(const PanelDrawing& drawing, const GradientData& gradient, const PF_Rect& frame);

}  // namespace Tessavoy
