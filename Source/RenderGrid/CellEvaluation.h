#pragma once

#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/RenderGrid/CellBlock.h"
#include "Source/RenderGrid/InstanceState.h"

#include <vector>

namespace Tessavoy {

/// What the frame index of a cell depends on beside its property.
struct FrameChoice {
    A_long framesAcross = 1;  ///< frames side by side in a split image
    A_long frameCount = 1;    ///< frames that the atlas holds
    double phase = 0.0;       ///< position of the animation in frames
};

/// Evaluates the properties of cells into their records, from the position to the visibility; matrix and parts come
/// after.
///
/// What is the same for all cells is evaluated once, into the prototype, and only the rest for each cell.
class CellEvaluation {
public:
    /// toFractions: the final scaling is done as the fields are written, because no script comes in between. The
    /// snapshot must outlive this object.
    CellEvaluation(const ParameterSnapshot& snapshot, const FrameChoice& frames, bool toFractions);

    /// A record with everything that is the same for all cells; the rest is 0.
    const InstanceState& prototype() const { return mPrototype; }

    /// Whether all cells have the prototype's number of parts.
    bool hasConstantPartsCount() const { return !mPartsVary; }

    /// Whether all cells are live or none. All have the same number of parts then.
    bool hasConstantLiveness() const;

    /// Whether all cells have the prototype's angles, radius and anchor.
    bool hasConstantMatrixFields() const { return !mMatrixFieldsVary; }

    /// Writes what differs from cell to cell into cells[0..block.count - 1], which hold the prototype or an earlier
    /// result of this function.
    void evaluate(const CellBlock& block, InstanceState* cells) const;

private:
    /// A property that is stored as it comes.
    struct PlainField {
        const PropertyEvaluator* property;
        float InstanceState::*field;
        bool inPercent;
        bool inMatrix;  ///< it takes part in the cell's matrix
    };
    /// A property that moves the cell.
    struct OffsetField {
        const PropertyEvaluator* property;
        bool constant;
        float value;  ///< when constant
    };

    void takePlainFields();
    void takeScales();
    void takePlainField(const PlainField& field);
    void takeRadiusAndParts();
    void takeStroke();
    void takeFeather();
    void takeColour();
    void takeFrameIndex();
    void takeVisibility();

    void writePositions(const CellBlock& block, InstanceState* cells) const;
    void writePlainFields(const CellBlock& block, InstanceState* cells) const;
    void writeColours(const CellBlock& block, InstanceState* cells) const;
    void writeAlphas(const CellBlock& block, InstanceState* cells) const;
    void writeFrameIndexes(const CellBlock& block, InstanceState* cells) const;
    void writeRadiiAndParts(const CellBlock& block, InstanceState* cells) const;
    void writeStrokeWidths(const CellBlock& block, InstanceState* cells) const;
    void writeVisibility(const CellBlock& block, InstanceState* cells) const;

    A_long partsCountOf(double raysCount) const;
    float radiusOf(double size, A_long rays) const;
    float strokeWidthOf(double width) const;

    const ParameterSnapshot& mSnapshot;
    FrameChoice mFrames;
    float mPercentFactor;  ///< what fields in percent are multiplied by as they are written
    bool mTextured;
    InstanceState mPrototype{};
    std::vector<PlainField> mVaryingFields;
    OffsetField mOffsetX;
    OffsetField mOffsetY;
    OffsetField mOffsetZ;
    bool mMatrixFieldsVary = false;
    bool mRadiusVaries = false;
    bool mPartsVary = false;
    bool mScaleYFollows = false;  ///< it takes each cell's scaleX
    bool mFrameIndexVaries = false;
};

/// The last step of a cell's evaluation, where a script may have come before: percents become fractions.
void scaleToFractions(InstanceState& cell);

}  // namespace Tessavoy
