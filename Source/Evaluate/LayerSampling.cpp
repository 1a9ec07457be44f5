#include "Source/Evaluate/LayerSampling.h"

#include "Source/Assert.h"
#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/SuiteHandler.h"

#include <cstring>

namespace Tessavoy {

namespace {

using Depth = LayerPixels::Depth;

/// Null when the host has no float pixels for the layer either.
const void* floatPixels(const PF_InData* inData, PF_LayerDef* layer) {
    try {
        SuiteHandler suites(inData->pica_basicP);
        PF_PixelFloat* pixels = nullptr;
        throwOnError(suites.get<PF_PixelDataSuite1>().get_pixel_data_float(layer, nullptr, &pixels));
        return pixels;
    } catch (PF_Err missingSuite) {
        throw Exception(missingSuite);
    }
}

LayerPixels pixelsAt(Depth depth, const void* base, const PF_LayerDef& layer) {
    if (base == nullptr || layer.width < 1 || layer.height < 1) {
        return {};
    }
    return {depth, static_cast<const std::byte*>(base), layer.rowbytes, layer.width, layer.height};
}

LayerPixels resolveDeep(const PF_InData* inData, PF_LayerDef* layer) {
    PF_Pixel16* pixels = nullptr;
    throwOnError(inData->utils->get_pixel_data16(layer, nullptr, &pixels));
    return pixelsAt(Depth::Bits16, pixels, *layer);
}

/// A layer that is not deep has 8 bits when the host gives 8-bit pixels, else floats.
LayerPixels resolveShallow(const PF_InData* inData, PF_LayerDef* layer) {
    PF_Pixel8* pixels = nullptr;
    throwOnError(inData->utils->get_pixel_data8(layer, nullptr, &pixels));
    return pixels != nullptr ? pixelsAt(Depth::Bits8, pixels, *layer)
                             : pixelsAt(Depth::Float, floatPixels(inData, layer), *layer);
}

/// The layer in a slot; null for an empty slot, an entry that is no layer, and behind the list.
const PF_LayerDef* layerIn(const LayerSlots& layers, A_long slot) {
    const std::size_t index = static_cast<std::size_t>(layers.firstLayerCheckout) + static_cast<std::size_t>(slot - 1);
    if (index >= layers.checkouts.size()) {
        return nullptr;
    }
    const PF_ParamDef& entry = layers.checkouts[index];
    return entry.param_type != PF_Param_LAYER || entry.u.ld.data == nullptr ? nullptr : &entry.u.ld;
}

LayerPixels resolve(const LayerSlots& layers, A_long slot) {
    const PF_LayerDef* found = layerIn(layers, slot);
    if (found == nullptr) {
        return {};
    }
    // The host's functions take a world that they could write to, and only read it.
    auto* layer = const_cast<PF_LayerDef*>(found);
    const bool isDeep = (layer->world_flags & PF_WorldFlag_DEEP) != 0;
    return isDeep ? resolveDeep(layers.inData, layer) : resolveShallow(layers.inData, layer);
}

const LayerPixels& pixelsOf(const LayerSlots& layers, A_long layerInd) {
    TESSAVOY_ASSERT(layerInd >= 1, "layerInd >= 1");
    TESSAVOY_ASSERT(layerInd <= CustomParametersCount, "layerInd <= CustomParametersCount");
    std::optional<LayerPixels>& known = layers.resolved[static_cast<std::size_t>(layerInd - 1)];
    if (!known) {
        known = resolve(layers, layerInd);
    }
    return *known;
}

/// NaN counts as 0.
float clampToUnit(float value) {
    return value > 0.0f ? (value < 1.0f ? value : 1.0f) : 0.0f;
}

std::ptrdiff_t placeAlong(A_long size, float position) {
    return static_cast<std::ptrdiff_t>(static_cast<float>(size - 1) * clampToUnit(position));
}

template <class Pixel>
Pixel readPixel(const LayerPixels& pixels, float u, float v) {
    const std::ptrdiff_t column = placeAlong(pixels.width, u);
    const std::ptrdiff_t row = placeAlong(pixels.height, v);
    Pixel pixel;
    std::memcpy(&pixel, pixels.base + row * pixels.rowbytes + column * std::ptrdiff_t{sizeof(Pixel)}, sizeof pixel);
    return pixel;
}

template <class Pixel, class ToValue>
std::array<float, 4> valuesOf(const Pixel& pixel, const ToValue& toValue) {
    return {toValue(pixel.red), toValue(pixel.green), toValue(pixel.blue), toValue(pixel.alpha)};
}

std::array<float, 4> sample(const LayerPixels& pixels, float u, float v) {
    switch (pixels.depth) {
        case Depth::Bits8:
            return valuesOf(readPixel<PF_Pixel8>(pixels, u, v),
                            [](A_u_char channel) { return static_cast<float>(channel / 255.0); });
        case Depth::Bits16:
            return valuesOf(readPixel<PF_Pixel16>(pixels, u, v),
                            [](A_u_short channel) { return static_cast<float>(channel * (1.0 / 32768.0)); });
        case Depth::Float:
            return valuesOf(readPixel<PF_PixelFloat>(pixels, u, v), [](float channel) { return channel; });
        case Depth::Empty:
            break;
    }
    return {};
}

double lightness(float r, float g, float b, float a) {
    return static_cast<float>(static_cast<double>(g + r + b) / 3.0 * a);
}

/// Lightness With Alpha has never had a value of its own to multiply; projects rely on its being 0.
double channelOf(const std::array<float, 4>& rgba, A_long source) {
    const auto [r, g, b, a] = rgba;
    switch (source) {
        case LayerSource_Red:
            return r;
        case LayerSource_Green:
            return g;
        case LayerSource_Blue:
            return b;
        case LayerSource_Alpha:
            return a;
        case LayerSource_Lightness:
            return lightness(r, g, b, a);
        default:
            return 0.0;
    }
}

}  // namespace

bool LayerSlots::holdPixels() const {
    for (A_long slot = 1; slot <= CustomParametersCount; ++slot) {
        if (layerIn(*this, slot) != nullptr) {
            return true;
        }
    }
    return false;
}

void LayerSlots::clear() {
    checkouts.clear();
    resolved.fill(std::nullopt);
}

std::array<float, 4> sampleLayerPixel(const LayerSlots& layers, A_long slot, float u, float v) {
    return sample(pixelsOf(layers, slot), u, v);
}

double sampleLayerChannel(const LayerSlots& layers, A_long slot, float u, float v, A_long source) {
    return channelOf(sampleLayerPixel(layers, slot, u, v), source);
}

void sampleLayerPixels(const LayerSlots& layers, A_long slot, const float* u, const float* v, int count,
                       std::array<float, 4>* out) {
    const LayerPixels& pixels = pixelsOf(layers, slot);
    for (int k = 0; k < count; ++k) {
        out[k] = sample(pixels, u[k], v[k]);
    }
}

void sampleLayerChannels(const LayerSlots& layers, A_long slot, const float* u, const float* v, A_long source,
                         int count, double* out) {
    const LayerPixels& pixels = pixelsOf(layers, slot);
    for (int k = 0; k < count; ++k) {
        out[k] = channelOf(sample(pixels, u[k], v[k]), source);
    }
}

}  // namespace Tessavoy
