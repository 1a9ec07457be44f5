#include "Host/CameraMatrix.h"

#include <cmath>

#include <gtest/gtest.h>

namespace TessavoyHost {
namespace {

constexpr Composition composition{1920, 1080, {25, 1}, 4};

ParameterTrack constant(const Point3& point) {
    return {{{0, point, Ease::Linear}}};
}

Camera camera(const Point3& position, const Point3& target, const Point3& orientation = {},
              const Point3& rotation = {}) {
    Camera made;
    made.position = constant(position);
    made.pointOfInterest = constant(target);
    made.orientation = constant(orientation);
    made.rotation = constant(rotation);
    made.zoom = {{{0, 1000.0, Ease::Linear}}};
    return made;
}

// Rows of the upper left 3 by 3 part are the images of the camera's axes.
void expectRow(const A_Matrix4& matrix, int row, double x, double y, double z) {
    EXPECT_NEAR(matrix.mat[row][0], x, 1e-12) << "row " << row;
    EXPECT_NEAR(matrix.mat[row][1], y, 1e-12) << "row " << row;
    EXPECT_NEAR(matrix.mat[row][2], z, 1e-12) << "row " << row;
}

TEST(HostCameraMatrix, LooksAlongZWithoutTurning) {
    const A_Matrix4 matrix = cameraToWorld(camera({960, 540, -1866}, {960, 540, 0}), composition, 0);
    expectRow(matrix, 0, 1, 0, 0);
    expectRow(matrix, 1, 0, 1, 0);
    expectRow(matrix, 2, 0, 0, 1);
    expectRow(matrix, 3, 960, 540, -1866);
    EXPECT_EQ(matrix.mat[0][3], 0);
    EXPECT_EQ(matrix.mat[3][3], 1);
}

TEST(HostCameraMatrix, DefaultsToTheMiddleAtADistanceOfItsZoom) {
    Camera made;
    made.zoom = {{{0, 700.0, Ease::Linear}}};
    expectRow(cameraToWorld(made, composition, 0), 3, 960, 540, -700);
    expectRow(cameraToWorld(made, composition, 0), 2, 0, 0, 1);
    EXPECT_EQ(cameraZoom(made, 0), 700);
}

// The third axis always points at the point of interest: d / |d| of d = (2, 1, 2), |d| = 3.
TEST(HostCameraMatrix, PointsItsThirdAxisAtThePointOfInterest) {
    const A_Matrix4 matrix = cameraToWorld(camera({0, 0, 0}, {2, 1, 2}), composition, 0);
    expectRow(matrix, 2, 2.0 / 3, 1.0 / 3, 2.0 / 3);
    // The first axis stays level: yaw alone, (cos 45, 0, -sin 45).
    expectRow(matrix, 0, std::sqrt(0.5), 0, -std::sqrt(0.5));
    // The second completes a right-handed frame: z cross x = (1/3 * -s - 2/3 * 0, 2/3 * s + 2/3 * s, -1/3 * s).
    const double s = std::sqrt(0.5);
    expectRow(matrix, 1, -s / 3, 4 * s / 3, -s / 3);
}

// Orientation by 90 degrees about x, then in turned axes about y: Rx(90) Ry(90) by hand is
// (0 0 1; 1 0 0; 0 1 0), whose columns are the rows handed over.
TEST(HostCameraMatrix, AppliesOrientationXBeforeY) {
    const A_Matrix4 matrix = cameraToWorld(camera({0, 0, -1}, {0, 0, 0}, {90, 90, 0}), composition, 0);
    expectRow(matrix, 0, 0, 1, 0);
    expectRow(matrix, 1, 0, 0, 1);
    expectRow(matrix, 2, 1, 0, 0);
}

// Rx(90) = (1 0 0; 0 0 -1; 0 1 0), Rz(90) = (0 -1 0; 1 0 0; 0 0 1); their product (0 -1 0; 0 0 -1; 1 0 0).
TEST(HostCameraMatrix, AppliesRotationAfterOrientation) {
    const A_Matrix4 matrix = cameraToWorld(camera({0, 0, -1}, {0, 0, 0}, {90, 0, 0}, {0, 0, 90}), composition, 0);
    expectRow(matrix, 0, 0, 0, 1);
    expectRow(matrix, 1, -1, 0, 0);
    expectRow(matrix, 2, 0, -1, 0);
}

// Small angles add up first order, so a product in the wrong order differs by their products: by hand, Rx(a) Ry(b)
// Rz(c) has sin b in its upper right corner and -sin a cos b below it.
TEST(HostCameraMatrix, KeepsTheOrderOfAllThreeAngles) {
    const double a = 10 * M_PI / 180, b = 20 * M_PI / 180, c = 30 * M_PI / 180;
    for (const bool asRotation : {false, true}) {
        const Point3 angles{10, 20, 30};
        const Camera made =
            camera({0, 0, -1}, {0, 0, 0}, asRotation ? Point3{} : angles, asRotation ? angles : Point3{});
        const A_Matrix4 matrix = cameraToWorld(made, composition, 0);
        expectRow(matrix, 2, std::sin(b), -std::sin(a) * std::cos(b), std::cos(a) * std::cos(b));
        EXPECT_NEAR(matrix.mat[0][0], std::cos(b) * std::cos(c), 1e-12);
        EXPECT_NEAR(matrix.mat[1][0], -std::cos(b) * std::sin(c), 1e-12);
    }
}

TEST(HostCameraMatrix, FollowsItsKeys) {
    Camera made = camera({0, 0, -100}, {0, 0, 0});
    made.position = {{{0, Point3{0, 0, -100}, Ease::Linear}, {2, Point3{0, 0, -300}, Ease::Linear}}};
    made.zoom = {{{0, 100.0, Ease::Hold}, {1, 200.0, Ease::Linear}}};
    EXPECT_EQ(cameraToWorld(made, composition, 1).mat[3][2], -200);
    EXPECT_EQ(cameraZoom(made, 0.5), 100);
    EXPECT_EQ(cameraZoom(made, 1), 200);
}

}  // namespace
}  // namespace TessavoyHost
