#include "Source/RenderGrid/CellEvaluation.h"

#include "Source/Evaluate/Truncation.h"
#include "Source/Parameter/PopupValues.h"

#include <array>

namespace Tessavoy {

namespace {

/// A shape of four parts is a square, and this makes its half side as long as the size that the user set.
constexpr float squareFactor = 1.4142135F;

constexpr float smallestFeather = 0.0001F;
constexpr float smallestStrokeWidth = 0.01F;
constexpr float smallestRadius = 0.01F;

constexpr float percent = 0.01F;

/// Where a constant property is evaluated: it is the same everywhere.
constexpr float anywhere = 0.5F;

using BlockValues = std::array<double, blockCells>;

/// Whether a cell is live: shown by its draw, and with a size and parts.
bool isLive(const InstanceState& cell, bool shown) {
    return shown && cell.radius > smallestRadius && cell.partsCount > 0;
}

BlockValues evaluated(const PropertyEvaluator& property, const CellBlock& block) {
    BlockValues values{};
    property.evaluate(block.u.data(), block.v.data(), values.data(), block.count);
    return values;
}

double constantOf(const PropertyEvaluator& property) {
    return property.evaluate(anywhere, anywhere);
}

}  // namespace

CellEvaluation::CellEvaluation(const ParameterSnapshot& snapshot, const FrameChoice& frames, bool toFractions)
    : mSnapshot(snapshot),
      mFrames(frames),
      mPercentFactor(toFractions ? percent : 1.0F),
      mTextured(snapshot.ShapeType == PopupValues::TexturedQuad) {
    const auto offset = [](const PropertyEvaluator& property) {
        const bool constant = property.isConstant();
        return OffsetField{&property, constant, constant ? static_cast<float>(constantOf(property)) : 0.0F};
    };
    mOffsetX = offset(snapshot.InstanceOffsetX);
    mOffsetY = offset(snapshot.InstanceOffsetY);
    mOffsetZ = offset(snapshot.InstanceOffsetZ);
    mPrototype.z = 0.0F + mOffsetZ.value;
    takePlainFields();
    takeScales();
    takeRadiusAndParts();
    takeStroke();
    takeFeather();
    takeColour();
    takeFrameIndex();
    takeVisibility();
}

void CellEvaluation::takePlainFields() {
    takePlainField({&mSnapshot.ShapeAnchorX, &InstanceState::anchorX, true, true});
    takePlainField({&mSnapshot.ShapeAnchorY, &InstanceState::anchorY, true, true});
    takePlainField({&mSnapshot.InstanceRotation3DX, &InstanceState::angleX, false, true});
    takePlainField({&mSnapshot.InstanceRotation3DY, &InstanceState::angleY, false, true});
    takePlainField({&mSnapshot.InstanceRotation, &InstanceState::angle, false, true});
}

void CellEvaluation::takeScales() {
    takePlainField({&mSnapshot.ShapeScaleX, &InstanceState::scaleX, true, false});
    if (mSnapshot.ShapeUniformScaling) {
        mPrototype.scaleY = mPrototype.scaleX;
        mScaleYFollows = !mSnapshot.ShapeScaleX.isConstant();
    } else {
        takePlainField({&mSnapshot.ShapeScaleY, &InstanceState::scaleY, true, false});
    }
}

void CellEvaluation::takePlainField(const PlainField& field) {
    if (field.property->isConstant()) {
        const float factor = field.inPercent ? mPercentFactor : 1.0F;
        mPrototype.*field.field = static_cast<float>(constantOf(*field.property)) * factor;
    } else {
        mVaryingFields.push_back(field);
        mMatrixFieldsVary = mMatrixFieldsVary || field.inMatrix;
    }
}

void CellEvaluation::takeRadiusAndParts() {
    const bool raysVary = !mSnapshot.ShapeRaysCount.isConstant();
    mPartsVary = raysVary && !mTextured;
    mRadiusVaries = mPartsVary || !mSnapshot.InstanceSize.isConstant();
    mMatrixFieldsVary = mMatrixFieldsVary || mRadiusVaries;
    if (!mPartsVary) {
        const A_long rays = raysVary ? 0 : truncated(constantOf(mSnapshot.ShapeRaysCount));
        mPrototype.partsCount = partsCountOf(rays);
        if (!mRadiusVaries) {
            mPrototype.radius = radiusOf(constantOf(mSnapshot.InstanceSize), rays);
        }
    }
}

void CellEvaluation::takeStroke() {
    mPrototype.stroke = mSnapshot.ShapeDrawMode == PopupValues::Stroke && !mTextured;
    if (mSnapshot.ShapeStrokeWidth.isConstant()) {
        mPrototype.strokeWidth = strokeWidthOf(constantOf(mSnapshot.ShapeStrokeWidth));
    }
}

void CellEvaluation::takeFeather() {
    const bool inPixels = mSnapshot.ShapeFeatherScreenSpace;
    const float feather = static_cast<float>(inPixels ? mSnapshot.ShapeFeatherPixels : mSnapshot.ShapeFeatherPercents);
    mPrototype.featherScreenSpace = inPixels;
    mPrototype.feather = feather <= smallestFeather ? 0.0F : feather * (inPixels ? 1.0F : mPercentFactor);
}

void CellEvaluation::takeColour() {
    if (mSnapshot.InstanceColor.isConstant()) {
        const std::array<float, 4> colour = mSnapshot.InstanceColor.evaluate(anywhere, anywhere);
        mPrototype.r = colour[0];
        mPrototype.g = colour[1];
        mPrototype.b = colour[2];
    }
    if (mSnapshot.InstanceAlpha.isConstant()) {
        mPrototype.a = static_cast<float>(mSnapshot.InstanceAlpha.evaluateClamped(anywhere, anywhere));
    }
}

void CellEvaluation::takeFrameIndex() {
    const A_long mode = mSnapshot.ShapeFramesSplittingMode;
    const bool byProperty = mode == PopupValues::GridOfItems || mode == PopupValues::TimelineFrames;
    const bool constant = byProperty && mSnapshot.ShapeFrameIndex.isConstant();
    mFrameIndexVaries = mTextured && (mode == PopupValues::SplitImage || (byProperty && !constant));
    if (mTextured && constant) {
        mPrototype.spriteIndex =
            mSnapshot.ShapeFrameIndex.evaluateIndex(anywhere, anywhere, mFrames.frameCount, mFrames.phase);
    }
}

/// The answer for one cell is that for all.
void CellEvaluation::takeVisibility() {
    if (hasConstantLiveness()) {
        mPrototype.visible = isLive(mPrototype, mSnapshot.InstanceVisible.test(0, 0));
    }
}

bool CellEvaluation::hasConstantLiveness() const {
    return !mPartsVary && !mRadiusVaries && mSnapshot.InstanceVisible.isConstant();
}

void CellEvaluation::evaluate(const CellBlock& block, InstanceState* cells) const {
    writePositions(block, cells);
    writePlainFields(block, cells);
    writeColours(block, cells);
    writeAlphas(block, cells);
    writeFrameIndexes(block, cells);
    writeRadiiAndParts(block, cells);
    writeStrokeWidths(block, cells);
    writeVisibility(block, cells);
}

namespace {

using BlockPositions = std::array<float, blockCells>;

/// Grid positions along one axis: the difference in single, the product in double precision.
BlockPositions gridPositions(const std::array<float, blockCells>& part, double extent) {
    BlockPositions positions;
    for (int k = 0; k < blockCells; ++k) {
        positions[k] = static_cast<float>((part[k] - 0.5F) * extent);
    }
    return positions;
}

}  // namespace

void CellEvaluation::writePositions(const CellBlock& block, InstanceState* cells) const {
    const auto moved = [&](BlockPositions positions, const OffsetField& offset) {
        if (offset.constant) {
            for (float& position : positions) {
                position += offset.value;
            }
        } else {
            const BlockValues values = evaluated(*offset.property, block);
            for (int k = 0; k < blockCells; ++k) {
                positions[k] += static_cast<float>(values[k]);
            }
        }
        return positions;
    };
    const BlockPositions x = moved(gridPositions(block.u, mSnapshot.GridWidth), mOffsetX);
    const BlockPositions y = moved(gridPositions(block.v, mSnapshot.GridHeight), mOffsetY);
    for (int k = 0; k < block.count; ++k) {
        cells[k].i = block.i[k];
        cells[k].j = block.j[k];
        cells[k].x = x[k];
        cells[k].y = y[k];
    }
    if (!mOffsetZ.constant) {
        const BlockPositions z = moved(BlockPositions{}, mOffsetZ);
        for (int k = 0; k < block.count; ++k) {
            cells[k].z = z[k];
        }
    }
}

void CellEvaluation::writePlainFields(const CellBlock& block, InstanceState* cells) const {
    for (const PlainField& field : mVaryingFields) {
        const BlockValues values = evaluated(*field.property, block);
        const float factor = field.inPercent ? mPercentFactor : 1.0F;
        for (int k = 0; k < block.count; ++k) {
            cells[k].*field.field = static_cast<float>(values[k]) * factor;
        }
    }
    if (mScaleYFollows) {
        for (int k = 0; k < block.count; ++k) {
            cells[k].scaleY = cells[k].scaleX;
        }
    }
}

void CellEvaluation::writeColours(const CellBlock& block, InstanceState* cells) const {
    if (mSnapshot.InstanceColor.isConstant()) {
        return;
    }
    std::array<std::array<float, 4>, blockCells> colours;
    mSnapshot.InstanceColor.evaluate(block.u.data(), block.v.data(), colours.data(), block.count);
    for (int k = 0; k < block.count; ++k) {
        cells[k].r = colours[k][0];
        cells[k].g = colours[k][1];
        cells[k].b = colours[k][2];
    }
}

void CellEvaluation::writeAlphas(const CellBlock& block, InstanceState* cells) const {
    if (mSnapshot.InstanceAlpha.isConstant()) {
        return;
    }
    BlockValues alphas;
    mSnapshot.InstanceAlpha.evaluateClamped(block.u.data(), block.v.data(), alphas.data(), block.count);
    for (int k = 0; k < block.count; ++k) {
        cells[k].a = static_cast<float>(alphas[k]);
    }
}

void CellEvaluation::writeFrameIndexes(const CellBlock& block, InstanceState* cells) const {
    if (!mFrameIndexVaries) {
        return;
    }
    std::array<A_long, blockCells> indexes;
    if (mSnapshot.ShapeFramesSplittingMode == PopupValues::SplitImage) {
        for (int k = 0; k < block.count; ++k) {
            indexes[k] = block.j[k] * mFrames.framesAcross + block.i[k] + 1;
        }
    } else {
        mSnapshot.ShapeFrameIndex.evaluateIndex(block.u.data(), block.v.data(), mFrames.frameCount, mFrames.phase,
                                                indexes.data(), block.count);
    }
    for (int k = 0; k < block.count; ++k) {
        cells[k].spriteIndex = indexes[k];
    }
}

A_long CellEvaluation::partsCountOf(double raysCount) const {
    const A_long rays = truncated(raysCount);
    return mTextured ? 4 : rays < 1 ? 0 : rays;
}

float CellEvaluation::radiusOf(double size, A_long rays) const {
    const float radius = static_cast<float>(size);
    return mTextured || rays == 4 ? radius * squareFactor : radius;
}

float CellEvaluation::strokeWidthOf(double width) const {
    const float stored = static_cast<float>(width);
    return (stored <= smallestStrokeWidth ? smallestStrokeWidth : stored) * mPercentFactor;
}

void CellEvaluation::writeRadiiAndParts(const CellBlock& block, InstanceState* cells) const {
    if (mPartsVary) {
        const BlockValues rays = evaluated(mSnapshot.ShapeRaysCount, block);
        for (int k = 0; k < block.count; ++k) {
            cells[k].partsCount = partsCountOf(rays[k]);
        }
    }
    if (mRadiusVaries) {
        const BlockValues sizes = evaluated(mSnapshot.InstanceSize, block);
        for (int k = 0; k < block.count; ++k) {
            cells[k].radius = radiusOf(sizes[k], cells[k].partsCount);
        }
    }
}

void CellEvaluation::writeStrokeWidths(const CellBlock& block, InstanceState* cells) const {
    if (mSnapshot.ShapeStrokeWidth.isConstant()) {
        return;
    }
    const BlockValues widths = evaluated(mSnapshot.ShapeStrokeWidth, block);
    for (int k = 0; k < block.count; ++k) {
        cells[k].strokeWidth = strokeWidthOf(widths[k]);
    }
}

void CellEvaluation::writeVisibility(const CellBlock& block, InstanceState* cells) const {
    if (hasConstantLiveness()) {
        return;
    }
    std::array<A_u_char, blockCells> shown;
    mSnapshot.InstanceVisible.test(block.i.data(), block.j.data(), block.count, shown.data());
    for (int k = 0; k < block.count; ++k) {
        cells[k].visible = isLive(cells[k], shown[k] != 0);
    }
}

void scaleToFractions(InstanceState& cell) {
    cell.scaleX *= percent;
    cell.scaleY *= percent;
    cell.strokeWidth *= percent;
    cell.anchorX *= percent;
    cell.anchorY *= percent;
    if (cell.featherScreenSpace == 0) {
        cell.feather *= percent;
    }
}

}  // namespace Tessavoy
