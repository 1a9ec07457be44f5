#pragma once

#include <emmintrin.h>

namespace Tessavoy {

/// Four single-precision numbers that are worked on side by side. Each one is computed as it would be alone.
struct FloatQuad {
    __m128 lanes;

    static FloatQuad load(const float* four) { return {_mm_loadu_ps(four)}; }
    static FloatQuad all(float number) { return {_mm_set1_ps(number)}; }
    static FloatQuad of(float a, float b, float c, float d) { return {_mm_setr_ps(a, b, c, d)}; }

    void store(float* four) const { _mm_storeu_ps(four, lanes); }

    FloatQuad first() const { return {_mm_shuffle_ps(lanes, lanes, _MM_SHUFFLE(0, 0, 0, 0))}; }
    FloatQuad second() const { return {_mm_shuffle_ps(lanes, lanes, _MM_SHUFFLE(1, 1, 1, 1))}; }

    /// The last two numbers in the place of the first two.
    FloatQuad upperHalf() const { return {_mm_movehl_ps(lanes, lanes)}; }

    friend FloatQuad operator+(FloatQuad a, FloatQuad b) { return {_mm_add_ps(a.lanes, b.lanes)}; }
    friend FloatQuad operator*(FloatQuad a, FloatQuad b) { return {_mm_mul_ps(a.lanes, b.lanes)}; }
};

/// Whether eight numbers have the same bits as eight others.
inline bool sameBits(const float* a, const float* b) {
    const auto load = [](const float* four) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(four)); };
    const __m128i low = _mm_cmpeq_epi32(load(a), load(b));
    const __m128i high = _mm_cmpeq_epi32(load(a + 4), load(b + 4));
    return _mm_movemask_epi8(_mm_and_si128(low, high)) == 0xFFFF;
}

}  // namespace Tessavoy
