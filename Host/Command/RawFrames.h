#pragma once

#include <string>

#include "Host/Image.h"

namespace TessavoyHost {

// The pixels as `-o -` writes them: rows from the top, A R G B interleaved, little-endian, no padding.
std::string rawFrame(const PixelView& pixels);

}  // namespace TessavoyHost
