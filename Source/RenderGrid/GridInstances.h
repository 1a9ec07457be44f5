#pragma once

#include "Source/Container.h"
#include "Source/RenderGrid/GridEvaluator.h"
#include "Source/RenderGrid/InstanceState.h"
#include "Source/RenderGrid/ShapeGeometry.h"

#include <cstdint>

namespace Tessavoy {

/// All cells of one frame, evaluated: their records in cell order, the parts of all of them in one run, and how much
/// they will draw.
class GridInstances {
public:
    /// Evaluates the whole grid. Throws what Container throws when the host has no room for the records or their number
    /// is beyond what an index holds, and passes on what evaluation and script throw. Where a script made numbers of
    /// parts negative, the runs of other cells move back over each other; a run that leaves the array is an assertion.
    explicit GridInstances(GridEvaluator& evaluator);

    GridInstances(const GridInstances&) = delete;
    GridInstances& operator=(const GridInstances&) = delete;

    const GridEvaluator& evaluator() const { return mEvaluator; }
    const Container<InstanceState>& cells() const { return mCells; }
    const Container<InstancePart>& parts() const { return mParts; }

    /// The sum of what CountInstance says of all cells.
    std::uint64_t vertexTotal() const { return mVertexTotal; }
    std::uint64_t indexTotal() const { return mIndexTotal; }

    /// Whether a cell alone has more vertices and indices than 32 bits can number.
    bool hasOversizedCell() const { return mHasOversizedCell; }

    /// Whether cells with the same number of parts have the same outline before scaling.
    bool outlinesDependOnCountOnly() const { return mEvaluator.partsDependOnCountOnly() && !mPartsOverlap; }

private:
    std::int64_t partsTotal();
    std::int64_t evaluateAll();
    void layOutAll();
    void evaluateAndLayOutAll();
    void layOutBlock(const CellBlock& block, InstanceState* cells);
    InstancePart* nextRun(A_long partsCount);
    void rebuildOverlapping();
    void addCount(const InstanceCount& count, std::uint64_t cells);

    // These stand in the order of their making, which partsTotal() relies on: it may evaluate the cells, and the parts
    // are as many as it says.
    GridEvaluator& mEvaluator;
    EmissionFrame mEmission;
    bool mPartsOverlap = false;  ///< a negative number of parts made runs share elements
    Container<InstanceState> mCells;
    Container<InstancePart> mParts;

    std::int64_t mNextPart = 0;  ///< where the next cell's run begins
    std::uint64_t mVertexTotal = 0;
    std::uint64_t mIndexTotal = 0;
    bool mHasOversizedCell = false;
};

}  // namespace Tessavoy
