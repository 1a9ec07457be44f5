#include "Source/RenderGrid/GridEvaluator.h"

#include "Source/Parameter/PopupValues.h"

#include <algorithm>
#include <array>
#include <cmath>
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

CellScript* runnable(CellScript* script) {
    return script != nullptr && script->changesNothing() ? nullptr : script;
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
      mScript(runnable(script)),
      mClearsInfinities(script != nullptr && mScript == nullptr && snapshot.layers.holdPixels()),
      mShape{std::max(snapshot.CountX, 0), std::max(snapshot.CountY, 0), snapshot.HexGrid},
      mTextured(snapshot.ShapeType == PopupValues::TexturedQuad && snapshot.shapeTextureLayer() != nullptr),
      mGridMatrix(buildGridMatrix(snapshot, viewProjection, mPlace)),
      mCells(snapshot, frameChoice(snapshot, *inData, atlas), mScript == nullptr),
      mCellMatrix(snapshot, mGridMatrix, mPlace),
      mPartLayout(snapshot),
      mPrototype(mCells.prototype()),
      mPlaceOnly(mScript == nullptr && mCells.hasConstantMatrixFields()) {
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
