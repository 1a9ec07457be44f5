#pragma once

#include <limits>

namespace Tessavoy {

/// The number, or 0 for an infinity; NaN passes.
constexpr double zeroForInfinity(double number) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    return number == infinity || number == -infinity ? 0.0 : number;
}

}  // namespace Tessavoy
