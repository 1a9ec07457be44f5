#pragma once

#include "Source/Evaluate/VectorLanes.h"

#include <array>
#include <cstdint>

namespace Tessavoy {

/// The state of an MT19937 generator (Matsumoto and Nishimura's Mersenne Twister), before its first draw.
using TwisterState = std::array<std::uint32_t, 624>;

/// A number in 0..1, both ends possible, that depends on the three words alone: what std::mt19937 seeded by
/// std::seed_seq{w1, w2, w3} gives in its first two draws, taken as the low and the high word of a 64-bit fraction.
/// Nothing is allocated.
double seededRandom(std::uint32_t w1, std::uint32_t w2, std::uint32_t w3);

/// seededRandom(w1, w2[k], w3[k]) into out[k], for k in 0..count - 1. Bit-equal to the single calls whatever the lanes.
void seededRandomCells(std::uint32_t w1, const std::uint32_t* w2, const std::uint32_t* w3, int count, double* out,
                       VectorLanes lanes = widestLanes());

/// The state that the seed sequence of the three words fills, without the generator's own rule for a state of zeros.
void fillTwisterState(std::uint32_t w1, std::uint32_t w2, std::uint32_t w3, TwisterState& state);

/// The first two draws of a generator with this state as a number in 0..1. A state whose words are all zero, the low 31
/// bits of the first left out, is one that the generator can't leave: its first word counts as 0x80000000, the others
/// stay.
double fractionOfState(const TwisterState& state);

}  // namespace Tessavoy
