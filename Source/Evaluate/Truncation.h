#pragma once

#include "HostInterface/Types.h"

#include <limits>

namespace Tessavoy {

/// The number without its fraction, as a 32-bit integer. What such an integer can't hold becomes its nearest bound, and
/// NaN becomes 0.
constexpr A_long truncated(double number) {
    using Limits = std::numeric_limits<A_long>;
    if (number != number) {
        return 0;
    }
    if (number <= Limits::min()) {
        return Limits::min();
    }
    return number >= Limits::max() ? Limits::max() : static_cast<A_long>(number);
}

}  // namespace Tessavoy
