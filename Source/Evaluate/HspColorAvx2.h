#pragma once

#include "Source/Evaluate/HspColor.h"

#include <array>

namespace Tessavoy {

/// Shifts of the cells' colours in the model, as their properties give them.
struct HspShifts {
    const double* brightness;  ///< percent
    const double* hue;         ///< degrees
    const double* saturation;  ///< percent
};

/// The front part of a batch of cells with one base colour, in vector lanes: fills out[0..n - 1] with the shifted
/// colours as r, g, b and 1 and returns n, the largest multiple of the lanes that is not above count. Cells without a
/// shift get the base colour as it stands. The bits are those of the scalar form. Returns 0 in a build without such
/// code; elsewhere the processor must have AVX2.
int shiftedColorsAvx2(const std::array<double, 3>& base, const HspShifts& shifts, int count, std::array<float, 4>* out);

}  // namespace Tessavoy
