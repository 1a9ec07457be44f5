#pragma once

#include "HostInterface/Types.h"
#include "Source/Editors/PositionMap.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace Tessavoy {

// What the editors of gradients and ramps have in common: points on an axis of the control, counted by rank, the place
// in ascending order from 0.

/// A place in the panel, pixels, y downwards.
struct PanelPlace {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

/// A press of the mouse on a control.
struct ControlClick {
    PanelPlace place;
    std::int32_t count = 1;     ///< 2 is a double click
    bool withModifier = false;  ///< Command or Control is held
};

/// What a control's axes leave free on each side of its frame, pixels.
inline constexpr std::int32_t axisMargin = 6;

/// One axis of a control: pixels of the panel from where 0 lies to where 1 lies. Its start must be before its end.
class ControlAxis {
public:
    /// The axis between two edges of a frame, a margin inside them.
    ControlAxis(std::int32_t firstEdge, std::int32_t lastEdge)
        : mStart(firstEdge + axisMargin), mEnd(lastEdge - axisMargin) {}

    /// Whether the frame leaves any length to it; there are no positions otherwise.
    bool hasLength() const { return mStart < mEnd; }

    std::int32_t start() const { return mStart; }
    std::int32_t end() const { return mEnd; }
    float span() const { return static_cast<float>(mEnd - mStart); }

    /// The position at a pixel moved by `grab`; beyond 0..1 where that is outside the axis.
    float positionAt(std::int32_t pixel, std::int32_t grab = 0) const {
        const std::int64_t distance = std::int64_t{grab} + pixel - mStart;
        return static_cast<float>(distance) / span();
    }

    /// The same, brought into 0..1.
    float clampedPositionAt(std::int32_t pixel, std::int32_t grab) const {
        return std::clamp(positionAt(pixel, grab), 0.0f, 1.0f);
    }

    /// How far the whole pixel of a position is from the one where it was grabbed. The position is one that the axis
    /// has at a pixel nearby.
    std::int32_t grabOffset(float position, std::int32_t pixel) const {
        return static_cast<std::int32_t>(position * span()) + mStart - pixel;
    }

    /// Points closer than this to a click are hit: 10 pixels, as a difference of positions.
    float hitRadius() const { return 10.0f / span(); }

private:
    std::int32_t mStart;
    std::int32_t mEnd;
};

/// The point of a rank; the end for a rank that no point has.
template <class Value>
typename PositionMap<Value>::iterator pointOfRank(PositionMap<Value>& points, std::int32_t rank) {
    const bool known = rank >= 0 && static_cast<std::size_t>(rank) < points.size();
    return known ? std::next(points.begin(), rank) : points.end();
}

template <class Value>
std::int32_t rankOf(const PositionMap<Value>& points, typename PositionMap<Value>::const_iterator point) {
    return static_cast<std::int32_t>(std::distance(points.begin(), point));
}

/// Puts a point where it is dragged to, or, where that is taken, beside: steps of 0.001 towards the middle of the axis
/// until a position is free. Returns its rank.
template <class Value>
std::int32_t placePoint(PositionMap<Value>& points, float position, const Value& value) {
    const float step = position < 0.5f ? 0.001f : -0.001f;
    while (points.contains(position)) {
        position += step;
    }
    return rankOf<Value>(points, points.emplace(position, value).first);
}

}  // namespace Tessavoy
