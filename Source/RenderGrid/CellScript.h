#pragma once

#include "HostInterface/Effect.h"
#include "Source/Matrix.h"
#include "Source/RenderGrid/InstanceState.h"

namespace Tessavoy {

/// What a script is told of the grid when it runs for a cell.
struct CellScriptInputs {
    float downsampleX;
    float downsampleY;
    float xPart;  ///< the cell's u
    float yPart;  ///< the cell's v
    A_long xCount;
    A_long yCount;
    double gridWidth;
    double gridHeight;
    const Matrix& gridMatrix;
};

/// The user's script as the grid sees it: called once for each live cell, in cell order, after all properties have been
/// evaluated and before percents become fractions.
class CellScript {
public:
    virtual ~CellScript() = default;

    /// Reads the cell and rewrites it in place; its matrix and parts are not built yet. False if the script failed, and
    /// then the cell is as it was. May throw.
    virtual bool runCell(PF_InData* inData, const CellScriptInputs& inputs, InstanceState& cell) = 0;

    /// Whether running it would change nothing in any cell but infinities, which every script leaves as 0; the grid
    /// then spares itself the runs.
    virtual bool changesNothing() const { return false; }

    /// Called after each failure, with the cell that it happened on.
    virtual void reportFailure(PF_InData* inData, PF_OutData* outData, const InstanceState& cell) = 0;
};

}  // namespace Tessavoy
