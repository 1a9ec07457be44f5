#include "Source/RenderGrid/ShapeGeometry.h"

#include "Source/RenderGrid/PartPoints.h"
#include "Tests/Unit/RenderGrid/RenderGridFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <set>

namespace Tessavoy {
namespace {

/// One visible cell, whose matrix is a scale by its radius about a place.
struct ShapeCell {
    explicit ShapeCell(A_long partsCount) : parts(static_cast<std::size_t>(std::max(partsCount, 0))) {
        state.visible = 1;
        state.partsCount = partsCount;
        state.parts = parts.empty() ? nullptr : parts.data();
        state.scaleX = state.scaleY = 1.0F;
        state.r = 0.1F;
        state.g = 0.2F;
        state.b = 0.3F;
        state.a = 0.4F;
        for (std::size_t k = 0; k < parts.size(); ++k) {
            parts[k] = {};
            parts[k].angle =
                static_cast<float>(k) * 360.0F / static_cast<float>(partsCount) + (partsCount == 4 ? 45.0F : 0.0F);
        }
        place(10.0F * std::numbers::sqrt2_v<float>, 100.0F, 200.0F);
    }

    void place(float radius, float x, float y) {
        state.radius = radius;
        state.matrix = Matrix::identity();
        state.matrix.translate(x, y, 0.0F);
        state.matrix.scale(radius, radius, 1.0F);
    }

    std::vector<InstancePart> parts;
    InstanceState state{};
};

struct Emitted {
    std::vector<InstanceVertex> vertices;
    std::vector<std::uint32_t> indices;
};

/// Emits into memory of exactly the counted size, followed by a guard.
Emitted emitted(ShapeCell& cell, const EmissionFrame& frame = {}, std::uint32_t firstVertex = 0) {
    BuildPartPoints(cell.state);
    const InstanceCount count = CountInstance(frame, cell.state);
    constexpr float guard = 12345.0F;
    Emitted result;
    result.vertices.assign(count.vertices + 1, {guard, guard, guard, guard, guard, guard, guard});
    result.indices.assign(count.indices + 1, 0xDEADBEEF);
    OutlineBuilder builder;
    EmissionCursor cursor{firstVertex, reinterpret_cast<std::byte*>(result.vertices.data()), result.indices.data()};
    EmitInstance(frame, cell.state, builder, cursor);
    EXPECT_EQ(result.vertices.back().x, guard);
    EXPECT_EQ(result.indices.back(), 0xDEADBEEF);
    const std::size_t written = cursor.nextVertex - firstVertex;
    EXPECT_EQ(cursor.vertex, reinterpret_cast<std::byte*>(result.vertices.data() + written));
    EXPECT_LE(written, count.vertices);
    result.indices.resize(static_cast<std::size_t>(cursor.index - result.indices.data()));
    EXPECT_LE(result.indices.size(), count.indices);
    result.vertices.resize(written);
    return result;
}

void expectPlace(const InstanceVertex& vertex, double x, double y, double tolerance = 1e-4) {
    EXPECT_NEAR(vertex.x, x, tolerance);
    EXPECT_NEAR(vertex.y, y, tolerance);
}

TEST(ShapeGeometry, FourPartsAreASquareOfHalfSideInstanceSize) {
    ShapeCell cell(4);
    const Emitted shape = emitted(cell);
    ASSERT_EQ(shape.vertices.size(), 5U);
    expectPlace(shape.vertices[0], 100, 200);
    expectPlace(shape.vertices[1], 110, 190);
    expectPlace(shape.vertices[2], 110, 210);
    expectPlace(shape.vertices[3], 90, 210);
    expectPlace(shape.vertices[4], 90, 190);
    for (const InstanceVertex& vertex : shape.vertices) {
        EXPECT_EQ(vertex.z, 0.0F);
        EXPECT_EQ(vertex.r, 0.1F);
        EXPECT_EQ(vertex.g, 0.2F);
        EXPECT_EQ(vertex.b, 0.3F);
        EXPECT_EQ(vertex.a, 0.4F);
    }
    EXPECT_EQ(shape.indices, (std::vector<std::uint32_t>{1, 2, 0, 2, 3, 0, 3, 4, 0, 4, 1, 0}));
}

TEST(ShapeGeometry, IndicesStartAtTheCursorsVertex) {
    ShapeCell cell(3);
    EXPECT_EQ(emitted(cell, {}, 1000).indices,
              (std::vector<std::uint32_t>{1001, 1002, 1000, 1002, 1003, 1000, 1003, 1001, 1000}));
}

TEST(ShapeGeometry, FeatherInPixelsIsConstantWhateverTheRadius) {
    for (const float radius : {1.0F, 14.0F, 200.0F}) {
        ShapeCell cell(4);
        cell.place(radius, 0.0F, 0.0F);
        cell.state.feather = 3.0F;
        cell.state.featherScreenSpace = 1;
        const Emitted shape = emitted(cell);
        ASSERT_EQ(shape.vertices.size(), 9U);
        const double side = radius * std::numbers::sqrt2 / 2.0;
        expectPlace(shape.vertices[1], side, -side);
        expectPlace(shape.vertices[2], side + 3.0, -side - 3.0);
        EXPECT_EQ(shape.vertices[1].a, 0.4F);
        EXPECT_EQ(shape.vertices[2].a, 0.0F);
        EXPECT_EQ(shape.vertices[2].r, 0.1F);
    }
}

TEST(ShapeGeometry, FeatherInPixelsShrinksWithDownsampling) {
    ShapeCell cell(4);
    cell.place(std::numbers::sqrt2_v<float>, 0.0F, 0.0F);
    cell.state.feather = 4.0F;
    cell.state.featherScreenSpace = 1;
    expectPlace(emitted(cell, {nullptr, 0.5F, 0.25F}).vertices[2], 1.0 + 1.5, -1.0 - 1.5);
}

TEST(ShapeGeometry, FeatherAsAFractionGrowsWithTheRadius) {
    for (const float size : {1.0F, 10.0F, 100.0F}) {
        ShapeCell cell(4);
        cell.place(size * std::numbers::sqrt2_v<float>, 0.0F, 0.0F);
        cell.state.feather = 0.25F;
        const Emitted shape = emitted(cell, {nullptr, 0.5F, 0.25F});
        const double out = size + 0.25 * size * std::numbers::sqrt2;
        expectPlace(shape.vertices[2], out, -out);
    }
}

TEST(ShapeGeometry, AFeatheredShapeUnderATurnedMatrixStaysAtItsDepth) {
    ShapeCell cell(4);
    cell.state.matrix = Matrix::identity();
    cell.state.matrix.translate(0.0F, 0.0F, 50.0F);
    cell.state.matrix.rotateY(60.0);
    cell.state.matrix.scale(10.0F, 10.0F, 1.0F);
    cell.state.feather = 2.0F;
    cell.state.featherScreenSpace = 1;
    const Emitted shape = emitted(cell);
    // Half as wide as high in the view; the feather is measured there, along both axes.
    const double side = 10.0 * std::numbers::sqrt2 / 2.0;
    expectPlace(shape.vertices[1], side / 2.0, -side);
    expectPlace(shape.vertices[2], side / 2.0 + 2.0, -side - 2.0);
    EXPECT_NEAR(shape.vertices[1].z, 50.0 - side * std::sin(std::numbers::pi / 3.0), 1e-4);
    EXPECT_EQ(shape.vertices[2].z, shape.vertices[1].z);
}

TEST(ShapeGeometry, ScaleComesBeforeTheRounding) {
    ShapeCell cell(4);
    cell.place(std::numbers::sqrt2_v<float>, 0.0F, 0.0F);
    cell.state.scaleX = 2.0F;
    cell.state.scaleY = 0.5F;
    for (InstancePart& part : cell.parts) {
        part.roundingRadius = 0.1F;
    }
    const Emitted shape = emitted(cell);
    ASSERT_EQ(shape.vertices.size(), 9U);
    const double cut = 0.1 * std::numbers::sqrt2;
    expectPlace(shape.vertices[1], 2.0 - cut, -0.5, 1e-6);
    expectPlace(shape.vertices[2], 2.0, -0.5 + cut, 1e-6);
}

TEST(ShapeGeometry, AShelfCutsTheCorner) {
    ShapeCell cell(4);
    cell.place(1.0F, 0.0F, 0.0F);
    for (InstancePart& part : cell.parts) {
        part.shelfLength = 0.4F;
    }
    const Emitted shape = emitted(cell);
    ASSERT_EQ(shape.vertices.size(), 9U);
    const double d = std::numbers::sqrt2 / 2.0;
    expectPlace(shape.vertices[1], 0.8 * d, -1.2 * d, 1e-6);
    expectPlace(shape.vertices[2], 1.2 * d, -0.8 * d, 1e-6);
}

TEST(ShapeGeometry, ALinkGivesAStar) {
    ShapeCell cell(3);
    cell.place(1.0F, 0.0F, 0.0F);
    for (InstancePart& part : cell.parts) {
        part.linkMiddleOffset = 0.25F;
    }
    const Emitted shape = emitted(cell);
    ASSERT_EQ(shape.vertices.size(), 7U);
    expectPlace(shape.vertices[1], 0.0, -1.0, 1e-6);
    // The middle of an edge of the triangle lies half a unit from the centre, at 60 degrees.
    expectPlace(shape.vertices[2], 0.25 * std::sqrt(3.0) / 2.0, -0.125, 1e-6);
    expectPlace(shape.vertices[4], 0.0, 0.25, 1e-6);
}

TEST(ShapeGeometry, CollapsedLinksPassThroughTheCentre) {
    ShapeCell cell(3);
    for (InstancePart& part : cell.parts) {
        part.linkMiddleOffset = 0.6F;
    }
    const Emitted shape = emitted(cell);
    for (const std::size_t link : {2U, 4U, 6U}) {
        EXPECT_EQ(shape.vertices[link].x, 100.0F);
        EXPECT_EQ(shape.vertices[link].y, 200.0F);
    }
}

TEST(ShapeGeometry, TheLinkBeforeIsTakenAsCollapsedByThisPartsFlag) {
    // Rounding makes the point before a corner matter: part 1 is rounded between the link of part 0 and part 2.
    const auto firstTangent = [](std::uint8_t collapsedBefore, std::uint8_t collapsedHere) {
        ShapeCell cell(4);
        cell.place(1.0F, 0.0F, 0.0F);
        for (InstancePart& part : cell.parts) {
            part.linkMiddleOffset = 0.1F;
        }
        BuildPartPoints(cell.state);
        cell.parts[0].linkCollapsed = collapsedBefore;
        cell.parts[1].linkCollapsed = collapsedHere;
        cell.parts[1].linkMiddleOffset = 0.0F;
        cell.parts[1].roundingRadius = 0.05F;
        std::vector<InstanceVertex> vertices(CountInstance({}, cell.state).vertices);
        std::vector<std::uint32_t> indices(CountInstance({}, cell.state).indices);
        EmissionCursor cursor{0, reinterpret_cast<std::byte*>(vertices.data()), indices.data()};
        OutlineBuilder builder;
        EmitInstance({}, cell.state, builder, cursor);
        return vertices[3];  // centre, corner 0, link 0, then the first tangent point of corner 1
    };
    const double d = std::numbers::sqrt2 / 2.0;
    // The side to the centre runs along the diagonal; the one to the true link point does not.
    const InstanceVertex towardCentre = firstTangent(0, 1);
    EXPECT_NEAR(towardCentre.x, towardCentre.y, 1e-6);
    EXPECT_LT(towardCentre.x, d);
    const InstanceVertex towardLink = firstTangent(1, 0);
    EXPECT_GT(std::fabs(towardLink.x - towardLink.y), 0.01);
    EXPECT_EQ(firstTangent(0, 0).x, towardLink.x);
}

TEST(ShapeGeometry, AStrokeHasItsWidthAcrossTheEdges) {
    ShapeCell cell(4);
    cell.place(std::numbers::sqrt2_v<float> * 10.0F, 0.0F, 0.0F);
    cell.state.stroke = 1;
    cell.state.strokeWidth = 0.1F;
    const Emitted shape = emitted(cell);
    ASSERT_EQ(shape.vertices.size(), 8U);
    const double half = 0.05 * 10.0 * std::numbers::sqrt2;
    expectPlace(shape.vertices[0], 10.0 + half, -10.0 - half);
    expectPlace(shape.vertices[1], 10.0 - half, -10.0 + half);
    EXPECT_EQ(shape.indices.size(), 24U);
}

TEST(ShapeGeometry, AStrokesMitreHasNoLimit) {
    ShapeCell cell(3);
    cell.place(1.0F, 0.0F, 0.0F);
    cell.state.scaleX = 0.02F;  // a needle
    cell.state.stroke = 1;
    cell.state.strokeWidth = 0.01F;
    const Emitted shape = emitted(cell);
    const double halfAngle = std::atan2(0.02 * std::sqrt(3.0) / 2.0, 1.5);
    EXPECT_NEAR(shape.vertices[0].y, -1.0 - 0.005 / std::sin(halfAngle), 1e-5);
}

TEST(ShapeGeometry, AStrokeOfNoWidthWritesFewerThanCounted) {
    for (const bool feathered : {false, true}) {
        ShapeCell cell(5);
        cell.state.stroke = 1;
        cell.state.strokeWidth = 0.0F;
        cell.state.feather = feathered ? 1.0F : 0.0F;
        cell.state.featherScreenSpace = 1;
        const Emitted shape = emitted(cell);
        EXPECT_EQ(shape.vertices.size(), feathered ? 10U : 5U);
        EXPECT_EQ(shape.indices.size(), feathered ? 36U : 12U);  // two whole places on the ring
        for (const std::uint32_t index : shape.indices) {
            EXPECT_LT(index, shape.vertices.size());
        }
    }
}

TEST(ShapeGeometry, RoundedShapesWhoseCornersMeetKeepAFiniteFeather) {
    for (const A_long parts : {3, 4, 5, 8}) {
        for (const float dots : {0.0F, 1.0F, 6.0F}) {
            ShapeCell cell(parts);
            for (InstancePart& part : cell.parts) {
                part.roundingRadius = 10.0F;
                part.roundingDots = dots;
            }
            cell.state.feather = 1.0F;
            cell.state.featherScreenSpace = 1;
            const Emitted shape = emitted(cell);
            for (std::size_t k = 1; k < shape.vertices.size(); k += 2) {
                const double distance = std::hypot(shape.vertices[k + 1].x - shape.vertices[k].x,
                                                   shape.vertices[k + 1].y - shape.vertices[k].y);
                EXPECT_GE(distance, 0.999);
                EXPECT_LT(distance, 1.5);
            }
        }
    }
}

TEST(ShapeGeometry, OneAndTwoPartsGiveWhatTheyGive) {
    for (const A_long parts : {1, 2}) {
        ShapeCell cell(parts);
        cell.state.stroke = 1;
        cell.state.strokeWidth = 0.1F;
        const Emitted shape = emitted(cell);
        EXPECT_EQ(shape.vertices.size(), static_cast<std::size_t>(2 * parts));
        EXPECT_FALSE(std::isfinite(shape.vertices[0].x) && std::isfinite(shape.vertices[0].y));
        EXPECT_EQ(shape.indices.size(), static_cast<std::size_t>(6 * parts));
    }
}

TEST(ShapeGeometry, AVisibleCellWithoutPartsWritesNoMoreThanItsCentre) {
    for (const A_long parts : {0, -1, -100}) {
        for (const std::uint8_t stroke : {std::uint8_t{0}, std::uint8_t{1}}) {
            for (const float feather : {0.0F, 1.0F}) {
                ShapeCell cell(parts);
                cell.state.stroke = stroke;
                cell.state.feather = feather;
                const Emitted shape = emitted(cell);
                EXPECT_EQ(shape.vertices.size(), stroke != 0 ? 0U : 1U);
                EXPECT_TRUE(shape.indices.empty());
            }
        }
    }
}

TEST(ShapeGeometry, InvisibleCellsWriteNothing) {
    ShapeCell cell(4);
    cell.state.visible = 0;
    EXPECT_EQ(CountInstance({}, cell.state), (InstanceCount{0, 0}));
    EXPECT_TRUE(emitted(cell).vertices.empty());
    const TextureAtlas atlas;
    EXPECT_EQ(CountInstance({&atlas, 1.0F, 1.0F}, cell.state), (InstanceCount{0, 0}));
}

TEST(ShapeGeometry, CountsFollowTheirTable) {
    ShapeCell cell(5);
    for (InstancePart& part : cell.parts) {
        part.roundingRadius = 0.1F;
        part.roundingDots = 2.9F;
        part.linkMiddleOffset = 0.1F;
        part.linkRoundingRadius = 0.1F;
        part.linkRoundingDots = 3.9F;
        part.shelfLength = 0.2F;
    }
    const std::uint32_t points = 5 * (2 * (2 + 2) + (3 + 2));
    EXPECT_EQ(outlinePointCount(cell.parts.data(), 5), points);
    struct Row {
        std::uint8_t stroke;
        float feather;
        InstanceCount count;
    };
    for (const Row& row : {Row{0, 0.0F, {points + 1, 3 * points}}, Row{0, 1.0F, {2 * points + 1, 9 * points}},
                           Row{1, 0.0F, {2 * points, 6 * points}}, Row{1, 1.0F, {4 * points, 18 * points}}}) {
        cell.state.stroke = row.stroke;
        cell.state.feather = row.feather;
        EXPECT_EQ(CountInstance({}, cell.state), row.count);
    }
}

TEST(ShapeGeometry, OversizedCountsStandAtTheirBound) {
    ShapeCell cell(4);
    for (InstancePart& part : cell.parts) {
        part.roundingRadius = 0.1F;
        part.roundingDots = std::numeric_limits<float>::infinity();
    }
    const InstanceCount count = CountInstance({}, cell.state);
    EXPECT_EQ(count.indices, std::numeric_limits<std::uint32_t>::max());
    EXPECT_TRUE(isOversized(count));
    EXPECT_FALSE(isOversized({0x7FFFFFFFU, 0x80000000U}));
    EXPECT_TRUE(isOversized({0x80000000U, 0x80000000U}));
}

/// All modes, crossed with everything that changes a part's points.
TEST(ShapeGeometry, WritesWhatItCounts) {
    for (const A_long parts : {1, 2, 3, 4, 5, 9}) {
        for (int features = 0; features < 128; ++features) {
            const auto has = [&](int bit) { return (features >> bit & 1) != 0; };
            ShapeCell cell(parts);
            cell.state.stroke = has(0) ? 1 : 0;
            cell.state.strokeWidth = 0.05F;
            cell.state.feather = has(1) ? 0.1F : 0.0F;
            cell.state.featherScreenSpace = has(2) ? 1 : 0;
            for (InstancePart& part : cell.parts) {
                part.shelfLength = has(3) ? 0.3F : 0.0F;
                part.roundingRadius = part.linkRoundingRadius = has(4) ? 0.1F : 0.0F;
                part.roundingDots = part.linkRoundingDots = has(5) ? 3.0F : 0.0F;
                part.linkMiddleOffset = has(6) ? (parts % 2 == 0 ? 0.1F : 5.0F) : 0.0F;
            }
            const Emitted shape = emitted(cell);
            EXPECT_EQ(InstanceCount({static_cast<std::uint32_t>(shape.vertices.size()),
                                     static_cast<std::uint32_t>(shape.indices.size())}),
                      CountInstance({}, cell.state))
                << parts << " " << features;
            const std::set<std::uint32_t> used(shape.indices.begin(), shape.indices.end());
            EXPECT_EQ(used.size(), shape.vertices.size());
            EXPECT_EQ(*used.rbegin(), shape.vertices.size() - 1);
        }
    }
}

TEST(ShapeGeometry, ATexturedQuadShowsItsFrameAndIsNotTurned) {
    TextureAtlas atlas;
    atlas.columns = 4;
    atlas.rows = 2;
    atlas.frameCount = 8;
    ShapeCell cell(4);
    cell.place(10.0F * std::numbers::sqrt2_v<float>, 100.0F, 200.0F);
    cell.state.spriteIndex = 7;  // the third frame of the second row
    cell.state.scaleX = 0.5F;
    cell.state.feather = 5.0F;
    cell.state.featherScreenSpace = 1;
    const EmissionFrame frame{&atlas, 1.0F, 1.0F};
    EXPECT_EQ(CountInstance(frame, cell.state), (InstanceCount{4, 6}));
    std::vector<TexturedInstanceVertex> vertices(4);
    std::vector<std::uint32_t> indices(6);
    OutlineBuilder builder;
    EmissionCursor cursor{8, reinterpret_cast<std::byte*>(vertices.data()), indices.data()};
    EmitInstance(frame, cell.state, builder, cursor);
    EXPECT_EQ(indices, (std::vector<std::uint32_t>{8, 9, 10, 8, 10, 11}));
    EXPECT_EQ(cursor.nextVertex, 12U);
    EXPECT_EQ(cursor.vertex, reinterpret_cast<std::byte*>(vertices.data() + 4));
    const double w = 5.0 * std::numbers::sqrt2;
    const double h = 10.0 * std::numbers::sqrt2;
    const double expected[4][4] = {{-w, -h, 0.5, 0.5}, {w, -h, 0.75, 0.5}, {w, h, 0.75, 1.0}, {-w, h, 0.5, 1.0}};
    for (int k = 0; k < 4; ++k) {
        EXPECT_NEAR(vertices[k].x, 100.0 + expected[k][0], 1e-4);
        EXPECT_NEAR(vertices[k].y, 200.0 + expected[k][1], 1e-4);
        EXPECT_EQ(vertices[k].u, expected[k][2]);
        EXPECT_EQ(vertices[k].v, expected[k][3]);
        EXPECT_EQ(vertices[k].layer, 0.0F);
        EXPECT_EQ(vertices[k].a, 0.4F);
    }
}

TEST(ShapeGeometry, FrameNumbersOutsideTheAtlasArePinned) {
    TextureAtlas atlas;
    atlas.columns = 2;
    atlas.frameCount = 2;
    for (const A_long sprite :
         {std::numeric_limits<A_long>::min(), -5, 0, 1, 2, 3, std::numeric_limits<A_long>::max()}) {
        ShapeCell cell(4);
        cell.state.spriteIndex = sprite;
        std::vector<TexturedInstanceVertex> vertices(4);
        std::vector<std::uint32_t> indices(6);
        EmissionCursor cursor{0, reinterpret_cast<std::byte*>(vertices.data()), indices.data()};
        emitTexturedQuad(atlas, cell.state, cursor);
        EXPECT_EQ(vertices[0].u, sprite <= 1 ? 0.0F : 0.5F) << sprite;
    }
}

}  // namespace
}  // namespace Tessavoy
