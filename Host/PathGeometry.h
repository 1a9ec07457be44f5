#pragma once

#include <array>
#include <complex>
#include <vector>

#include "Host/Project.h"
#include "Host/Rational.h"

namespace TessavoyHost {

// A cubic Bezier curve measured by arc length, cusps and loops included. Lengths and points are accurate to a billionth
// of the curve's length, or to the rounding of a point's coordinates where that is coarser.
class CurveLength {
public:
    explicit CurveLength(const std::array<Point2, 4>& controls);

    double length() const { return mKnots.back().length; }

    // The point at a distance along the curve, which is held to 0 and the length; and the unit tangent there (zero
    // where the curve stands still).
    Point2 pointAt(double distance) const;
    Point2 directionAt(double distance) const;

private:
    // A parameter of the curve and the length up to it.
    struct Knot {
        double t;
        double length;
    };

    double speed(double t) const;
    double measure(double from, double to) const;
    void measurePieces(double from, double to, const std::array<std::complex<double>, 2>& standstills, int depth);
    double parameterAt(double distance) const;

    std::array<Point2, 4> mControls;
    std::vector<Knot> mKnots;  // rising; the first is (0, 0)
};

// A mask in the coordinates of the downsampled layer. A closed one has a segment for each vertex, an open one a segment
// less.
class PathGeometry {
public:
    PathGeometry(const Mask& mask, const Rational& downsampleX, const Rational& downsampleY);

    bool closed() const { return mClosed; }
    int segmentCount() const;
    // From 0 to segmentCount(): a closed path ends at its first vertex.
    const MaskVertex& vertex(int index) const;
    bool hasVertex(int index) const;
    std::array<Point2, 4> controls(int segment) const;

private:
    bool mClosed;
    std::vector<MaskVertex> mVertices;
};

}  // namespace TessavoyHost
