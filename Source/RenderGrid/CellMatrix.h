#pragma once

#include "Source/Matrix.h"
#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/RenderGrid/InstanceState.h"
#include "Source/ViewProjection.h"

#include <array>

namespace Tessavoy {

/// Where a frame's pixels lie: the downsample factors, and the position of the picture's first pixel in the layer.
struct FramePlace {
    float downsampleX = 1.0F;
    float downsampleY = 1.0F;
    float originX = 0.0F;
    float originY = 0.0F;
};

/// The matrix of the whole grid: from full-resolution pixels around the grid's centre to view space.
Matrix buildGridMatrix(const ParameterSnapshot& snapshot, const ViewProjection& viewProjection,
                       const FramePlace& place);

/// Builds the matrices of cells from their fields and the grid's matrix.
class CellMatrix {
public:
    CellMatrix(const ParameterSnapshot& snapshot, const Matrix& gridMatrix, const FramePlace& place);

    /// Fills in the matrix of a cell.
    void build(InstanceState& cell) const;

    /// Prepares place() for cells that share this one's angles, radius and anchor.
    void prepare(const InstanceState& prototype);

    /// Fills in the matrices of cells like the prepared one, whose matrix they hold already: only the position is left
    /// to do. Gives the same bits as build().
    void place(InstanceState* cells, int count) const;

private:
    float depthOf(const InstanceState& cell) const { return mUseCompCamera ? cell.z : 0.0F; }

    Matrix mGridMatrix;
    Matrix mScreenScale;  ///< what a billboard starts from
    bool mUseCompCamera;
    bool mBillboard;
    std::array<float, 4> mAnchorShift{};  ///< how far the prepared anchor moves a cell
};

}  // namespace Tessavoy
