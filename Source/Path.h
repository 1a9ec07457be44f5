#pragma once

#include "HostInterface/Effect.h"

#include <map>

namespace Tessavoy {

/// A point in the host's path coordinates: pixels of the downsampled layer, y downwards.
struct PathPoint {
    double x = 0;
    double y = 0;
};

/// A mask's path flattened to points that lie about one step apart, each keyed by its distance along the path. Once
/// built it needs no host. Open and closed paths are not told apart: the path ends where its last segment does.
class PathTable {
public:
    using Points = std::map<double, PathPoint>;

    /// A table without points, of length 0.
    PathTable() = default;

    /// Flattens the path at the in-data's current time. `step`, above 0, is the wanted distance between points in
    /// pixels; a segment has the truncation of its rough length / step, plus 1, of them.
    ///
    /// A failing host call throws Exception with the host's code, and a missing suite the plain integer 516
    /// (PF_Err_BAD_CALLBACK_PARAM); the path and the running segment are given back first. A negative number of
    /// segments stops the process.
    ///
    /// Lengths that no path has are held to some that the table can bear: NaN and negative ones count as 0, those above
    /// 1e298 as 1e298, and a segment has 2^20 points at most, which 5e6 pixels would need at a step of 5.
    static PathTable build(PF_InData* inData, A_u_long pathId, double step);

    /// The point at a fraction of the length, between the two nearest points of the table. A fraction below 0 gives the
    /// first point, one of 1 or above the last; NaN gives the last too, as no key is greater than it. 0, 0 when there
    /// are no points.
    PathPoint sample(double part) const;

    /// By distance along the path in pixels, rising from 0; the last key is the length up to rounding.
    const Points& points() const { return mPoints; }
    double length() const { return mLength; }

private:
    Points mPoints;
    double mLength = 0;
};

/// The tables of one frame by the host's path id.
using PathTableCache = std::map<A_u_long, PathTable>;

}  // namespace Tessavoy
