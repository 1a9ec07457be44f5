#include "Source/Evaluate/NoiseSource.h"

#include "Source/Evaluate/Chunks.h"

#include <array>
#include <cmath>

namespace Tessavoy {

namespace {

using Chunk = std::array<double, chunkCells>;

/// Two slices of the noise, one period of the loop apart, and the share of the second. At 0 the first is met as it
/// stands; as the share nears 1 the second nears that same slice from the other side.
struct Crossfade {
    double depth;
    double otherDepth;
    double share;
};

Crossfade crossfadeOf(const NoiseSource& noise) {
    const double turns = noise.OffsetZ / noise.LoopZ;
    const double share = turns - std::floor(turns);
    return {noise.LoopZ * share * 0.1, (share - 1.0) * noise.LoopZ * 0.1, share};
}

bool isLooped(const NoiseSource& noise) {
    return noise.LoopZ != 0.0;
}

double placeX(const NoiseSource& noise, double u) {
    return (noise.Scale * u * noise.ScaleX - noise.OffsetX) * 0.1;
}

double placeY(const NoiseSource& noise, double v) {
    return (noise.Scale * v * noise.ScaleY - noise.OffsetY) * 0.1;
}

double faded(const Crossfade& fade, double multiplier, double slice, double otherSlice) {
    return otherSlice * multiplier * fade.share + (1.0 - fade.share) * (slice * multiplier);
}

double rangeShift(const NoiseSource& noise) {
    return (noise.ResultOffset * 0.01 - 1.0) * 0.5 * noise.Multiplier;
}

bool hasLayer(const NoiseSource& noise) {
    return noise.MultLayer.Index != 1;
}

double fieldAt(const NoiseSource& noise, double x, double y) {
    if (!isLooped(noise)) {
        return noise.table->perlin(x, y, noise.OffsetZ * 0.1) * noise.Multiplier;
    }
    const Crossfade fade = crossfadeOf(noise);
    return faded(fade, noise.Multiplier, noise.table->perlin(x, y, fade.depth),
                 noise.table->perlin(x, y, fade.otherDepth));
}

/// fieldAt for the cells of a chunk.
void fieldsAt(const NoiseSource& noise, const Chunk& x, const Chunk& y, double* out, int length) {
    if (!isLooped(noise)) {
        noise.table->perlin(x.data(), y.data(), noise.OffsetZ * 0.1, out, length);
        for (int k = 0; k < length; ++k) {
            out[k] *= noise.Multiplier;
        }
        return;
    }
    const Crossfade fade = crossfadeOf(noise);
    Chunk others;
    noise.table->perlin(x.data(), y.data(), fade.depth, out, length);
    noise.table->perlin(x.data(), y.data(), fade.otherDepth, others.data(), length);
    for (int k = 0; k < length; ++k) {
        out[k] = faded(fade, noise.Multiplier, out[k], others[k]);
    }
}

void multiplyByLayer(const NoiseSource& noise, const float* u, const float* v, double* out, int length) {
    Chunk factors;
    sampleLayerChannels(*noise.layers, noise.MultLayer.Index - 1, u, v, noise.MultLayer.Source, length, factors.data());
    for (int k = 0; k < length; ++k) {
        out[k] *= factors[k];
    }
}

void sampleChunk(const NoiseSource& noise, const float* u, const float* v, double* out, int length) {
    Chunk x;
    Chunk y;
    for (int k = 0; k < length; ++k) {
        x[k] = placeX(noise, u[k]);
        y[k] = placeY(noise, v[k]);
    }
    fieldsAt(noise, x, y, out, length);
    if (hasLayer(noise)) {
        multiplyByLayer(noise, u, v, out, length);
    }
    const double shift = rangeShift(noise);
    for (int k = 0; k < length; ++k) {
        out[k] = shift + out[k];
    }
}

}  // namespace

void NoiseSource::buildTable() {
    table = Multiplier != 0.0 ? std::make_unique<PerlinTable>(static_cast<std::uint32_t>(Seed)) : nullptr;
}

double NoiseSource::sample(float u, float v) const {
    if (isInert()) {
        return 0.0;
    }
    double noise = fieldAt(*this, placeX(*this, u), placeY(*this, v));
    if (hasLayer(*this)) {
        noise *= sampleLayerChannel(*layers, MultLayer.Index - 1, u, v, MultLayer.Source);
    }
    return rangeShift(*this) + noise;
}

void NoiseSource::sample(const float* u, const float* v, double* out, int count) const {
    if (isInert()) {
        std::fill_n(out, count, 0.0);
        return;
    }
    forEachChunk(count, [&](int first, int length) { sampleChunk(*this, u + first, v + first, out + first, length); });
}

}  // namespace Tessavoy
