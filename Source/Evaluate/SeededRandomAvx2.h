#pragma once

#include <cstdint>

namespace Tessavoy {

/// The front part of seededRandomCells in vector lanes: fills out[0..n - 1] and returns n, which is at most count. What
/// is left is too little to be worth a group of lanes. Returns 0 in a build without such code; elsewhere the processor
/// must have AVX2.
int seededRandomCellsAvx2(std::uint32_t w1, const std::uint32_t* w2, const std::uint32_t* w3, int count, double* out);

}  // namespace Tessavoy
