#pragma once

#include "HostInterface/Types.h"
#include "Source/Evaluate/LayerSampling.h"
#include "Source/Evaluate/PerlinTable.h"

#include <memory>

namespace Tessavoy {

/// A noise block: improved Perlin noise over the cells' normalised positions, by a layer's channel where one is chosen.
/// Its values run over 0..Multiplier with a ResultOffset of 100.
struct NoiseSource {
    explicit NoiseSource(const LayerSlots& slots) : layers(&slots) {}

    const LayerSlots* layers;  ///< not owned

    double Multiplier = 0;      ///< amplitude; 0 means no table and no noise
    double ResultOffset = 100;  ///< percent; shifts the range by half of the amplitude for each 100
    A_long Seed = 0;            ///< taken as a 32-bit word
    double Scale = 0;           ///< overall frequency
    double ScaleX = 0;          ///< frequency per axis
    double ScaleY = 0;
    double OffsetX = 0;  ///< shift of the sampling point, in tenths of a lattice cell
    double OffsetY = 0;
    double OffsetZ = 0;  ///< the evolution, in tenths of a lattice cell
    double LoopZ = 0;    ///< period of the evolution; 0 means no loop

    /// The layer whose channel the noise is multiplied by.
    struct {
        A_long Index = 0;   ///< popup value: 1 is none, n is custom layer slot n - 1
        A_long Source = 0;  ///< a LayerSource
    } MultLayer;

    std::unique_ptr<PerlinTable> table;  ///< null where the noise is inert

    /// Makes the table from Seed if Multiplier is not 0, and drops it otherwise.
    void buildTable();

    /// Without a table the noise is 0 everywhere, and neither ResultOffset nor the layer counts.
    bool isInert() const { return table == nullptr; }

    double sample(float u, float v) const;

    /// sample(u[k], v[k]) into out[k], bit-equal to the single calls.
    void sample(const float* u, const float* v, double* out, int count) const;
};

}  // namespace Tessavoy
