#pragma once

#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/RenderGrid/CellMatrix.h"
#include "Source/RenderGrid/InstanceState.h"

#include <functional>
#include <vector>

namespace Tessavoy {

/// The evaluation of one cell written down step by step, with nothing kept or computed side by side.
struct ReferenceGrid {
    const ParameterSnapshot& snapshot;
    A_long frameCount = 1;
    double phase = 0.0;
    std::function<void(InstanceState&)> script;  ///< run for live cells, before the final scaling

    InstanceState cell(A_long index) const;

    /// The parts of an evaluated cell, with their points.
    std::vector<InstancePart> parts(const InstanceState& cell) const;

    float u(A_long i, A_long j) const;
    float v(A_long j) const;
};

/// The matrices as products of whole matrices.
Matrix referenceGridMatrix(const ParameterSnapshot& snapshot, const Matrix& view, const FramePlace& place);
Matrix referenceCellMatrix(const ParameterSnapshot& snapshot, const Matrix& gridMatrix, const FramePlace& place,
                           const InstanceState& cell);

}  // namespace Tessavoy
