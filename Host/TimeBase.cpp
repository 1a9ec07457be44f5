#include "Host/TimeBase.h"

#include <cmath>
#include <cstdint>

namespace TessavoyHost {
namespace {

constexpr double largestScale = 1e6;
constexpr double exactEnough = 1e-9;

// Continued fraction of a number that is not negative, cut off before the denominator passes the largest scale.
A_Time nearestFraction(double number) {
    double before[2] = {0, 1};  // numerators of the last two convergents, the older first
    double below[2] = {1, 0};   // their denominators
    double rest = number;
    for (int term = 0; term < 40; ++term) {
        const double whole = std::floor(rest);
        const double numerator = whole * before[1] + before[0];
        const double denominator = whole * below[1] + below[0];
        if (denominator > largestScale || numerator > INT32_MAX)
            break;
        before[0] = before[1];
        before[1] = numerator;
        below[0] = below[1];
        below[1] = denominator;
        if (std::abs(numerator / denominator - number) <= exactEnough * number || rest == whole)
            break;
        rest = 1 / (rest - whole);
    }
    return {static_cast<A_long>(before[1]), static_cast<A_u_long>(below[1])};
}

}  // namespace

TimeBase::TimeBase(const Composition& composition, double layerStart)
    : scale(static_cast<A_u_long>(composition.frameRate.num)),
      step(static_cast<A_long>(composition.frameRate.den)),
      start(static_cast<A_long>(std::lround(layerStart * scale))) {}

double TimeBase::compositionSeconds(A_long layerTime, A_u_long timeScale) const {
    return static_cast<double>(layerTime) / timeScale + static_cast<double>(start) / scale;
}

A_Time toTime(double seconds, A_u_long scale) {
    const double units = seconds * scale;
    if (std::abs(units - std::round(units)) <= exactEnough * std::max(1.0, std::abs(units)))
        return {static_cast<A_long>(std::lround(units)), scale};
    A_Time time = nearestFraction(std::abs(seconds));
    if (seconds < 0)
        time.value = -time.value;
    return time;
}

double seconds(const A_Time& time) {
    return static_cast<double>(time.value) / time.scale;
}

}  // namespace TessavoyHost
