#include "Source/Evaluate/PerlinTable.h"

#include "Source/Evaluate/PerlinTableAvx2.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <utility>

namespace Tessavoy {

namespace {

constexpr int permutationSize = 256;

/// A number in 0..count - 1, each equally likely: words from the incomplete last run of count words are drawn again.
std::uint32_t drawBelow(std::mt19937& generator, std::uint32_t count) {
    constexpr std::uint32_t largest = std::numeric_limits<std::uint32_t>::max();
    const bool runsAreComplete = largest % count == count - 1;
    for (;;) {
        const auto word = static_cast<std::uint32_t>(generator());
        if (runsAreComplete || word / count < largest / count) {
            return word % count;
        }
    }
}

/// One coordinate taken apart: the lattice cell modulo 256, the place in the cell and its fade curve.
struct Axis {
    std::uint32_t cell;
    double place;
    double fade;
};

/// The whole number modulo 256. The steps are exact for every finite value, so large ones repeat as small ones do.
std::uint32_t latticeCell(double whole) {
    const double rest = whole - std::floor(whole * (1.0 / permutationSize)) * permutationSize;
    return rest >= 0.0 ? static_cast<std::uint32_t>(rest) : 0u;
}

Axis axisOf(double coordinate) {
    const double whole = std::floor(coordinate);
    const double t = coordinate - whole;
    return {latticeCell(whole), t, ((t * 6.0 - 15.0) * t + 10.0) * (t * t * t)};
}

/// The product of the corner's distances with the gradient that the low four bits of its hash choose.
double gradient(std::uint32_t hash, double dx, double dy, double dz) {
    const std::uint32_t h = hash & 15u;
    const double first = h < 8 ? dx : dy;
    const double second = h < 4 ? dy : (h == 12 || h == 14 ? dx : dz);
    return ((h & 1u) != 0u ? -first : first) + ((h & 2u) != 0u ? -second : second);
}

double mix(double t, double a, double b) {
    return a + t * (b - a);
}

double noiseAt(const std::uint32_t* p, const Axis& x, const Axis& y, const Axis& z) {
    const std::uint32_t a = p[x.cell] + y.cell;
    const std::uint32_t b = p[x.cell + 1] + y.cell;
    const std::uint32_t aa = p[a] + z.cell;
    const std::uint32_t ab = p[a + 1] + z.cell;
    const std::uint32_t ba = p[b] + z.cell;
    const std::uint32_t bb = p[b + 1] + z.cell;
    const auto alongX = [&](std::uint32_t left, std::uint32_t right, double dy, double dz) {
        return mix(x.fade, gradient(p[left], x.place, dy, dz), gradient(p[right], x.place - 1.0, dy, dz));
    };
    const auto slice = [&](std::uint32_t up, double dz) {
        return mix(y.fade, alongX(aa + up, ba + up, y.place, dz), alongX(ab + up, bb + up, y.place - 1.0, dz));
    };
    return (mix(z.fade, slice(0, z.place), slice(1, z.place - 1.0)) + 1.0) * 0.5;
}

}  // namespace

PerlinTable::PerlinTable(std::uint32_t seed) {
    const auto half = mEntries.begin() + permutationSize;
    std::iota(mEntries.begin(), half, 0u);
    std::mt19937 generator(seed);
    for (std::uint32_t k = 1; k < permutationSize; ++k) {
        std::swap(mEntries[k], mEntries[drawBelow(generator, k + 1)]);
    }
    std::copy(mEntries.begin(), half, half);
}

double PerlinTable::perlin(double x, double y, double z) const {
    return noiseAt(entries(), axisOf(x), axisOf(y), axisOf(z));
}

void PerlinTable::perlin(const double* x, const double* y, double z, double* out, int count, VectorLanes lanes) const {
    const int done = lanes == VectorLanes::Avx2 ? perlinSliceAvx2(entries(), x, y, z, count, out) : 0;
    const Axis depth = axisOf(z);
    for (int k = done; k < count; ++k) {
        out[k] = noiseAt(entries(), axisOf(x[k]), axisOf(y[k]), depth);
    }
}

}  // namespace Tessavoy
