#pragma once

#include <array>
#include <cstddef>

namespace Tessavoy {

/// A 4 by 4 matrix in single precision: sixteen floats, column-major, translation in elements 12, 13 and 14.
///
/// The steps below accumulate as M = M times the new matrix, so the step told last acts first on a vertex.
struct Matrix {
    std::array<float, 16> m;

    static Matrix identity();
    static Matrix diagonal(float x, float y, float z, float w);

    void translate(float x, float y, float z);
    void scale(float x, float y, float z);

    /// Rotations by an angle in degrees; it is taken to radians in double precision, then to single for sine and
    /// cosine. By element: about z 0 = c, 1 = s, 4 = -s, 5 = c; about y 0 = c, 2 = -s, 8 = s, 10 = c; about x 5 = c, 6
    /// = s, 9 = -s, 10 = c.
    void rotateX(double degrees);
    void rotateY(double degrees);
    void rotateZ(double degrees);

    friend bool operator==(const Matrix&, const Matrix&) = default;
};

/// The inverse by cofactors. A zero determinant is not tested for: the result then holds infinities or NaN.
Matrix inverse(const Matrix& matrix);

/// Sine and cosine of an angle in degrees, taken to radians in double precision and evaluated in single.
struct SineCosine {
    float sine;
    float cosine;
};
SineCosine sineCosineOfDegrees(double degrees);

}  // namespace Tessavoy
