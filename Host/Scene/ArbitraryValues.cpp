#include "Host/Scene/ArbitraryValues.h"

#include <array>
#include <bit>
#include <cstdint>
#include <map>

#include "Host/LittleEndian.h"

namespace TessavoyHost {
namespace {

constexpr NumberRange unitRange{0, 1};

class FlatWriter {
public:
    void integer(std::int32_t value) { appendLittleEndian(mBytes, static_cast<std::uint32_t>(value)); }
    void real(float value) { appendLittleEndian(mBytes, std::bit_cast<std::uint32_t>(value)); }
    ArbitraryValue take() { return {std::move(mBytes)}; }

private:
    std::vector<std::byte> mBytes;
};

struct GradientStop {
    int kind;
    std::array<float, 4> color;
};

// Points by position, as the module keeps them. A position that is taken already is a problem.
template <class Point>
class PointMap {
public:
    void insert(const JsonNode& place, double position, const Point& point) {
        if (!mPoints.emplace(static_cast<float>(position), point).second) {
            place.problem("there is a point at " + numberInWords(position) + " already");
        }
    }
    const std::map<float, Point>& points() const { return mPoints; }
    std::int32_t count() const { return static_cast<std::int32_t>(mPoints.size()); }

private:
    std::map<float, Point> mPoints;
};

void readGradientPoint(const JsonNode& node, PointMap<GradientStop>& points) {
    const JsonObject object(node, {"t", "kind", "color"});
    const auto t = object.require("t");
    const auto kind = object.require("kind");
    const auto color = object.require("color");
    const auto position = t ? t->number(unitRange) : std::nullopt;
    const auto kindNumber = kind ? kind->word({"linear", "sin", "edge"}) : std::nullopt;
    const auto channels = color ? color->numbers(4, unitRange) : std::nullopt;
    if (position && kindNumber && channels) {
        GradientStop stop{*kindNumber, {}};
        for (std::size_t i = 0; i < stop.color.size(); ++i) {
            stop.color[i] = static_cast<float>((*channels)[i]);
        }
        points.insert(*t, *position, stop);
    }
}

ArbitraryValue flatGradient(const PointMap<GradientStop>& points) {
    FlatWriter flat;
    flat.integer(points.count());
    for (const auto& [position, stop] : points.points()) {
        flat.real(position);
        flat.integer(stop.kind);
        for (const float channel : stop.color) {
            flat.real(channel);
        }
    }
    return flat.take();
}

ArbitraryValue flatRamp(int mode, int interpolation, const PointMap<float>& points) {
    FlatWriter flat;
    flat.integer(mode);
    flat.integer(interpolation);
    flat.integer(points.count());
    for (const auto& [position, value] : points.points()) {
        flat.real(position);
        flat.real(value);
    }
    return flat.take();
}

}  // namespace

std::optional<ArbitraryValue> readGradient(const JsonNode& node) {
    const JsonObject object(node, {"points"});
    const auto list = object.require("points");
    const auto elements = list ? list->elements() : std::nullopt;
    if (!elements) {
        return std::nullopt;
    }
    PointMap<GradientStop> points;
    for (const auto& element : *elements) {
        readGradientPoint(element, points);
    }
    return flatGradient(points);
}

std::optional<ArbitraryValue> readRamp(const JsonNode& node) {
    const JsonObject object(node, {"mode", "interpolation", "points"});
    const auto modeNode = object.find("mode");
    const auto mode = modeNode ? modeNode->word({"all", "withoutSin"}) : std::optional<int>(0);
    const auto interpolationNode = object.require("interpolation");
    const auto interpolation =
        interpolationNode ? interpolationNode->word({"sin", "line", "step", "bezier"}) : std::nullopt;
    const auto list = object.require("points");
    const auto elements = list ? list->elements() : std::nullopt;
    if (!elements) {
        return std::nullopt;
    }
    PointMap<float> points;
    for (const auto& element : *elements) {
        if (const auto pair = element.numbers(2, unitRange)) {
            points.insert(element, (*pair)[0], static_cast<float>((*pair)[1]));
        }
    }
    if (!mode || !interpolation) {
        return std::nullopt;
    }
    return flatRamp(*mode, *interpolation, points);
}

}  // namespace TessavoyHost
