#pragma once

#include "Source/Evaluate/VectorLanes.h"

#include <array>
#include <cstdint>

namespace Tessavoy {

/// Ken Perlin's improved noise (2002) over a permutation of 0..255 that a seed puts in order.
class PerlinTable {
public:
    /// The order is drawn by MT19937, started with the seed, and a forward Fisher-Yates shuffle.
    explicit PerlinTable(std::uint32_t seed);

    /// The noise at a point, in 0..1; 0.5 at every point with three whole coordinates. It repeats every 256 along each
    /// axis, for any finite coordinate. NaN where a coordinate is not finite.
    double perlin(double x, double y, double z) const;

    /// perlin(x[k], y[k], z) into out[k] for k in 0..count - 1; bit-equal to the single calls whatever the lanes. out
    /// may be one of the inputs.
    void perlin(const double* x, const double* y, double z, double* out, int count,
                VectorLanes lanes = widestLanes()) const;

    /// The 512 entries: the permutation, twice in a row.
    const std::uint32_t* entries() const { return mEntries.data(); }

private:
    std::array<std::uint32_t, 512> mEntries;
};

}  // namespace Tessavoy
