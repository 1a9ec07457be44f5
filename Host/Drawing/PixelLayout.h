#pragma once

#include "Host/Drawing/DrawingSurface.h"

namespace TessavoyHost {

// A module's picture as surfaces take it. Known are the layouts with alpha, straight and premultiplied, in the orders
// alpha, red, green, blue and blue, green, red, alpha. rowBytes: from one row to the next, at least 4 * width.
// Throws HostCallFailure for any other layout, and for a size that is none.
DrawnImage imageFromPixels(int width, int height, int rowBytes, DRAWBOT_PixelLayout layout, const std::byte* pixels);

}  // namespace TessavoyHost
