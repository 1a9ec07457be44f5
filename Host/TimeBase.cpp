#include "Host/TimeBase.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

constexpr std::int32_t largestScale = 1'000'000;
constexpr double exactEnough = 1e-9;

bool fits(double units) {
    return std::abs(units) <= INT32_MAX;
}

[[noreturn]] void refuse(double seconds, A_u_long scale) {
    throw HostError(ExitStatus::Scene, std::to_string(seconds) + " seconds are more than the host's clock holds at " +
                                           std::to_string(scale) + " units a second");
}

}  // namespace

TimeBase::TimeBase(const Composition& composition, double layerStart)
    : scale(static_cast<A_u_long>(composition.frameRate.num)),
      step(static_cast<A_long>(composition.frameRate.den)),
      start(clockUnits(layerStart, scale)) {}

double TimeBase::compositionSeconds(A_long layerTime, A_u_long timeScale) const {
    if (timeScale == scale)  // so that a frame's time is rounded once, as the time of a key that is typed for it
        return static_cast<double>(std::int64_t{layerTime} + start) / scale;
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
    const Rational time = nearestFraction(std::abs(seconds), largestScale);
    return {seconds < 0 ? -time.num : time.num, time.den};
}

double seconds(const A_Time& time) {
    return static_cast<double>(time.value) / time.scale;
}

}  // namespace TessavoyHost
