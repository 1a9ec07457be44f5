#include "Source/Evaluate/PerlinTableAvx2.h"

#include "Source/Evaluate/VectorLanes.h"

#if TESSAVOY_HAS_AVX2_CODE
#include <immintrin.h>
#endif

namespace Tessavoy {

#if TESSAVOY_HAS_AVX2_CODE

namespace {

constexpr int vectorLanes = 4;

using Doubles = __m256d;
using Words = __m256i;

/// One coordinate of each point taken apart: the lattice cell modulo 256, the place in the cell and its fade curve.
struct Axis {
    Words cell;
    Doubles place;
    Doubles fade;
};

/// Two neighbouring entries of the table for each point, the first in the low half of its 64 bits.
using EntryPairs = Words;

TESSAVOY_TARGET_AVX2 inline Doubles all(double value) {
    return _mm256_set1_pd(value);
}

/// Exact for every finite value; the conversion of NaN gives a number whose low bits are zero.
TESSAVOY_TARGET_AVX2 inline Words latticeCell(Doubles whole) {
    const Doubles turns = _mm256_floor_pd(_mm256_mul_pd(whole, all(1.0 / 256.0)));
    const Doubles rest = _mm256_sub_pd(whole, _mm256_mul_pd(turns, all(256.0)));
    return _mm256_and_si256(_mm256_cvtepi32_epi64(_mm256_cvttpd_epi32(rest)), _mm256_set1_epi64x(255));
}

TESSAVOY_TARGET_AVX2 inline Axis axisOf(Doubles coordinate) {
    const Doubles whole = _mm256_floor_pd(coordinate);
    const Doubles t = _mm256_sub_pd(coordinate, whole);
    const Doubles inner = _mm256_sub_pd(_mm256_mul_pd(t, all(6.0)), all(15.0));
    const Doubles outer = _mm256_add_pd(_mm256_mul_pd(inner, t), all(10.0));
    const Doubles cube = _mm256_mul_pd(_mm256_mul_pd(t, t), t);
    return {latticeCell(whole), t, _mm256_mul_pd(outer, cube)};
}

TESSAVOY_TARGET_AVX2 inline EntryPairs entriesAt(const std::uint32_t* entries, Words index) {
    return _mm256_i64gather_epi64(reinterpret_cast<const long long*>(entries), index, 4);
}

TESSAVOY_TARGET_AVX2 inline Words firstPlus(EntryPairs pairs, Words added) {
    return _mm256_add_epi64(_mm256_and_si256(pairs, _mm256_set1_epi64x(0xFFFFFFFF)), added);
}

TESSAVOY_TARGET_AVX2 inline Words secondPlus(EntryPairs pairs, Words added) {
    return _mm256_add_epi64(_mm256_srli_epi64(pairs, 32), added);
}

/// Brings bit number Bit of each 64-bit lane to the sign, where the blends and the negations look for it.
template <int Bit>
TESSAVOY_TARGET_AVX2 inline Doubles bitAsSign(Words words) {
    return _mm256_castsi256_pd(_mm256_slli_epi64(words, 63 - Bit));
}

TESSAVOY_TARGET_AVX2 inline Doubles negatedBy(Doubles value, Doubles sign) {
    return _mm256_xor_pd(value, _mm256_and_pd(sign, all(-0.0)));
}

/// The gradient product as the scalar form has it, its cases as bits of the hash: the first term is dy where bit 3 is
/// set; the second is dy where bits 2 and 3 are clear, else dx where both are set and bit 0 is clear (12 and 14), else
/// dz.
template <int HashAt>
TESSAVOY_TARGET_AVX2 inline Doubles gradient(EntryPairs pairs, Doubles dx, Doubles dy, Doubles dz) {
    const Doubles bit0 = bitAsSign<HashAt>(pairs);
    const Doubles bit1 = bitAsSign<HashAt + 1>(pairs);
    const Doubles bit2 = bitAsSign<HashAt + 2>(pairs);
    const Doubles bit3 = bitAsSign<HashAt + 3>(pairs);
    const Doubles first = _mm256_blendv_pd(dx, dy, bit3);
    const Doubles isTwelveOrFourteen = _mm256_andnot_pd(bit0, _mm256_and_pd(bit2, bit3));
    const Doubles upper = _mm256_blendv_pd(dz, dx, isTwelveOrFourteen);
    const Doubles second = _mm256_blendv_pd(dy, upper, _mm256_or_pd(bit2, bit3));
    return _mm256_add_pd(negatedBy(first, bit0), negatedBy(second, bit1));
}

TESSAVOY_TARGET_AVX2 inline Doubles mix(Doubles t, Doubles a, Doubles b) {
    return _mm256_add_pd(a, _mm256_mul_pd(t, _mm256_sub_pd(b, a)));
}

/// One slice of the lattice cell: the corners' hashes stand at bit HashAt of each pair.
struct Corners {
    EntryPairs aa, ba, ab, bb;
};

template <int HashAt>
TESSAVOY_TARGET_AVX2 inline Doubles slice(const Corners& hashes, const Axis& x, const Axis& y, Doubles dz) {
    const Doubles right = _mm256_sub_pd(x.place, all(1.0));
    const Doubles below = _mm256_sub_pd(y.place, all(1.0));
    const Doubles upperEdge =
        mix(x.fade, gradient<HashAt>(hashes.aa, x.place, y.place, dz), gradient<HashAt>(hashes.ba, right, y.place, dz));
    const Doubles lowerEdge =
        mix(x.fade, gradient<HashAt>(hashes.ab, x.place, below, dz), gradient<HashAt>(hashes.bb, right, below, dz));
    return mix(y.fade, upperEdge, lowerEdge);
}

TESSAVOY_TARGET_AVX2 inline Corners cornersOf(const std::uint32_t* entries, Words x, Words y, Words z) {
    const EntryPairs columns = entriesAt(entries, x);
    const EntryPairs a = entriesAt(entries, firstPlus(columns, y));
    const EntryPairs b = entriesAt(entries, secondPlus(columns, y));
    return {entriesAt(entries, firstPlus(a, z)), entriesAt(entries, firstPlus(b, z)),
            entriesAt(entries, secondPlus(a, z)), entriesAt(entries, secondPlus(b, z))};
}

TESSAVOY_TARGET_AVX2 inline Doubles noiseAt(const std::uint32_t* entries, const Axis& x, const Axis& y, const Axis& z) {
    const Corners hashes = cornersOf(entries, x.cell, y.cell, z.cell);
    const Doubles lower = slice<0>(hashes, x, y, z.place);
    const Doubles upper = slice<32>(hashes, x, y, _mm256_sub_pd(z.place, all(1.0)));
    return _mm256_mul_pd(_mm256_add_pd(mix(z.fade, lower, upper), all(1.0)), all(0.5));
}

}  // namespace

TESSAVOY_TARGET_AVX2 int perlinAvx2(const std::uint32_t* entries, const double* x, const double* y, const double* z,
                                    int count, double* out) {
    int done = 0;
    for (; count - done >= vectorLanes; done += vectorLanes) {
        const Axis across = axisOf(_mm256_loadu_pd(x + done));
        const Axis down = axisOf(_mm256_loadu_pd(y + done));
        const Axis depth = axisOf(_mm256_loadu_pd(z + done));
        _mm256_storeu_pd(out + done, noiseAt(entries, across, down, depth));
    }
    return done;
}

TESSAVOY_TARGET_AVX2 int perlinSliceAvx2(const std::uint32_t* entries, const double* x, const double* y, double z,
                                         int count, double* out) {
    const Axis depth = axisOf(all(z));
    int done = 0;
    for (; count - done >= vectorLanes; done += vectorLanes) {
        const Axis across = axisOf(_mm256_loadu_pd(x + done));
        const Axis down = axisOf(_mm256_loadu_pd(y + done));
        _mm256_storeu_pd(out + done, noiseAt(entries, across, down, depth));
    }
    return done;
}

#else

int perlinAvx2(const std::uint32_t*, const double*, const double*, const double*, int, double*) {
    return 0;
}

int perlinSliceAvx2(const std::uint32_t*, const double*, const double*, double, int, double*) {
    return 0;
}

#endif

}  // namespace Tessavoy
