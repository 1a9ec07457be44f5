#include "Source/Evaluate/SeededRandomAvx2.h"

#include "Source/Evaluate/SeededRandom.h"
#include "Source/Evaluate/TwisterConstants.h"

#include <algorithm>
#include <cstring>

namespace Tessavoy {

#if TESSAVOY_HAS_AVX2_CODE

using namespace Twister;

namespace {

constexpr int vectorLanes = 8;
constexpr int groupLanes = 2 * vectorLanes;

/// Below this many cells the single calls are as fast as a group.
constexpr int worthAGroup = 2;

/// The first two draws read the words 0, 1, 2, 397 and 398 alone, and no step of the second pass after the one that
/// makes word 398 changes any of them, so the pass ends there.
constexpr int secondPassWords = middleOffset + 2;

constexpr int nearWrap = stateWords - nearOffset;
constexpr int farWrap = stateWords - farOffset;

using Words = std::uint32_t __attribute__((vector_size(4 * vectorLanes)));

/// One word of the state for all cells of a group: two vectors, so that one's multiplication runs while the other's
/// waits.
struct Group {
    Words low, high;
};

TESSAVOY_TARGET_AVX2 inline void firstStep(Words& own, Words& nearWord, Words& farWord, Words& before,
                                           const Words& added) {
    const Words mixed = own ^ nearWord ^ before;
    const Words r1 = (mixed ^ (mixed >> 27)) * firstMultiplier;
    const Words r2 = r1 + added;
    nearWord += r1;
    farWord += r2;
    own = before = r2;
}

TESSAVOY_TARGET_AVX2 inline void secondStep(Words& own, Words& nearWord, Words& farWord, Words& before,
                                            const Words& number) {
    const Words mixed = own + nearWord + before;
    const Words r3 = (mixed ^ (mixed >> 27)) * secondMultiplier;
    const Words r4 = r3 - number;
    nearWord ^= r3;
    farWord ^= r4;
    own = before = r4;
}

/// Steps first..last - 1 of the first pass, of which the seed words have no part.
TESSAVOY_TARGET_AVX2 inline void firstSteps(Group* state, int first, int last, int toNear, int toFar, Group& before) {
    Words low = before.low;
    Words high = before.high;
    Words number = Words{} + static_cast<std::uint32_t>(first);
    for (Group* own = state + first; own != state + last; ++own, number += 1) {
        firstStep(own->low, own[toNear].low, own[toFar].low, low, number);
        firstStep(own->high, own[toNear].high, own[toFar].high, high, number);
    }
    before = {low, high};
}

TESSAVOY_TARGET_AVX2 inline void secondSteps(Group* state, int first, int last, int toNear, int toFar, Group& before) {
    Words low = before.low;
    Words high = before.high;
    Words number = Words{} + static_cast<std::uint32_t>(first);
    for (Group* own = state + first; own != state + last; ++own, number += 1) {
        secondStep(own->low, own[toNear].low, own[toFar].low, low, number);
        secondStep(own->high, own[toNear].high, own[toFar].high, high, number);
    }
    before = {low, high};
}

/// added: what the steps 0 to 3 add, which is the count of the seed words and then each seed word with its step's
/// number.
TESSAVOY_TARGET_AVX2 void firstPass(Group* state, const Group* added) {
    Group before = state[stateWords - 1];
    for (int k = 0; k <= seedWords; ++k) {
        Group* own = state + k;
        firstStep(own->low, own[nearOffset].low, own[farOffset].low, before.low, added[k].low);
        firstStep(own->high, own[nearOffset].high, own[farOffset].high, before.high, added[k].high);
    }
    firstSteps(state, seedWords + 1, farWrap, nearOffset, farOffset, before);
    firstSteps(state, farWrap, nearWrap, nearOffset, -farWrap, before);
    firstSteps(state, nearWrap, stateWords, -nearWrap, -farWrap, before);
}

TESSAVOY_TARGET_AVX2 void secondPass(Group* state) {
    Group before = state[stateWords - 1];
    secondSteps(state, 0, farWrap, nearOffset, farOffset, before);
    secondSteps(state, farWrap, nearWrap, nearOffset, -farWrap, before);
    secondSteps(state, nearWrap, secondPassWords, -nearWrap, -farWrap, before);
}

TESSAVOY_TARGET_AVX2 inline Group sameForAll(std::uint32_t word) {
    return {Words{} + word, Words{} + word};
}

/// The words of groupLanes cells, each plus the number.
TESSAVOY_TARGET_AVX2 inline Group loadPlus(const std::uint32_t* words, std::uint32_t number) {
    Group group;
    std::memcpy(&group, words, sizeof group);
    return {group.low + number, group.high + number};
}

std::uint32_t wordOf(const Group& group, int lane) {
    return lane < vectorLanes ? group.low[lane] : group.high[lane - vectorLanes];
}

DrawWords drawWordsOf(const Group* state, int lane) {
    return {wordOf(state[0], lane), wordOf(state[1], lane), wordOf(state[2], lane), wordOf(state[middleOffset], lane),
            wordOf(state[middleOffset + 1], lane)};
}

/// A state of zeros has an own rule (fractionOfState). It can only be one when these words are zeros, which in practice
/// never happens; then the whole state is looked at.
bool mayBeStuck(const DrawWords& words) {
    return ((words.first & upperBit) | words.second | words.third | words.middle | words.afterMiddle) == 0;
}

/// Draws for one group of cells; the seed words are groupLanes long.
TESSAVOY_TARGET_AVX2 void drawGroup(std::uint32_t w1, const std::uint32_t* w2, const std::uint32_t* w3, double* out) {
    Group state[stateWords];
    std::memset(state, static_cast<int>(seedFill & 0xFFu), sizeof state);
    const Group added[] = {sameForAll(seedWords), sameForAll(w1 + 1), loadPlus(w2, 2), loadPlus(w3, 3)};
    firstPass(state, added);
    secondPass(state);
    for (int lane = 0; lane < groupLanes; ++lane) {
        const DrawWords words = drawWordsOf(state, lane);
        out[lane] = mayBeStuck(words) ? seededRandom(w1, w2[lane], w3[lane]) : fractionOf(words);
    }
}

/// A group of which only the first count lanes are wanted.
void drawPartOfGroup(std::uint32_t w1, const std::uint32_t* w2, const std::uint32_t* w3, int count, double* out) {
    std::uint32_t columns[groupLanes] = {};
    std::uint32_t rows[groupLanes] = {};
    double drawn[groupLanes];
    std::copy_n(w2, count, columns);
    std::copy_n(w3, count, rows);
    drawGroup(w1, columns, rows, drawn);
    std::copy_n(drawn, count, out);
}

}  // namespace

int seededRandomCellsAvx2(std::uint32_t w1, const std::uint32_t* w2, const std::uint32_t* w3, int count, double* out) {
    int done = 0;
    for (; count - done >= groupLanes; done += groupLanes) {
        drawGroup(w1, w2 + done, w3 + done, out + done);
    }
    const int left = count - done;
    if (left >= worthAGroup) {
        drawPartOfGroup(w1, w2 + done, w3 + done, left, out + done);
        done = count;
    }
    return done;
}

#else

int seededRandomCellsAvx2(std::uint32_t, const std::uint32_t*, const std::uint32_t*, int, double*) {
    return 0;
}

#endif

}  // namespace Tessavoy
