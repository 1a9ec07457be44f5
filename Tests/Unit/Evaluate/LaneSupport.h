#pragma once

#include "Source/Evaluate/VectorLanes.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

namespace Tessavoy {

/// The lane choices that this build and processor can run, the scalar one first.
inline std::vector<VectorLanes> availableLanes() {
    std::vector<VectorLanes> lanes;
    for (const VectorLanes choice : {VectorLanes::Scalar, VectorLanes::Avx2}) {
        if (lanesAvailable(choice)) {
            lanes.push_back(choice);
        }
    }
    return lanes;
}

/// Equal to the last bit; one NaN is as good as another.
inline bool sameBits(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

}  // namespace Tessavoy
