#include "Host/CameraMatrix.h"

#include <array>
#include <cmath>
#include <numbers>

#include "Host/KeyTrack.h"

namespace TessavoyHost {
namespace {

using Rotation = std::array<std::array<double, 3>, 3>;  // by rows, for column vectors

Rotation product(const Rotation& a, const Rotation& b) {
    Rotation result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            for (std::size_t k = 0; k < 3; ++k)
                result[row][column] += a[row][k] * b[k][column];
        }
    }
    return result;
}

Rotation aboutX(double radians) {
    const double c = std::cos(radians), s = std::sin(radians);
    return {{{1, 0, 0}, {0, c, -s}, {0, s, c}}};
}

Rotation aboutY(double radians) {
    const double c = std::cos(radians), s = std::sin(radians);
    return {{{c, 0, s}, {0, 1, 0}, {-s, 0, c}}};
}

Rotation aboutZ(double radians) {
    const double c = std::cos(radians), s = std::sin(radians);
    return {{{c, -s, 0}, {s, c, 0}, {0, 0, 1}}};
}

// Degrees about the three axes, x outermost.
Rotation aboutAxes(const Point3& degrees) {
    constexpr double radians = std::numbers::pi / 180;
    return product(product(aboutX(degrees.x * radians), aboutY(degrees.y * radians)), aboutZ(degrees.z * radians));
}

Rotation towards(const Point3& direction) {
    const double yaw = std::atan2(direction.x, direction.z);
    const double pitch = -std::atan2(direction.y, std::hypot(direction.x, direction.z));
    return product(aboutY(yaw), aboutX(pitch));
}

Point3 pointAt(const ParameterTrack& track, double time, const Point3& fallback) {
    return track.keys.empty() ? fallback : std::get<Point3>(valueAt(track, time));
}

}  // namespace

double cameraZoom(const Camera& camera, double time) {
    return camera.zoom.keys.empty() ? 0 : std::get<double>(valueAt(camera.zoom, time));
}

A_Matrix4 cameraToWorld(const Camera& camera, const Composition& composition, double time) {
    const Point3 middle{composition.width / 2.0, composition.height / 2.0, 0};
    const Point3 position = pointAt(camera.position, time, {middle.x, middle.y, -cameraZoom(camera, time)});
    const Point3 target = pointAt(camera.pointOfInterest, time, middle);
    const Rotation facing = towards({target.x - position.x, target.y - position.y, target.z - position.z});
    const Rotation turned = product(product(facing, aboutAxes(pointAt(camera.orientation, time, {}))),
                                    aboutAxes(pointAt(camera.rotation, time, {})));
    A_Matrix4 matrix{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column)
            matrix.mat[row][column] = turned[column][row];
    }
    matrix.mat[3][0] = position.x;
    matrix.mat[3][1] = position.y;
    matrix.mat[3][2] = position.z;
    matrix.mat[3][3] = 1;
    return matrix;
}

}  // namespace TessavoyHost
