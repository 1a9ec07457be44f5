#pragma once

#include <cstdint>

// The numbers of std::seed_seq for a request of 624 words and three seed words, and of MT19937. Shared by the scalar
// definition and the form for vector lanes; nobody else needs them.
namespace Tessavoy::Twister {

inline constexpr int stateWords = 624;
inline constexpr int seedWords = 3;

/// Offsets at which one step of the seed sequence adds to words further on, round the ring of the state.
inline constexpr int nearOffset = 306;
inline constexpr int farOffset = 317;

inline constexpr std::uint32_t seedFill = 0x8B8B8B8Bu;
inline constexpr std::uint32_t firstMultiplier = 1664525u;
inline constexpr std::uint32_t secondMultiplier = 1566083941u;

/// A new word i is made of the words i, i + 1 and i + middleOffset.
inline constexpr int middleOffset = 397;
inline constexpr std::uint32_t upperBit = 0x80000000u;
inline constexpr std::uint32_t lowerBits = 0x7FFFFFFFu;
inline constexpr std::uint32_t matrix = 0x9908B0DFu;

/// The state words on which the first two draws rest.
struct DrawWords {
    std::uint32_t first, second, third, middle, afterMiddle;
};

/// The first two draws as a fraction: (d1 + d2 * 2^32) / 2^64, rounded to f64.
double fractionOf(const DrawWords& words);

}  // namespace Tessavoy::Twister
