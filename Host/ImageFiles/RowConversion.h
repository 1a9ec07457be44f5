#pragma once

#include <cstdint>

#include "Host/Image.h"

namespace TessavoyHost {

// A row of a world, A R G B, as the R G B A samples that files hold. `to` has room for 4 * width samples.

// From 8-bit pixels.
void rowToUInt8(const PixelView& pixels, int y, std::uint8_t* to);

// From 16-bit pixels: round(v * 65535 / 32768). From floats: round(v * 65535), v cut to 0 to 1, NaN as 0.
void rowToUInt16(const PixelView& pixels, int y, std::uint16_t* to);

// From any depth: v / 255, v / 32768, or v itself.
void rowToFloat(const PixelView& pixels, int y, float* to);

// Colour times alpha, in place; 0 where alpha is 0, whatever the colour.
void premultiplyRow(float* rgba, int width);

}  // namespace TessavoyHost
