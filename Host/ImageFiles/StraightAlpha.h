#pragma once

#include "Host/Image.h"

namespace TessavoyHost {

// Divides colour that is multiplied by alpha, where alpha is above 0. Integers are rounded to the nearest and cut at
// their largest value.
void makeStraight(Image& image);

}  // namespace TessavoyHost
