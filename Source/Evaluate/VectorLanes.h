#pragma once

// Code for wider vectors than the baseline's stands in functions of its own, marked with TESSAVOY_TARGET_AVX2 and
// called only where the processor has the instructions. A MinGW build must let the assembler use unaligned moves
// (-Wa,-muse-unaligned-vector-move) and say so with TESSAVOY_UNALIGNED_VECTOR_MOVES, because that compiler spills
// 32-byte registers to a stack that is aligned to 16 bytes; without it the build does with the scalar code.
#if defined(__x86_64__) && defined(__GNUC__) && (!defined(_WIN32) || defined(TESSAVOY_UNALIGNED_VECTOR_MOVES))
#define TESSAVOY_HAS_AVX2_CODE 1
#define TESSAVOY_TARGET_AVX2 __attribute__((target("avx2")))
#else
#define TESSAVOY_HAS_AVX2_CODE 0
#endif

namespace Tessavoy {

/// How a batch function works through its elements. Every choice gives the same bits; only the speed differs. Callers
/// leave the choice to widestLanes(), tests and benchmarks make it.
enum class VectorLanes {
    Scalar,  ///< one element after the other
    Avx2     ///< side by side in 256-bit registers; only where lanesAvailable() says yes
};

/// Whether this build and this processor can run the choice.
bool lanesAvailable(VectorLanes lanes);

/// The fastest choice that is available.
VectorLanes widestLanes();

}  // namespace Tessavoy
