#pragma once

#include "HostInterface/Types.h"
#include "Source/Evaluate/LayerTerm.h"
#include "Source/Evaluate/NoiseSource.h"

namespace Tessavoy {

/// One property of the instances as a formula over the cells: a base value, noise, a layer and a shift of the range
/// that these two can add.
///
/// Cells are addressed by (u, v), their place in the grid from 0 to 1; u may exceed 1 in shifted rows of a hexagon
/// grid. All evaluations are pure. The batch forms take count cells and give the same bits as the single calls. A host
/// error while a layer is read throws Exception.
struct PropertyEvaluator {
    explicit PropertyEvaluator(const LayerSlots& slots) : layers(&slots), Noise(slots) {}

    const LayerSlots* layers;  ///< not owned

    double ValueOffset = 0;  ///< percent; 100 leaves the range above Value, 0 centres it on Value
    NoiseSource Noise;
    LayerTerm Layer;    ///< Source is a LayerSource
    double Value = 0;   ///< in the property's own unit
    bool Flag = false;  ///< CropToOne of the alpha property, LoopIndexes of the frame index; the others never read it

    double evaluate(float u, float v) const;
    void evaluate(const float* u, const float* v, double* out, int count) const;

    /// The alpha form: never below 0, and with CropToOne never above 1.
    double evaluateClamped(float u, float v) const;
    void evaluateClamped(const float* u, const float* v, double* out, int count) const;

    /// The frame index form, where everything is a percentage of the frames there are. The result is in 1..frames, or 0
    /// if frames is 0. phase: the animation's position in frames. With LoopIndexes positions beyond the ends wrap, else
    /// they pin.
    A_long evaluateIndex(float u, float v, A_long frames, double phase) const;
    void evaluateIndex(const float* u, const float* v, A_long frames, double phase, A_long* out, int count) const;

    /// Whether every cell gets the same value because neither noise nor layer takes part.
    bool isConstant() const { return Noise.isInert() && !Layer.active(); }
};

}  // namespace Tessavoy
