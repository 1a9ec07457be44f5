#include "Host/TimeBase.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

constexpr double largestScale = 1e6;
constexpr double exactEnough = 1e-9;

bool fits(double units) {
    return std::abs(units) <= INT32_MAX;
}

[[noreturn]] void refuse(double seconds, A_u_long scale) {
    throw HostError(ExitStatus::Scene, std::to_string(seconds) + " seconds are more than the host's clock holds at " +
                                           std::to_string(scale) + " units a second");
}

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
      start(clockUnits(layerStart, scale)) {}

double TimeBase::compositionSeconds(A_long layerTime, A_u_long timeScale) const {
    return static_cast<double>(layerTime) / timeScale + static_cast<double>(start) / scale;
}

A_long clockUnits(double seconds, A_u_long scale) {
    const double units = std::round(seconds * scale);
    if (!fits(units))
        refuse(seconds, scale);
    return static_cast<A_long>(units);
}

A_Time toTime(double seconds, A_u_long scale) {
    if (!fits(seconds))
        refuse(seconds, 1);
    const double units = seconds * scale;
    const bool isExact = std::abs(units - std::round(units)) <= exactEnough * std::max(1.0, std::abs(units));
    if (isExact && fits(std::round(units)))
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
