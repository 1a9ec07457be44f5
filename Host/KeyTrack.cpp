#include "Host/KeyTrack.h"

#include <algorithm>
#include <cmath>

#include "Host/TimeBase.h"

namespace TessavoyHost {
namespace {

double mix(double left, double right, double share) {
    return left + (right - left) * share;
}

std::uint8_t mix(std::uint8_t left, std::uint8_t right, double share) {
    return static_cast<std::uint8_t>(std::lround(mix(static_cast<double>(left), static_cast<double>(right), share)));
}

ColorValue mix(const ColorValue& left, const ColorValue& right, double share) {
    return {mix(left.red, right.red, share), mix(left.green, right.green, share), mix(left.blue, right.blue, share),
            mix(left.alpha, right.alpha, share)};
}

Point2 mix(const Point2& left, const Point2& right, double share) {
    return {mix(left.x, right.x, share), mix(left.y, right.y, share)};
}

Point3 mix(const Point3& left, const Point3& right, double share) {
    return {mix(left.x, right.x, share), mix(left.y, right.y, share), mix(left.z, right.z, share)};
}

struct Blender {
    double share;

    template <class Left, class Right>
    ParameterValue operator()(const Left& left, const Right& right) const {
        if constexpr (std::is_same_v<Left, Right> && requires { mix(left, right, share); })
            return mix(left, right, share);
        else
            return left;
    }
};

}  // namespace

KeySpan locate(const ParameterTrack& track, double time, bool blending) {
    const auto& keys = track.keys;
    const auto after = std::upper_bound(keys.begin(), keys.end(), time + sameMoment,
                                        [](double moment, const Key& key) { return moment < key.time; });
    const auto next = static_cast<std::size_t>(after - keys.begin());
    const std::size_t left = next == 0 ? 0 : next - 1;
    if (next == 0 || after == keys.end() || !blending || keys[left].ease == Ease::Hold)
        return {left, left, 0};
    const double u = std::max(0.0, (time - keys[left].time) / (keys[next].time - keys[left].time));
    return {left, next, keys[left].ease == Ease::Smooth ? u * u * (3 - 2 * u) : u};
}

ParameterValue blend(const ParameterValue& left, const ParameterValue& right, double share) {
    return std::visit(Blender{share}, left, right);
}

ParameterValue valueAt(const ParameterTrack& track, double time, bool blending) {
    const KeySpan span = locate(track, time, blending);
    const ParameterValue& left = track.keys[span.left].value;
    return span.share == 0 ? left : blend(left, track.keys[span.right].value, span.share);
}

}  // namespace TessavoyHost
