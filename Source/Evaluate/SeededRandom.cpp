#include "Source/Evaluate/SeededRandom.h"

#include "Source/Evaluate/SeededRandomAvx2.h"
#include "Source/Evaluate/TwisterConstants.h"

#include <algorithm>

namespace Tessavoy {

using namespace Twister;

namespace {

constexpr std::uint32_t foldHighBits(std::uint32_t word) {
    return word ^ (word >> 27);
}

/// Calls step(k, index of the near word, index of the far word) for every word of the ring.
template <class Step>
void forEachWord(const Step& step) {
    constexpr int nearWrap = stateWords - nearOffset;
    constexpr int farWrap = stateWords - farOffset;
    for (int k = 0; k < farWrap; ++k) {
        step(k, k + nearOffset, k + farOffset);
    }
    for (int k = farWrap; k < nearWrap; ++k) {
        step(k, k + nearOffset, k - farWrap);
    }
    for (int k = nearWrap; k < stateWords; ++k) {
        step(k, k - nearWrap, k - farWrap);
    }
}

std::uint32_t temper(std::uint32_t word) {
    word ^= word >> 11;
    word ^= (word << 7) & 0x9D2C5680u;
    word ^= (word << 15) & 0xEFC60000u;
    return word ^ (word >> 18);
}

std::uint32_t draw(std::uint32_t word, std::uint32_t next, std::uint32_t middle) {
    const std::uint32_t joined = (word & upperBit) | (next & lowerBits);
    return temper(middle ^ (joined >> 1) ^ ((joined & 1u) != 0u ? matrix : 0u));
}

bool isStuck(const TwisterState& state) {
    const bool restIsZero = std::all_of(state.begin() + 1, state.end(), [](std::uint32_t word) { return word == 0; });
    return restIsZero && (state[0] & upperBit) == 0;
}

}  // namespace

double Twister::fractionOf(const DrawWords& words) {
    const double low = draw(words.first, words.second, words.middle);
    const double high = draw(words.second, words.third, words.afterMiddle);
    return (low + high * 0x1p32) / 0x1p64;
}

void fillTwisterState(std::uint32_t w1, std::uint32_t w2, std::uint32_t w3, TwisterState& state) {
    state.fill(seedFill);
    const std::array<std::uint32_t, seedWords + 1> added = {seedWords, 1 + w1, 2 + w2, 3 + w3};
    std::uint32_t before = state.back();
    forEachWord([&](int k, int nearWord, int farWord) {
        const std::uint32_t r1 = firstMultiplier * foldHighBits(state[k] ^ state[nearWord] ^ before);
        const std::uint32_t r2 = r1 + (k <= seedWords ? added[k] : static_cast<std::uint32_t>(k));
        state[nearWord] += r1;
        state[farWord] += r2;
        state[k] = before = r2;
    });
    before = state.back();
    forEachWord([&](int k, int nearWord, int farWord) {
        const std::uint32_t r3 = secondMultiplier * foldHighBits(state[k] + state[nearWord] + before);
        const std::uint32_t r4 = r3 - static_cast<std::uint32_t>(k);
        state[nearWord] ^= r3;
        state[farWord] ^= r4;
        state[k] = before = r4;
    });
}

double fractionOfState(const TwisterState& state) {
    const std::uint32_t first = isStuck(state) ? upperBit : state[0];
    return fractionOf({first, state[1], state[2], state[middleOffset], state[middleOffset + 1]});
}

double seededRandom(std::uint32_t w1, std::uint32_t w2, std::uint32_t w3) {
    TwisterState state;
    fillTwisterState(w1, w2, w3, state);
    return fractionOfState(state);
}

void seededRandomCells(std::uint32_t w1, const std::uint32_t* w2, const std::uint32_t* w3, int count, double* out,
                       VectorLanes lanes) {
    const int done = lanes == VectorLanes::Avx2 ? seededRandomCellsAvx2(w1, w2, w3, count, out) : 0;
    for (int k = done; k < count; ++k) {
        out[k] = seededRandom(w1, w2[k], w3[k]);
    }
}

}  // namespace Tessavoy
