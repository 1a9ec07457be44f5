#include "Source/Evaluate/SeededRandom.h"

#include "Tests/Unit/Evaluate/LaneSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <vector>

namespace Tessavoy {

namespace {

using Triple = std::array<std::uint32_t, 3>;

std::vector<Triple> triples() {
    std::vector<Triple> all;
    for (const std::uint32_t w1 : {0u, 1u, 42u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        for (const std::uint32_t w2 : {0u, 1u, 999u, 0x80000000u, 0xFFFFFFFFu}) {
            for (const std::uint32_t w3 : {0u, 2u, 31337u, 0xFFFFFFFEu}) {
                all.push_back({w1, w2, w3});
            }
        }
    }
    return all;
}

double fractionOfDraws(std::mt19937& generator) {
    const auto low = static_cast<double>(generator());
    const auto high = static_cast<double>(generator());
    return (low + high * 4294967296.0) / 18446744073709551616.0;
}

double standardLibraryRandom(const Triple& words) {
    std::seed_seq sequence{words[0], words[1], words[2]};
    std::mt19937 generator(sequence);
    return fractionOfDraws(generator);
}

/// Hands a generator the state as it is, in the place of a seed sequence.
class GivenState {
public:
    using result_type = std::uint32_t;

    explicit GivenState(const TwisterState& state) : mState(state) {}

    template <class Iterator>
    void generate(Iterator first, Iterator) const {
        std::copy(mState.begin(), mState.end(), first);
    }

private:
    TwisterState mState;
};

double standardLibraryFraction(const TwisterState& state) {
    GivenState sequence(state);
    std::mt19937 generator(sequence);
    return fractionOfDraws(generator);
}

/// The word that MT19937's tempering turns into the given one.
std::uint32_t untempered(std::uint32_t word) {
    word ^= word >> 18;
    word ^= (word << 15) & 0xEFC60000u;
    std::uint32_t partly = word;
    for (int round = 0; round < 4; ++round) {
        partly = word ^ ((partly << 7) & 0x9D2C5680u);
    }
    return partly ^ (partly >> 11) ^ (partly >> 22);
}

void expectCellsEqualSingleCalls(int count, VectorLanes lanes) {
    std::mt19937 generator(5);
    std::vector<std::uint32_t> w2(count);
    std::vector<std::uint32_t> w3(count);
    std::generate(w2.begin(), w2.end(), [&] { return static_cast<std::uint32_t>(generator()); });
    std::generate(w3.begin(), w3.end(), [&] { return static_cast<std::uint32_t>(generator()); });
    std::vector<double> out(count + 1, -7.0);
    seededRandomCells(77, w2.data(), w3.data(), count, out.data(), lanes);
    for (int k = 0; k < count; ++k) {
        ASSERT_TRUE(sameBits(out[k], seededRandom(77, w2[k], w3[k]))) << "cell " << k << " of " << count;
    }
    EXPECT_EQ(out[count], -7.0) << "written behind the end";
}

}  // namespace

TEST(SeededRandom, StateIsThatOfTheStandardSeedSequence) {
    for (const Triple& words : triples()) {
        TwisterState expected;
        std::seed_seq sequence{words[0], words[1], words[2]};
        sequence.generate(expected.begin(), expected.end());
        TwisterState state;
        fillTwisterState(words[0], words[1], words[2], state);
        EXPECT_EQ(state, expected) << words[0] << " " << words[1] << " " << words[2];
    }
}

TEST(SeededRandom, NumberIsThatOfTheStandardTwister) {
    for (const Triple& words : triples()) {
        EXPECT_TRUE(sameBits(seededRandom(words[0], words[1], words[2]), standardLibraryRandom(words)))
            << words[0] << " " << words[1] << " " << words[2];
    }
}

TEST(SeededRandom, EachWordMatters) {
    const double base = seededRandom(1, 2, 3);
    EXPECT_NE(seededRandom(2, 2, 3), base);
    EXPECT_NE(seededRandom(1, 3, 3), base);
    EXPECT_NE(seededRandom(1, 2, 4), base);
    EXPECT_NE(seededRandom(1, 3, 2), base);
    EXPECT_EQ(seededRandom(1, 2, 3), base);
}

TEST(SeededRandom, NumbersSpreadEvenlyOverTheUnitInterval) {
    std::array<int, 10> bins{};
    constexpr int perBin = 400;
    for (std::uint32_t k = 0; k < perBin * bins.size(); ++k) {
        const double number = seededRandom(9, k % 64, k / 64);
        ASSERT_GE(number, 0.0);
        ASSERT_LE(number, 1.0);
        ++bins[std::min<std::size_t>(static_cast<std::size_t>(number * 10), 9)];
    }
    // Six standard deviations of a bin of 4000 draws.
    for (const int filled : bins) {
        EXPECT_NEAR(filled, perBin, 6 * std::sqrt(perBin * 0.9));
    }
}

TEST(SeededRandom, StateOfZerosCountsAsItsTopBit) {
    TwisterState state{};
    EXPECT_TRUE(sameBits(fractionOfState(state), standardLibraryFraction(state)));
    // By hand: the top bit enters the first word as 0x40000000, the second word is 0; tempering moves it to the high
    // bits.
    state[0] = 0x80000000u;
    EXPECT_TRUE(sameBits(fractionOfState(TwisterState{}), fractionOfState(state)));
    EXPECT_GT(fractionOfState(TwisterState{}), 0.0);
}

TEST(SeededRandom, LowBitsOfTheFirstWordDoNotSaveAStateOfZeros) {
    TwisterState state{};
    state[0] = 0x7FFFFFFFu;
    EXPECT_TRUE(sameBits(fractionOfState(state), fractionOfState(TwisterState{})));
    EXPECT_TRUE(sameBits(fractionOfState(state), standardLibraryFraction(state)));
}

TEST(SeededRandom, AnyOtherWordSavesAStateOfZeros) {
    for (const std::size_t index : {1, 2, 3, 397, 398, 500, 623}) {
        TwisterState state{};
        state[index] = 1;
        EXPECT_TRUE(sameBits(fractionOfState(state), standardLibraryFraction(state))) << "word " << index;
    }
    TwisterState farFromTheDraws{};
    farFromTheDraws[500] = 1;
    EXPECT_EQ(fractionOfState(farFromTheDraws), 0.0);
}

TEST(SeededRandom, LargestDrawsRoundToOne) {
    TwisterState state{};
    state[397] = state[398] = untempered(0xFFFFFFFFu);
    GivenState sequence(state);
    std::mt19937 generator(sequence);
    ASSERT_EQ(generator(), 0xFFFFFFFFu);
    ASSERT_EQ(generator(), 0xFFFFFFFFu);
    EXPECT_EQ(fractionOfState(state), 1.0);
}

TEST(SeededRandom, FirstDrawIsTheLowPart) {
    TwisterState state{};
    state[397] = untempered(0xFFFFFFFFu);
    state[500] = 1;
    EXPECT_EQ(fractionOfState(state), 4294967295.0 / 18446744073709551616.0);
    state[397] = 0;
    state[398] = untempered(0x80000000u);
    EXPECT_EQ(fractionOfState(state), 0.5);
}

TEST(SeededRandom, CellsOfEveryCountGiveTheBitsOfSingleCalls) {
    for (const VectorLanes lanes : availableLanes()) {
        for (int count = 0; count <= 50; ++count) {
            expectCellsEqualSingleCalls(count, lanes);
        }
        expectCellsEqualSingleCalls(257, lanes);
    }
}

TEST(SeededRandom, CellsOfTheLargestWordsGiveTheBitsOfSingleCalls) {
    const std::array<std::uint32_t, 4> columns = {0xFFFFFFFEu, 0xFFFFFFFFu, 0, 67};
    const std::array<std::uint32_t, 4> rows = {0xFFFFFFFFu, 0xFFFFFFFEu, 0xFFFFFFFFu, 0};
    for (const VectorLanes lanes : availableLanes()) {
        std::array<double, 4> out;
        seededRandomCells(0xFFFFFFFFu, columns.data(), rows.data(), 4, out.data(), lanes);
        for (int k = 0; k < 4; ++k) {
            EXPECT_TRUE(sameBits(out[k], seededRandom(0xFFFFFFFFu, columns[k], rows[k]))) << "cell " << k;
        }
    }
}

TEST(VectorLanes, ScalarIsAlwaysAvailableAndTheWidestIsToo) {
    EXPECT_TRUE(lanesAvailable(VectorLanes::Scalar));
    EXPECT_TRUE(lanesAvailable(widestLanes()));
    EXPECT_EQ(widestLanes(), availableLanes().back());
}

}  // namespace Tessavoy
