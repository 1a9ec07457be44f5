#include "Source/Editors/RampData.h"

#include "Source/Editors/FlatData.h"
#include "Source/Editors/WordStream.h"

#include <array>
#include <cmath>
#include <iterator>

namespace Tessavoy {

namespace {

constexpr std::string_view textWord = "Ramp";
constexpr std::array<std::string_view, 2> modeWords = {"all", "withoutSin"};
constexpr std::array<std::string_view, 4> interpolationWords = {"sin", "line", "step", "bezier"};
constexpr std::size_t flatHeaderBytes = 12;
constexpr std::size_t flatPointBytes = 8;

/// Positions closer than this count as reached when the curve is searched.
constexpr float positionTolerance = 0.0001f;
constexpr int searchDepth = 5;

using PointIterator = PositionMap<float>::const_iterator;

struct CurvePoint {
    float x;
    float y;
};

CurvePoint curvePoint(PointIterator point) {
    return {point->first, point->second};
}

float distance(CurvePoint from, CurvePoint to) {
    const float dx = to.x - from.x;
    const float dy = to.y - from.y;
    return std::sqrt(dx * dx + dy * dy);
}

/// `start` moved by `scale` times the way from `from` to `to`.
CurvePoint moved(CurvePoint start, CurvePoint from, CurvePoint to, float scale) {
    return {start.x + (to.x - from.x) * scale, start.y + (to.y - from.y) * scale};
}

/// Four numbers of a cubic curve: one coordinate of its end and control points.
struct Cubic {
    float p0, p1, p2, p3;

    float at(float v) const {
        const float rest = 1.0f - v;
        return rest * rest * rest * p0 + 3.0f * rest * rest * v * p1 + 3.0f * rest * v * v * p2 + v * v * v * p3;
    }
};

/// A stretch of the curve: curve parameters v and the positions x there.
struct Stretch {
    float lowV, lowX, highV, highX;
};

/// Bisects the stretch a few times, then takes a linear step.
float searchStretch(const Cubic& x, Stretch stretch, float t) {
    for (int depth = 1;; ++depth) {
        if (stretch.lowX + positionTolerance >= t) {
            return stretch.lowV;
        }
        if (t >= stretch.highX - positionTolerance) {
            return stretch.highV;
        }
        if (depth >= searchDepth) {
            break;
        }
        const float v = (stretch.lowV + stretch.highV) * 0.5f;
        const float position = x.at(v);
        stretch = position > t ? Stretch{stretch.lowV, stretch.lowX, v, position}
                               : Stretch{v, position, stretch.highV, stretch.highX};
    }
    const float part = (t - stretch.lowX) / (stretch.highX - stretch.lowX);
    return stretch.lowV + part * (stretch.highV - stretch.lowV);
}

/// The curve parameter at which the curve's position is `t`.
float curveParameter(const Cubic& x, float t) {
    if (x.p0 + positionTolerance >= t) {
        return 0.0f;
    }
    if (t >= x.p3 - positionTolerance) {
        return 1.0f;
    }
    const float middle = x.at(0.5f);
    return searchStretch(x, middle > t ? Stretch{0.0f, x.p0, 0.5f, middle} : Stretch{0.5f, middle, 1.0f, x.p3}, t);
}

float evaluateBezier(const PositionMap<float>& points, PointIterator from, PointIterator to, float t) {
    const CurvePoint p1 = curvePoint(from);
    const CurvePoint p2 = curvePoint(to);
    const CurvePoint p0 = from == points.begin() ? p1 : curvePoint(std::prev(from));
    const CurvePoint p3 = std::next(to) == points.end() ? p2 : curvePoint(std::next(to));

    const float length = distance(p1, p2);
    const float tension = length * 0.3f;
    const CurvePoint c1 = moved(p1, p0, p2, tension / (distance(p0, p1) + length));
    const CurvePoint c2 = moved(p2, p3, p1, tension / (distance(p2, p3) + length));

    const float v = curveParameter(Cubic{p1.x, c1.x, c2.x, p2.x}, t);
    return Cubic{p1.y, c1.y, c2.y, p2.y}.at(v);
}

float evaluateBetween(const RampData& ramp, PointIterator from, PointIterator to, float t) {
    const float u = (t - from->first) / (to->first - from->first);
    const float rise = to->second - from->second;
    switch (ramp.interpolation) {
        case RampInterpolationSin:
            return (0.5f - std::cos(u * 3.1415927f) * 0.5f) * rise + from->second;
        case RampInterpolationLine:
            return rise * u + from->second;
        case RampInterpolationStep:
            return from->second;
        case RampInterpolationBezier:
            return evaluateBezier(ramp.points, from, to, t);
        default:
            return 1.0f;
    }
}

float evaluateUnclamped(const RampData& ramp, float t) {
    const auto& points = ramp.points;
    if (points.empty()) {
        return 1.0f;
    }
    const auto after = firstPointAfter(points, t);
    if (after == points.begin()) {
        return after->second;
    }
    if (after == points.end()) {
        return std::prev(points.end())->second;
    }
    return evaluateBetween(ramp, std::prev(after), after, t);
}

void writeInterpolation(std::ostream& stream, std::int32_t interpolation) {
    if (interpolation >= 0 && static_cast<std::size_t>(interpolation) < interpolationWords.size()) {
        stream << interpolationWords[static_cast<std::size_t>(interpolation)];
    } else {
        stream << interpolation;
    }
}

/// Takes one of `choices` into `number`, its place in the list; false if the word is another. The text may end here.
template <std::size_t Count>
bool scanChoice(WordStream& words, const std::array<std::string_view, Count>& choices, std::int32_t& number) {
    if (words.atEnd()) {
        return true;
    }
    const auto choice = words.choice(choices);
    number = choice.value_or(number);
    return choice.has_value();
}

bool scanPoint(WordStream& words, RampData& ramp) {
    const auto position = words.labelled("t");
    const auto value = words.labelled("v");
    if (!position || !value) {
        return false;
    }
    ramp.points.insert_or_assign(*position, *value);
    return true;
}

}  // namespace

RampData defaultRamp(std::int32_t mode) {
    const auto interpolation = mode == RampModeWithoutSin ? RampInterpolationLine : RampInterpolationSin;
    return RampData{mode, interpolation, {{0.0f, 1.0f}, {1.0f, 1.0f}}};
}

float EvaluateRamp(const RampData& ramp, float t) {
    const float value = evaluateUnclamped(ramp, t);
    if (!(value > 0.0f)) {
        return 0.0f;
    }
    return value < 1.0f ? value : 1.0f;
}

std::uint32_t flatSize(const RampData& ramp) {
    return static_cast<std::uint32_t>(flatHeaderBytes + flatPointBytes * ramp.points.size());
}

std::vector<std::byte> flatten(const RampData& ramp) {
    std::vector<std::byte> flat;
    flat.reserve(flatSize(ramp));
    appendFlat(flat, ramp.mode);
    appendFlat(flat, ramp.interpolation);
    appendFlat(flat, static_cast<std::int32_t>(ramp.points.size()));
    for (const auto& [position, value] : ramp.points) {
        appendFlat(flat, position);
        appendFlat(flat, value);
    }
    return flat;
}

bool unflatten(std::span<const std::byte> flat, RampData& ramp) {
    if (flat.size() < flatHeaderBytes) {
        return false;
    }
    ramp.mode = readFlat<std::int32_t>(flat, 0);
    ramp.interpolation = readFlat<std::int32_t>(flat, 4);
    ramp.points.clear();
    const auto count = readFlat<std::int32_t>(flat, 8);
    return readRecords(flat, flatHeaderBytes, count, flatPointBytes, [&](std::size_t offset) {
        ramp.points.insert_or_assign(readFlat<float>(flat, offset), readFlat<float>(flat, offset + 4));
    });
}

std::string printText(const RampData& ramp) {
    auto stream = classicTextStream();
    stream << textWord << " " << modeWords[ramp.mode == RampModeWithoutSin ? 1 : 0] << " "
           << " ";
    writeInterpolation(stream, ramp.interpolation);
    stream << " ";
    for (const auto& [position, value] : ramp.points) {
        stream << " t " << position << " v " << value;
    }
    return stream.str();
}

bool scanText(std::string_view text, RampData& ramp) {
    WordStream words(text);
    return words.word(textWord) && scanChoice(words, modeWords, ramp.mode) &&
           scanChoice(words, interpolationWords, ramp.interpolation) &&
           words.groups([&] { return scanPoint(words, ramp); });
}

RampData interpolate(const RampData& first, const RampData& second, double t) {
    const auto mix = [t](float left, float right) { return mixSingle(left, right, t); };
    const auto fade = [](float value, double weight) { return mixSingle(0.0f, value, weight); };
    return RampData{first.mode, first.interpolation, interpolateByRank(first.points, second.points, t, mix, fade)};
}

bool sameValue(const RampData& left, const RampData& right) {
    return left.mode == right.mode && left.interpolation == right.interpolation &&
           samePoints(left.points, right.points, sameWithinTolerance);
}

}  // namespace Tessavoy
