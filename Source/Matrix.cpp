#include "Source/Matrix.h"

#include "Source/MatrixColumns.h"

#include <cmath>

namespace Tessavoy {

Matrix Matrix::identity() {
    return diagonal(1.0F, 1.0F, 1.0F, 1.0F);
}

Matrix Matrix::diagonal(float x, float y, float z, float w) {
    return {{x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, w}};
}

SineCosine sineCosineOfDegrees(double degrees) {
    constexpr double pi = 3.141592653589793;
    const float radians = static_cast<float>(degrees * pi / 180.0);
    return {std::sin(radians), std::cos(radians)};
}

namespace {

/// Takes one step: a call of one of the columns' own.
template <class Step>
void stepColumns(Matrix& matrix, const Step& step) {
    MatrixColumns columns(matrix);
    step(columns);
    columns.store(matrix);
}

}  // namespace

void Matrix::translate(float x, float y, float z) {
    stepColumns(*this, [=](MatrixColumns& columns) { columns.translate(x, y, z); });
}

void Matrix::scale(float x, float y, float z) {
    stepColumns(*this, [=](MatrixColumns& columns) { columns.scale(x, y, z); });
}

void Matrix::rotateX(double degrees) {
    stepColumns(*this, [=](MatrixColumns& columns) { columns.rotateX(degrees); });
}

void Matrix::rotateY(double degrees) {
    stepColumns(*this, [=](MatrixColumns& columns) { columns.rotateY(degrees); });
}

void Matrix::rotateZ(double degrees) {
    stepColumns(*this, [=](MatrixColumns& columns) { columns.rotateZ(degrees); });
}

namespace {

/// The determinant of the 3 by 3 matrix that is left without one row and one column.
float minorOf(const Matrix& matrix, std::size_t withoutRow, std::size_t withoutColumn) {
    std::array<float, 9> s{};
    std::size_t next = 0;
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            if (column != withoutColumn && row != withoutRow) {
                s[next++] = matrix.m[column * 4 + row];
            }
        }
    }
    return s[0] * (s[4] * s[8] - s[5] * s[7]) - s[3] * (s[1] * s[8] - s[2] * s[7]) + s[6] * (s[1] * s[5] - s[2] * s[4]);
}

float cofactor(const Matrix& matrix, std::size_t row, std::size_t column) {
    const float minor = minorOf(matrix, row, column);
    return (row + column) % 2 == 0 ? minor : -minor;
}

}  // namespace

Matrix inverse(const Matrix& matrix) {
    float determinant = 0.0F;
    for (std::size_t column = 0; column < 4; ++column) {
        determinant += matrix.m[column * 4] * cofactor(matrix, 0, column);
    }
    Matrix result{};
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            result.m[column * 4 + row] = cofactor(matrix, column, row) / determinant;
        }
    }
    return result;
}

}  // namespace Tessavoy
