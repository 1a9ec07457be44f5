#include "Source/RenderGrid/GridInstances.h"

#include "Source/RenderGrid/PartPoints.h"

#include <algorithm>
#include <limits>

namespace Tessavoy {

namespace {

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
      mStage(stageOf(evaluator.prototype())),
      mCells(evaluator.inData(), evaluator.cellCount()),
      mParts(evaluator.inData(), partsTotal()),
      mExtent(extentOf(mCells.count() * sizeof(InstanceState) + mParts.count() * sizeof(InstancePart))) {
    if (evaluator.knownPartsCount() < 0) {
        layOutAll();
    } else if (evaluator.cellsWriteAlike()) {
        foreseeTotals();
    } else {
        evaluateTo(mCells.count());
    }
    if (mPartsOverlap) {
        rebuildOverlapping();
    }
}

GridInstances::BlockRecords GridInstances::stageOf(const InstanceState& prototype) {
    BlockRecords stage;
    stage.fill(prototype);
    return stage;
}

const Container<InstanceState>& GridInstances::cells() {
    evaluateTo(mCells.count());
    return mCells;
}

const Container<InstancePart>& GridInstances::parts() {
    evaluateTo(mCells.count());
    return mParts;
}

/// When all cells have the same number of parts, the records leave the first cache only once, complete; otherwise their
/// parts can't be laid out before all cells are evaluated, which is done here.
std::int64_t GridInstances::partsTotal() {
    const A_long known = mEvaluator.knownPartsCount();
    return known < 0 ? evaluateFieldsOfAll() : mEvaluator.cellCount() * known;
}

/// Evaluates all cells but for their parts, and returns the sum of the numbers of parts as they stand.
std::int64_t GridInstances::evaluateFieldsOfAll() {
    std::int64_t total = 0;
    for (std::int64_t first = 0; first < mCells.count(); first += blockCells) {
        const CellBlock block = mEvaluator.blockAt(static_cast<A_long>(first));
        mEvaluator.evaluateBlock(block, mStage.data());
        for (int k = 0; k < block.count; ++k) {
            total += mStage[k].partsCount;
            mPartsOverlap = mPartsOverlap || mStage[k].partsCount < 0;
        }
        std::copy_n(mStage.data(), block.count, mCells.data() + first);  // to be read again for the parts
    }
    return total;
}

void GridInstances::layOutAll() {
    for (; mEvaluated < mCells.count(); mEvaluated += blockCells) {
        const CellBlock block = mEvaluator.blockAt(static_cast<A_long>(mEvaluated));
        layOutBlock(block, mCells.data() + mEvaluated);
    }
    mStagedFrom = mEvaluated;  // the stage holds none that is complete
}

/// Completes the cells in front of this one, and the rest of its block.
void GridInstances::evaluateTo(std::int64_t end) {
    for (; mEvaluated < std::min(end, std::int64_t{mCells.count()}); mEvaluated += blockCells) {
        const CellBlock block = mEvaluator.blockAt(static_cast<A_long>(mEvaluated));
        mEvaluator.evaluateBlock(block, mStage.data());
        layOutBlock(block, mStage.data());
        storeStage(block);
        mStagedFrom = mEvaluated;
    }
}

std::span<const InstanceState> GridInstances::cellsFrom(A_long index) {
    evaluateTo(std::int64_t{index} + 1);
    const std::int64_t end = std::min(mEvaluated, std::int64_t{mCells.count()});
    if (index >= mStagedFrom) {
        return {mStage.data() + (index - mStagedFrom), static_cast<std::size_t>(end - index)};
    }
    return {mCells.data() + index, static_cast<std::size_t>(std::min(mStagedFrom, end) - index)};
}

/// The records of a block go to their place.
void GridInstances::storeStage(const CellBlock& block) {
    writeForward(mCells.data() + block.first, mStage.data(), block.count * sizeof(InstanceState), mExtent);
}

/// The first block is counted; all cells are as those are.
void GridInstances::foreseeTotals() {
    evaluateTo(blockCells);
    const std::uint64_t all = static_cast<std::uint64_t>(mCells.count());
    const std::uint64_t counted = std::min(all, std::uint64_t{blockCells});
    if (counted > 0) {
        mVertexTotal = mVertexTotal / counted * all;
        mIndexTotal = mIndexTotal / counted * all;
    }
    mForeseen = true;
}

/// The first of the next parts, or null if there are none. The checked accesses stand for those to every part, of which
/// the first is the first to be seen outside.
InstancePart* GridInstances::nextRun(std::int64_t partsCount) {
    const std::int64_t first = mNextPart;
    mNextPart += partsCount;
    if (partsCount < 1) {
        return nullptr;
    }
    InstancePart* run = &mParts[elementIndex(first)];
    static_cast<void>(mParts[elementIndex(mNextPart - 1)]);
    return run;
}

/// Cells with the same number of parts take them out of one run.
void GridInstances::handOutParts(InstanceState* cells, int count) {
    const A_long known = mEvaluator.knownPartsCount();
    if (known < 0) {
        for (int k = 0; k < count; ++k) {
            cells[k].parts = nextRun(cells[k].partsCount);
        }
    } else if (InstancePart* const run = nextRun(std::int64_t{count} * known); run != nullptr) {
        for (int k = 0; k < count; ++k) {
            cells[k].parts = run + std::ptrdiff_t{k} * known;
        }
    }
}

/// Hands out the parts of a block's cells, places their points and counts what they will draw.
void GridInstances::layOutBlock(const CellBlock& block, InstanceState* cells) {
    PartLayout& layout = mEvaluator.partLayout();
    layout.evaluate(block);
    BlockPoints points;
    handOutParts(cells, block.count);
    const A_long known = mEvaluator.knownPartsCount();
    if (layout.dependsOnCountOnly() && known > 0 && known <= PartLayout::longestRun) {
        points.fill(layout.layOutAlike(cells, block.count, mExtent));
    } else {
        for (int k = 0; k < block.count; ++k) {
            points[k] = cells[k].parts != nullptr ? layout.layOut(k, cells[k], cells[k].parts) : 0;
        }
    }
    if (!mForeseen) {
        countBlock(cells, block.count, points);
    }
}

/// Cells that draw the same mostly follow each other and are counted together.
void GridInstances::countBlock(const InstanceState* cells, int count, const BlockPoints& points) {
    CountedRun run;
    for (int k = 0; k < count; ++k) {
        if (!run.add(cells[k], points[k])) {
            addCount(run.count(mEmission), run.cells());
            run = CountedRun(cells[k], points[k]);
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
