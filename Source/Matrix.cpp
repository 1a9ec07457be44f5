#include "Source/Matrix.h"

#include <cmath>

namespace Tessavoy {

Matrix Matrix::identity() {
    return diagonal(1.0F, 1.0F, 1.0F, 1.0F);
}

Matrix Matrix::diagonal(float x, float y, float z, float w) {
    return {{x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, w}};
}

void Matrix::translate(float x, float y, float z) {
    for (std::size_t row = 0; row < 4; ++row) {
        m[12 + row] = m[row] * x + m[4 + row] * y + m[8 + row] * z + m[12 + row];
    }
}

void Matrix::scale(float x, float y, float z) {
    for (std::size_t row = 0; row < 4; ++row) {
        m[row] *= x;
        m[4 + row] *= y;
        m[8 + row] *= z;
    }
}

SineCosine sineCosineOfDegrees(double degrees) {
    constexpr double pi = 3.141592653589793;
    const float radians = static_cast<float>(degrees * pi / 180.0);
    return {std::sin(radians), std::cos(radians)};
}

namespace {

/// Replaces two columns by their rotation: first = first * c + second * s, second = second * c - first * s.
void rotateColumns(Matrix& matrix, std::size_t first, std::size_t second, double degrees) {
    const auto [s, c] = sineCosineOfDegrees(degrees);
    for (std::size_t row = 0; row < 4; ++row) {
        const float a = matrix.m[first + row];
        const float b = matrix.m[second + row];
        matrix.m[first + row] = a * c + b * s;
        matrix.m[second + row] = a * -s + b * c;
    }
}

}  // namespace

void Matrix::rotateX(double degrees) {
    rotateColumns(*this, 4, 8, degrees);
}

void Matrix::rotateY(double degrees) {
    rotateColumns(*this, 8, 0, degrees);
}

void Matrix::rotateZ(double degrees) {
    rotateColumns(*this, 0, 4, degrees);
}

Matrix multiply(const Matrix& left, const Matrix& right) {
    Matrix result{};
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            float sum = 0.0F;
            for (std::size_t k = 0; k < 4; ++k) {
                sum += left.m[k * 4 + row] * right.m[column * 4 + k];
            }
            result.m[column * 4 + row] = sum;
        }
    }
    return result;
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
