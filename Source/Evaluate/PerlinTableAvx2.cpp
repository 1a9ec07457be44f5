#include "Source/Evaluate/PerlinTableAvx2.h"

#include "Source/Evaluate/FourDoubles.h"

namespace Tessavoy {

#if TESSAVOY_HAS_AVX2_CODE

namespace {

using Words = __m256i;

/// One coordinate of each point taken apart: the lattice cell modulo 256, the place in the cell and its fade curve.
struct Axis {
    Words cell;
    Doubles place;
    Doubles fade;
};

/// Two neighbouring entries of the table for each point, the first in the low half of its 64 bits.
using EntryPairs = Words;

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

/// The factors of the three distances in the gradient of each hash modulo 16, as the uppermost byte of a double: p is
/// 2, m is -2, and all other bytes of both are zero.
constexpr char p = 0x40;
constexpr char m = static_cast<char>(0xC0);
alignas(16) constexpr char acrossFactors[16] = {p, m, p, m, p, m, p, m, 0, 0, 0, 0, p, 0, m, 0};
alignas(16) constexpr char downFactors[16] = {p, p, m, m, 0, 0, 0, 0, p, m, p, m, p, m, p, m};
alignas(16) constexpr char inwardFactors[16] = {0, 0, 0, 0, p, p, m, m, p, p, m, m, 0, p, 0, m};

/// hashes: modulo 16 in the uppermost byte of each 64-bit lane; all others have their sign bit set, which makes 0.
TESSAVOY_TARGET_AVX2 inline Doubles factorsOf(const char* table, Words hashes) {
    const Words bytes = _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(table)));
    return _mm256_mul_pd(_mm256_castsi256_pd(_mm256_shuffle_epi8(bytes, hashes)), all(0.5));
}

/// One corner of the lattice cell of each point, for points that share y and z: the product of the corner's distances
/// with its gradient is slope * dx + rest.
///
/// A gradient takes two of the distances as they are or negated. The third has the factor 0 and adds nothing but the
/// sign of a zero, which the sum with 1 at the end takes away; so the bits are those of the two terms' sum.
struct Corner {
    Doubles slope;
    Doubles rest;
};

/// The hash stands at bit HashAt of each pair.
template <int HashAt>
TESSAVOY_TARGET_AVX2 inline Corner cornerOf(EntryPairs pairs, Doubles dy, Doubles dz) {
    const Words atTop = _mm256_and_si256(_mm256_slli_epi64(pairs, 56 - HashAt), _mm256_set1_epi64x(0xFLL << 56));
    const Words hashes = _mm256_or_si256(atTop, _mm256_set1_epi64x(0x0080808080808080));
    return {factorsOf(acrossFactors, hashes), _mm256_add_pd(_mm256_mul_pd(dy, factorsOf(downFactors, hashes)),
                                                            _mm256_mul_pd(dz, factorsOf(inwardFactors, hashes)))};
}

TESSAVOY_TARGET_AVX2 inline Doubles mix(Doubles t, Doubles a, Doubles b) {
    return _mm256_add_pd(a, _mm256_mul_pd(t, _mm256_sub_pd(b, a)));
}

/// Two corners that differ in x alone.
struct Edge {
    Corner left;
    Corner right;

    TESSAVOY_TARGET_AVX2 Doubles at(const Axis& x) const {
        const Doubles fromLeft = x.place;
        const Doubles fromRight = _mm256_sub_pd(x.place, all(1.0));
        return mix(x.fade, _mm256_add_pd(_mm256_mul_pd(fromLeft, left.slope), left.rest),
                   _mm256_add_pd(_mm256_mul_pd(fromRight, right.slope), right.rest));
    }
};

/// The lattice cells of a group of points in one slice. Points that follow each other in a row of a grid mostly lie in
/// the same ones, so they are kept until a point leaves them.
class LatticeCells {
public:
    TESSAVOY_TARGET_AVX2 LatticeCells(const std::uint32_t* entries, double z)
        : mEntries(entries), mZ(axisOf(all(z))), mCellX(_mm256_set1_epi64x(-1)) {}

    TESSAVOY_TARGET_AVX2 Doubles noiseAt(Doubles xs, Doubles ys) {
        const Axis x = axisOf(xs);
        if (!holds(x.cell, ys)) {
            enter(x.cell, ys);
        }
        const Doubles lower = mix(mY.fade, mEdges[0].at(x), mEdges[1].at(x));
        const Doubles upper = mix(mY.fade, mEdges[2].at(x), mEdges[3].at(x));
        return _mm256_mul_pd(_mm256_add_pd(mix(mZ.fade, lower, upper), all(1.0)), all(0.5));
    }

private:
    TESSAVOY_TARGET_AVX2 bool holds(Words cellX, Doubles ys) const {
        const Words across = _mm256_xor_si256(cellX, mCellX);
        const Words down = _mm256_castpd_si256(_mm256_xor_pd(ys, mYs));
        const Words differences = _mm256_or_si256(across, down);
        return _mm256_testz_si256(differences, differences) != 0;
    }

    TESSAVOY_TARGET_AVX2 void enter(Words cellX, Doubles ys) {
        mCellX = cellX;
        mYs = ys;
        mY = axisOf(ys);
        const EntryPairs columns = entriesAt(mEntries, cellX);
        const EntryPairs a = entriesAt(mEntries, firstPlus(columns, mY.cell));
        const EntryPairs b = entriesAt(mEntries, secondPlus(columns, mY.cell));
        enterEdges(0, entriesAt(mEntries, firstPlus(a, mZ.cell)), entriesAt(mEntries, firstPlus(b, mZ.cell)), mY.place);
        enterEdges(1, entriesAt(mEntries, secondPlus(a, mZ.cell)), entriesAt(mEntries, secondPlus(b, mZ.cell)),
                   _mm256_sub_pd(mY.place, all(1.0)));
    }

    /// Both edges along x that lie dy away in y: at the slice's lower and upper z.
    TESSAVOY_TARGET_AVX2 void enterEdges(int down, EntryPairs left, EntryPairs right, Doubles dy) {
        const Doubles dz = mZ.place;
        const Doubles fromUpper = _mm256_sub_pd(dz, all(1.0));
        mEdges[down] = {cornerOf<0>(left, dy, dz), cornerOf<0>(right, dy, dz)};
        mEdges[2 + down] = {cornerOf<32>(left, dy, fromUpper), cornerOf<32>(right, dy, fromUpper)};
    }

    const std::uint32_t* mEntries;
    Axis mZ;
    Words mCellX;  ///< -1, which no cell is, until the first point
    Doubles mYs{};
    Axis mY{};
    Edge mEdges[4];  ///< by z and y
};

}  // namespace

TESSAVOY_TARGET_AVX2 int perlinSliceAvx2(const std::uint32_t* entries, const double* x, const double* y, double z,
                                         int count, double* out) {
    LatticeCells cells(entries, z);
    int done = 0;
    for (; count - done >= vectorLanes; done += vectorLanes) {
        _mm256_storeu_pd(out + done, cells.noiseAt(_mm256_loadu_pd(x + done), _mm256_loadu_pd(y + done)));
    }
    return done;
}

#else

int perlinSliceAvx2(const std::uint32_t*, const double*, const double*, double, int, double*) {
    return 0;
}

#endif

}  // namespace Tessavoy
