#include "Source/Evaluate/NoiseSource.h"

#include "Source/Evaluate/Chunks.h"

#include <algorithm>
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

/// Where a coordinate lies in the noise along one axis.
struct Placement {
    double scale;
    double axisScale;
    double offset;

    double of(double coordinate) const { return (scale * coordinate * axisScale - offset) * 0.1; }
};

Placement placementX(const NoiseSource& noise) {
    return {noise.Scale, noise.ScaleX, noise.OffsetX};
}

Placement placementY(const NoiseSource& noise) {
    return {noise.Scale, noise.ScaleY, noise.OffsetY};
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

/// The places of a chunk's cells. All loops over a chunk are as long as its arrays, so that they need no rest behind
/// their vectors; what is not a cell is a number without a meaning.
Chunk placesOf(const Placement& placement, const float* coordinates, int length) {
    std::array<float, chunkCells> known{};
    std::copy_n(coordinates, length, known.begin());
    Chunk places;
    for (int k = 0; k < chunkCells; ++k) {
        places[k] = placement.of(known[k]);
    }
    return places;
}

Chunk sliceAt(const NoiseSource& noise, const Chunk& x, const Chunk& y, double depth, int length) {
    Chunk slice{};
    noise.table->perlin(x.data(), y.data(), depth, slice.data(), length);
    return slice;
}

/// fieldAt for the cells of a chunk.
Chunk fieldsAt(const NoiseSource& noise, const float* u, const float* v, int length) {
    const Chunk x = placesOf(placementX(noise), u, length);
    const Chunk y = placesOf(placementY(noise), v, length);
    const double multiplier = noise.Multiplier;
    if (!isLooped(noise)) {
        Chunk fields = sliceAt(noise, x, y, noise.OffsetZ * 0.1, length);
        for (double& field : fields) {
            field *= multiplier;
        }
        return fields;
    }
    const Crossfade fade = crossfadeOf(noise);
    Chunk fields = sliceAt(noise, x, y, fade.depth, length);
    const Chunk others = sliceAt(noise, x, y, fade.otherDepth, length);
    for (int k = 0; k < chunkCells; ++k) {
        fields[k] = faded(fade, multiplier, fields[k], others[k]);
    }
    return fields;
}

void multiplyByLayer(const NoiseSource& noise, const float* u, const float* v, Chunk& fields, int length) {
    Chunk factors{};
    sampleLayerChannels(*noise.layers, noise.MultLayer.Index - 1, u, v, noise.MultLayer.Source, length, factors.data());
    for (int k = 0; k < chunkCells; ++k) {
        fields[k] *= factors[k];
    }
}

void sampleChunk(const NoiseSource& noise, const float* u, const float* v, double* out, int length) {
    Chunk fields = fieldsAt(noise, u, v, length);
    if (hasLayer(noise)) {
        multiplyByLayer(noise, u, v, fields, length);
    }
    const double shift = rangeShift(noise);
    for (double& field : fields) {
        field = shift + field;
    }
    std::copy_n(fields.begin(), length, out);
}

}  // namespace

void NoiseSource::buildTable() {
    table = Multiplier != 0.0 ? std::make_unique<PerlinTable>(static_cast<std::uint32_t>(Seed)) : nullptr;
}

double NoiseSource::sample(float u, float v) const {
    if (isInert()) {
        return 0.0;
    }
    double noise = fieldAt(*this, placementX(*this).of(u), placementY(*this).of(v));
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
