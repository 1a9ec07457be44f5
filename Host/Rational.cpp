#include "Host/Rational.h"

#include <cmath>
#include <limits>
#include <utility>

namespace TessavoyHost {
namespace {

constexpr double nearEnough = 1e-9;  // as a part of the number
constexpr int mostTerms = 40;        // doubles have no more that mean anything

}  // namespace

Rational nearestFraction(double value, std::int32_t greatestDen) {
    double num = 1, den = 0, numBefore = 0, denBefore = 1, rest = value;
    for (int term = 0; term < mostTerms; ++term) {
        const double whole = std::floor(rest);
        const double nextNum = whole * num + numBefore;
        const double nextDen = whole * den + denBefore;
        if (nextNum > std::numeric_limits<std::int32_t>::max() || nextDen > greatestDen) {
            break;
        }
        numBefore = std::exchange(num, nextNum);
        denBefore = std::exchange(den, nextDen);
        if (std::abs(num / den - value) <= nearEnough * value) {
            break;
        }
        rest = 1 / (rest - whole);
    }
    return {static_cast<std::int32_t>(num), static_cast<std::uint32_t>(den)};
}

}  // namespace TessavoyHost
