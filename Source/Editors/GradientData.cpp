#include "Source/Editors/GradientData.h"

#include <array>
#include <cmath>
#include <iterator>

#include "Source/Editors/FlatData.h"
#include "Source/Editors/WordStream.h"

namespace Tessavoy {

namespace {

constexpr std::string_view TextWord = "Gradient";
constexpr std::array<std::string_view, 3> KindWords = {"linear", "sin", "edge"};
constexpr std::size_t FlatHeaderBytes = 4;
constexpr std::size_t FlatPointBytes = 24;

void takeColour(const GradientPoint& point, float colour[4]) {
    colour[0] = point.r;
    colour[1] = point.g;
    colour[2] = point.b;
    colour[3] = point.a;
}

void takePoint(const GradientPoint& point, float colour[4], std::int32_t* kind) {
    takeColour(point, colour);
    if (kind != nullptr) {
        *kind = point.kind;
    }
}

float easeSin(float u) {
    return (0.5f - std::cos(u * 3.1415927f) * 0.5f) * 0.7f + u * 0.3f;
}

void blend(const GradientPoint& from, const GradientPoint& to, float u, float colour[4]) {
    const float rest = 1.0f - u;
    colour[0] = u * to.r + rest * from.r;
    colour[1] = u * to.g + rest * from.g;
    colour[2] = u * to.b + rest * from.b;
    colour[3] = u * to.a + rest * from.a;
}

std::string_view kindWord(std::int32_t kind) {
    const bool known = kind >= 0 && static_cast<std::size_t>(kind) < KindWords.size();
    return KindWords[known ? static_cast<std::size_t>(kind) : 0];
}

/// Reads one point; false, with the gradient left alone, when it is not whole or holds a wrong word.
bool scanPoint(WordStream& words, GradientData& gradient) {
    const auto position = words.labelled("t");
    const auto kind = words.choice(KindWords);
    const auto r = words.labelled("r");
    const auto g = words.labelled("g");
    const auto b = words.labelled("b");
    const auto a = words.labelled("a");
    if (!position || !kind || !r || !g || !b || !a) {
        return false;
    }
    InsertPoint(gradient, *position, GradientPoint{*kind, *r, *g, *b, *a});
    return true;
}

bool samePoint(const GradientPoint& left, const GradientPoint& right) {
    return left.kind == right.kind && sameWithinTolerance(left.r, right.r) && sameWithinTolerance(left.g, right.g) &&
           sameWithinTolerance(left.b, right.b) && sameWithinTolerance(left.a, right.a);
}

}  // namespace

GradientData defaultGradient() {
    const GradientPoint white{GradientKindSin, 1.0f, 1.0f, 1.0f, 1.0f};
    return GradientData{{{0.0f, white}, {1.0f, white}}};
}

void InsertPoint(GradientData& gradient, float position, const GradientPoint& point) {
    gradient.points.insert_or_assign(position, point);
}

void EvaluateGradient(const GradientData& gradient, float t, float colour[4], std::int32_t* kind) {
    const auto& points = gradient.points;
    if (points.empty()) {
        takePoint(GradientPoint{GradientKindSin, 0.0f, 0.0f, 0.0f, 1.0f}, colour, kind);
        return;
    }

    const auto after = firstPointAfter(points, t);
    if (after == points.begin()) {
        takePoint(after->second, colour, kind);
        return;
    }
    if (after == points.end()) {
        takePoint(std::prev(points.end())->second, colour, kind);
        return;
    }

    // t now lies between two points, or on the first of them
    const auto before = std::prev(after);
    const GradientPoint& from = before->second;
    if (from.kind == GradientKindEdge) {
        takePoint(from, colour, kind);
        return;
    }
    const float u = (t - before->first) / (after->first - before->first);
    blend(from, after->second, from.kind == GradientKindSin ? easeSin(u) : u, colour);
}

std::uint32_t flatSize(const GradientData& gradient) {
    return static_cast<std::uint32_t>(FlatHeaderBytes + FlatPointBytes * gradient.points.size());
}

std::vector<std::byte> flatten(const GradientData& gradient) {
    std::vector<std::byte> flat;
    flat.reserve(flatSize(gradient));
    appendFlat(flat, static_cast<std::int32_t>(gradient.points.size()));
    for (const auto& [position, point] : gradient.points) {
        appendFlat(flat, position);
        appendFlat(flat, point.kind);
        appendFlat(flat, point.r);
        appendFlat(flat, point.g);
        appendFlat(flat, point.b);
        appendFlat(flat, point.a);
    }
    return flat;
}

bool unflatten(std::span<const std::byte> flat, GradientData& gradient) {
    if (flat.size() < FlatHeaderBytes) {
        return false;
    }
    gradient.points.clear();
    const auto count = readFlat<std::int32_t>(flat, 0);
    return readRecords(flat, FlatHeaderBytes, count, FlatPointBytes, [&](std::size_t offset) {
        const GradientPoint point{readFlat<std::int32_t>(flat, offset + 4), readFlat<float>(flat, offset + 8),
                                  readFlat<float>(flat, offset + 12), readFlat<float>(flat, offset + 16),
                                  readFlat<float>(flat, offset + 20)};
        InsertPoint(gradient, readFlat<float>(flat, offset), point);
    });
}

std::string printText(const GradientData& gradient) {
    auto stream = classicTextStream();
    stream << TextWord;
    for (const auto& [position, point] : gradient.points) {
        stream << " t " << position << " " << kindWord(point.kind) << " ";
        stream << " r " << point.r << " g " << point.g << " b " << point.b << " a " << point.a;
    }
    return stream.str();
}

bool scanText(std::string_view text, GradientData& gradient) {
    WordStream words(text);
    return words.word(TextWord) && words.groups([&] { return scanPoint(words, gradient); });
}

GradientData interpolate(const GradientData& first, const GradientData& second, double t) {
    const auto mix = [t](const GradientPoint& left, const GradientPoint& right) {
        return GradientPoint{left.kind, mixSingle(left.r, right.r, t), mixSingle(left.g, right.g, t),
                             mixSingle(left.b, right.b, t), mixSingle(left.a, right.a, t)};
    };
    const auto fade = [](const GradientPoint& point, double weight) {
        return GradientPoint{GradientKindSin, mixSingle(0.0f, point.r, weight), mixSingle(0.0f, point.g, weight),
                             mixSingle(0.0f, point.b, weight), mixSingle(1.0f, point.a, weight)};
    };
    return GradientData{interpolateByRank(first.points, second.points, t, mix, fade)};
}

bool sameValue(const GradientData& left, const GradientData& right) {
    return samePoints(left.points, right.points, samePoint);
}

}  // namespace Tessavoy
