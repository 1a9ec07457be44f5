#pragma once

#include "Source/Container.h"
#include "Source/MemoryWrites.h"
#include "Source/RenderGrid/GridEvaluator.h"
#include "Source/RenderGrid/InstanceState.h"
#include "Source/RenderGrid/ShapeGeometry.h"

#include <array>
#include <cstdint>
#include <span>

namespace Tessavoy {

/// All cells of one frame: their records in cell order, the parts of all of them in one run, and how much they will
/// draw.
///
/// Where all cells write alike, what they will draw is known from the first; the others are evaluated when they are
/// asked for. Written in cell order they are then still in the caches, and not read from memory again.
class GridInstances {
public:
    /// Makes room for the whole grid and evaluates it, or its beginning where cells write alike. Throws what Container
    /// throws when the host has no room for the records or their number is beyond what an index holds, and passes on
    /// what evaluation and script throw. Where a script made numbers of parts negative, the runs of other cells move
    /// back over each other; a run that leaves the array is an assertion.
    explicit GridInstances(GridEvaluator& evaluator);

    GridInstances(const GridInstances&) = delete;
    GridInstances& operator=(const GridInstances&) = delete;

    const GridEvaluator& evaluator() const { return mEvaluator; }

    /// All cells, evaluated.
    const Container<InstanceState>& cells();
    const Container<InstancePart>& parts();

    /// Cells from this one on, evaluated: one at least, and as many as lie side by side. They stay until the next call
    /// of any function that gives cells. The index is that of a cell.
    std::span<const InstanceState> cellsFrom(A_long index);

    /// One cell, evaluated.
    const InstanceState& cell(A_long index) {
        if (index >= mEvaluated) {
            evaluateTo(std::int64_t{index} + 1);
        }
        return mCells.data()[index];
    }

    /// The sum of what CountInstance says of all cells.
    std::uint64_t vertexTotal() const { return mVertexTotal; }
    std::uint64_t indexTotal() const { return mIndexTotal; }

    /// Whether a cell alone has more vertices and indices than 32 bits can number.
    bool hasOversizedCell() const { return mHasOversizedCell; }

    /// What records and parts take together.
    Extent extent() const { return mExtent; }

    /// Whether cells with the same number of parts have the same outline before scaling.
    bool outlinesDependOnCountOnly() const { return mEvaluator.partsDependOnCountOnly() && !mPartsOverlap; }

private:
    using BlockRecords = std::array<InstanceState, blockCells>;
    using BlockPoints = std::array<std::uint64_t, blockCells>;

    static BlockRecords stageOf(const InstanceState& prototype);

    std::int64_t partsTotal();
    std::int64_t evaluateFieldsOfAll();
    void layOutAll();
    void foreseeTotals();
    void evaluateTo(std::int64_t end);
    void storeStage(const CellBlock& block);
    void layOutBlock(const CellBlock& block, InstanceState* cells);
    void countBlock(const InstanceState* cells, int count, const BlockPoints& points);
    void handOutParts(InstanceState* cells, int count);
    InstancePart* nextRun(std::int64_t partsCount);
    void rebuildOverlapping();
    void addCount(const InstanceCount& count, std::uint64_t cells);

    // These stand in the order of their making, which partsTotal() relies on: it may evaluate the cells, and the parts
    // are as many as it says.
    GridEvaluator& mEvaluator;
    EmissionFrame mEmission;
    bool mPartsOverlap = false;              ///< a negative number of parts made runs share elements
    alignas(cacheLine) BlockRecords mStage;  ///< where the records of a block are evaluated
    Container<InstanceState> mCells;
    Container<InstancePart> mParts;

    Extent mExtent;                ///< of records and parts together
    std::int64_t mEvaluated = 0;   ///< the cells in front of this one are complete
    std::int64_t mStagedFrom = 0;  ///< the complete ones from here on are those on the stage
    std::int64_t mNextPart = 0;    ///< where the next cell's run begins
    bool mForeseen = false;        ///< the totals are those of all cells, evaluated or not
    std::uint64_t mVertexTotal = 0;
    std::uint64_t mIndexTotal = 0;
    bool mHasOversizedCell = false;
};

}  // namespace Tessavoy
