#pragma once

#include <cstddef>

#include "Host/Project.h"

namespace TessavoyHost {

// Where a moment falls among the keys of a track: between left and right, with the eased share of right. Outside of the
// keys and where nothing blends left is right and the share 0.
struct KeySpan {
    std::size_t left = 0;
    std::size_t right = 0;
    double share = 0;
};

// The track must have a key. A moment just before a key (see sameMoment) is the key's own. Without blending every
// stretch holds.
KeySpan locate(const ParameterTrack& track, double time, bool blending = true);

// Numbers, colours and points by component, colours rounded to bytes; values of different or other kinds hold the left.
ParameterValue blend(const ParameterValue& left, const ParameterValue& right, double share);

// The value of a track with keys at a moment in composition seconds.
ParameterValue valueAt(const ParameterTrack& track, double time, bool blending = true);

}  // namespace TessavoyHost
