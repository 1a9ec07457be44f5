#include "Tests/Support/ReferenceGradient.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Tests/Support/FlatBytes.h"

namespace Tessavoy {

std::vector<std::byte> flatGradient(const std::vector<GradientStop>& stops) {
    std::vector<std::byte> bytes;
    appendNumber(bytes, static_cast<std::int32_t>(stops.size()));
    for (const GradientStop& stop : stops) {
        appendNumber(bytes, static_cast<float>(stop.position));
        appendNumber(bytes, static_cast<std::int32_t>(stop.kind));
        for (const double channel : stop.colour) {
            appendNumber(bytes, static_cast<float>(channel));
        }
    }
    return bytes;
}

ReferenceColour gradientAt(const std::vector<GradientStop>& stops, double place) {
    const auto after =
        std::find_if(stops.begin(), stops.end(), [&](const auto& stop) { return stop.position > place; });
    if (after == stops.begin() || after == stops.end()) {
        return after == stops.begin() ? stops.front().colour : stops.back().colour;
    }
    const GradientStop& before = *(after - 1);
    double part = (place - before.position) / (after->position - before.position);
    if (before.kind == StopKind::Edge) {
        return before.colour;
    }
    if (before.kind == StopKind::Soft) {
        const double half = std::sin(part * std::numbers::pi / 2.0);
        part = 0.7 * half * half + 0.3 * part;
    }
    ReferenceColour result;
    for (std::size_t n = 0; n < 4; ++n) {
        result[n] = before.colour[n] + (after->colour[n] - before.colour[n]) * part;
    }
    return result;
}

}  // namespace Tessavoy
