#include "Source/Evaluate/PropertyEvaluator.h"

#include "Source/Evaluate/Chunks.h"
#include "Source/Evaluate/Truncation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace Tessavoy {

namespace {

/// What noise and layer give at one cell; the layer's part is 0 where the layer term is not active.
struct Samples {
    double noise = 0;
    double layer = 0;
};

/// The share by which the width of the added range moves it: 0 at 100 percent, -0.5 at 0.
double rangeShare(const PropertyEvaluator& property) {
    return (property.ValueOffset * 0.5 - 50.0) * 0.01;
}

/// The plain value as a formula of the samples, with all that is the same for every cell worked out.
class ValueFormula {
public:
    explicit ValueFormula(const PropertyEvaluator& property)
        : mValue(property.Value), mHasLayer(property.Layer.active()), mLayerMultiplier(property.Layer.Multiplier) {
        const double noiseWidth = property.Noise.Multiplier;
        mShift = rangeShare(property) * (mHasLayer ? noiseWidth + mLayerMultiplier : noiseWidth);
    }

    double operator()(const Samples& samples) const {
        const double sum = mValue + samples.noise;
        return mShift + (mHasLayer ? sum + samples.layer * mLayerMultiplier : sum);
    }

private:
    double mValue;
    bool mHasLayer;
    double mLayerMultiplier;
    double mShift;
};

/// The same, never below 0 and with the flag never above 1.
class ClampedFormula {
public:
    explicit ClampedFormula(const PropertyEvaluator& property) : mValueOf(property), mCropToOne(property.Flag) {}

    double operator()(const Samples& samples) const {
        const double value = mValueOf(samples);
        const double capped = mCropToOne && value > 1.0 ? 1.0 : value;
        return capped < 0.0 ? 0.0 : capped;
    }

private:
    ValueFormula mValueOf;
    bool mCropToOne;
};

/// The position in the frames as a fraction of them, not yet wrapped or pinned.
double framePosition(const PropertyEvaluator& property, const Samples& samples, A_long frames, double phase) {
    double sum = property.Value * 0.01 + samples.noise * 0.01;
    double width = property.Noise.Multiplier * 0.01;
    if (property.Layer.active()) {
        sum += property.Layer.Multiplier * 0.01 * samples.layer;
        width += property.Layer.Multiplier * 0.01;
    }
    return rangeShare(property) * width + sum + phase / frames;
}

double wrapped(double position) {
    const double rest = position - truncated(position);
    return rest < 0.0 ? rest + 1.0 : rest;
}

/// The upper bound is applied last, so that without frames the index is 0.
A_long indexOf(const PropertyEvaluator& property, const Samples& samples, A_long frames, double phase) {
    double position = framePosition(property, samples, frames, phase);
    if (property.Flag) {
        position = wrapped(position);
    }
    const std::int64_t index = std::int64_t{truncated(std::round((frames - 1) * position))} + 1;
    return static_cast<A_long>(std::min<std::int64_t>(std::max<std::int64_t>(index, 1), frames));
}

Samples samplesAt(const PropertyEvaluator& property, float u, float v) {
    const LayerTerm& layer = property.Layer;
    return {property.Noise.sample(u, v),
            layer.active() ? sampleLayerChannel(*property.layers, layer.slot(), u, v, layer.Source) : 0.0};
}

/// Gives out[k] the formula of the samples at cell k. The loop over a chunk is as long as its arrays, so that it needs
/// no rest behind its vectors.
template <class Formula, class Result>
void evaluateCells(const PropertyEvaluator& property, const float* u, const float* v, Result* out, int count,
                   const Formula& formula) {
    if (property.isConstant()) {
        std::fill_n(out, count, formula(Samples{}));
        return;
    }
    const LayerTerm& layer = property.Layer;
    forEachChunk(count, [&](int first, int length) {
        std::array<double, chunkCells> noises{};
        std::array<double, chunkCells> channels{};
        property.Noise.sample(u + first, v + first, noises.data(), length);
        if (layer.active()) {
            sampleLayerChannels(*property.layers, layer.slot(), u + first, v + first, layer.Source, length,
                                channels.data());
        }
        const Formula formulaHere = formula;  // a copy that nothing written here can change
        std::array<Result, chunkCells> results;
        for (int k = 0; k < chunkCells; ++k) {
            results[k] = formulaHere(Samples{noises[k], channels[k]});
        }
        std::copy_n(results.begin(), length, out + first);
    });
}

}  // namespace

double PropertyEvaluator::evaluate(float u, float v) const {
    return ValueFormula(*this)(samplesAt(*this, u, v));
}

void PropertyEvaluator::evaluate(const float* u, const float* v, double* out, int count) const {
    evaluateCells(*this, u, v, out, count, ValueFormula(*this));
}

double PropertyEvaluator::evaluateClamped(float u, float v) const {
    return ClampedFormula(*this)(samplesAt(*this, u, v));
}

void PropertyEvaluator::evaluateClamped(const float* u, const float* v, double* out, int count) const {
    evaluateCells(*this, u, v, out, count, ClampedFormula(*this));
}

A_long PropertyEvaluator::evaluateIndex(float u, float v, A_long frames, double phase) const {
    return indexOf(*this, samplesAt(*this, u, v), frames, phase);
}

void PropertyEvaluator::evaluateIndex(const float* u, const float* v, A_long frames, double phase, A_long* out,
                                      int count) const {
    evaluateCells(*this, u, v, out, count,
                  [&](const Samples& samples) { return indexOf(*this, samples, frames, phase); });
}

}  // namespace Tessavoy
