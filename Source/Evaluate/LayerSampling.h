#pragma once

#include "HostInterface/Effect.h"
#include "Source/Evaluate/CustomParameters.h"

#include <array>
#include <cstddef>
#include <deque>
#include <optional>

namespace Tessavoy {

/// Where a layer's pixels lie in the host's memory for this frame. Each pixel is alpha, red, green, blue; rows run from
/// the image's top. Nothing is owned.
struct LayerPixels {
    enum class Depth { Empty, Bits8, Bits16, Float };

    Depth depth = Depth::Empty;
    const std::byte* base = nullptr;
    A_long rowbytes = 0;  ///< bytes from one row to the next
    A_long width = 0;     ///< pixels
    A_long height = 0;
};

/// The parameters that a frame has checked out, in call order, and the layers among them. Belongs to one call on one
/// thread: a slot's address is asked of the host when it is first read and kept until clear().
struct LayerSlots {
    PF_InData* inData = nullptr;

    /// The entries stay where they are while the list grows, as the host needs it.
    std::deque<PF_ParamDef> checkouts;

    /// The place of slot 1 in checkouts; slot n is n - 1 entries behind it.
    A_long firstLayerCheckout = 0;

    mutable std::array<std::optional<LayerPixels>, CustomParametersCount> resolved{};

    /// Whether any slot holds a layer with pixels.
    bool holdPixels() const;

    /// Empties the list and forgets every address, as when the parameters have been checked in.
    void clear();
};

/// The values of a Source popup.
enum LayerSource : A_long {
    LayerSource_Red = 1,
    LayerSource_Green = 2,
    LayerSource_Blue = 3,
    LayerSource_Alpha = 4,
    LayerSource_Lightness = 5,          ///< mean of the colour channels, times alpha
    LayerSource_LightnessWithAlpha = 6  ///< always 0
};

/// The nearest pixel of a slot at (u, v) as r, g, b, a: u runs from the first column (0) to the last (1), v from the
/// top row to the bottom one; what lies outside reads the edge. Full channels are 1.0 in every depth, float channels
/// come as stored.
///
/// slot: 1..23, asserted. An empty slot reads as zeros; so does an entry that is no layer or lies behind the list
/// (slots 11 to 23 reach behind the layers). A host error throws Exception with its code; a float layer without "PF
/// Pixel Data Suite" throws Exception(516).
std::array<float, 4> sampleLayerPixel(const LayerSlots& layers, A_long slot, float u, float v);

/// One channel of that pixel, chosen by a LayerSource; any other source reads 0.
double sampleLayerChannel(const LayerSlots& layers, A_long slot, float u, float v, A_long source);

/// sampleLayerPixel at (u[k], v[k]) into out[k], for k in 0..count - 1.
void sampleLayerPixels(const LayerSlots& layers, A_long slot, const float* u, const float* v, int count,
                       std::array<float, 4>* out);

/// sampleLayerChannel at (u[k], v[k]) into out[k], for k in 0..count - 1.
void sampleLayerChannels(const LayerSlots& layers, A_long slot, const float* u, const float* v, A_long source,
                         int count, double* out);

}  // namespace Tessavoy
