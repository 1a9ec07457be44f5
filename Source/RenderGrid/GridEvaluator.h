#pragma once

#include "HostInterface/Effect.h"
#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/RenderGrid/CellBlock.h"
#include "Source/RenderGrid/CellEvaluation.h"
#include "Source/RenderGrid/CellMatrix.h"
#include "Source/RenderGrid/CellScript.h"
#include "Source/RenderGrid/InstanceState.h"
#include "Source/RenderGrid/PartLayout.h"
#include "Source/RenderGrid/ShapeGeometry.h"
#include "Source/TextureAtlas.h"
#include "Source/ViewProjection.h"

#include <cstdint>

namespace Tessavoy {

/// What surrounds a frame's pass over the grid. Nothing is owned.
struct GridFrame {
    PF_InData* inData;
    PF_OutData* outData;
    FramePlace place;  ///< the origin counts only without a camera
    const ViewProjection& viewProjection;
    const TextureAtlas& atlas;     ///< in a measurement of depths one without a build
    float multiplier16bit = 1.0F;  ///< carried for the draw
    CellScript* script = nullptr;  ///< null for none
};

/// What one frame's pass over the grid works from, and the evaluation of its cells. Belongs to one render call on one
/// thread.
class GridEvaluator {
public:
    /// The snapshot and what the frame points at must outlive this object.
    GridEvaluator(ParameterSnapshot& snapshot, const GridFrame& frame);

    GridEvaluator(const GridEvaluator&) = delete;
    GridEvaluator& operator=(const GridEvaluator&) = delete;

    PF_InData* inData() const { return mFrame.inData; }
    const ParameterSnapshot& snapshot() const { return mSnapshot; }
    const ViewProjection& viewProjection() const { return mFrame.viewProjection; }
    const FramePlace& place() const { return mFrame.place; }
    const Matrix& gridMatrix() const { return mGridMatrix; }
    float multiplier16bit() const { return mFrame.multiplier16bit; }

    A_long CountX() const { return mShape.countX; }
    A_long CountY() const { return mShape.countY; }
    std::int64_t cellCount() const { return std::int64_t{mShape.countX} * mShape.countY; }

    /// Whether the instances show a texture: they are quads, and a layer that holds pixels is chosen for them.
    bool isTextured() const { return mTextured; }

    /// Whether cells are drawn from far to near.
    bool sortsByZ() const { return mSnapshot.UseCompCamera && mSnapshot.SortByZ; }

    EmissionFrame emissionFrame() const;

    /// Evaluates the cell with this index into its record, script and final scaling included; the matrix and the parts
    /// are not built. The cell's parts are null.
    void EvaluateCell(A_long index, InstanceState& cell) const;

    /// Fills in the matrix of an evaluated cell.
    void BuildCellMatrix(InstanceState& cell) const { mCellMatrix.build(cell); }

    /// EvaluateCell and BuildCellMatrix for the cells of a block: cells[0..block.count - 1], each of which holds the
    /// prototype or an earlier result of this function.
    void evaluateBlock(const CellBlock& block, InstanceState* cells) const;

    /// A record to start from: all that is the same for every cell.
    const InstanceState& prototype() const { return mPrototype; }

    /// The cells from this index on that are evaluated together.
    CellBlock blockAt(A_long firstIndex) const;

    /// The number of parts of every cell when it is known without evaluating them, else -1.
    A_long knownPartsCount() const;

    /// Whether all cells write as many vertices and indices as the first one, whatever else differs.
    bool cellsWriteAlike() const;

    /// Makes the parts; see PartLayout.
    PartLayout& partLayout() { return mPartLayout; }

    /// Whether cells with the same number of parts have the same parts, but for their radius.
    bool partsDependOnCountOnly() const { return mPartLayout.dependsOnCountOnly(); }

private:
    void evaluateFields(const CellBlock& block, InstanceState* cells) const;
    void runScript(float u, float v, InstanceState& cell) const;

    const ParameterSnapshot& mSnapshot;
    GridFrame mFrame;        ///< without an origin under a camera, and without a script that changes nothing
    bool mClearsInfinities;  ///< in place of a script that changes nothing; only layers in floats hold any
    GridShape mShape;
    bool mTextured;
    Matrix mGridMatrix;
    CellEvaluation mCells;
    CellMatrix mCellMatrix;
    PartLayout mPartLayout;
    InstanceState mPrototype;
    bool mPlaceOnly;  ///< all cells share the prototype's matrix but for the position
};

}  // namespace Tessavoy
