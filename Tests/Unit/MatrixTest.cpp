#include "Source/Matrix.h"

#include "Tests/Support/MatrixProduct.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

namespace Tessavoy {
namespace {

using Point = std::array<double, 3>;

Point transform(const Matrix& matrix, const Point& p) {
    Point result{};
    for (std::size_t row = 0; row < 3; ++row) {
        result[row] = matrix.m[row] * p[0] + matrix.m[4 + row] * p[1] + matrix.m[8 + row] * p[2] + matrix.m[12 + row];
    }
    return result;
}

void expectNear(const Point& actual, const Point& expected, double tolerance) {
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "coordinate " << i;
    }
}

TEST(Matrix, TranslationStandsInElements12To14) {
    Matrix matrix = Matrix::identity();
    matrix.translate(3, 5, 7);
    EXPECT_EQ(matrix.m[12], 3.0F);
    EXPECT_EQ(matrix.m[13], 5.0F);
    EXPECT_EQ(matrix.m[14], 7.0F);
    expectNear(transform(matrix, {1, 1, 1}), {4, 6, 8}, 0);
}

TEST(Matrix, TheStepToldLastActsFirstOnAVertex) {
    Matrix matrix = Matrix::identity();
    matrix.translate(10, 0, 0);
    matrix.scale(2, 3, 4);
    expectNear(transform(matrix, {1, 1, 1}), {12, 3, 4}, 0);
}

// A quarter turn takes one axis to the next in the cyclic order x, y, z.
TEST(Matrix, AQuarterTurnAboutEachAxisTakesOneAxisToTheNext) {
    Matrix aboutZ = Matrix::identity();
    aboutZ.rotateZ(90);
    expectNear(transform(aboutZ, {1, 0, 0}), {0, 1, 0}, 1e-7);

    Matrix aboutX = Matrix::identity();
    aboutX.rotateX(90);
    expectNear(transform(aboutX, {0, 1, 0}), {0, 0, 1}, 1e-7);

    Matrix aboutY = Matrix::identity();
    aboutY.rotateY(90);
    expectNear(transform(aboutY, {0, 0, 1}), {1, 0, 0}, 1e-7);
}

TEST(Matrix, RotationElementsStandWhereTheyAreTold) {
    const float c = std::cos(static_cast<float>(30 * 3.141592653589793 / 180.0));
    const float s = std::sin(static_cast<float>(30 * 3.141592653589793 / 180.0));
    Matrix z = Matrix::identity();
    z.rotateZ(30);
    EXPECT_EQ(z, (Matrix{{c, s, 0, 0, -s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}));
    Matrix y = Matrix::identity();
    y.rotateY(30);
    EXPECT_EQ(y, (Matrix{{c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1}}));
    Matrix x = Matrix::identity();
    x.rotateX(30);
    EXPECT_EQ(x, (Matrix{{1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1}}));
}

TEST(Matrix, StepsEqualTheProductWithTheStepsOwnMatrix) {
    Matrix matrix{{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}};
    Matrix step = Matrix::identity();
    step.translate(2, 3, 4);
    Matrix byStep = matrix;
    byStep.translate(2, 3, 4);
    EXPECT_EQ(byStep, multiply(matrix, step));

    byStep = matrix;
    byStep.scale(2, 3, 4);
    EXPECT_EQ(byStep, multiply(matrix, Matrix::diagonal(2, 3, 4, 1)));
}

TEST(Matrix, TheInverseTimesTheMatrixIsTheIdentity) {
    std::mt19937 generator(7);
    std::uniform_real_distribution<float> angle(-180, 180);
    std::uniform_real_distribution<float> offset(-100, 100);
    for (int round = 0; round < 100; ++round) {
        Matrix matrix = Matrix::identity();
        matrix.translate(offset(generator), offset(generator), offset(generator));
        matrix.rotateX(angle(generator));
        matrix.rotateY(angle(generator));
        matrix.rotateZ(angle(generator));
        matrix.scale(1.5F, 0.5F, 2.0F);
        const Matrix product = multiply(inverse(matrix), matrix);
        for (std::size_t i = 0; i < 16; ++i) {
            EXPECT_NEAR(product.m[i], i % 5 == 0 ? 1.0 : 0.0, 2e-4) << "element " << i;
        }
    }
}

TEST(Matrix, ASingularMatrixInvertsToValuesThatAreNotFinite) {
    const Matrix result = inverse(Matrix::diagonal(1, 1, 0, 1));
    bool allFinite = true;
    for (float element : result.m) {
        allFinite = allFinite && std::isfinite(element);
    }
    EXPECT_FALSE(allFinite);
}

}  // namespace
}  // namespace Tessavoy
