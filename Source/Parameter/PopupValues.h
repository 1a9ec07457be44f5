#pragma once

#include "HostInterface/Types.h"

/// What the popups' one-based values mean, under the parameters' own names.
namespace Tessavoy::PopupValues {

enum ShapeType : A_long { ComplexPolygon = 1, TexturedQuad = 2 };

enum ShapeFramesSplittingMode : A_long { GridOfItems = 1, TimelineFrames = 2, SplitImage = 3 };

enum ShapeDrawMode : A_long { Fill = 1, Stroke = 2 };

enum OutputType : A_long { Composite = 1, ZBuffer = 2 };

enum Multisampling : A_long { NoMultisampling = 1, FourSamples = 2 };

/// A choice of custom layer: value n beyond this is custom layer n - 1.
inline constexpr A_long NoLayer = 1;

}  // namespace Tessavoy::PopupValues
