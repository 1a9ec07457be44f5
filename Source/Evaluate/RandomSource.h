#pragma once

#include "HostInterface/Types.h"

namespace Tessavoy {

/// A custom random: a number that depends on the seed and two integers alone.
struct RandomSource {
    A_long Seed = 0;  ///< taken as a 32-bit word
    double Min = 0;
    double Max = 0;

    /// A number in Min..Max; Min where Min is not below Max. Negative integers enter as their two's complement.
    double sample(A_long a, A_long b) const;
};

}  // namespace Tessavoy
