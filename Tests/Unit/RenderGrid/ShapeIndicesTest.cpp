#include "Source/RenderGrid/ShapeIndices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <vector>

namespace Tessavoy {
namespace {

std::vector<std::uint32_t> indicesOf(OutlineMode mode, std::uint32_t base, std::uint32_t vertexCount) {
    std::vector<std::uint32_t> indices(10000, 0xDEADBEEF);
    indices.resize(
        static_cast<std::size_t>(writeShapeIndices(mode, base, vertexCount, indices.data()) - indices.data()));
    return indices;
}

std::uint32_t vertexCount(OutlineMode mode, std::uint32_t places) {
    return static_cast<std::uint32_t>(mode.centreVertices()) +
           places * static_cast<std::uint32_t>(mode.verticesPerPlace());
}

constexpr std::array<OutlineMode, 4> allModes = {OutlineMode{false, false}, {false, true}, {true, false}, {true, true}};

using Indices = std::vector<std::uint32_t>;

TEST(ShapeIndices, OfAFilledTriangle) {
    EXPECT_EQ(indicesOf({false, false}, 10, 4), (Indices{11, 12, 10, 12, 13, 10, 13, 11, 10}));
}

TEST(ShapeIndices, OfAFeatheredTriangle) {
    EXPECT_EQ(indicesOf({false, true}, 0, 7), (Indices{1, 3, 0, 3, 5, 0, 5, 1, 0,           // the fan
                                                       2, 1, 3, 2, 3, 4, 4, 3, 5, 4, 5, 6,  // the feather of two sides
                                                       2, 1, 5, 2, 5, 6}));                 // and of the last
}

TEST(ShapeIndices, OfAStrokedTriangle) {
    EXPECT_EQ(indicesOf({true, false}, 0, 6), (Indices{1, 0, 2, 1, 2, 3, 3, 2, 4, 3, 4, 5, 4, 5, 0, 5, 0, 1}));
}

TEST(ShapeIndices, OfAFeatheredStrokedTriangle) {
    EXPECT_EQ(indicesOf({true, true}, 0, 12), (Indices{2, 0, 4, 2, 4, 6, 6, 4, 8,  6, 8,  10, 8, 10, 0,  10, 0,  2,  //
                                                       1, 0, 4, 1, 4, 5, 5, 4, 8,  5, 8,  9,  1, 0,  8,  1,  8,  9,  //
                                                       3, 2, 6, 3, 6, 7, 7, 6, 10, 7, 10, 11, 3, 2,  10, 3,  10, 11}));
}

TEST(ShapeIndices, OfOnePlaceCloseOntoItself) {
    EXPECT_EQ(indicesOf({false, false}, 5, 2), (Indices{6, 6, 5}));
    EXPECT_EQ(indicesOf({true, false}, 0, 2), (Indices{0, 1, 0, 1, 0, 1}));
}

TEST(ShapeIndices, WithoutAPlaceThereAreNone) {
    for (const OutlineMode mode : allModes) {
        EXPECT_TRUE(indicesOf(mode, 3, static_cast<std::uint32_t>(mode.centreVertices())).empty());
    }
    EXPECT_TRUE(indicesOf({true, false}, 0, 1).empty());  // a stroke of width 0 with a single point
}

TEST(ShapeIndices, AreAsManyAsTheModePromises) {
    for (const OutlineMode mode : allModes) {
        for (const std::uint32_t places : {1U, 2U, 3U, 4U, 17U, 100U}) {
            EXPECT_EQ(indicesOf(mode, 7, vertexCount(mode, places)).size(),
                      places * static_cast<std::uint32_t>(mode.indicesPerPlace()));
        }
    }
}

/// What a vertex number of a cell stands for.
struct Role {
    int ring;  // -1: the centre; otherwise which ring from the inside outward in the plane
    std::uint32_t place;
};

/// The rings of each mode from inside to outside, as offsets in a place's vertices.
std::vector<std::uint32_t> ringsOf(OutlineMode mode) {
    if (!mode.stroke) {
        return mode.feathered ? Indices{0, 1} : Indices{0};
    }
    return mode.feathered ? Indices{3, 2, 0, 1} : Indices{1, 0};
}

Role roleOf(OutlineMode mode, std::uint32_t number) {
    const std::uint32_t centres = static_cast<std::uint32_t>(mode.centreVertices());
    if (number < centres) {
        return {-1, 0};
    }
    const std::uint32_t perPlace = static_cast<std::uint32_t>(mode.verticesPerPlace());
    const Indices rings = ringsOf(mode);
    const auto ring = std::find(rings.begin(), rings.end(), (number - centres) % perPlace);
    return {static_cast<int>(ring - rings.begin()), (number - centres) / perPlace};
}

/// Each triangle lies between neighbouring places and neighbouring rings, and every such field is covered once: by one
/// triangle round the centre, by two that share a diagonal elsewhere.
TEST(ShapeIndices, CoverEveryFieldOfTheRingOnce) {
    for (const OutlineMode mode : allModes) {
        for (const std::uint32_t places : {3U, 4U, 5U, 12U, 31U}) {
            const Indices indices = indicesOf(mode, 0, vertexCount(mode, places));
            std::map<std::pair<int, std::uint32_t>, std::vector<std::set<std::uint32_t>>> fields;
            for (std::size_t k = 0; k < indices.size(); k += 3) {
                std::set<int> rings;
                std::set<std::uint32_t> at;
                for (const std::size_t corner : {k, k + 1, k + 2}) {
                    const Role role = roleOf(mode, indices[corner]);
                    rings.insert(role.ring);
                    if (role.ring >= 0) {
                        at.insert(role.place);
                    }
                }
                ASSERT_EQ(rings.size(), 2U);
                ASSERT_EQ(*rings.rbegin() - *rings.begin(), 1);
                ASSERT_EQ(at.size(), 2U);
                const bool closing = *at.begin() == 0 && *at.rbegin() == places - 1;
                ASSERT_TRUE(closing || *at.rbegin() - *at.begin() == 1);
                fields[{*rings.begin(), closing ? places - 1 : *at.begin()}].push_back(
                    {indices[k], indices[k + 1], indices[k + 2]});
            }
            const std::size_t bands = ringsOf(mode).size() - (mode.stroke ? 1 : 0);
            EXPECT_EQ(fields.size(), bands * places);
            for (const auto& [field, triangles] : fields) {
                ASSERT_EQ(triangles.size(), field.first < 0 ? 1U : 2U);
                std::set<std::uint32_t> corners = triangles.front();
                corners.insert(triangles.back().begin(), triangles.back().end());
                EXPECT_EQ(corners.size(), field.first < 0 ? 3U : 4U);
            }
        }
    }
}

}  // namespace
}  // namespace Tessavoy
