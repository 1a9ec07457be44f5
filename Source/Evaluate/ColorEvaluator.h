#pragma once

#include "Source/Evaluate/LayerTerm.h"
#include "Source/Evaluate/PropertyEvaluator.h"

#include <array>

namespace Tessavoy {

/// The values of a colour's layer Source popup.
enum ColorLayerSource : A_long { ColorLayerSource_Color = 1, ColorLayerSource_ColorWithPremultipliedAlpha = 2 };

/// The colour of the instances: a base colour, a layer's colour added to it, and shifts of hue, saturation and
/// perceived brightness in the HSP model. Pure, like PropertyEvaluator.
struct ColorEvaluator {
    explicit ColorEvaluator(const LayerSlots& slots)
        : layers(&slots), Brightness(slots), Hue(slots), Saturation(slots) {}

    const LayerSlots* layers;  ///< not owned

    std::array<double, 4> Color{};  ///< r, g, b, a, each 0..1; a is never used
    LayerTerm Layer;                ///< Source is a ColorLayerSource; any other value adds nothing
    PropertyEvaluator Brightness;   ///< percent
    PropertyEvaluator Hue;          ///< degrees
    PropertyEvaluator Saturation;   ///< percent

    /// r, g, b and 1. Where all three shifts are 0 the colour comes as it stands, and may exceed 1.
    std::array<float, 4> evaluate(float u, float v) const;

    /// evaluate(u[k], v[k]) into out[k], for k in 0..count - 1; bit-equal to the single calls.
    void evaluate(const float* u, const float* v, std::array<float, 4>* out, int count) const;

    /// Whether every cell gets the same colour because neither noise nor layer takes part.
    bool isConstant() const;
};

}  // namespace Tessavoy
