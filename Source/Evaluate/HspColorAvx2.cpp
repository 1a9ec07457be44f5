#include "Source/Evaluate/HspColorAvx2.h"

#include "Source/Evaluate/FourDoubles.h"

#include <limits>

namespace Tessavoy {

#if TESSAVOY_HAS_AVX2_CODE

namespace {

/// All bits of a lane set or none.
using Mask = __m256d;

/// The model's numbers, and channels, of four cells.
struct HspColors {
    Doubles hue, saturation, brightness;
};
struct Channels {
    Doubles red, green, blue;
};

TESSAVOY_TARGET_AVX2 inline Doubles choose(Mask mask, Doubles where, Doubles elsewhere) {
    return _mm256_blendv_pd(elsewhere, where, mask);
}

/// The operands stand so that NaN passes through.
TESSAVOY_TARGET_AVX2 inline Doubles clampToUnit(Doubles value) {
    return _mm256_max_pd(all(0.0), _mm256_min_pd(all(1.0), value));
}

/// A whole negative turn becomes 1, a whole positive one 0; whole turns are counted in 32 bits.
TESSAVOY_TARGET_AVX2 inline Doubles wrapped(Doubles hue) {
    using Limits = std::numeric_limits<int>;
    const Doubles whole = _mm256_round_pd(hue, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
    const Doubles counted = _mm256_min_pd(_mm256_max_pd(whole, all(Limits::min())), all(Limits::max()));
    const Mask negative = _mm256_cmp_pd(hue, all(0.0), _CMP_LT_OQ);
    return choose(negative, _mm256_add_pd(hue, _mm256_sub_pd(all(1.0), counted)), _mm256_sub_pd(hue, counted));
}

TESSAVOY_TARGET_AVX2 inline Mask notBelow(Doubles value, double limit) {
    return _mm256_cmp_pd(value, all(limit), _CMP_NLT_UQ);
}

/// For each cell which sixth of the hue circle it lies in: from[k] where it is the sixth number k or a later one.
struct Sectors {
    TESSAVOY_TARGET_AVX2 explicit Sectors(Doubles hue)
        : from{all(0.0),
               notBelow(hue, 1 / 6.0),
               notBelow(hue, 2 / 6.0),
               notBelow(hue, 3 / 6.0),
               notBelow(hue, 4 / 6.0),
               notBelow(hue, 5 / 6.0)} {}
    Mask from[6];  ///< number 0 is not used
};

/// Where the middle channel lies between the smallest (0) and the largest (1). It grows with the hue in the even
/// sectors, from their beginning, and falls in the odd ones, to their end.
TESSAVOY_TARGET_AVX2 inline Doubles positionAt(const Sectors& sectors, Doubles hue) {
    const auto& from = sectors.from;
    const Mask falling =
        _mm256_xor_pd(_mm256_xor_pd(_mm256_xor_pd(from[1], from[2]), _mm256_xor_pd(from[3], from[4])), from[5]);
    const Doubles corner =
        choose(from[5], all(1.0), choose(from[3], all(4 / 6.0), choose(from[1], all(2 / 6.0), all(0.0))));
    const Doubles distance = _mm256_sub_pd(choose(falling, corner, hue), choose(falling, hue, corner));
    return _mm256_mul_pd(all(6.0), distance);
}

/// What stands for the largest, the middle and the smallest channel of each cell.
struct Ranked {
    Doubles largest, middle, smallest;
};

TESSAVOY_TARGET_AVX2 inline Ranked weightsOf(const Sectors& sectors) {
    const auto& from = sectors.from;
    const Doubles red = all(hspWeights[0]);
    const Doubles green = all(hspWeights[1]);
    const Doubles blue = all(hspWeights[2]);
    const Doubles middle = choose(from[3], choose(from[5], blue, choose(from[4], red, green)),
                                  choose(from[2], blue, choose(from[1], red, green)));
    return {choose(from[5], red, choose(from[3], blue, choose(from[1], green, red))), middle,
            choose(from[4], green, choose(from[2], red, blue))};
}

TESSAVOY_TARGET_AVX2 inline Channels channelsOf(const Sectors& sectors, const Ranked& v) {
    const auto& from = sectors.from;
    const Doubles red = choose(from[4], choose(from[5], v.largest, v.middle),
                               choose(from[2], v.smallest, choose(from[1], v.middle, v.largest)));
    const Doubles green = choose(from[4], v.smallest, choose(from[3], v.middle, choose(from[1], v.largest, v.middle)));
    const Doubles blue = choose(from[5], v.middle, choose(from[3], v.largest, choose(from[2], v.middle, v.smallest)));
    return {red, green, blue};
}

/// ratio: of the smallest channel to the largest, above 0.
TESSAVOY_TARGET_AVX2 inline Ranked mixedColours(const Ranked& weights, Doubles position, Doubles ratio,
                                                Doubles brightness) {
    const Doubles one = all(1.0);
    const Doubles middle = _mm256_add_pd(one, _mm256_mul_pd(position, _mm256_sub_pd(_mm256_div_pd(one, ratio), one)));
    const Doubles largestPart = _mm256_div_pd(_mm256_div_pd(weights.largest, ratio), ratio);
    const Doubles middlePart = _mm256_mul_pd(_mm256_mul_pd(weights.middle, middle), middle);
    const Doubles sum = _mm256_add_pd(_mm256_add_pd(largestPart, middlePart), weights.smallest);
    const Doubles smallest = _mm256_div_pd(brightness, _mm256_sqrt_pd(sum));
    const Doubles largest = _mm256_div_pd(smallest, ratio);
    return {largest, _mm256_add_pd(smallest, _mm256_mul_pd(position, _mm256_sub_pd(largest, smallest))), smallest};
}

/// Without a smallest channel.
TESSAVOY_TARGET_AVX2 inline Ranked pureColours(const Ranked& weights, Doubles position, Doubles brightness) {
    const Doubles sum =
        _mm256_add_pd(weights.largest, _mm256_mul_pd(_mm256_mul_pd(weights.middle, position), position));
    const Doubles largest = _mm256_sqrt_pd(_mm256_div_pd(_mm256_mul_pd(brightness, brightness), sum));
    return {largest, _mm256_mul_pd(largest, position), all(0.0)};
}

TESSAVOY_TARGET_AVX2 inline Channels toRgb(const HspColors& colors) {
    const Sectors sectors(colors.hue);
    const Ranked weights = weightsOf(sectors);
    const Doubles position = positionAt(sectors, colors.hue);
    const Doubles ratio = _mm256_sub_pd(all(1.0), colors.saturation);
    const Mask mixed = _mm256_cmp_pd(ratio, all(0.0), _CMP_GT_OQ);
    const Ranked values = mixedColours(weights, position, ratio, colors.brightness);
    if (_mm256_movemask_pd(mixed) == 0xF) {
        return channelsOf(sectors, values);
    }
    const Ranked pure = pureColours(weights, position, colors.brightness);
    return channelsOf(sectors, {choose(mixed, values.largest, pure.largest), choose(mixed, values.middle, pure.middle),
                                choose(mixed, values.smallest, pure.smallest)});
}

/// The same channels for all cells.
TESSAVOY_TARGET_AVX2 inline Channels everywhere(const std::array<double, 3>& rgb) {
    return {all(rgb[0]), all(rgb[1]), all(rgb[2])};
}

TESSAVOY_TARGET_AVX2 inline Channels choose(Mask mask, const Channels& where, const Channels& elsewhere) {
    return {choose(mask, where.red, elsewhere.red), choose(mask, where.green, elsewhere.green),
            choose(mask, where.blue, elsewhere.blue)};
}

TESSAVOY_TARGET_AVX2 inline void storeOpaque(const Channels& channels, std::array<float, 4>* out) {
    __m128 first = _mm256_cvtpd_ps(channels.red);
    __m128 second = _mm256_cvtpd_ps(channels.green);
    __m128 third = _mm256_cvtpd_ps(channels.blue);
    __m128 fourth = _mm_set1_ps(1.0F);
    _MM_TRANSPOSE4_PS(first, second, third, fourth);
    _mm_storeu_ps(out[0].data(), first);
    _mm_storeu_ps(out[1].data(), second);
    _mm_storeu_ps(out[2].data(), third);
    _mm_storeu_ps(out[3].data(), fourth);
}

TESSAVOY_TARGET_AVX2 inline Mask isZero(Doubles value) {
    return _mm256_cmp_pd(value, all(0.0), _CMP_EQ_OQ);
}

}  // namespace

TESSAVOY_TARGET_AVX2 int shiftedColorsAvx2(const std::array<double, 3>& base, const HspShifts& shifts, int count,
                                           std::array<float, 4>* out) {
    const HspColor inModel = toHsp(base[0], base[1], base[2]);
    int done = 0;
    for (; count - done >= vectorLanes; done += vectorLanes) {
        const Doubles brightness = _mm256_mul_pd(_mm256_loadu_pd(shifts.brightness + done), all(0.01));
        const Doubles hue = _mm256_div_pd(_mm256_loadu_pd(shifts.hue + done), all(360.0));
        const Doubles saturation = _mm256_mul_pd(_mm256_loadu_pd(shifts.saturation + done), all(0.01));
        const Mask unshifted = _mm256_and_pd(_mm256_and_pd(isZero(brightness), isZero(hue)), isZero(saturation));
        const Channels shifted = toRgb({wrapped(_mm256_add_pd(all(inModel.hue), hue)),
                                        clampToUnit(_mm256_add_pd(all(inModel.saturation), saturation)),
                                        clampToUnit(_mm256_add_pd(all(inModel.brightness), brightness))});
        storeOpaque(choose(unshifted, everywhere(base), shifted), out + done);
    }
    return done;
}

#else

int shiftedColorsAvx2(const std::array<double, 3>&, const HspShifts&, int, std::array<float, 4>*) {
    return 0;
}

#endif

}  // namespace Tessavoy
