#pragma once

#include "Host/World.h"

namespace TessavoyHost {

// A picture as a module sees a layer: at the depth asked for, and box-averaged to the downsampled size. The average is
// weighted by alpha and by how much of each pixel the box covers; where all of it is transparent the result is zero.
// At full resolution each pixel is converted by itself, transparent ones too. Values go to other depths by their share
// of the full value (255, 65535 in pictures, 32768 in 16-bit worlds, 1.0), rounded; floats are clamped on the way to
// integers and otherwise kept.
World makeWorld(const Image& image, int bitsPerChannel, const Rational& downsampleX, const Rational& downsampleY);

}  // namespace TessavoyHost
