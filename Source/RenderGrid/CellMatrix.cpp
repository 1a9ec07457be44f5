#include "Source/RenderGrid/CellMatrix.h"

#include "Source/MatrixColumns.h"

namespace Tessavoy {

Matrix buildGridMatrix(const ParameterSnapshot& snapshot, const ViewProjection& viewProjection,
                       const FramePlace& place) {
    Matrix grid = viewProjection.view;
    grid.scale(place.downsampleX, place.downsampleY, place.downsampleX);
    const double x = (snapshot.CenterPos.x - place.originX) / place.downsampleX;
    const double y = (snapshot.CenterPos.y - place.originY) / place.downsampleY;
    const double z = snapshot.UseCompCamera ? snapshot.CenterZ : 0.0;
    grid.translate(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
    if (snapshot.UseCompCamera && snapshot.Rotation3DX != 0.0) {
        grid.rotateX(snapshot.Rotation3DX);
    }
    if (snapshot.UseCompCamera && snapshot.Rotation3DY != 0.0) {
        grid.rotateY(snapshot.Rotation3DY);
    }
    if (snapshot.Rotation != 0.0) {
        grid.rotateZ(snapshot.Rotation);
    }
    const float scale = static_cast<float>(snapshot.GlobalScale * 0.01);
    if (scale != 1.0F) {
        grid.scale(scale, scale, scale);
    }
    return grid;
}

CellMatrix::CellMatrix(const ParameterSnapshot& snapshot, const Matrix& gridMatrix, const FramePlace& place)
    : mGridMatrix(gridMatrix),
      mUseCompCamera(snapshot.UseCompCamera),
      mBillboard(snapshot.UseCompCamera && snapshot.ShapeBillboard) {
    const float scale = static_cast<float>(snapshot.GlobalScale * 0.01);
    mScreenScale =
        Matrix::diagonal(scale * place.downsampleX, scale * place.downsampleY, scale * place.downsampleX, 1.0F);
}

namespace {

/// The grid's matrix with a cell's place and rotations, and its radius as scale.
MatrixColumns turnedCell(const Matrix& gridMatrix, const InstanceState& cell, float depth, bool inSpace) {
    MatrixColumns columns(gridMatrix);
    columns.translate(cell.x, cell.y, depth);
    if (cell.angle != 0.0F) {
        columns.rotateZ(cell.angle);
    }
    if (inSpace && cell.angleY != 0.0F) {
        columns.rotateY(cell.angleY);
    }
    if (inSpace && cell.angleX != 0.0F) {
        columns.rotateX(cell.angleX);
    }
    columns.scale(cell.radius, cell.radius, 1.0F);
    return columns;
}

/// The same shape facing the screen: only its rotation in the plane and its radius count.
MatrixColumns facingScreen(const Matrix& screenScale, const InstanceState& cell) {
    MatrixColumns columns(screenScale);
    if (cell.angle != 0.0F) {
        columns.rotateZ(cell.angle);
    }
    columns.scale(cell.radius, cell.radius, 1.0F);
    return columns;
}

}  // namespace

void CellMatrix::build(InstanceState& cell) const {
    MatrixColumns columns = turnedCell(mGridMatrix, cell, depthOf(cell), mUseCompCamera);
    columns.translate(cell.anchorX, cell.anchorY, 0.0F);
    if (!mBillboard) {
        columns.store(cell.matrix);
        return;
    }
    MatrixColumns screen = facingScreen(mScreenScale, cell);
    screen.origin = columns.origin;
    screen.store(cell.matrix);
    cell.matrix.m[15] = 1.0F;
}

void CellMatrix::prepare(const InstanceState& prototype) {
    const MatrixColumns columns = turnedCell(mGridMatrix, prototype, depthOf(prototype), mUseCompCamera);
    columns.way(prototype.anchorX, prototype.anchorY, 0.0F).store(mAnchorShift.data());
}

void CellMatrix::place(InstanceState* cells, int count) const {
    const MatrixColumns grid(mGridMatrix);
    const FloatQuad anchorShift = FloatQuad::load(mAnchorShift.data());
    for (int k = 0; k < count; ++k) {
        InstanceState& cell = cells[k];
        const FloatQuad position = grid.way(cell.x, cell.y, depthOf(cell)) + grid.origin;
        (anchorShift + position).store(&cell.matrix.m[12]);
        if (mBillboard) {
            cell.matrix.m[15] = 1.0F;
        }
    }
}

}  // namespace Tessavoy
