#include "Tests/Unit/RenderGrid/ReferenceCell.h"

#include "Tests/Support/MatrixProduct.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace Tessavoy {

float ReferenceGrid::u(A_long i, A_long j) const {
    if (snapshot.CountX < 2) {
        return 0.5F;
    }
    float u = static_cast<float>(i) / static_cast<float>(snapshot.CountX - 1);
    if (snapshot.HexGrid && j % 2 != 0) {
        u = u + 1.0F / static_cast<float>(2 * snapshot.CountX - 2);
    }
    return u;
}

float ReferenceGrid::v(A_long j) const {
    return snapshot.CountY < 2 ? 0.5F : static_cast<float>(j) / static_cast<float>(snapshot.CountY - 1);
}

InstanceState ReferenceGrid::cell(A_long index) const {
    InstanceState c{};
    c.i = index % snapshot.CountX;
    c.j = index / snapshot.CountX;
    const float cellU = u(c.i, c.j);
    const float cellV = v(c.j);
    const auto value = [&](const PropertyEvaluator& property) {
        return static_cast<float>(property.evaluate(cellU, cellV));
    };
    const auto placed = [](float part, double extent) {
        const float fromMiddle = part - 0.5F;
        return static_cast<float>(static_cast<double>(fromMiddle) * extent);
    };
    c.x = placed(cellU, snapshot.GridWidth);
    c.y = placed(cellV, snapshot.GridHeight);
    c.radius = value(snapshot.InstanceSize);
    c.x = c.x + value(snapshot.InstanceOffsetX);
    c.y = c.y + value(snapshot.InstanceOffsetY);
    c.z = c.z + value(snapshot.InstanceOffsetZ);
    const std::array<float, 4> colour = snapshot.InstanceColor.evaluate(cellU, cellV);
    c.r = colour[0];
    c.g = colour[1];
    c.b = colour[2];
    c.a = static_cast<float>(snapshot.InstanceAlpha.evaluateClamped(cellU, cellV));
    const bool textured = snapshot.ShapeType == 2;
    if (textured && snapshot.ShapeFramesSplittingMode == 3) {
        c.spriteIndex = c.j * snapshot.CountX + c.i + 1;
    } else if (textured && (snapshot.ShapeFramesSplittingMode == 1 || snapshot.ShapeFramesSplittingMode == 2)) {
        c.spriteIndex = snapshot.ShapeFrameIndex.evaluateIndex(cellU, cellV, frameCount, phase);
    }
    c.anchorX = value(snapshot.ShapeAnchorX);
    c.anchorY = value(snapshot.ShapeAnchorY);
    c.angleX = value(snapshot.InstanceRotation3DX);
    c.angleY = value(snapshot.InstanceRotation3DY);
    c.angle = value(snapshot.InstanceRotation);
    c.scaleX = value(snapshot.ShapeScaleX);
    c.scaleY = snapshot.ShapeUniformScaling ? c.scaleX : value(snapshot.ShapeScaleY);
    c.featherScreenSpace = snapshot.ShapeFeatherScreenSpace;
    c.feather = static_cast<float>(snapshot.ShapeFeatherScreenSpace ? snapshot.ShapeFeatherPixels
                                                                    : snapshot.ShapeFeatherPercents);
    if (c.feather <= 0.0001F) {
        c.feather = 0.0F;
    }
    const A_long rays = static_cast<A_long>(std::trunc(snapshot.ShapeRaysCount.evaluate(cellU, cellV)));
    c.partsCount = textured ? 4 : std::max(rays, 0);
    if (textured || rays == 4) {
        c.radius = c.radius * 1.4142135F;
    }
    c.strokeWidth = std::max(value(snapshot.ShapeStrokeWidth), 0.01F);
    c.stroke = snapshot.ShapeDrawMode == 2 && !textured;
    c.visible = c.radius > 0.01F && c.partsCount >= 1 && snapshot.InstanceVisible.test(c.i, c.j);
    if (c.visible != 0 && script) {
        script(c);
    }
    for (float* percents : {&c.scaleX, &c.scaleY, &c.strokeWidth, &c.anchorX, &c.anchorY}) {
        *percents = *percents * 0.01F;
    }
    if (c.featherScreenSpace == 0) {
        c.feather = c.feather * 0.01F;
    }
    return c;
}

namespace {

float zeroUpTo(float bound, float value) {
    return value <= bound ? 0.0F : value;
}

std::complex<double> pointOf(const ShapePoint& point) {
    return {point.x, point.y};
}

ShapePoint pointOf(const std::complex<double>& point) {
    return {static_cast<float>(point.real()), static_cast<float>(point.imag())};
}

}  // namespace

std::vector<InstancePart> ReferenceGrid::parts(const InstanceState& cell) const {
    const A_long n = std::max(cell.partsCount, 0);
    const auto fraction = [&](const PropertyEvaluator& property) {
        return static_cast<float>(property.evaluate(u(cell.i, cell.j), v(cell.j)) * 0.01);
    };
    std::vector<InstancePart> run(static_cast<std::size_t>(n));
    for (A_long k = 0; k < n; ++k) {
        InstancePart& part = run[k];
        part.radius = cell.radius;
        part.angle =
            static_cast<float>(k) * 360.0F / static_cast<float>(n) + static_cast<float>(snapshot.ShapeAngleOffset);
        part.angle = n == 4 ? part.angle + 45.0F : part.angle;
        part.angle = std::fabs(part.angle) <= 0.01F ? 0.0F : part.angle;
        part.shelfLength = zeroUpTo(0.0001F, fraction(snapshot.ShapeShelfLength));
        part.roundingRadius = zeroUpTo(0.001F, fraction(snapshot.ShapeRoundingRadius));
        part.roundingDots = zeroUpTo(0.01F, static_cast<float>(snapshot.ShapeRoundingDots));
        part.linkMiddleOffset = fraction(snapshot.ShapeLinkMiddleOffset);
        part.linkMiddleOffset = std::fabs(part.linkMiddleOffset) <= 0.0001F ? 0.0F : part.linkMiddleOffset;
        if (snapshot.ShapeType == 2) {
            part.shelfLength = part.roundingRadius = part.linkMiddleOffset = 0.0F;
        }
        part.linkRoundingRadius = part.roundingRadius;
        part.linkRoundingDots = part.roundingDots;
        // Straight up is -i; multiplying by a unit number turns clockwise where y grows downward.
        const std::complex<double> direction =
            std::polar(1.0, part.angle * std::numbers::pi / 180.0) * std::complex<double>(0.0, -1.0);
        const std::complex<double> alongShelf = direction * std::complex<double>(0.0, 1.0);
        part.shelfStart = pointOf(direction - alongShelf * (part.shelfLength * 0.5));
        part.shelfEnd = pointOf(direction + alongShelf * (part.shelfLength * 0.5));
    }
    for (A_long k = 0; k < n; ++k) {
        InstancePart& part = run[k];
        const std::complex<double> middle = (pointOf(part.shelfEnd) + pointOf(run[(k + 1) % n].shelfStart)) / 2.0;
        if (part.linkMiddleOffset != 0.0F) {
            part.linkCollapsed = part.linkMiddleOffset >= std::abs(middle);
            part.linkMiddle = part.linkCollapsed != 0
                                  ? ShapePoint{}
                                  : pointOf(std::polar(std::abs(middle) - part.linkMiddleOffset, std::arg(middle)));
        }
    }
    return run;
}

namespace {

Matrix translation(float x, float y, float z) {
    Matrix matrix = Matrix::identity();
    matrix.m[12] = x;
    matrix.m[13] = y;
    matrix.m[14] = z;
    return matrix;
}

/// A rotation in the plane of two axes, from the first toward the second.
Matrix rotation(std::size_t first, std::size_t second, double degrees) {
    const float radians = static_cast<float>(degrees * 3.141592653589793 / 180.0);
    Matrix matrix = Matrix::identity();
    matrix.m[first * 4 + first] = std::cos(radians);
    matrix.m[first * 4 + second] = std::sin(radians);
    matrix.m[second * 4 + first] = -std::sin(radians);
    matrix.m[second * 4 + second] = std::cos(radians);
    return matrix;
}

constexpr std::size_t xAxis = 0;
constexpr std::size_t yAxis = 1;
constexpr std::size_t zAxis = 2;

}  // namespace

Matrix referenceGridMatrix(const ParameterSnapshot& snapshot, const Matrix& view, const FramePlace& place) {
    const double x =
        (snapshot.CenterPos.x - static_cast<double>(place.originX)) / static_cast<double>(place.downsampleX);
    const double y =
        (snapshot.CenterPos.y - static_cast<double>(place.originY)) / static_cast<double>(place.downsampleY);
    const double z = snapshot.UseCompCamera ? snapshot.CenterZ : 0.0;
    Matrix m = multiply(view, Matrix::diagonal(place.downsampleX, place.downsampleY, place.downsampleX, 1.0F));
    m = multiply(m, translation(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)));
    if (snapshot.UseCompCamera) {
        m = multiply(m, rotation(yAxis, zAxis, snapshot.Rotation3DX));
        m = multiply(m, rotation(zAxis, xAxis, snapshot.Rotation3DY));
    }
    m = multiply(m, rotation(xAxis, yAxis, snapshot.Rotation));
    const float g = static_cast<float>(snapshot.GlobalScale * 0.01);
    return multiply(m, Matrix::diagonal(g, g, g, 1.0F));
}

Matrix referenceCellMatrix(const ParameterSnapshot& snapshot, const Matrix& gridMatrix, const FramePlace& place,
                           const InstanceState& cell) {
    const Matrix size = Matrix::diagonal(cell.radius, cell.radius, 1.0F, 1.0F);
    const Matrix turn = rotation(xAxis, yAxis, cell.angle);
    Matrix m = multiply(gridMatrix, translation(cell.x, cell.y, snapshot.UseCompCamera ? cell.z : 0.0F));
    m = multiply(m, turn);
    if (snapshot.UseCompCamera) {
        m = multiply(m, rotation(zAxis, xAxis, cell.angleY));
        m = multiply(m, rotation(yAxis, zAxis, cell.angleX));
    }
    m = multiply(multiply(m, size), translation(cell.anchorX, cell.anchorY, 0.0F));
    if (!snapshot.UseCompCamera || !snapshot.ShapeBillboard) {
        return m;
    }
    const float g = static_cast<float>(snapshot.GlobalScale * 0.01);
    Matrix facing = multiply(
        multiply(Matrix::diagonal(g * place.downsampleX, g * place.downsampleY, g * place.downsampleX, 1.0F), turn),
        size);
    std::copy(m.m.begin() + 12, m.m.begin() + 15, facing.m.begin() + 12);
    return facing;
}

}  // namespace Tessavoy
