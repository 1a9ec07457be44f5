#include "Source/RenderGrid/OutlinePattern.h"

#include "Source/RenderGrid/PartPoints.h"
#include "Tests/Unit/RenderGrid/RenderGridFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Tessavoy {
namespace {

struct Emitted {
    std::vector<InstanceVertex> vertices;
    std::vector<std::uint32_t> indices;
};

/// Writes the cells one after the other with what `emit` does.
template <class Emit>
Emitted written(const EmissionFrame& frame, const std::vector<InstanceState>& cells, const Emit& emit) {
    InstanceCount sums;
    for (const InstanceState& cell : cells) {
        sums.vertices += CountInstance(frame, cell).vertices;
        sums.indices += CountInstance(frame, cell).indices;
    }
    Emitted result{std::vector<InstanceVertex>(sums.vertices), std::vector<std::uint32_t>(sums.indices)};
    EmissionCursor cursor{0, reinterpret_cast<std::byte*>(result.vertices.data()), result.indices.data()};
    for (const InstanceState& cell : cells) {
        emit(cell, cursor);
    }
    result.vertices.resize(cursor.nextVertex);
    result.indices.resize(static_cast<std::size_t>(cursor.index - result.indices.data()));
    return result;
}

Emitted plainly(const EmissionFrame& frame, const std::vector<InstanceState>& cells) {
    OutlineBuilder builder;
    return written(frame, cells, [&](const InstanceState& cell, EmissionCursor& cursor) {
        EmitInstance(frame, cell, builder, cursor);
    });
}

Emitted byPatterns(const EmissionFrame& frame, const std::vector<InstanceState>& cells, bool shared = true) {
    InstanceEmitter emitter(frame, shared);
    return written(frame, cells,
                   [&](const InstanceState& cell, EmissionCursor& cursor) { emitter.emit(cell, cursor); });
}

/// Both agree within a ten-thousandth of a pixel, or the spacing of numbers of that size where it is more.
void expectSame(const Emitted& result, const Emitted& expected) {
    EXPECT_EQ(result.indices, expected.indices);
    ASSERT_EQ(result.vertices.size(), expected.vertices.size());
    const auto expectNear = [](float value, float plain) {
        if (std::isfinite(plain)) {
            const double spacing = std::fabs(plain) * 2.0 * std::numeric_limits<float>::epsilon();
            EXPECT_NEAR(value, plain, std::max(1e-4, spacing));
        } else {
            EXPECT_FALSE(std::isfinite(value));
        }
    };
    for (std::size_t k = 0; k < result.vertices.size(); ++k) {
        const InstanceVertex& vertex = result.vertices[k];
        const InstanceVertex& plain = expected.vertices[k];
        expectNear(vertex.x, plain.x);
        expectNear(vertex.y, plain.y);
        expectNear(vertex.z, plain.z);
        EXPECT_EQ(vertex.r, plain.r);
        EXPECT_EQ(vertex.g, plain.g);
        EXPECT_EQ(vertex.b, plain.b);
        EXPECT_EQ(vertex.a, plain.a);
    }
}

/// Cells of a frame whose parts are the same wherever their number is.
class PatternScene {
public:
    explicit PatternScene(std::uint32_t seed) : mNumbers(seed) {
        ParameterSnapshot& p = scene.snapshot;
        scene.setCounts(8, 6);
        p.ShapeRaysCount.Value = mNumbers.oneOf(3, 9);
        p.ShapeShelfLength.Value = mNumbers.coin() ? 0.0 : mNumbers.between(1.0, 25.0);
        p.ShapeRoundingRadius.Value = mNumbers.coin() ? 0.0 : mNumbers.between(1.0, 100.0);
        p.ShapeRoundingDots = mNumbers.oneOf(0, 6);
        p.ShapeLinkMiddleOffset.Value = mNumbers.coin() ? 0.0 : mNumbers.between(-30.0, 30.0);
        p.ShapeAngleOffset = mNumbers.coin() ? 0.0 : mNumbers.between(-90.0, 90.0);
        p.ShapeDrawMode = mNumbers.oneOf(1, 2);
        p.ShapeStrokeWidth.Value = mNumbers.between(1.0, 10.0);
        p.ShapeFeatherScreenSpace = mNumbers.coin();
        p.ShapeFeatherPixels = mNumbers.coin() ? 0.0 : mNumbers.between(0.5, 3.0);
        p.ShapeFeatherPercents = p.ShapeFeatherPixels;
        p.ShapeUniformScaling = mNumbers.coin();
        p.ShapeScaleX.Value = mNumbers.between(50.0, 150.0);
        p.ShapeScaleY.Value = mNumbers.between(50.0, 150.0);
        p.InstanceSize.Value = mNumbers.between(3.0, 60.0);
        p.InstanceVisible.Probability = 80.0;
    }

    Numbers& numbers() { return mNumbers; }

    void compare() {
        GridEvaluator evaluator = scene.evaluator();
        GridInstances instances(evaluator);
        ASSERT_TRUE(instances.outlinesDependOnCountOnly());
        const std::vector<InstanceState> cells(instances.cells().data(),
                                               instances.cells().data() + instances.cells().count());
        const EmissionFrame frame = evaluator.emissionFrame();
        expectSame(byPatterns(frame, cells), plainly(frame, cells));
    }

    GridScene scene;

private:
    Numbers mNumbers;
};

TEST(OutlinePattern, GivesConstantShapes) {
    for (std::uint32_t seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE(seed);
        PatternScene pattern(seed);
        pattern.compare();
    }
}

TEST(OutlinePattern, GivesShapesOfAnySizeAndTurn) {
    for (std::uint32_t seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE(seed);
        PatternScene pattern(seed);
        addNoise(pattern.scene.snapshot.InstanceSize, 20.0, 1);
        addNoise(pattern.scene.snapshot.InstanceRotation, 360.0, 2);
        addNoise(pattern.scene.snapshot.InstanceColor.Hue, 90.0, 3);
        pattern.compare();
    }
}

TEST(OutlinePattern, GivesShapesUnderUnequalDownsampling) {
    for (std::uint32_t seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(seed);
        PatternScene pattern(seed);
        pattern.scene.place = {0.5F, 0.25F, 0.0F, 0.0F};
        if (pattern.numbers().coin()) {
            addNoise(pattern.scene.snapshot.InstanceRotation, 360.0, 2);
        }
        pattern.compare();
    }
}

TEST(OutlinePattern, GivesShapesInSpace) {
    for (std::uint32_t seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(seed);
        PatternScene pattern(seed);
        Numbers& numbers = pattern.numbers();
        pattern.scene.snapshot.UseCompCamera = true;
        pattern.scene.snapshot.ShapeBillboard = numbers.coin();
        pattern.scene.snapshot.Rotation3DX = numbers.between(-60.0, 60.0);
        pattern.scene.snapshot.Rotation3DY = numbers.between(-60.0, 60.0);
        pattern.scene.snapshot.InstanceRotation3DX.Value = numbers.between(-60.0, 60.0);
        if (numbers.coin()) {
            addNoise(pattern.scene.snapshot.InstanceRotation3DY, 90.0, 2);
        }
        pattern.compare();
    }
}

TEST(OutlinePattern, GivesChangingNumbersOfParts) {
    for (std::uint32_t seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(seed);
        PatternScene pattern(seed);
        pattern.scene.snapshot.ShapeRaysCount.Value = 2.5;
        addNoise(pattern.scene.snapshot.ShapeRaysCount, 40.0, 4);
        pattern.compare();
    }
}

TEST(OutlinePattern, GivesMirroredAndEmptyTurns) {
    // What only a script makes: negative radii, no radius, other scales in every other cell.
    FunctionScript script([](const CellScriptInputs&, InstanceState& cell) {
        const A_long kind = cell.i % 4;
        cell.radius = kind == 0 ? -cell.radius : kind == 1 ? 0.0F : cell.radius;
        cell.scaleX = kind == 2 ? -cell.scaleX : cell.scaleX;
        return true;
    });
    for (const bool inPixels : {true, false}) {
        GridScene scene;
        scene.setCounts(12, 9);
        scene.snapshot.ShapeFeatherScreenSpace = inPixels;
        GridEvaluator evaluator = scene.evaluator(&script);
        GridInstances instances(evaluator);
        const std::vector<InstanceState> cells(instances.cells().data(),
                                               instances.cells().data() + instances.cells().count());
        for (const std::size_t first : {0U, 1U, 2U}) {
            std::vector<InstanceState> rows(cells.begin() + static_cast<std::ptrdiff_t>(first), cells.end());
            expectSame(byPatterns({}, rows), plainly({}, rows));
            std::vector<InstanceState> same(5, cells[first]);
            expectSame(byPatterns({}, same), plainly({}, same));
        }
    }
}

TEST(OutlinePattern, OneAndTwoPartsStayAsTheyAre) {
    for (const double parts : {1.0, 2.0}) {
        for (const A_long mode : {1, 2}) {
            GridScene scene;
            scene.snapshot.ShapeRaysCount.Value = parts;
            scene.snapshot.ShapeDrawMode = mode;
            for (const bool turning : {false, true}) {
                if (turning) {
                    addNoise(scene.snapshot.InstanceRotation, 90.0, 1);
                }
                GridEvaluator evaluator = scene.evaluator();
                GridInstances instances(evaluator);
                const std::vector<InstanceState> cells(instances.cells().data(), instances.cells().data() + 12);
                const Emitted result = byPatterns({}, cells);
                const Emitted expected = plainly({}, cells);
                EXPECT_EQ(result.indices, expected.indices);
                ASSERT_EQ(result.vertices.size(), expected.vertices.size());
                for (std::size_t k = 0; k < result.vertices.size(); ++k) {
                    EXPECT_EQ(std::isfinite(result.vertices[k].x) && std::isfinite(result.vertices[k].y),
                              std::isfinite(expected.vertices[k].x) && std::isfinite(expected.vertices[k].y));
                }
            }
        }
    }
}

TEST(OutlinePattern, IsNotUsedWherePartsDiffer) {
    GridScene scene;
    scene.setCounts(8, 6);
    addNoise(scene.snapshot.ShapeShelfLength, 40.0, 1);
    GridEvaluator evaluator = scene.evaluator();
    GridInstances instances(evaluator);
    EXPECT_FALSE(instances.outlinesDependOnCountOnly());
    const std::vector<InstanceState> cells(instances.cells().data(), instances.cells().data() + 48);
    const Emitted result = byPatterns({}, cells, false);
    const Emitted expected = plainly({}, cells);
    for (std::size_t k = 0; k < result.vertices.size(); ++k) {
        EXPECT_EQ(result.vertices[k].x, expected.vertices[k].x);
        EXPECT_EQ(result.vertices[k].y, expected.vertices[k].y);
    }
}

TEST(OutlinePattern, WritesNothingBeyondItsCells) {
    GridScene scene;
    GridEvaluator evaluator = scene.evaluator();
    GridInstances instances(evaluator);
    InstanceEmitter emitter({}, true);
    for (int cell = 0; cell < 4; ++cell) {
        std::vector<float> vertices(9 * 7 + 4, 77.0F);
        std::vector<std::uint32_t> indices(36 + 4, 77U);
        EmissionCursor cursor{0, reinterpret_cast<std::byte*>(vertices.data()), indices.data()};
        emitter.emit(instances.cells()[cell], cursor);
        EXPECT_EQ(cursor.index, indices.data() + 36);
        for (int guard = 0; guard < 4; ++guard) {
            EXPECT_EQ(vertices[9 * 7 + guard], 77.0F);
            EXPECT_EQ(indices[36 + guard], 77U);
        }
    }
}

}  // namespace
}  // namespace Tessavoy
