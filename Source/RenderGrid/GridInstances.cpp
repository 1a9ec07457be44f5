#include "Source/RenderGrid/GridInstances.h"

#include "Source/RenderGrid/PartPoints.h"

#include <algorithm>
#include <array>
#include <limits>

namespace Tessavoy {

namespace {

/// Where the records of a block are evaluated before they go to their place.
struct CellStage {
    explicit CellStage(const GridEvaluator& evaluator) { cells.fill(evaluator.prototype()); }

    alignas(64) std::array<InstanceState, blockCells> cells;
};

/// Cells that follow each other and write the same.
class CountedRun {
public:
    CountedRun() = default;
    CountedRun(const InstanceState& cell, std::uint64_t points) : mFirst(&cell), mPoints(points), mCells(1) {}

    /// Takes the cell if it writes what the others do.
    bool add(const InstanceState& cell, std::uint64_t points) {
        const bool same = mFirst != nullptr && points == mPoints && cell.visible == mFirst->visible &&
                          cell.stroke == mFirst->stroke && cell.feather == mFirst->feather;
        mCells += same;
        return same;
    }

    InstanceCount count(const EmissionFrame& frame) const {
        return mFirst == nullptr ? InstanceCount{} : CountInstance(frame, *mFirst, mPoints);
    }

    std::uint64_t cells() const { return mCells; }

private:
    const InstanceState* mFirst = nullptr;
    std::uint64_t mPoints = 0;
    std::uint64_t mCells = 0;
};

/// An index into the parts; one that no index can hold stands for the nearest that can.
A_long elementIndex(std::int64_t index) {
    using Limits = std::numeric_limits<A_long>;
    return static_cast<A_long>(std::clamp<std::int64_t>(index, Limits::min(), Limits::max()));
}

}  // namespace

GridInstances::GridInstances(GridEvaluator& evaluator)
    : mEvaluator(evaluator),
      mEmission(evaluator.emissionFrame()),
      mCells(evaluator.inData(), evaluator.cellCount()),
      mParts(evaluator.inData(), partsTotal()) {
    if (evaluator.knownPartsCount() < 0) {
        layOutAll();
    } else {
        evaluateAndLayOutAll();
    }
    if (mPartsOverlap) {
        rebuildOverlapping();
    }
}

/// When all cells have the same number of parts, the records leave the first cache only once, complete; otherwise their
/// parts can't be laid out before all cells are evaluated, which is done here.
std::int64_t GridInstances::partsTotal() {
    const A_long known = mEvaluator.knownPartsCount();
    return known < 0 ? evaluateAll() : mEvaluator.cellCount() * known;
}

/// Evaluates all cells but for their parts, and returns the sum of the numbers of parts as they stand.
std::int64_t GridInstances::evaluateAll() {
    CellStage stage(mEvaluator);
    std::int64_t total = 0;
    for (std::int64_t first = 0; first < mCells.count(); first += blockCells) {
        const CellBlock block = mEvaluator.blockAt(static_cast<A_long>(first));
        mEvaluator.evaluateBlock(block, stage.cells.data());
        for (int k = 0; k < block.count; ++k) {
            total += stage.cells[k].partsCount;
            mPartsOverlap = mPartsOverlap || stage.cells[k].partsCount < 0;
        }
        std::copy_n(stage.cells.data(), block.count, mCells.data() + first);
    }
    return total;
}

void GridInstances::layOutAll() {
    for (std::int64_t first = 0; first < mCells.count(); first += blockCells) {
        layOutBlock(mEvaluator.blockAt(static_cast<A_long>(first)), mCells.data() + first);
    }
}

void GridInstances::evaluateAndLayOutAll() {
    CellStage stage(mEvaluator);
    for (std::int64_t first = 0; first < mCells.count(); first += blockCells) {
        const CellBlock block = mEvaluator.blockAt(static_cast<A_long>(first));
        mEvaluator.evaluateBlock(block, stage.cells.data());
        layOutBlock(block, stage.cells.data());
        std::copy_n(stage.cells.data(), block.count, mCells.data() + first);
    }
}

/// The first part of the next cell, or null if it has none. The checked accesses stand for those to every part, of
/// which the first is the first to be seen outside.
InstancePart* GridInstances::nextRun(A_long partsCount) {
    const std::int64_t first = mNextPart;
    mNextPart += partsCount;
    if (partsCount < 1) {
        return nullptr;
    }
    InstancePart* run = &mParts[elementIndex(first)];
    static_cast<void>(mParts[elementIndex(mNextPart - 1)]);
    return run;
}

/// Hands out the parts of a block's cells, places their points and counts what they will draw. Cells that draw the same
/// mostly follow each other and are counted together.
void GridInstances::layOutBlock(const CellBlock& block, InstanceState* cells) {
    PartLayout& layout = mEvaluator.partLayout();
    layout.evaluate(block);
    CountedRun run;
    for (int k = 0; k < block.count; ++k) {
        InstanceState& cell = cells[k];
        cell.parts = nextRun(cell.partsCount);
        const std::uint64_t points = cell.parts != nullptr ? layout.layOut(k, cell, cell.parts) : 0;
        if (!run.add(cell, points)) {
            addCount(run.count(mEmission), run.cells());
            run = CountedRun(cell, points);
        }
    }
    addCount(run.count(mEmission), run.cells());
}

/// The sizes of so many cells that write the same. The test for an oversized cell is that of one cell alone, not of the
/// sums.
void GridInstances::addCount(const InstanceCount& count, std::uint64_t cells) {
    mVertexTotal += cells * count.vertices;
    mIndexTotal += cells * count.indices;
    mHasOversizedCell = mHasOversizedCell || isOversized(count);
}

/// Where runs share elements the last writer's fields stay, and every cell places its points over them, in cell order.
void GridInstances::rebuildOverlapping() {
    mVertexTotal = 0;
    mIndexTotal = 0;
    mHasOversizedCell = false;
    for (A_long index = 0; index < mCells.count(); ++index) {
        BuildPartPoints(mCells[index]);
    }
    for (A_long index = 0; index < mCells.count(); ++index) {
        addCount(CountInstance(mEmission, mCells[index]), 1);
    }
}

}  // namespace Tessavoy
