#include "Source/RenderGrid/GridEvaluator.h"

#include "Source/Parameter/PopupValues.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace Tessavoy {

namespace {

FrameChoice frameChoice(const ParameterSnapshot& snapshot, const PF_InData& inData, const TextureAtlas& atlas) {
    FrameChoice choice;
    choice.framesAcross =
        snapshot.ShapeFramesSplittingMode == PopupValues::SplitImage ? snapshot.CountX : snapshot.ShapeXFramesInTexture;
    choice.frameCount = atlas.frameCount;
    if (snapshot.ShapeFramesAnimationSequence) {
        choice.phase = inData.current_time * snapshot.ShapeFramesAnimationSpeed / inData.time_step;
    }
    return choice;
}

/// With a camera the frustum takes care of where the picture begins; a script that changes nothing isn't run.
GridFrame effectiveFrame(GridFrame frame) {
    if (frame.viewProjection.usesCamera == 1) {
        frame.place.originX = 0.0F;
        frame.place.originY = 0.0F;
    }
    if (frame.script != nullptr && frame.script->changesNothing()) {
        frame.script = nullptr;
    }
    return frame;
}

/// What a script that assigns nothing does to a live cell: infinities become 0.
void clearInfinities(InstanceState& cell) {
    constexpr std::array fields = {
        &InstanceState::x,       &InstanceState::y,       &InstanceState::z,           &InstanceState::angleX,
        &InstanceState::angleY,  &InstanceState::angle,   &InstanceState::radius,      &InstanceState::r,
        &InstanceState::g,       &InstanceState::b,       &InstanceState::a,           &InstanceState::feather,
        &InstanceState::anchorX, &InstanceState::anchorY, &InstanceState::strokeWidth, &InstanceState::scaleX,
        &InstanceState::scaleY,
    };
    if (cell.visible == 0) {
        return;
    }
    for (const auto field : fields) {
        if (std::isinf(cell.*field)) {
            cell.*field = 0.0F;
        }
    }
}

}  // namespace

GridEvaluator::GridEvaluator(ParameterSnapshot& snapshot, const GridFrame& frame)
    : mSnapshot(snapshot),
      mFrame(effectiveFrame(frame)),
      mClearsInfinities(frame.script != nullptr && mFrame.script == nullptr && snapshot.layers.holdPixels()),
      mShape{std::max(snapshot.CountX, 0), std::max(snapshot.CountY, 0), snapshot.HexGrid},
      mTextured(snapshot.ShapeType == PopupValues::TexturedQuad && snapshot.shapeTextureLayer() != nullptr),
      mGridMatrix(buildGridMatrix(snapshot, frame.viewProjection, mFrame.place)),
      mCells(snapshot, frameChoice(snapshot, *frame.inData, frame.atlas), mFrame.script == nullptr),
      mCellMatrix(snapshot, mGridMatrix, mFrame.place),
      mPartLayout(snapshot),
      mPrototype(mCells.prototype()),
      mPlaceOnly(mFrame.script == nullptr && mCells.hasConstantMatrixFields()) {
    if (mPlaceOnly) {
        mCellMatrix.prepare(mPrototype);
        mCellMatrix.build(mPrototype);
    }
}

EmissionFrame GridEvaluator::emissionFrame() const {
    return {mTextured ? &mFrame.atlas : nullptr, mFrame.place.downsampleX, mFrame.place.downsampleY};
}

CellBlock GridEvaluator::blockAt(A_long firstIndex) const {
    constexpr std::int64_t most = std::numeric_limits<A_long>::max();
    return CellBlock(mShape, firstIndex, static_cast<A_long>(std::min(cellCount(), most)) - firstIndex);
}

A_long GridEvaluator::knownPartsCount() const {
    return mFrame.script == nullptr && mCells.hasConstantPartsCount() ? mPrototype.partsCount : -1;
}

bool GridEvaluator::cellsWriteAlike() const {
    return mFrame.script == nullptr && mCells.hasConstantLiveness() && mPartLayout.dependsOnCountOnly();
}

void GridEvaluator::EvaluateCell(A_long index, InstanceState& cell) const {
    CellBlock block = blockAt(index);
    block.count = 1;
    cell = mPrototype;
    evaluateFields(block, &cell);
}

void GridEvaluator::evaluateFields(const CellBlock& block, InstanceState* cells) const {
    if (mFrame.script == nullptr) {
        mCells.evaluate(block, cells);
        if (mClearsInfinities) {
            std::for_each_n(cells, block.count, clearInfinities);
        }
        return;
    }
    std::fill_n(cells, block.count, mPrototype);
    mCells.evaluate(block, cells);
    for (int k = 0; k < block.count; ++k) {
        if (cells[k].visible != 0) {
            runScript(block.u[k], block.v[k], cells[k]);
        }
        scaleToFractions(cells[k]);
    }
}

void GridEvaluator::runScript(float u, float v, InstanceState& cell) const {
    const CellScriptInputs inputs{
        mFrame.place.downsampleX, mFrame.place.downsampleY, u,          v, mShape.countX, mShape.countY,
        mSnapshot.GridWidth,      mSnapshot.GridHeight,     mGridMatrix};
    if (!mFrame.script->runCell(mFrame.inData, inputs, cell)) {
        mFrame.script->reportFailure(mFrame.inData, mFrame.outData, cell);
    }
}

void GridEvaluator::evaluateBlock(const CellBlock& block, InstanceState* cells) const {
    evaluateFields(block, cells);
    if (mPlaceOnly) {
        mCellMatrix.place(cells, block.count);
        return;
    }
    for (int k = 0; k < block.count; ++k) {
        mCellMatrix.build(cells[k]);
    }
}

}  // namespace Tessavoy
