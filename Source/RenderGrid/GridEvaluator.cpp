#include "Source/RenderGrid/GridEvaluator.h"

#include "Source/Assert.h"
#include "Source/Parameter/PopupValues.h"
#include "Source/Sequence.h"

#include <algorithm>
#include <limits>

namespace Tessavoy {

namespace {

/// With a camera the frustum takes care of where the picture begins.
FramePlace withoutOriginUnderCamera(const FramePlace& place, const ViewProjection& viewProjection) {
    return viewProjection.usesCamera == 1 ? FramePlace{place.downsampleX, place.downsampleY, 0.0F, 0.0F} : place;
}

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

void requireLiveSequenceData(const PF_InData* inData) {
    const SequenceAccess sequenceDataPtr(inData);
    TESSAVOY_ASSERT(sequenceDataPtr.get() == nullptr || !sequenceDataPtr->flatten, "!sequenceDataPtr->flatten");
}

}  // namespace

GridEvaluator::GridEvaluator(PF_InData* inData, PF_OutData* outData, ParameterSnapshot& snapshot,
                             const FramePlace& place, float multiplier16bit, const ViewProjection& viewProjection,
                             const TextureAtlas& atlas, CellScript* script)
    : mInData(inData),
      mOutData(outData),
      mSnapshot(snapshot),
      mPlace(withoutOriginUnderCamera(place, viewProjection)),
      mMultiplier16bit(multiplier16bit),
      mViewProjection(viewProjection),
      mAtlas(atlas),
      mScript(script),
      mShape{std::max(snapshot.CountX, 0), std::max(snapshot.CountY, 0), snapshot.HexGrid},
      mTextured(snapshot.ShapeType == PopupValues::TexturedQuad && snapshot.shapeTextureLayer() != nullptr),
      mGridMatrix(buildGridMatrix(snapshot, viewProjection, mPlace)),
      mCells(snapshot, frameChoice(snapshot, *inData, atlas), script == nullptr),
      mCellMatrix(snapshot, mGridMatrix, mPlace),
      mPartLayout(snapshot),
      mPrototype(mCells.prototype()),
      mPlaceOnly(script == nullptr && mCells.hasConstantMatrixFields()) {
    requireLiveSequenceData(inData);
    if (mPlaceOnly) {
        mCellMatrix.prepare(mPrototype);
        mCellMatrix.build(mPrototype);
    }
}

EmissionFrame GridEvaluator::emissionFrame() const {
    return {mTextured ? &mAtlas : nullptr, mPlace.downsampleX, mPlace.downsampleY};
}

CellBlock GridEvaluator::blockAt(A_long firstIndex) const {
    constexpr std::int64_t most = std::numeric_limits<A_long>::max();
    return CellBlock(mShape, firstIndex, static_cast<A_long>(std::min(cellCount(), most)) - firstIndex);
}

A_long GridEvaluator::knownPartsCount() const {
    return mScript == nullptr && mCells.hasConstantPartsCount() ? mPrototype.partsCount : -1;
}

void GridEvaluator::EvaluateCell(A_long index, InstanceState& cell) const {
    CellBlock block = blockAt(index);
    block.count = 1;
    cell = mPrototype;
    evaluateFields(block, &cell);
}

void GridEvaluator::evaluateFields(const CellBlock& block, InstanceState* cells) const {
    if (mScript == nullptr) {
        mCells.evaluate(block, cells);
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
        mPlace.downsampleX,  mPlace.downsampleY,   u,          v, mShape.countX, mShape.countY,
        mSnapshot.GridWidth, mSnapshot.GridHeight, mGridMatrix};
    if (!mScript->runCell(mInData, inputs, cell)) {
        mScript->reportFailure(mInData, mOutData, cell);
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
