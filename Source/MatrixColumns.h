#pragma once

#include "Source/FloatQuad.h"
#include "Source/Matrix.h"

namespace Tessavoy {

/// A matrix at work, its columns held in registers. Matrix's steps are these; where several follow each other they are
/// cheaper here.
struct MatrixColumns {
    explicit MatrixColumns(const Matrix& matrix)
        : across(FloatQuad::load(&matrix.m[0])),
          down(FloatQuad::load(&matrix.m[4])),
          inward(FloatQuad::load(&matrix.m[8])),
          origin(FloatQuad::load(&matrix.m[12])) {}

    void store(Matrix& matrix) const {
        across.store(&matrix.m[0]);
        down.store(&matrix.m[4]);
        inward.store(&matrix.m[8]);
        origin.store(&matrix.m[12]);
    }

    /// The way of a translation, before it is added to the origin.
    FloatQuad way(float x, float y, float z) const {
        return across * FloatQuad::all(x) + down * FloatQuad::all(y) + inward * FloatQuad::all(z);
    }

    void translate(float x, float y, float z) { origin = way(x, y, z) + origin; }

    void scale(float x, float y, float z) {
        across = across * FloatQuad::all(x);
        down = down * FloatQuad::all(y);
        inward = inward * FloatQuad::all(z);
    }

    void rotateX(double degrees) { rotate(down, inward, degrees); }
    void rotateY(double degrees) { rotate(inward, across, degrees); }
    void rotateZ(double degrees) { rotate(across, down, degrees); }

    FloatQuad across;
    FloatQuad down;
    FloatQuad inward;
    FloatQuad origin;

private:
    /// Replaces two columns by their rotation: first * c + second * s, and second * c - first * s.
    static void rotate(FloatQuad& first, FloatQuad& second, double degrees) {
        const auto [sine, cosine] = sineCosineOfDegrees(degrees);
        const FloatQuad a = first;
        first = a * FloatQuad::all(cosine) + second * FloatQuad::all(sine);
        second = a * FloatQuad::all(-sine) + second * FloatQuad::all(cosine);
    }
};

}  // namespace Tessavoy
