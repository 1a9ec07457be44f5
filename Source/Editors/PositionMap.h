#pragma once

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>

namespace Tessavoy {

/// Order of positions in a gradient or ramp: ascending, with a position that is not a number after all others.
///
/// Saved data may hold any bits. Plain `<` is no strict weak order once a NaN is among the keys, and would break the
/// map; here all NaNs are one key at the end, and 0 and -0 are one key as they are for `<`.
struct PositionOrder {
    bool operator()(float left, float right) const { return !std::isnan(left) && (std::isnan(right) || left < right); }
};

/// Points by position, nominally 0..1, unique, in ascending order.
template <class Value>
using PositionMap = std::map<float, Value, PositionOrder>;

/// The first point whose position is greater than `position`, or the end. A NaN is greater than nothing.
template <class Value>
typename PositionMap<Value>::const_iterator firstPointAfter(const PositionMap<Value>& points, float position) {
    const auto found = points.upper_bound(position);
    return found == points.end() || std::isnan(found->first) ? points.end() : found;
}

/// (1 - t) * first + t * second, in double precision, stored in single.
inline float mixSingle(float first, float second, double t) {
    return static_cast<float>((1.0 - t) * static_cast<double>(first) + t * static_cast<double>(second));
}

/// Whether two stored numbers are the same for a comparison of values: at most 0.0001 apart, or both not a number.
inline bool sameWithinTolerance(float left, float right) {
    const bool equal = left == right || (std::isnan(left) && std::isnan(right));
    return equal || std::abs(static_cast<double>(left) - static_cast<double>(right)) <= 0.0001;
}

/// Whether both maps have the same positions, exactly, and same(left, right) for the two values at each.
template <class Value, class Same>
bool samePoints(const PositionMap<Value>& left, const PositionMap<Value>& right, Same same) {
    return left.size() == right.size() && std::all_of(left.begin(), left.end(), [&](const auto& entry) {
               const auto found = right.find(entry.first);
               return found != right.end() && same(entry.second, found->second);
           });
}

/// Interpolates two maps of points, paired by rank and not by position: n-th with n-th, and what the longer map has
/// left with the last point of the shorter.
///
/// `mix(first, second)` blends two paired values at `t`. With one map empty, each point of the other keeps its
/// position and becomes `fade(value, weight)`, the weight being `t` for the second map and 1 - `t` for the first.
/// Points that meet at one position overwrite each other in order.
template <class Value, class Mix, class Fade>
PositionMap<Value> interpolateByRank(const PositionMap<Value>& first, const PositionMap<Value>& second, double t,
                                     Mix mix, Fade fade) {
    PositionMap<Value> result;
    if (first.empty() || second.empty()) {
        const double weight = first.empty() ? t : 1.0 - t;
        for (const auto& [position, value] : first.empty() ? second : first) {
            result.insert_or_assign(position, fade(value, weight));
        }
        return result;
    }

    auto left = first.begin();
    auto right = second.begin();
    while (true) {
        result.insert_or_assign(mixSingle(left->first, right->first, t), mix(left->second, right->second));
        const bool lastOfFirst = std::next(left) == first.end();
        const bool lastOfSecond = std::next(right) == second.end();
        if (lastOfFirst && lastOfSecond) {
            return result;
        }
        left = lastOfFirst ? left : std::next(left);
        right = lastOfSecond ? right : std::next(right);
    }
}

}  // namespace Tessavoy
