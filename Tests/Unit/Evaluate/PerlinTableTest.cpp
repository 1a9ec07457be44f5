#include "Source/Evaluate/PerlinTable.h"

#include "Tests/Unit/Evaluate/LaneSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

namespace Tessavoy {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// MT19937 word by word as Matsumoto and Nishimura published it, seeded by their recurrence.
class PublishedTwister {
public:
    explicit PublishedTwister(std::uint32_t seed) {
        mState[0] = seed;
        for (std::uint32_t i = 1; i < 624; ++i) {
            mState[i] = 1812433253u * (mState[i - 1] ^ (mState[i - 1] >> 30)) + i;
        }
    }

    std::uint32_t draw() {
        const std::uint32_t y = (mState[mNext] & 0x80000000u) | (mState[(mNext + 1) % 624] & 0x7FFFFFFFu);
        std::uint32_t word = mState[(mNext + 397) % 624] ^ (y >> 1) ^ (y % 2 == 1 ? 0x9908B0DFu : 0u);
        mState[mNext] = word;
        mNext = (mNext + 1) % 624;
        word ^= word >> 11;
        word ^= (word << 7) & 0x9D2C5680u;
        word ^= (word << 15) & 0xEFC60000u;
        return word ^ (word >> 18);
    }

private:
    std::array<std::uint32_t, 624> mState;
    std::uint32_t mNext = 0;
};

/// The shuffle in 64 bits: a word counts only below the last whole multiple of n within 2^32.
std::vector<std::uint32_t> shuffledBy(std::uint32_t seed) {
    PublishedTwister twister(seed);
    std::vector<std::uint32_t> order(256);
    std::iota(order.begin(), order.end(), 0u);
    for (std::uint64_t k = 1; k < 256; ++k) {
        const std::uint64_t n = k + 1;
        const std::uint64_t runs = (std::uint64_t{1} << 32) / n;
        std::uint64_t word = twister.draw();
        while (word >= runs * n) {
            word = twister.draw();
        }
        std::swap(order[k], order[word % n]);
    }
    return order;
}

double fadeOf(double t) {
    return 6 * std::pow(t, 5) - 15 * std::pow(t, 4) + 10 * std::pow(t, 3);
}

/// Improved noise as a weighted sum over the eight corners, with Perlin's gradients as vectors: the twelve edges of a
/// cube and four of them again.
double weightedNoise(const std::uint32_t* p, double x, double y, double z) {
    constexpr std::array<std::array<int, 3>, 16> gradients = {{{1, 1, 0},
                                                               {-1, 1, 0},
                                                               {1, -1, 0},
                                                               {-1, -1, 0},
                                                               {1, 0, 1},
                                                               {-1, 0, 1},
                                                               {1, 0, -1},
                                                               {-1, 0, -1},
                                                               {0, 1, 1},
                                                               {0, -1, 1},
                                                               {0, 1, -1},
                                                               {0, -1, -1},
                                                               {1, 1, 0},
                                                               {0, -1, 1},
                                                               {-1, 1, 0},
                                                               {0, -1, -1}}};
    const auto modulo = [](double whole) {
        return static_cast<int>(((static_cast<long long>(whole) % 256) + 256) % 256);
    };
    const int cellX = modulo(std::floor(x));
    const int cellY = modulo(std::floor(y));
    const int cellZ = modulo(std::floor(z));
    double sum = 0;
    for (int corner = 0; corner < 8; ++corner) {
        const int i = corner & 1;
        const int j = (corner >> 1) & 1;
        const int k = corner >> 2;
        const std::uint32_t hash = p[(p[(p[(cellX + i) % 256] + cellY + j) % 256] + cellZ + k) % 256];
        const auto& gradient = gradients[hash % 16];
        const double dx = x - std::floor(x) - i;
        const double dy = y - std::floor(y) - j;
        const double dz = z - std::floor(z) - k;
        const double weight = fadeOf(1 - std::abs(dx)) * fadeOf(1 - std::abs(dy)) * fadeOf(1 - std::abs(dz));
        sum += weight * (gradient[0] * dx + gradient[1] * dy + gradient[2] * dz);
    }
    return (sum + 1) / 2;
}

struct Points {
    std::vector<double> x, y, z;
};

Points randomPoints(int count, double reach) {
    std::mt19937 generator(99);
    std::uniform_real_distribution<double> coordinate(-reach, reach);
    Points points;
    for (int k = 0; k < count; ++k) {
        points.x.push_back(coordinate(generator));
        points.y.push_back(coordinate(generator));
        points.z.push_back(coordinate(generator));
    }
    return points;
}

/// Coordinates at which arithmetic or the split into cell and place is at an edge.
const std::vector<double>& edgeValues() {
    static const std::vector<double> values = {0.0,          -0.0,          0.5,
                                               -0.5,         1.0,           -1.0,
                                               255.75,       256.0,         -256.25,
                                               1e-300,       -1e-300,       std::nextafter(1.0, 0.0),
                                               2147483648.5, -2147483649.5, 4503599627370497.0,
                                               1e17,         -1e300,        infinity,
                                               -infinity,    notANumber};
    return values;
}

/// Every pair of them, with one coordinate staying while the other goes through all.
Points edgePoints(bool alongX) {
    Points points;
    for (const double slow : edgeValues()) {
        for (const double fast : edgeValues()) {
            points.x.push_back(alongX ? fast : slow);
            points.y.push_back(alongX ? slow : fast);
        }
    }
    return points;
}

/// Rows of points with this step between them in both directions, as a grid asks for them.
Points gridPoints(int columns, int rows, double step) {
    Points points;
    for (int k = 0; k < columns * rows; ++k) {
        points.x.push_back(step * (k % columns) - 2.0);
        points.y.push_back(step * (k / columns) - 1.0);
    }
    return points;
}

void expectSliceEqualsSingle(const PerlinTable& table, const Points& points, double z, int count, VectorLanes lanes) {
    std::vector<double> out(count + 1, -7.0);
    table.perlin(points.x.data(), points.y.data(), z, out.data(), count, lanes);
    for (int k = 0; k < count; ++k) {
        const double single = table.perlin(points.x[k], points.y[k], z);
        ASSERT_TRUE(sameBits(out[k], single)) << "point " << k << " of " << count << ": (" << points.x[k] << ", "
                                              << points.y[k] << ", " << z << ") " << out[k] << " " << single;
    }
    EXPECT_EQ(out[count], -7.0) << "written behind the end";
}

}  // namespace

TEST(PerlinTable, EntriesAreThePermutationOfThePublishedGeneratorTwice) {
    for (const std::uint32_t seed : {0u, 1u, 2u, 5489u, 12345u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        const PerlinTable table(seed);
        const std::vector<std::uint32_t> expected = shuffledBy(seed);
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), table.entries())) << "seed " << seed;
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), table.entries() + 256)) << "seed " << seed;
    }
}

TEST(PerlinTable, ReferenceGeneratorGivesThePublishedTenThousandthWord) {
    PublishedTwister twister(5489);
    std::uint32_t word = 0;
    for (int k = 0; k < 10000; ++k) {
        word = twister.draw();
    }
    EXPECT_EQ(word, 4123659995u);
}

TEST(PerlinTable, EntriesHoldEveryNumberOnce) {
    for (std::uint32_t seed = 0; seed < 50; ++seed) {
        const PerlinTable table(seed);
        std::vector<std::uint32_t> sorted(table.entries(), table.entries() + 256);
        std::sort(sorted.begin(), sorted.end());
        std::vector<std::uint32_t> expected(256);
        std::iota(expected.begin(), expected.end(), 0u);
        EXPECT_EQ(sorted, expected) << "seed " << seed;
    }
}

TEST(PerlinTable, NoiseEqualsTheWeightedSumOfTwelveGradients) {
    const PerlinTable table(7);
    const Points points = randomPoints(5000, 600.0);
    for (std::size_t k = 0; k < points.x.size(); ++k) {
        const double expected = weightedNoise(table.entries(), points.x[k], points.y[k], points.z[k]);
        EXPECT_NEAR(table.perlin(points.x[k], points.y[k], points.z[k]), expected, 1e-12);
    }
}

TEST(PerlinTable, NoiseOnOneEdgeIsTheTwoGradientsOfItsEnds) {
    const PerlinTable table(3);
    const std::uint32_t* p = table.entries();
    // Along x through the lattice, only the x parts of the gradients at the two ends count: 1, -1 or 0 by the hash.
    const auto xPart = [](std::uint32_t hash) {
        constexpr std::array<int, 16> parts = {1, -1, 1, -1, 1, -1, 1, -1, 0, 0, 0, 0, 1, 0, -1, 0};
        return parts[hash % 16];
    };
    const auto hashAt = [p](std::uint32_t x) { return p[p[p[x]]]; };
    for (std::uint32_t x = 0; x < 255; ++x) {
        // Halfway the fade is one half: 0.5 * (0.5 * g0) + 0.5 * (-0.5 * g1), mapped to 0..1.
        const double expected = ((xPart(hashAt(x)) - xPart(hashAt(x + 1))) * 0.25 + 1.0) * 0.5;
        EXPECT_EQ(table.perlin(x + 0.5, 0.0, 0.0), expected) << "x " << x;
    }
}

TEST(PerlinTable, LatticePointsAreExactlyOneHalf) {
    const PerlinTable table(11);
    for (const double x : {-257.0, -1.0, 0.0, 1.0, 255.0, 256.0, 1e6}) {
        for (const double y : {-300.0, 0.0, 17.0}) {
            for (const double z : {-2.0, 0.0, 255.0}) {
                EXPECT_EQ(table.perlin(x, y, z), 0.5);
            }
        }
    }
}

TEST(PerlinTable, NoiseStaysWithinZeroAndOne) {
    const PerlinTable table(23);
    const Points points = randomPoints(50000, 300.0);
    double least = 1;
    double most = 0;
    for (std::size_t k = 0; k < points.x.size(); ++k) {
        const double noise = table.perlin(points.x[k], points.y[k], points.z[k]);
        least = std::min(least, noise);
        most = std::max(most, noise);
    }
    EXPECT_GE(least, 0.0);
    EXPECT_LE(most, 1.0);
    EXPECT_LT(least, 0.2) << "the field should use its range";
    EXPECT_GT(most, 0.8);
}

TEST(PerlinTable, NoiseRepeatsEvery256AlongEachAxisExactly) {
    const PerlinTable table(5);
    // Multiples of 1/1024 keep their bits under these shifts.
    for (const double shift : {256.0, -256.0, 1024.0, 256.0 * 1048576.0, -256.0 * 1073741824.0}) {
        for (int k = 0; k < 500; ++k) {
            const double x = (k * 37 % 2048) / 1024.0;
            const double y = (k * 91 % 4096) / 1024.0;
            const double z = (k * 53 % 1024) / 1024.0;
            const double here = table.perlin(x, y, z);
            EXPECT_EQ(table.perlin(x + shift, y, z), here);
            EXPECT_EQ(table.perlin(x, y + shift, z), here);
            EXPECT_EQ(table.perlin(x, y, z + shift), here);
        }
    }
}

TEST(PerlinTable, NoiseIsContinuousAcrossCells) {
    const PerlinTable table(29);
    constexpr double step = 1e-7;
    for (int k = -40; k < 300; ++k) {
        const double y = k * 0.37;
        const double z = k * 0.11;
        EXPECT_NEAR(table.perlin(k - step, y, z), table.perlin(k + step, y, z), 1e-6);
        EXPECT_NEAR(table.perlin(y, k - step, z), table.perlin(y, k + step, z), 1e-6);
        EXPECT_NEAR(table.perlin(y, z, k - step), table.perlin(y, z, k + step), 1e-6);
    }
}

TEST(PerlinTable, CoordinatesThatAreNotFiniteGiveNaN) {
    const PerlinTable table(1);
    for (const double odd : {infinity, -infinity, notANumber}) {
        EXPECT_TRUE(std::isnan(table.perlin(odd, 0.3, 0.3)));
        EXPECT_TRUE(std::isnan(table.perlin(0.3, odd, 0.3)));
        EXPECT_TRUE(std::isnan(table.perlin(0.3, 0.3, odd)));
    }
}

TEST(PerlinTable, SlicesOfEveryLengthGiveTheBitsOfSingleCalls) {
    const PerlinTable table(41);
    const Points points = randomPoints(80, 700.0);
    for (const VectorLanes lanes : availableLanes()) {
        for (int count = 0; count <= 80; ++count) {
            expectSliceEqualsSingle(table, points, 0.37 * count - 11.0, count, lanes);
        }
    }
}

TEST(PerlinTable, SlicesGiveTheBitsOfSingleCallsAtEdges) {
    const PerlinTable table(43);
    for (const VectorLanes lanes : availableLanes()) {
        for (const bool alongX : {false, true}) {
            const Points points = edgePoints(alongX);
            for (const double z : edgeValues()) {
                expectSliceEqualsSingle(table, points, z, static_cast<int>(points.x.size()), lanes);
            }
        }
    }
}

TEST(PerlinTable, SlicesGiveTheBitsOfSingleCallsForManyTables) {
    const Points points = randomPoints(1001, 5.0);
    for (const VectorLanes lanes : availableLanes()) {
        for (std::uint32_t seed = 0; seed < 20; ++seed) {
            expectSliceEqualsSingle(PerlinTable(seed), points, 0.3 * seed, 1001, lanes);
        }
    }
}

// Neighbours share lattice cells for some points or for many, rows are shorter and longer than the lanes, and what is
// kept from point to point must be left at the right one.
TEST(PerlinTable, RowsOfGridsGiveTheBitsOfSingleCalls) {
    const PerlinTable table(47);
    for (const VectorLanes lanes : availableLanes()) {
        for (const int columns : {1, 2, 3, 4, 5, 17, 64}) {
            for (const double step : {0.0, 0.01, 0.125, 0.24, 1.0, 3.7}) {
                for (const double z : {0.0, 0.25, -8.5}) {
                    expectSliceEqualsSingle(table, gridPoints(columns, 9, step), z, columns * 9, lanes);
                }
            }
        }
    }
}

TEST(PerlinTable, SliceMayBeWrittenOverItsInput) {
    const PerlinTable table(53);
    for (const VectorLanes lanes : availableLanes()) {
        Points points = randomPoints(13, 40.0);
        const Points before = points;
        table.perlin(points.x.data(), points.y.data(), 0.7, points.x.data(), 13, lanes);
        table.perlin(before.x.data(), points.y.data(), 0.7, points.y.data(), 13, lanes);
        for (int k = 0; k < 13; ++k) {
            EXPECT_TRUE(sameBits(points.x[k], table.perlin(before.x[k], before.y[k], 0.7)));
            EXPECT_TRUE(sameBits(points.y[k], table.perlin(before.x[k], before.y[k], 0.7)));
        }
    }
}

}  // namespace Tessavoy
