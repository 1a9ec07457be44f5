#pragma once

#include <cmath>

namespace Tessavoy {

/// The number, or 0 for an infinity; NaN passes.
inline double zeroForInfinity(double number) {
    return std::isinf(number) ? 0.0 : number;
}

}  // namespace Tessavoy
