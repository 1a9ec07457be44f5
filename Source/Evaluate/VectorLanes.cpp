#include "Source/Evaluate/VectorLanes.h"

namespace Tessavoy {

namespace {

bool processorHasAvx2() {
#if TESSAVOY_HAS_AVX2_CODE
    return __builtin_cpu_supports("avx2") != 0;
#else
    return false;
#endif
}

}  // namespace

bool lanesAvailable(VectorLanes lanes) {
    return lanes == VectorLanes::Scalar || processorHasAvx2();
}

VectorLanes widestLanes() {
    static const VectorLanes widest = processorHasAvx2() ? VectorLanes::Avx2 : VectorLanes::Scalar;
    return widest;
}

}  // namespace Tessavoy
