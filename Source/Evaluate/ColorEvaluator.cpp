#include "Source/Evaluate/ColorEvaluator.h"

#include "Source/Evaluate/Chunks.h"
#include "Source/Evaluate/HspColor.h"
#include "Source/Evaluate/HspColorAvx2.h"
#include "Source/Evaluate/Truncation.h"
#include "Source/Evaluate/VectorLanes.h"

namespace Tessavoy {

namespace {

using Rgb = std::array<double, 3>;

/// What is added to the colour in the model, each part as a fraction.
struct Shift {
    double brightness;
    double hue;
    double saturation;

    bool isNone() const { return brightness == 0.0 && hue == 0.0 && saturation == 0.0; }
};

/// From percent, degrees and percent.
Shift shiftOf(double brightness, double hue, double saturation) {
    return {brightness * 0.01, hue / 360.0, saturation * 0.01};
}

std::array<float, 4> opaque(const Rgb& rgb) {
    return {static_cast<float>(rgb[0]), static_cast<float>(rgb[1]), static_cast<float>(rgb[2]), 1.0f};
}

/// The wrap of the model's users: a whole negative turn becomes 1, a whole positive one 0.
double wrapped(double hue) {
    return hue < 0.0 ? hue + (1.0 - truncated(hue)) : hue - truncated(hue);
}

double clampToUnit(double value) {
    const double capped = value > 1.0 ? 1.0 : value;
    return capped < 0.0 ? 0.0 : capped;
}

std::array<float, 4> shifted(const HspColor& color, const Shift& shift) {
    return opaque(toRgb({wrapped(color.hue + shift.hue), clampToUnit(color.saturation + shift.saturation),
                         clampToUnit(color.brightness + shift.brightness)}));
}

std::array<float, 4> shifted(const Rgb& rgb, const Shift& shift) {
    return shift.isNone() ? opaque(rgb) : shifted(toHsp(rgb[0], rgb[1], rgb[2]), shift);
}

Rgb baseColor(const ColorEvaluator& color) {
    return {color.Color[0], color.Color[1], color.Color[2]};
}

/// The base colour with a layer's pixel (r, g, b, a) added.
Rgb withLayer(const ColorEvaluator& color, const std::array<float, 4>& pixel) {
    Rgb rgb = baseColor(color);
    for (int channel = 0; channel < 3; ++channel) {
        const double added = pixel[channel] * color.Layer.Multiplier;
        if (color.Layer.Source == ColorLayerSource_Color) {
            rgb[channel] += added;
        } else if (color.Layer.Source == ColorLayerSource_ColorWithPremultipliedAlpha) {
            rgb[channel] += added * pixel[3];
        }
    }
    return rgb;
}

/// The three shifts of a chunk of cells.
class ShiftChunk {
public:
    ShiftChunk(const ColorEvaluator& color, const float* u, const float* v, int length) {
        color.Brightness.evaluate(u, v, mBrightness.data(), length);
        color.Hue.evaluate(u, v, mHue.data(), length);
        color.Saturation.evaluate(u, v, mSaturation.data(), length);
    }

    Shift at(int k) const { return shiftOf(mBrightness[k], mHue[k], mSaturation[k]); }

    HspShifts all() const { return {mBrightness.data(), mHue.data(), mSaturation.data()}; }

private:
    std::array<double, chunkCells> mBrightness;
    std::array<double, chunkCells> mHue;
    std::array<double, chunkCells> mSaturation;
};

/// Cells of one base colour, which enters the model once.
void evaluateBase(const ColorEvaluator& color, const ShiftChunk& shifts, std::array<float, 4>* out, int length) {
    const Rgb base = baseColor(color);
    const int done = widestLanes() == VectorLanes::Avx2 ? shiftedColorsAvx2(base, shifts.all(), length, out) : 0;
    const HspColor inModel = toHsp(base[0], base[1], base[2]);
    for (int k = done; k < length; ++k) {
        const Shift shift = shifts.at(k);
        out[k] = shift.isNone() ? opaque(base) : shifted(inModel, shift);
    }
}

void evaluateLayer(const ColorEvaluator& color, const float* u, const float* v, const ShiftChunk& shifts,
                   std::array<float, 4>* out, int length) {
    sampleLayerPixels(*color.layers, color.Layer.slot(), u, v, length, out);
    for (int k = 0; k < length; ++k) {
        out[k] = shifted(withLayer(color, out[k]), shifts.at(k));
    }
}

}  // namespace

std::array<float, 4> ColorEvaluator::evaluate(float u, float v) const {
    const Rgb rgb = Layer.active() ? withLayer(*this, sampleLayerPixel(*layers, Layer.slot(), u, v)) : baseColor(*this);
    return shifted(rgb, shiftOf(Brightness.evaluate(u, v), Hue.evaluate(u, v), Saturation.evaluate(u, v)));
}

void ColorEvaluator::evaluate(const float* u, const float* v, std::array<float, 4>* out, int count) const {
    if (isConstant()) {
        std::fill_n(out, count, evaluate(0.5f, 0.5f));
        return;
    }
    forEachChunk(count, [&](int first, int length) {
        const ShiftChunk shifts(*this, u + first, v + first, length);
        if (Layer.active()) {
            evaluateLayer(*this, u + first, v + first, shifts, out + first, length);
        } else {
            evaluateBase(*this, shifts, out + first, length);
        }
    });
}

bool ColorEvaluator::isConstant() const {
    return !Layer.active() && Brightness.isConstant() && Hue.isConstant() && Saturation.isConstant();
}

}  // namespace Tessavoy
