#pragma once

#include "Host/Project.h"
#include "HostInterface/Types.h"

namespace TessavoyHost {

// The composition's clock as the module sees it: units of 1 / scale seconds, step units a frame, and the effect layer
// begins at start units of the composition.
struct TimeBase {
    A_u_long scale = 1;
    A_long step = 1;
    A_long start = 0;  // of the effect layer

    TimeBase() = default;
    // Throws HostError when 32 bits don't hold the start.
    TimeBase(const Composition& composition, double layerStart);

    // A frame of the composition in layer time.
    A_long layerTimeOf(int frame) const { return frame * step - start; }
    // Layer time, in units of 1 / timeScale, to composition seconds.
    double compositionSeconds(A_long layerTime, A_u_long timeScale) const;
};

// Seconds in units of 1 / scale, rounded half away from zero. Throws HostError when 32 bits don't hold them.
A_long clockUnits(double seconds, A_u_long scale);

// Seconds as a fraction: over the scale where that is exact and fits 32 bits, otherwise the nearest fraction with a
// small denominator. Throws HostError when not even whole seconds fit.
A_Time toTime(double seconds, A_u_long scale);

double seconds(const A_Time& time);

// Moments that are no further apart, in seconds, are one. Times are multiples of a frame, computed and typed in
// floating point.
inline constexpr double sameMoment = 1e-6;

}  // namespace TessavoyHost
