#include "Source/RenderGrid/GridInstances.h"

#include "Source/RenderGrid/PartPoints.h"
#include "Tests/Unit/RenderGrid/RenderGridFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <numbers>
#include <utility>
#include <vector>

namespace Tessavoy {
namespace {

/// A script that gives the cells of a row these numbers of parts.
FunctionScript partsCounts(std::vector<A_long> counts) {
    return FunctionScript([counts](const CellScriptInputs&, InstanceState& cell) {
        cell.partsCount = counts[static_cast<std::size_t>(cell.i)];
        return true;
    });
}

TEST(GridInstances, PartsLieInOneRunInCellOrder) {
    GridScene scene;
    scene.setCounts(5, 1);
    FunctionScript script = partsCounts({3, 0, 4, 1, 2});
    GridEvaluator evaluator = scene.evaluator(&script);
    GridInstances instances(evaluator);
    ASSERT_EQ(instances.parts().count(), 10);
    const InstancePart* const first = instances.parts().data();
    EXPECT_EQ(instances.cells()[0].parts, first);
    EXPECT_EQ(instances.cells()[1].parts, nullptr);
    EXPECT_EQ(instances.cells()[2].parts, first + 3);
    EXPECT_EQ(instances.cells()[3].parts, first + 7);
    EXPECT_EQ(instances.cells()[4].parts, first + 8);
    EXPECT_EQ(first[3].angle, 45.0F);  // four parts made by a script are turned too
    EXPECT_EQ(first[3].radius, instances.cells()[2].radius);
    EXPECT_EQ(first[9].angle, 180.0F);
}

TEST(GridInstances, HiddenCellsKeepTheirParts) {
    GridScene scene;
    scene.snapshot.InstanceVisible.Probability = 0.0;
    GridEvaluator evaluator = scene.evaluator();
    GridInstances instances(evaluator);
    EXPECT_EQ(instances.parts().count(), 48);
    EXPECT_EQ(instances.cells()[11].parts, instances.parts().data() + 44);
    EXPECT_EQ(instances.vertexTotal(), 0U);
    EXPECT_EQ(instances.indexTotal(), 0U);
}

TEST(GridInstances, TotalsAreTheSumsOfTheCounts) {
    GridScene scene;
    scene.setCounts(30, 20);
    scene.snapshot.InstanceVisible.Probability = 70.0;
    scene.snapshot.ShapeRoundingDots = 2.0;
    addNoise(scene.snapshot.ShapeRaysCount, 5.0, 1);
    addNoise(scene.snapshot.ShapeRoundingRadius, 2.0, 2);
    scene.snapshot.ShapeRoundingRadius.Value = -1.0;  // rounded here and there
    GridEvaluator evaluator = scene.evaluator();
    GridInstances instances(evaluator);
    std::uint64_t vertices = 0;
    std::uint64_t indices = 0;
    for (A_long index = 0; index < 600; ++index) {
        const InstanceCount count = CountInstance(evaluator.emissionFrame(), instances.cells()[index]);
        vertices += count.vertices;
        indices += count.indices;
    }
    EXPECT_EQ(instances.vertexTotal(), vertices);
    EXPECT_EQ(instances.indexTotal(), indices);
    EXPECT_FALSE(instances.hasOversizedCell());
}

/// What all cells will write, counted one by one.
std::pair<std::uint64_t, std::uint64_t> sumsOf(GridEvaluator& evaluator, GridInstances& instances) {
    std::pair<std::uint64_t, std::uint64_t> sums;
    for (A_long index = 0; index < instances.cells().count(); ++index) {
        const InstanceCount count = CountInstance(evaluator.emissionFrame(), instances.cells()[index]);
        sums.first += count.vertices;
        sums.second += count.indices;
    }
    return sums;
}

// More cells than are evaluated at a time, and not a multiple of any block.
constexpr A_long oddCountX = 37;
constexpr A_long oddCountY = 41;

TEST(GridInstances, TotalsOfCellsThatWriteAlikeAreKnownBeforeTheyAreEvaluated) {
    struct Kind {
        double size;
        double probability;
        double rays;
        A_long drawMode;
        double feather;
        A_long shapeType;
        std::uint64_t
            verticesEach;  ///< of a filled shape with P points P + 1, with a feather 2 P + 1; of a stroke 2 P, 4 P
        std::uint64_t indicesEach;  ///< 3 P, 9 P; 6 P, 18 P
    };
    for (const Kind& kind : {Kind{10.0, 100.0, 4.0, 1, 1.0, 1, 9, 36}, Kind{10.0, 100.0, 7.9, 2, 1.0, 1, 28, 126},
                             Kind{10.0, 100.0, 5.0, 1, 0.0, 1, 6, 15}, Kind{10.0, 100.0, 3.0, 2, 0.0, 1, 6, 18},
                             Kind{10.0, 100.0, 9.0, 2, 1.0, 2, 9, 36},  // without a layer's pixels a filled square
                             Kind{10.0, -1.0, 4.0, 1, 1.0, 1, 0, 0}, Kind{0.0, 100.0, 4.0, 1, 1.0, 1, 0, 0},
                             Kind{10.0, 100.0, 0.9, 1, 1.0, 1, 0, 0}}) {
        GridScene scene;
        scene.setCounts(oddCountX, oddCountY);
        scene.snapshot.InstanceSize.Value = kind.size;
        scene.snapshot.InstanceVisible.Probability = kind.probability;
        scene.snapshot.ShapeRaysCount.Value = kind.rays;
        scene.snapshot.ShapeDrawMode = kind.drawMode;
        scene.snapshot.ShapeFeatherPixels = kind.feather;
        scene.snapshot.ShapeType = kind.shapeType;
        addNoise(scene.snapshot.InstanceRotation, 90.0, 3);
        GridEvaluator evaluator = scene.evaluator();
        ASSERT_TRUE(evaluator.cellsWriteAlike());
        GridInstances instances(evaluator);
        const std::uint64_t cells = oddCountX * oddCountY;
        EXPECT_EQ(instances.vertexTotal(), cells * kind.verticesEach);
        EXPECT_EQ(instances.indexTotal(), cells * kind.indicesEach);
        const auto [vertices, indices] = sumsOf(evaluator, instances);
        EXPECT_EQ(instances.vertexTotal(), vertices);
        EXPECT_EQ(instances.indexTotal(), indices);
    }
}

TEST(GridInstances, CellsThatCanWriteDifferentlyAreNotForeseen) {
    const auto alike = [](const std::function<void(GridScene&)>& change, CellScript* script = nullptr) {
        GridScene scene;
        change(scene);
        return scene.evaluator(script).cellsWriteAlike();
    };
    FunctionScript script = partsCounts({4, 4, 4, 4});
    EXPECT_TRUE(alike([](GridScene&) {}));
    EXPECT_TRUE(alike([](GridScene& scene) { addNoise(scene.snapshot.ShapeStrokeWidth, 5.0, 1); }));
    EXPECT_TRUE(alike([](GridScene& scene) { addNoise(scene.snapshot.InstanceColor.Hue, 5.0, 1); }));
    EXPECT_FALSE(alike([](GridScene&) {}, &script));
    EXPECT_FALSE(alike([](GridScene& scene) { scene.snapshot.InstanceVisible.Probability = 50.0; }));
    EXPECT_FALSE(alike([](GridScene& scene) { addNoise(scene.snapshot.InstanceSize, 5.0, 1); }));
    EXPECT_FALSE(alike([](GridScene& scene) { addNoise(scene.snapshot.ShapeRaysCount, 5.0, 1); }));
    EXPECT_FALSE(alike([](GridScene& scene) { addNoise(scene.snapshot.ShapeRoundingRadius, 5.0, 1); }));
    EXPECT_FALSE(alike([](GridScene& scene) { addNoise(scene.snapshot.ShapeShelfLength, 5.0, 1); }));
    EXPECT_FALSE(alike([](GridScene& scene) { addNoise(scene.snapshot.ShapeLinkMiddleOffset, 5.0, 1); }));
}

TEST(GridInstances, CellsAreTheSameInWhateverOrderTheyAreAskedFor) {
    GridScene scene;
    scene.setCounts(oddCountX, oddCountY);
    addNoise(scene.snapshot.InstanceRotation, 90.0, 3);
    addNoise(scene.snapshot.InstanceOffsetX, 20.0, 4);
    GridEvaluator evaluator = scene.evaluator();
    GridInstances instances(evaluator);
    for (const A_long index : {0, 511, 512, 3, 1500, 700, oddCountX * oddCountY - 1}) {
        InstanceState alone;
        evaluator.EvaluateCell(index, alone);
        evaluator.BuildCellMatrix(alone);
        const InstanceState& cell = instances.cell(index);
        EXPECT_EQ(cell.i, index % oddCountX);
        EXPECT_EQ(cell.j, index / oddCountX);
        EXPECT_EQ(cell.x, alone.x) << index;
        EXPECT_EQ(cell.angle, alone.angle) << index;
        EXPECT_EQ(cell.matrix.m, alone.matrix.m) << index;
        EXPECT_EQ(cell.parts, instances.cell(0).parts + 4 * index);
        EXPECT_EQ(cell.parts[3].angle, 315.0F);
        EXPECT_EQ(cell.parts[3].radius, cell.radius);
    }
    EXPECT_EQ(instances.parts().count(), 4 * oddCountX * oddCountY);
}

/// Whether a cell's parts are those of an outline with so many corners and no shelf.
bool hasPlainParts(const InstanceState& cell, A_long corners, const std::vector<float>& angles) {
    for (A_long k = 0; k < corners; ++k) {
        const InstancePart& part = cell.parts[k];
        const double radians = angles[static_cast<std::size_t>(k)] * std::numbers::pi / 180.0;
        if (part.radius != cell.radius || part.angle != angles[static_cast<std::size_t>(k)] ||
            std::abs(part.shelfStart.x - std::sin(radians)) > 1e-6 ||
            std::abs(part.shelfEnd.y + std::cos(radians)) > 1e-6) {
            return false;
        }
    }
    return true;
}

// Records that the caches can't hold go past them, in runs of parts that have such a size or not.
TEST(GridInstances, RecordsAreCompleteWhateverHoldsThem) {
    const std::map<A_long, std::vector<float>> shapes = {
        {3, {0.0F, 120.0F, 240.0F}}, {4, {45.0F, 135.0F, 225.0F, 315.0F}}, {5, {0.0F, 72.0F, 144.0F, 216.0F, 288.0F}}};
    for (const auto& [corners, angles] : shapes) {
        for (const bool sizesDiffer : {false, true}) {
            for (const A_long side : {20, 250}) {
                GridScene scene;
                scene.setCounts(side, side);
                scene.snapshot.ShapeRaysCount.Value = corners;
                if (sizesDiffer) {
                    addNoise(scene.snapshot.InstanceSize, 3.0, 1);
                }
                GridEvaluator evaluator = scene.evaluator();
                GridInstances instances(evaluator);
                EXPECT_EQ(instances.extent(), side == 20 ? Extent::InCaches : Extent::BeyondCaches);
                int wrong = 0;
                for (A_long index = 0; index < side * side; ++index) {
                    const InstanceState& cell = instances.cells()[index];
                    const bool right = cell.i == index % side && cell.j == index / side && cell.visible == 1 &&
                                       cell.parts == instances.parts().data() + index * corners;
                    wrong += !right || !hasPlainParts(cell, corners, angles);
                }
                EXPECT_EQ(wrong, 0) << corners << " corners, " << side << " across";
            }
        }
    }
}

TEST(GridInstances, ANegativeNumberOfPartsMovesTheFollowingRunsBack) {
    GridScene scene;
    scene.setCounts(3, 1);
    scene.snapshot.ShapeLinkMiddleOffset.Value = 10.0;
    FunctionScript script = partsCounts({5, -2, 4});
    GridEvaluator evaluator = scene.evaluator(&script);
    GridInstances instances(evaluator);
    ASSERT_EQ(instances.parts().count(), 7);
    const InstancePart* const first = instances.parts().data();
    EXPECT_EQ(instances.cells()[0].parts, first);
    EXPECT_EQ(instances.cells()[1].parts, nullptr);
    EXPECT_EQ(instances.cells()[2].parts, first + 3);
    EXPECT_FALSE(instances.outlinesDependOnCountOnly());
    // The last writer's fields stay, and the first cell's link into them starts at its own corner.
    EXPECT_EQ(first[2].angle, 144.0F);
    EXPECT_EQ(first[3].angle, 45.0F);
    EXPECT_EQ(first[4].angle, 135.0F);
    std::vector<InstancePart> parts(first, first + 7);
    InstanceState five = instances.cells()[0];
    InstanceState four = instances.cells()[2];
    five.parts = parts.data();
    four.parts = parts.data() + 3;
    BuildPartPoints(five);
    BuildPartPoints(four);
    for (int k = 0; k < 7; ++k) {
        EXPECT_EQ(first[k].linkMiddle.x, parts[k].linkMiddle.x) << k;
        EXPECT_EQ(first[k].linkMiddle.y, parts[k].linkMiddle.y) << k;
    }
    EXPECT_EQ(instances.vertexTotal(), (2U * 10 + 1) + 1 + (2 * 8 + 1));
}

TEST(GridInstancesDeathTest, RunsStayInsideTheParts) {
    GridScene scene;
    scene.setCounts(2, 1);
    FunctionScript before = partsCounts({-3, 5});
    GridEvaluator beginning = scene.evaluator(&before);
    EXPECT_DEATH(GridInstances{beginning}, "ind >= 0");
    FunctionScript behind = partsCounts({5, -3});
    GridEvaluator end = scene.evaluator(&behind);
    EXPECT_DEATH(GridInstances{end}, "ind < mCount");
    // Two parts in all; the second cell's begin at -5 and end at 4.
    scene.setCounts(3, 1);
    FunctionScript around = partsCounts({-5, 10, -3});
    GridEvaluator both = scene.evaluator(&around);
    EXPECT_DEATH(GridInstances{both}, "ind >= 0");
}

TEST(GridInstances, AnEmptyGridAllocatesNothingAndRunsNoScript) {
    GridScene scene;
    FunctionScript script = partsCounts({});
    for (const auto& [countX, countY] : {std::pair<A_long, A_long>{0, 5}, {7, 0}, {0, 0}, {-4, -4}}) {
        scene.setCounts(countX, countY);
        scene.host.failCall(1);  // the first call of the host would fail
        GridEvaluator evaluator = scene.evaluator(&script);
        GridInstances instances(evaluator);
        EXPECT_EQ(instances.cells().data(), nullptr);
        EXPECT_EQ(instances.parts().data(), nullptr);
        EXPECT_EQ(scene.host.liveHandles(), 0U);
    }
    EXPECT_TRUE(script.runs.empty());
}

/// The error of an evaluation that the host has no memory for.
int errorOf(GridScene& scene, CellScript* script = nullptr) {
    try {
        GridEvaluator evaluator = scene.evaluator(script);
        GridInstances instances(evaluator);
    } catch (PF_ErrorValue error) {
        return error;
    }
    return PF_Err_NONE;
}

TEST(GridInstances, MoreCellsThanAnIndexHoldsAreAFailedAllocation) {
    GridScene scene;
    for (const auto& [countX, countY] : {std::pair<A_long, A_long>{65536, 65536},
                                         {std::numeric_limits<A_long>::max(), std::numeric_limits<A_long>::max()},
                                         {46341, 46341}}) {
        scene.setCounts(countX, countY);
        EXPECT_EQ(errorOf(scene), PF_Err_INTERNAL_STRUCT_DAMAGED) << countX;
    }
    EXPECT_EQ(scene.host.liveHandles(), 0U);
}

TEST(GridInstances, MorePartsThanAnIndexHoldsAreAFailedAllocation) {
    GridScene scene;
    scene.snapshot.ShapeRaysCount.Value = 1e9;
    EXPECT_EQ(errorOf(scene), PF_Err_INTERNAL_STRUCT_DAMAGED);
    scene.snapshot.ShapeRaysCount.Value = 4.0;
    scene.setCounts(3, 1);
    FunctionScript script = partsCounts({2147483647, 2147483647, 1});
    EXPECT_EQ(errorOf(scene, &script), PF_Err_INTERNAL_STRUCT_DAMAGED);
    FunctionScript negative = partsCounts({-5, 1, 1});
    EXPECT_EQ(errorOf(scene, &negative), PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(scene.host.liveHandles(), 0U);
    EXPECT_EQ(scene.host.liveLocks(), 0);
}

TEST(GridInstances, EveryFailedAllocationGivesBackTheOthers) {
    for (const bool scripted : {false, true}) {
        GridScene scene;
        FunctionScript script([](const CellScriptInputs&, InstanceState&) { return true; });
        int failures = 0;
        for (int call = 1;; ++call) {
            ASSERT_LT(call, 50);
            scene.host.failCall(call);
            try {
                GridEvaluator evaluator = scene.evaluator(scripted ? &script : nullptr);
                GridInstances instances(evaluator);
            } catch (PF_ErrorValue error) {
                // No handle, or one that can't be locked.
                EXPECT_TRUE(error == PF_Err_INTERNAL_STRUCT_DAMAGED || error == PF_Err_OUT_OF_MEMORY) << error;
                ++failures;
            } catch (PF_Err error) {
                EXPECT_EQ(error, PF_Err_BAD_CALLBACK_PARAM);
                ++failures;
            }
            EXPECT_EQ(scene.host.liveHandles(), 0U) << call;
            EXPECT_EQ(scene.host.liveLocks(), 0) << call;
            EXPECT_EQ(scene.host.liveSuites(), 0) << call;
            if (!scene.host.failed()) {
                break;
            }
        }
        EXPECT_GE(failures, 4);  // two arrays, a handle and a lock each
    }
}

TEST(GridInstances, AScriptThatThrowsLosesNothing) {
    GridScene scene;
    FunctionScript script([](const CellScriptInputs&, InstanceState& cell) -> bool {
        if (cell.i == 2) {
            throw PF_Err{77};
        }
        return true;
    });
    GridEvaluator evaluator = scene.evaluator(&script);
    EXPECT_THROW(GridInstances{evaluator}, PF_Err);
    EXPECT_EQ(script.runs.size(), 3U);
    EXPECT_EQ(scene.host.liveHandles(), 0U);
    EXPECT_EQ(scene.host.liveLocks(), 0);
}

}  // namespace
}  // namespace Tessavoy
