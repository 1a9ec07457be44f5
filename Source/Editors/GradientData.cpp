#include "Source/Editors/GradientData.h"

#include "Source/Editors/FlatData.h"
#include "Source/Editors/WordStream.h"

#include <array>
#include <cmath>
#include <iterator>

namespace Tessavoy {

namespace {

constexpr std::string_view textWord = "Gradient";
constexpr std::array<std::string_view, 3> kindWords = {"linear", "sin", "edge"};
constexpr std::size_t flatHeaderBytes = 4;
constexpr std::size_t flatPointBytes = 24;

void takeColor(const GradientPoint& point, float color[4]) {
    color[0] = point.r;
    color[1] = point.g;
    color[2] = point.b;
    color[3] = point.a;
}

void takePoint(const GradientPoint& point, float color[4], std::int32_t* kind) {
    takeColor(point, color);
    if (kind != nullptr) {
        *kind = point.kind;
    }
}

float easeSin(float u) {
    return (0.5f - std::cos(u * 3.1415927f) * 0.5f) * 0.7f + u * 0.3f;
}

void blend(const GradientPoint& from, const GradientPoint& to, float u, float color[4]) {
    const float rest = 1.0f - u;
    color[0] = u * to.r + rest * from.r;
    color[1] = u * to.g + rest * from.g;
    color[2] = u * to.b + rest * from.b;
    color[3] = u * to.a + rest * from.a;
}

std::string_view kindWord(std::int32_t kind) {
    const bool known = kind >= 0 && static_cast<std::size_t>(kind) < kindWords.size();
    return kindWords[known ? static_cast<std::size_t>(kind) : 0];
}

/// Reads one point; false, with the gradient left alone, when it is not whole or holds a wrong word.
bool scanPoint(WordStream& words, GradientData& gradient) {
    const auto position = words.labelled("t");
    const auto kind = words.choice(kindWords);
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

void EvaluateGradient(const GradientData& gradient, float t, float color[4], std::int32_t* kind) {
    const auto& points = gradient.points;
    if (points.empty()) {
        takePoint(GradientPoint{GradientKindSin, 0.0f, 0.0f, 0.0f, 1.0f}, color, kind);
        return;
    }

    const auto after = firstPointAfter(points, t);
    if (after == points.begin()) {
        takePoint(after->second, color, kind);
        return;
    }
    if (after == points.end()) {
        takePoint(std::prev(points.end())->second, color, kind);
        return;
    }

    // t now lies between two points, or on the first of them
    const auto before = std::prev(after);
    const GradientPoint& from = before->second;
    if (from.kind == GradientKindEdge) {
        takePoint(from, color, kind);
        return;
    }
    const float u = (t - before->first) / (after->first - before->first);
    blend(from, after->second, from.kind == GradientKindSin ? easeSin(u) : u, color);
}

std::uint32_t flatSize(const GradientData& gradient) {
    return static_cast<std::uint32_t>(flatHeaderBytes + flatPointBytes * gradient.points.size());
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
    if (flat.size() < flatHeaderBytes) {
        return false;
    }
    gradient.points.clear();
    const auto count = readFlat<std::int32_t>(flat, 0);
    return readRecords(flat, flatHeaderBytes, count, flatPointBytes, [&](std::size_t offset) {
        const GradientPoint point{readFlat<std::int32_t>(flat, offset + 4), readFlat<float>(flat, offset + 8),
                                  readFlat<float>(flat, offset + 12), readFlat<float>(flat, offset + 16),
                                  readFlat<float>(flat, offset + 20)};
        InsertPoint(gradient, readFlat<float>(flat, offset), point);
    });
}

std::string printText(const GradientData& gradient) {
    auto stream = classicTextStream();
    stream << textWord;
    for (const auto& [position, point] : gradient.points) {
        stream << " t " << position << " " << kindWord(point.kind) << " ";
        stream << " r " << point.r << " g " << point.g << " b " << point.b << " a " << point.a;
    }
    return stream.str();
}

bool scanText(std::string_view text, GradientData& gradient) {
    WordStream words(text);
    return words.word(textWord) && words.groups([&] { return scanPoint(words, gradient); });
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
