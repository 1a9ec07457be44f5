#pragma once

#include <cstdint>

namespace Tessavoy {

/// The front part of PerlinTable's slice in vector lanes: fills out[0..n - 1] from the 512 entries and returns n, the
/// largest multiple of the lanes that is not above count. Returns 0 in a build without such code; elsewhere the
/// processor must have AVX2. Fastest where neighbours share y and lattice cells.
int perlinSliceAvx2(const std::uint32_t* entries, const double* x, const double* y, double z, int count, double* out);

}  // namespace Tessavoy
