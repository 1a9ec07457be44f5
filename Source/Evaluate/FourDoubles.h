#pragma once

#include "Source/Evaluate/VectorLanes.h"

#if TESSAVOY_HAS_AVX2_CODE

#include <immintrin.h>

namespace Tessavoy {

/// Four doubles side by side in a 256-bit register.
using Doubles = __m256d;
inline constexpr int vectorLanes = 4;

/// The number in every lane.
TESSAVOY_TARGET_AVX2 inline Doubles all(double value) {
    return _mm256_set1_pd(value);
}

}  // namespace Tessavoy

#endif
