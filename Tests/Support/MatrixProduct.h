#pragma once

#include "Source/Matrix.h"

#include <cstddef>

namespace Tessavoy {

/// left times right: a vertex meets right first.
inline Matrix multiply(const Matrix& left, const Matrix& right) {
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

}  // namespace Tessavoy
