// Places that a script gives to cells, in order and emission; and scripts that change nothing.

#include "Tests/Unit/Evaluate/FakeLayers.h"
#include "Tests/Unit/RenderGrid/ScriptedGrid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Tessavoy {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

/// A row of five cells in space, sorted by depth; each has its column as its red channel.
struct SortedRow : ScriptedGrid {
    SortedRow() {
        scene.setCounts(5, 1);
        scene.snapshot.UseCompCamera = true;
        scene.snapshot.SortByZ = true;
    }

    /// The columns of the cells in the order that they are drawn in.
    std::vector<int> drawnColumns(const std::string& script) {
        const auto batches = drawn("r = i " + script);
        EXPECT_EQ(sequence.scriptError, "");
        std::vector<int> columns;
        for (const RecordingSink::Batch& batch : batches) {
            EXPECT_EQ(batch.written.vertexCount, batch.room.vertexCount);
            EXPECT_EQ(batch.written.indexCount, batch.room.indexCount);
            const auto vertices = batch.shapes();
            for (std::size_t k = 0; k < vertices.size(); k += squareVertices) {
                columns.push_back(static_cast<int>(vertices[k].r));
            }
        }
        return columns;
    }

    /// The centre, and the four corners twice for the feather.
    static constexpr std::size_t squareVertices = 9;
};

TEST(GridScriptPlaces, DepthsOfAScriptSortTheCells) {
    SortedRow row;
    EXPECT_EQ(row.drawnColumns("z = ({30, 10, 50, 20, 40})[i + 1]"), (std::vector<int>{2, 4, 0, 3, 1}));
    EXPECT_EQ(row.drawnColumns("z = 7"), (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST(GridScriptPlaces, CellsWithoutADepthAreDrawnLast) {
    SortedRow row;
    EXPECT_EQ(row.drawnColumns("z = ({30, 0 / 0, 50, 0 / 0, 40})[i + 1]"), (std::vector<int>{2, 4, 0, 1, 3}));
    EXPECT_EQ(row.drawnColumns("z = 0 / 0"), (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST(GridScriptPlaces, AnInfiniteDepthIsZeroAndAHugeOneIsFarthest) {
    SortedRow row;
    EXPECT_EQ(row.drawnColumns("z = ({-5, 1 / 0, 5, -1 / 0, 0})[i + 1]"), (std::vector<int>{2, 1, 3, 4, 0}));
    // Finite when it is looked at, infinite once it is stored.
    EXPECT_EQ(row.drawnColumns("z = ({-5, 1e300, 5, -1e300, 0})[i + 1]"), (std::vector<int>{1, 2, 4, 0, 3}));
}

TEST(GridScriptPlaces, NoNumberBreaksTheEmission) {
    for (const bool camera : {true, false}) {
        SortedRow row;
        row.scene.snapshot.UseCompCamera = camera;
        for (const char* field : {"x", "y", "z", "angle", "angleX", "angleY", "radius", "g", "a", "feather",
                                  "strokeWidth", "anchorX", "anchorY", "scaleX", "scaleY", "angleOffset"}) {
            for (const char* value : {"0 / 0", "1e300", "-1e300", "1e38", "-1", "0", "1e-45"}) {
                for (const char* stroke : {"", " stroke = true"}) {
                    const std::string script = std::string(field) + " = " + value + stroke;
                    const auto batches = row.drawn("r = i " + script);
                    EXPECT_EQ(row.sequence.scriptError, "") << script;
                    ASSERT_EQ(batches.size(), 1U) << script;
                    EXPECT_LE(batches[0].written.vertexCount, batches[0].room.vertexCount) << script;
                    EXPECT_LE(batches[0].written.indexCount, batches[0].room.indexCount) << script;
                    for (std::size_t k = 0; k < batches[0].written.indexCount; ++k) {
                        ASSERT_LT(batches[0].indices[k], batches[0].written.vertexCount) << script;
                    }
                }
            }
        }
    }
}

TEST(GridScriptPlaces, APlaceThatIsNoNumberIsThatCellsAlone) {
    SortedRow row;
    const auto plain = row.evaluated("");
    const auto cells = row.evaluated("if i == 2 then x = 0 / 0 end");
    for (int k = 0; k < 5; ++k) {
        EXPECT_EQ(std::isnan(cells[k].matrix.m[12]), k == 2);
        EXPECT_EQ(sameRecord(cells[k], plain[k]), k != 2);
    }
}

TEST(GridScriptPlaces, DepthsOfAScriptAreMeasured) {
    SortedRow row;
    row.sequence.script = "z = (i - 1) * 10 if i == 4 then visible = false end";
    GridScript script(&row.scene.host.inData, row.scene.snapshot);
    GridEvaluator evaluator = row.scene.evaluator(script.usable());
    ZBounds bounds{99.0F, 99.0F};
    measureDepths(evaluator, bounds);
    EXPECT_EQ(bounds.minimum, -10.0F);
    EXPECT_EQ(bounds.maximum, 20.0F);
}

TEST(GridScriptPlaces, NothingIsMeasuredOfHiddenCells) {
    SortedRow row;
    row.sequence.script = "visible = false";
    GridScript script(&row.scene.host.inData, row.scene.snapshot);
    GridEvaluator evaluator = row.scene.evaluator(script.usable());
    ZBounds bounds{99.0F, 98.0F};
    measureDepths(evaluator, bounds);
    EXPECT_EQ(bounds.minimum, 99.0F);
    EXPECT_EQ(bounds.maximum, 98.0F);
}

/// The frame under an empty script, which is not run, against that under scripts that are run and assign nothing.
void expectEmptyIsAsIdle(ScriptedGrid& grid) {
    const auto empty = grid.evaluated("");
    GridScript script(&grid.scene.host.inData, grid.scene.snapshot);
    ASSERT_NE(script.usable(), nullptr);
    EXPECT_TRUE(script.usable()->changesNothing());
    for (const char* idle : {" ", "-- nothing", "\n", "local unused = 1", "x = x"}) {
        EXPECT_TRUE(sameRecords(grid.evaluated(idle), empty)) << idle;
        GridScript idleScript(&grid.scene.host.inData, grid.scene.snapshot);
        EXPECT_FALSE(idleScript.usable()->changesNothing()) << idle;
    }
    EXPECT_EQ(grid.sequence.scriptError, "");
}

TEST(EmptyGridScript, IsAsOneThatAssignsNothing) {
    ScriptedGrid grid;
    expectEmptyIsAsIdle(grid);
}

void addNoises(ParameterSnapshot& snapshot) {
    addNoise(snapshot.InstanceSize, 8.0, 1);
    addNoise(snapshot.InstanceOffsetX, 50.0, 2);
    addNoise(snapshot.InstanceOffsetZ, 50.0, 3);
    addNoise(snapshot.InstanceRotation, 90.0, 4);
    addNoise(snapshot.InstanceColor.Hue, 100.0, 5);
    addNoise(snapshot.InstanceAlpha, 0.5, 6);
    addNoise(snapshot.ShapeScaleX, 60.0, 7);
    addNoise(snapshot.ShapeScaleY, 60.0, 8);
    addNoise(snapshot.ShapeAnchorX, 60.0, 9);
    addNoise(snapshot.ShapeStrokeWidth, 60.0, 10);
    addNoise(snapshot.ShapeRaysCount, 4.0, 11);
    addNoise(snapshot.ShapeFrameIndex, 100.0, 12);
}

TEST(EmptyGridScript, IsAsOneThatAssignsNothingUnderNoise) {
    for (const A_long shapeType : {1, 2}) {
        for (const bool inPixels : {true, false}) {
            for (const bool uniform : {true, false}) {
                ScriptedGrid grid;
                grid.scene.setCounts(13, 7);
                addNoises(grid.scene.snapshot);
                grid.scene.snapshot.InstanceVisible.Probability = 70.0;
                grid.scene.snapshot.ShapeType = shapeType;
                grid.scene.snapshot.ShapeFeatherScreenSpace = inPixels;
                grid.scene.snapshot.ShapeUniformScaling = uniform;
                grid.scene.atlas.frameCount = 9;
                expectEmptyIsAsIdle(grid);
            }
        }
    }
}

/// All fields that a layer of floats reaches, multiplied by its red channel.
void addLayer(ParameterSnapshot& snapshot) {
    for (PropertyEvaluator* property :
         {&snapshot.InstanceSize, &snapshot.InstanceOffsetX, &snapshot.InstanceOffsetY, &snapshot.InstanceOffsetZ,
          &snapshot.InstanceRotation, &snapshot.InstanceRotation3DX, &snapshot.InstanceRotation3DY,
          &snapshot.InstanceAlpha, &snapshot.ShapeAnchorX, &snapshot.ShapeAnchorY, &snapshot.ShapeScaleX,
          &snapshot.ShapeScaleY, &snapshot.ShapeStrokeWidth}) {
        property->Layer.Multiplier = 2.0;
        property->Layer.Index = 2;
        property->Layer.Source = LayerSource_Red;
    }
    snapshot.InstanceColor.Layer.Multiplier = 1.0;
    snapshot.InstanceColor.Layer.Index = 2;
    snapshot.InstanceAlpha.Flag = false;
}

// Floats of a layer may be anything; a script, even one that assigns nothing, leaves no infinities.
TEST(EmptyGridScript, ClearsTheInfinitiesOfALayer) {
    for (const bool uniform : {true, false}) {
        ScriptedGrid grid;
        grid.scene.setCounts(8, 2);
        grid.scene.snapshot.ShapeUniformScaling = uniform;
        FakeLayers layers;
        std::vector<FakeLayers::Pixel> picture;
        for (const float red : {1.0F, infinity, -infinity, notANumber, 3e38F, -3e38F, 0.0F, 1e-40F}) {
            picture.push_back({red, 0.5F, infinity, 1.0F});
        }
        layers.addFloat(8, 1, picture);
        grid.scene.snapshot.layers.inData = layers.slots.inData;
        grid.scene.snapshot.layers.checkouts = layers.slots.checkouts;
        addLayer(grid.scene.snapshot);
        expectEmptyIsAsIdle(grid);
        const auto cells = grid.evaluated("");
        EXPECT_EQ(cells[1].visible, 1);
        EXPECT_EQ(cells[1].radius, 0.0F);
        EXPECT_EQ(cells[1].x, 0.0F);
        EXPECT_TRUE(std::isinf(grid.unscripted()[1].x));
    }
}

TEST(EmptyGridScript, LeavesTheFieldsOfDeadCells) {
    ScriptedGrid grid;
    grid.scene.setCounts(2, 1);
    FakeLayers layers;
    layers.addFloat(2, 1, {FakeLayers::Pixel{infinity, 0, 0, 1}, FakeLayers::Pixel{1, 0, 0, 1}});
    grid.scene.snapshot.layers.inData = layers.slots.inData;
    grid.scene.snapshot.layers.checkouts = layers.slots.checkouts;
    addLayer(grid.scene.snapshot);
    grid.scene.snapshot.InstanceVisible.Probability = 0.0;
    expectEmptyIsAsIdle(grid);
    EXPECT_TRUE(std::isinf(grid.evaluated("")[0].x));
}

TEST(EmptyGridScript, IsOneThatIsEmptyUpToItsFirstZero) {
    ScriptedGrid grid;
    grid.sequence.script = std::string("\0x = 99", 7);
    const GridScript script(&grid.scene.host.inData, grid.scene.snapshot);
    EXPECT_TRUE(script.changesNothing());
    EXPECT_TRUE(sameRecords(grid.evaluated(), grid.unscripted()));
}

}  // namespace
}  // namespace Tessavoy
