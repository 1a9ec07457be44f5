#include "Source/RenderGrid/BatchWalk.h"

#include "Tests/Unit/RenderGrid/RenderGridFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

namespace Tessavoy {
namespace {

using Batches = std::vector<RecordingSink::Batch>;

/// The places of the centres of filled squares with a feather, in the order they were written.
std::vector<std::pair<float, float>> centresOf(const RecordingSink::Batch& batch) {
    std::vector<std::pair<float, float>> centres;
    const std::vector<InstanceVertex> vertices = batch.shapes();
    for (std::size_t k = 0; k < vertices.size(); k += 9) {
        centres.emplace_back(vertices[k].x, vertices[k].y);
    }
    return centres;
}

TEST(BatchWalk, AFrameIsOneBatchInCellOrder) {
    GridScene scene;
    const Batches batches = drawScene(scene);
    ASSERT_EQ(batches.size(), 1U);
    const RecordingSink::Batch& batch = batches.front();
    EXPECT_EQ(batch.room.vertexCount, 12U * 9U);
    EXPECT_EQ(batch.room.indexCount, 12U * 36U);
    EXPECT_EQ(batch.room.vertexStride, 28U);
    EXPECT_EQ(batch.written.vertexCount, batch.room.vertexCount);
    EXPECT_EQ(batch.written.indexCount, batch.room.indexCount);
    std::vector<std::pair<float, float>> expected;
    for (int j = 0; j < 3; ++j) {
        for (int i = 0; i < 4; ++i) {
            expected.emplace_back(400.0F + static_cast<float>((static_cast<float>(i) / 3.0F - 0.5F) * 300.0),
                                  300.0F + static_cast<float>((static_cast<float>(j) / 2.0F - 0.5F) * 200.0));
        }
    }
    EXPECT_EQ(centresOf(batch), expected);
    for (std::size_t k = 0; k < batch.indices.size(); ++k) {
        EXPECT_EQ(batch.indices[k] / 9, k / 36) << k;
    }
}

TEST(BatchWalk, InvisibleCellsLeaveNoGap) {
    GridScene scene;
    scene.setCounts(10, 10);
    scene.snapshot.InstanceVisible.Probability = 40.0;
    std::size_t shown = 0;
    for (A_long index = 0; index < 100; ++index) {
        shown += scene.snapshot.InstanceVisible.test(index % 10, index / 10);
    }
    const Batches batches = drawScene(scene);
    ASSERT_EQ(batches.size(), 1U);
    EXPECT_EQ(batches.front().written.vertexCount, 9 * shown);
    EXPECT_EQ(batches.front().written.indexCount, 36 * shown);
    // They keep their places in the order by depth, which counts all cells, and draw nothing there either.
    scene.snapshot.UseCompCamera = scene.snapshot.SortByZ = true;
    const Batches ordered = drawScene(scene);
    ASSERT_EQ(ordered.size(), 1U);
    EXPECT_EQ(ordered.front().written.vertexCount, 9 * shown);
    EXPECT_EQ(ordered.front().written.indexCount, 36 * shown);
}

/// Cells that are evaluated as they are written must come out as those of a frame that was complete before.
TEST(BatchWalk, EvaluatingAheadOfTheWritingChangesNothing) {
    GridScene scene;
    addNoise(scene.snapshot.InstanceRotation, 90.0, 3);
    addNoise(scene.snapshot.InstanceOffsetX, 20.0, 4);
    addNoise(scene.snapshot.InstanceColor.Hue, 60.0, 5);
    const auto draw = [&scene](bool completeFirst) {
        GridEvaluator evaluator = scene.evaluator();
        GridInstances instances(evaluator);
        if (completeFirst) {
            EXPECT_EQ(instances.cells().count(), evaluator.cellCount());
        }
        DrawOrder order = drawOrderOf(instances);
        RecordingSink sink;
        writeBatches(instances, order, sink);
        return sink.batches;
    };
    // Neither is a multiple of what is evaluated at a time; the caches hold the first alone.
    for (const A_long side : {37, 251}) {
        scene.setCounts(side, side);
        const Batches complete = draw(true);
        const Batches ahead = draw(false);
        ASSERT_EQ(complete.size(), 1U);
        ASSERT_EQ(ahead.size(), 1U);
        EXPECT_EQ(ahead.front().room.vertexCount, static_cast<std::size_t>(side) * side * 9U);
        EXPECT_TRUE(ahead.front().vertices == complete.front().vertices);
        EXPECT_TRUE(ahead.front().indices == complete.front().indices);
    }
}

TEST(BatchWalk, AnEmptyGridMakesNoBatch) {
    for (const A_long countX : {0, 5, -3}) {
        for (const A_long countY : {0, -2}) {
            GridScene scene;
            scene.setCounts(countX, countY);
            EXPECT_TRUE(drawScene(scene).empty());
            scene.snapshot.UseCompCamera = scene.snapshot.SortByZ = true;
            EXPECT_TRUE(drawScene(scene).empty());
        }
    }
}

TEST(BatchWalk, OnlyInvisibleCellsMakeNoBatch) {
    GridScene scene;
    scene.snapshot.InstanceSize.Value = 0.0;
    EXPECT_TRUE(drawScene(scene).empty());
}

TEST(BatchWalk, CellsAreWrittenFromFarToNear) {
    GridScene scene;
    scene.setCounts(20, 10);
    scene.snapshot.UseCompCamera = scene.snapshot.SortByZ = true;
    addNoise(scene.snapshot.InstanceOffsetZ, 500.0, 8);
    const Batches batches = drawScene(scene);
    ASSERT_EQ(batches.size(), 1U);
    const std::vector<InstanceVertex> vertices = batches.front().shapes();
    ASSERT_EQ(vertices.size(), 200U * 9U);
    for (std::size_t k = 9; k < vertices.size(); k += 9) {
        EXPECT_LE(vertices[k].z, vertices[k - 9].z);
    }
}

TEST(BatchWalk, EqualDepthsKeepCellOrder) {
    GridScene scene;
    const std::vector<std::pair<float, float>> plain = centresOf(drawScene(scene).front());
    scene.snapshot.UseCompCamera = scene.snapshot.SortByZ = true;
    EXPECT_EQ(centresOf(drawScene(scene).front()), plain);
    scene.snapshot.SortByZ = false;
    addNoise(scene.snapshot.InstanceOffsetZ, 500.0, 8);
    EXPECT_EQ(centresOf(drawScene(scene).front()), plain);
}

/// A layer that holds pixels, in the first custom slot.
void chooseTextureLayer(GridScene& scene) {
    static PF_Pixel8 pixel{};
    PF_ParamDef layer{};
    layer.param_type = PF_Param_LAYER;
    layer.u.ld.data = &pixel;
    layer.u.ld.width = layer.u.ld.height = 1;
    layer.u.ld.rowbytes = sizeof pixel;
    scene.snapshot.layers.checkouts.push_back(layer);
    scene.snapshot.ShapeType = 2;
    scene.snapshot.ShapeTextureLayerIndex = 2;
}

TEST(BatchWalk, TexturedCellsAreQuads) {
    GridScene scene;
    chooseTextureLayer(scene);
    scene.atlas.columns = 4;
    scene.atlas.rows = 3;
    scene.atlas.frameCount = 12;
    scene.snapshot.ShapeFramesSplittingMode = 3;
    const Batches batches = drawScene(scene);
    ASSERT_EQ(batches.size(), 1U);
    EXPECT_EQ(batches.front().written.vertexStride, 40U);
    EXPECT_EQ(batches.front().written.vertexCount, 48U);
    EXPECT_EQ(batches.front().written.indexCount, 72U);
    const std::vector<TexturedInstanceVertex> quads = batches.front().quads();
    for (int cell = 0; cell < 12; ++cell) {
        EXPECT_EQ(quads[cell * 4].u, static_cast<float>(cell % 4) / 4.0F);
        EXPECT_EQ(quads[cell * 4].v, static_cast<float>(cell / 4) / 3.0F);
    }
    // Its half side is the size times the factor of squares.
    EXPECT_NEAR(quads[1].x - quads[0].x, 20.0 * std::numbers::sqrt2, 1e-4);
}

TEST(BatchWalk, QuadsWithoutAFilledLayerArePlainSquares) {
    for (const bool chosen : {false, true}) {
        GridScene scene;
        chooseTextureLayer(scene);
        scene.snapshot.ShapeTextureLayerIndex = chosen ? 2 : 1;
        scene.snapshot.layers.checkouts.front().u.ld.data = nullptr;
        scene.snapshot.ShapeRoundingRadius.Value = 30.0;
        const Batches batches = drawScene(scene);
        ASSERT_EQ(batches.size(), 1U);
        EXPECT_EQ(batches.front().written.vertexStride, 28U);
        EXPECT_EQ(batches.front().written.vertexCount, 12U * 9U);
        const std::vector<InstanceVertex> vertices = batches.front().shapes();
        EXPECT_NEAR(vertices[1].x - vertices[0].x, 10.0, 1e-4);
        EXPECT_NEAR(vertices[1].y - vertices[0].y, -10.0, 1e-4);
    }
}

TEST(BatchWalk, AStrokeOfNoWidthDrawsWhatItWrites) {
    GridScene scene;
    scene.setCounts(1, 1);
    scene.snapshot.ShapeDrawMode = 2;
    FunctionScript script([](const CellScriptInputs&, InstanceState& cell) {
        cell.strokeWidth = 0.0F;
        return true;
    });
    const Batches batches = drawScene(scene, &script);
    ASSERT_EQ(batches.size(), 1U);
    EXPECT_EQ(batches.front().room.vertexCount, 16U);
    EXPECT_EQ(batches.front().room.indexCount, 72U);
    EXPECT_EQ(batches.front().written.vertexCount, 8U);
    EXPECT_EQ(batches.front().written.indexCount, 36U);
}

TEST(BatchWalk, AnOversizedCellEndsTheFrame) {
    // 20000 corners of 20002 points each are 4.0e8 points: 8.0e8 vertices and 3.6e9 indices, more than 32 bits
    // together.
    for (const A_long column : {0, 2, 3}) {
        for (const bool byZ : {false, true}) {
            GridScene scene;
            scene.setCounts(4, 1);
            scene.snapshot.ShapeRoundingRadius.Value = 10.0;
            scene.snapshot.ShapeRoundingDots = 20000.0;
            scene.snapshot.UseCompCamera = scene.snapshot.SortByZ = byZ;
            FunctionScript script([column](const CellScriptInputs&, InstanceState& cell) {
                cell.partsCount = cell.i == column ? 20000 : 3;
                return true;
            });
            const Batches batches = drawScene(scene, &script);
            ASSERT_EQ(batches.size(), column == 0 ? 0U : 1U);
            if (column > 0) {
                const std::size_t points = 3 * 20002;
                EXPECT_EQ(batches.front().written.vertexCount, static_cast<std::size_t>(column) * (2 * points + 1));
                EXPECT_EQ(batches.front().written.indexCount, static_cast<std::size_t>(column) * 9 * points);
            }
        }
    }
}

// All cells are as the first: four corners of 200,000,002 points each.
TEST(BatchWalk, OversizedCellsThatWriteAlikeEndTheFrame) {
    GridScene scene;
    scene.snapshot.ShapeRoundingRadius.Value = 10.0;
    scene.snapshot.ShapeRoundingDots = 2e8;
    GridEvaluator evaluator = scene.evaluator();
    EXPECT_TRUE(evaluator.cellsWriteAlike());
    GridInstances instances(evaluator);
    EXPECT_TRUE(instances.hasOversizedCell());
    EXPECT_TRUE(drawScene(scene).empty());
}

TEST(BatchWalk, AnOversizedCellThatIsHiddenCountsNothing) {
    GridScene scene;
    scene.setCounts(3, 1);
    scene.snapshot.ShapeRoundingRadius.Value = 10.0;
    scene.snapshot.ShapeRoundingDots = 20000.0;
    FunctionScript script([](const CellScriptInputs&, InstanceState& cell) {
        cell.partsCount = cell.i == 1 ? 20000 : 3;
        cell.visible = cell.i != 1;
        return true;
    });
    const Batches batches = drawScene(scene, &script);
    ASSERT_EQ(batches.size(), 1U);
    EXPECT_EQ(batches.front().written.vertexCount, 2U * (2 * 3 * 20002 + 1));
}

TEST(BatchWalkDeathTest, DrawingWithoutARenderContextIsAnAssertion) {
    const int context = 0;
    requireRenderContext(&context);
    EXPECT_DEATH(requireRenderContext(nullptr), "renderContext != nullptr, file Source/RenderGrid");
}

TEST(BatchWalkDeathTest, ALeftCursorByDepthWithAPlainRightOneIsAnAssertion) {
    GridScene scene;
    GridEvaluator evaluator = scene.evaluator();
    GridInstances instances(evaluator);
    DrawOrder byZ(true, 4, 3, instances.cells().data());
    GridToSequence plain(4, 3);
    RecordingSink sink;
    EXPECT_DEATH(writeBatches(instances, byZ.left(), plain, sink), "rightByZ != nullptr");
}

TEST(BatchWalkDeathTest, VerticesWithoutIndicesAreAnAssertion) {
    GridScene scene;
    FunctionScript script([](const CellScriptInputs&, InstanceState& cell) {
        cell.partsCount = 0;
        return true;
    });
    EXPECT_DEATH(drawScene(scene, &script), "vertsCount == 0 && indsCount == 0");
}

TEST(BatchWalk, ACellWithoutPartsAmongOthersDrawsNothing) {
    GridScene scene;
    FunctionScript script([](const CellScriptInputs&, InstanceState& cell) {
        cell.partsCount = cell.i == 1 ? 0 : 4;
        return true;
    });
    const Batches batches = drawScene(scene, &script);
    ASSERT_EQ(batches.size(), 1U);
    EXPECT_EQ(batches.front().written.vertexCount, 9U * 9U + 3U);
    EXPECT_EQ(batches.front().written.indexCount, 9U * 36U);
}

/// Calls that fail must give back everything that was taken before.
TEST(BatchWalk, AFailingSinkLosesNothing) {
    class FailingSink final : public BatchSink {
        BatchRoom begin(const BatchSize&) override { throw PF_Err_OUT_OF_MEMORY; }
        void end(const BatchSize&) override { ADD_FAILURE(); }
    };
    GridScene scene;
    {
        GridEvaluator evaluator = scene.evaluator();
        GridInstances instances(evaluator);
        DrawOrder order = drawOrderOf(instances);
        FailingSink sink;
        EXPECT_THROW(writeBatches(instances, order, sink), PF_ErrorValue);
    }
    EXPECT_EQ(scene.host.liveHandles(), 0U);
    EXPECT_EQ(scene.host.liveLocks(), 0);
}

ZBounds boundsOf(GridScene& scene) {
    ZBounds bounds{-1.0F, -2.0F};
    GridEvaluator evaluator = scene.evaluator();
    measureDepths(evaluator, bounds);
    return bounds;
}

TEST(ZBounds, OfAFlatGridAreZero) {
    GridScene scene;
    EXPECT_EQ(boundsOf(scene).minimum, 0.0F);
    EXPECT_EQ(boundsOf(scene).maximum, 0.0F);
}

TEST(ZBounds, StayAsTheyAreWithoutAVertex) {
    GridScene scene;
    scene.snapshot.InstanceSize.Value = 0.0;
    EXPECT_EQ(boundsOf(scene).minimum, -1.0F);
    EXPECT_EQ(boundsOf(scene).maximum, -2.0F);
    scene.setCounts(0, 4);
    EXPECT_EQ(boundsOf(scene).minimum, -1.0F);
}

TEST(ZBounds, ReachToTheCornersOfTurnedInstances) {
    // One square of half side 10, turned by 90 degrees about y: it spans ten pixels before and behind its origin.
    GridScene scene;
    scene.setCounts(1, 1);
    scene.snapshot.UseCompCamera = true;
    scene.snapshot.CenterZ = 70.0;
    scene.snapshot.ShapeFeatherPixels = 0.0;
    scene.snapshot.InstanceRotation3DY.Value = 90.0;
    for (const float downsample : {1.0F, 0.5F}) {
        scene.place = {downsample, downsample, 0.0F, 0.0F};
        EXPECT_NEAR(boundsOf(scene).minimum, 60.0, 1e-4);
        EXPECT_NEAR(boundsOf(scene).maximum, 80.0, 1e-4);
    }
}

TEST(ZBounds, AreThoseOfTheVerticesThatADrawWouldWrite) {
    GridScene scene;
    scene.setCounts(13, 7);
    scene.snapshot.UseCompCamera = scene.snapshot.SortByZ = true;
    scene.snapshot.Rotation3DX = 25.0;
    addNoise(scene.snapshot.InstanceOffsetZ, 300.0, 2);
    addNoise(scene.snapshot.InstanceRotation3DY, 90.0, 3);
    const ZBounds bounds = boundsOf(scene);
    const std::vector<InstanceVertex> vertices = drawScene(scene).front().shapes();
    const auto [low, high] =
        std::minmax_element(vertices.begin(), vertices.end(), [](const auto& a, const auto& b) { return a.z < b.z; });
    EXPECT_EQ(bounds.minimum, low->z);
    EXPECT_EQ(bounds.maximum, high->z);
}

TEST(ZBounds, OfTexturedQuadsNeedNoAtlas) {
    GridScene scene;
    scene.setCounts(1, 1);
    chooseTextureLayer(scene);
    scene.snapshot.UseCompCamera = true;
    scene.snapshot.CenterZ = 5.0;
    scene.snapshot.InstanceRotation3DY.Value = 90.0;
    EXPECT_NEAR(boundsOf(scene).minimum, 5.0 - 10.0 * std::numbers::sqrt2, 1e-4);
    EXPECT_NEAR(boundsOf(scene).maximum, 5.0 + 10.0 * std::numbers::sqrt2, 1e-4);
}

TEST(ZBounds, GiveEverythingBackAlsoWhenTheHostFails) {
    GridScene scene;
    bool failed = true;
    int failures = 0;
    for (int call = 1; failed; ++call) {
        ASSERT_LT(call, 50);
        scene.host.failCall(call);
        ZBounds bounds{-1.0F, -2.0F};
        try {
            GridEvaluator evaluator = scene.evaluator();
            measureDepths(evaluator, bounds);
        } catch (PF_ErrorValue) {
            ++failures;
        } catch (PF_Err) {
            ++failures;
        }
        failed = scene.host.failed();
        EXPECT_EQ(scene.host.liveHandles(), 0U) << call;
        EXPECT_EQ(scene.host.liveLocks(), 0) << call;
        EXPECT_EQ(scene.host.liveSuites(), 0) << call;
        if (!failed) {
            EXPECT_EQ(bounds.minimum, 0.0F);
        }
    }
    EXPECT_GE(failures, 8);  // two arrays and two blocks, a handle and a lock each
}

}  // namespace
}  // namespace Tessavoy
