// The custom layers as the snapshot gives them out.

#include "Source/Assert.h"
#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/Parameter/PopupValues.h"
#include "Source/Parameter/Sections.h"

namespace Tessavoy {

namespace {

/// The sampler asserts the same; here the report names the snapshot as the place.
void assertLayer(A_long layerInd) {
    TESSAVOY_ASSERT(layerInd >= 1, "layerInd >= 1");
    TESSAVOY_ASSERT(layerInd <= CustomParametersCount, "layerInd <= CustomParametersCount");
}

}  // namespace

PF_LayerDef* ParameterSnapshot::shapeTextureLayer() {
    if (ShapeTextureLayerIndex == PopupValues::NoLayer) {
        return nullptr;
    }
    const A_long index = ShapeTextureLayerIndex - 2;
    TESSAVOY_ASSERT(index >= 0, "index >= 0");
    TESSAVOY_ASSERT(index + 1 <= CustomParametersCount, "index + 1 <= CustomParametersCount");
    // Values past the custom layers reach other parameters, which hold no pixels.
    const auto place = static_cast<std::size_t>(layers.firstLayerCheckout + index);
    if (place >= layers.checkouts.size()) {
        return nullptr;
    }
    PF_ParamDef& checkout = layers.checkouts[place];
    const bool hasPixels = checkout.param_type == PF_Param_LAYER && checkout.u.ld.data != nullptr;
    return hasPixels ? &checkout.u.ld : nullptr;
}

std::string ParameterSnapshot::shapeTextureLayerId() const {
    if (ShapeTextureLayerIndex == PopupValues::NoLayer) {
        return {};
    }
    return composeId(Section::CustomParameters, "Layer", ShapeTextureLayerIndex);
}

std::array<float, 4> ParameterSnapshot::layerColor(A_long layerInd, float u, float v) const {
    assertLayer(layerInd);
    return sampleLayerPixel(layers, layerInd, u, v);
}

double ParameterSnapshot::layerChannel(A_long layerInd, float u, float v, A_long source) const {
    assertLayer(layerInd);
    return sampleLayerChannel(layers, layerInd, u, v, source);
}

}  // namespace Tessavoy
