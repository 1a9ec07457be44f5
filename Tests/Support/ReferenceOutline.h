#pragma once

#include <complex>
#include <vector>

namespace Tessavoy {

/// Points of the picture's plane; a complex factor turns and scales them.
using ReferencePlane = std::complex<double>;

/// A closed outline that runs clockwise as seen with y downwards.
using ReferenceOutline = std::vector<ReferencePlane>;

/// The factor that turns by an angle, clockwise as seen with y downwards.
ReferencePlane turnBy(double degrees);

/// What shapes are made of, in units of their radius.
struct ReferenceShape {
    int corners = 4;
    double angle = 0.0;  ///< of the first corner; 0 is straight up, degrees
    double shelf = 0.0;  ///< length of the flat that each corner is widened to, across the corner's direction
    double link = 0.0;   ///< how far the middles of the sides move to the centre, where they stay
    double scaleX = 1.0, scaleY = 1.0;
    double rounding = 0.0;  ///< radius of rounded corners, measured on the scaled shape
    int roundingDots = 0;   ///< points of a rounded corner between its first and its last
};

/// The outline of a shape around the origin.
ReferenceOutline outlineOf(const ReferenceShape& shape);

/// The outline moved outwards by `distance`, with mitred corners; inwards for a negative one, and the other way round
/// for an outline that runs counter-clockwise. Neighbouring points must differ.
ReferenceOutline grown(const ReferenceOutline& outline, double distance);

}  // namespace Tessavoy
