#include "Source/RenderGrid/GridEvaluator.h"

#include "Tests/Unit/RenderGrid/ReferenceCell.h"
#include "Tests/Unit/RenderGrid/RenderGridFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace Tessavoy {
namespace {

/// Every field but the matrix and the parts, to the bit (0 and -0 count as equal).
void expectSameFields(const InstanceState& cell, const InstanceState& expected) {
    EXPECT_EQ(cell.i, expected.i);
    EXPECT_EQ(cell.j, expected.j);
    EXPECT_EQ(cell.visible, expected.visible);
    for (float InstanceState::*field :
         {&InstanceState::x, &InstanceState::y, &InstanceState::z, &InstanceState::radius, &InstanceState::r,
          &InstanceState::g, &InstanceState::b, &InstanceState::a, &InstanceState::feather, &InstanceState::strokeWidth,
          &InstanceState::anchorX, &InstanceState::anchorY, &InstanceState::angleX, &InstanceState::angleY,
          &InstanceState::angle, &InstanceState::scaleX, &InstanceState::scaleY, &InstanceState::angleOffset}) {
        EXPECT_EQ(cell.*field, expected.*field);
    }
    EXPECT_EQ(cell.spriteIndex, expected.spriteIndex);
    EXPECT_EQ(cell.featherScreenSpace, expected.featherScreenSpace);
    EXPECT_EQ(cell.stroke, expected.stroke);
    EXPECT_EQ(cell.partsCount, expected.partsCount);
}

InstanceState evaluatedCell(GridScene& scene, A_long index = 0) {
    InstanceState cell;
    scene.evaluator().EvaluateCell(index, cell);
    return cell;
}

void setRandomProperty(Numbers& numbers, PropertyEvaluator& property, double low, double high) {
    property.Value = numbers.between(low, high);
    property.ValueOffset = numbers.between(0.0, 200.0);
    if (numbers.coin()) {
        addNoise(property, numbers.between(low, high), numbers.oneOf(0, 1000));
    }
}

void setRandomScene(Numbers& numbers, GridScene& scene) {
    ParameterSnapshot& p = scene.snapshot;
    scene.setCounts(numbers.oneOf(1, 40), numbers.oneOf(1, 9));
    p.HexGrid = numbers.coin();
    p.GridWidth = numbers.between(0.0, 2000.0);
    p.GridHeight = numbers.between(0.0, 2000.0);
    setRandomProperty(numbers, p.InstanceSize, -5.0, 20.0);
    setRandomProperty(numbers, p.InstanceOffsetX, -50.0, 50.0);
    setRandomProperty(numbers, p.InstanceOffsetY, -50.0, 50.0);
    setRandomProperty(numbers, p.InstanceOffsetZ, -50.0, 50.0);
    setRandomProperty(numbers, p.InstanceAlpha, -0.5, 1.5);
    p.InstanceAlpha.Flag = numbers.coin();
    setRandomProperty(numbers, p.InstanceColor.Hue, -200.0, 200.0);
    setRandomProperty(numbers, p.InstanceRotation3DX, -90.0, 90.0);
    setRandomProperty(numbers, p.InstanceRotation3DY, -90.0, 90.0);
    setRandomProperty(numbers, p.InstanceRotation, -360.0, 360.0);
    setRandomProperty(numbers, p.ShapeAnchorX, -100.0, 100.0);
    setRandomProperty(numbers, p.ShapeAnchorY, -100.0, 100.0);
    setRandomProperty(numbers, p.ShapeScaleX, -100.0, 200.0);
    setRandomProperty(numbers, p.ShapeScaleY, -100.0, 200.0);
    setRandomProperty(numbers, p.ShapeStrokeWidth, -10.0, 50.0);
    setRandomProperty(numbers, p.ShapeRaysCount, 0.0, 9.0);
    setRandomProperty(numbers, p.ShapeShelfLength, 0.0, 50.0);
    setRandomProperty(numbers, p.ShapeRoundingRadius, 0.0, 30.0);
    setRandomProperty(numbers, p.ShapeLinkMiddleOffset, -50.0, 120.0);
    setRandomProperty(numbers, p.ShapeFrameIndex, 0.0, 100.0);
    p.ShapeUniformScaling = numbers.coin();
    p.ShapeFeatherScreenSpace = numbers.coin();
    p.ShapeDrawMode = numbers.oneOf(1, 2);
    p.ShapeType = numbers.oneOf(1, 2);
    p.ShapeFramesSplittingMode = numbers.oneOf(1, 3);
    p.ShapeRoundingDots = numbers.between(0.0, 5.0);
    p.ShapeAngleOffset = numbers.between(-90.0, 90.0);
    p.InstanceVisible.Probability = numbers.between(30.0, 120.0);
    p.InstanceVisible.Seed = numbers.oneOf(0, 100);
}

TEST(GridEvaluator, EvaluatesEveryFieldAsWrittenDownStepByStep) {
    for (std::uint32_t seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(seed);
        GridScene scene;
        Numbers numbers(seed);
        setRandomScene(numbers, scene);
        scene.atlas.frameCount = 7;
        const ReferenceGrid reference{scene.snapshot, 7, 0.0, nullptr};
        GridEvaluator evaluator = scene.evaluator();
        for (A_long index = 0; index < evaluator.cellCount(); ++index) {
            InstanceState cell;
            evaluator.EvaluateCell(index, cell);
            expectSameFields(cell, reference.cell(index));
        }
    }
}

TEST(GridEvaluator, ScriptsComeBeforeTheFinalScaling) {
    const auto rewrite = [](InstanceState& cell) {
        cell.x += 1.5F;
        cell.radius *= 2.0F;
        cell.strokeWidth = 0.0F;
        cell.scaleX *= 3.0F;
        cell.anchorY = 50.0F;
        cell.feather = 7.0F;
        cell.angleOffset = 12.0F;
    };
    for (std::uint32_t seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        GridScene scene;
        Numbers numbers(seed);
        setRandomScene(numbers, scene);
        const ReferenceGrid reference{scene.snapshot, 1, 0.0, rewrite};
        FunctionScript script([&](const CellScriptInputs&, InstanceState& cell) {
            rewrite(cell);
            return true;
        });
        GridEvaluator evaluator = scene.evaluator(&script);
        for (A_long index = 0; index < evaluator.cellCount(); ++index) {
            InstanceState cell;
            evaluator.EvaluateCell(index, cell);
            expectSameFields(cell, reference.cell(index));
        }
    }
}

TEST(GridEvaluator, EveryRecordOfAFrameIsTheOneOfItsCell) {
    for (std::uint32_t seed = 100; seed <= 140; ++seed) {
        SCOPED_TRACE(seed);
        GridScene scene;
        Numbers numbers(seed);
        setRandomScene(numbers, scene);
        const ReferenceGrid reference{scene.snapshot, 1, 0.0, nullptr};
        GridEvaluator evaluator = scene.evaluator();
        GridInstances instances(evaluator);
        ASSERT_EQ(instances.cells().count(), scene.snapshot.CountX * scene.snapshot.CountY);
        for (A_long index = 0; index < instances.cells().count(); ++index) {
            const InstanceState& cell = instances.cells()[index];
            const InstanceState expected = reference.cell(index);
            expectSameFields(cell, expected);
            EXPECT_EQ(cell.matrix, referenceCellMatrix(scene.snapshot, evaluator.gridMatrix(), scene.place, expected));
            const std::vector<InstancePart> parts = reference.parts(expected);
            ASSERT_EQ(cell.parts == nullptr, parts.empty());
            for (std::size_t k = 0; k < parts.size(); ++k) {
                const InstancePart& part = cell.parts[k];
                EXPECT_EQ(part.radius, parts[k].radius);
                EXPECT_EQ(part.angle, parts[k].angle);
                EXPECT_EQ(part.shelfLength, parts[k].shelfLength);
                EXPECT_EQ(part.roundingRadius, parts[k].roundingRadius);
                EXPECT_EQ(part.roundingDots, parts[k].roundingDots);
                EXPECT_EQ(part.linkMiddleOffset, parts[k].linkMiddleOffset);
                EXPECT_EQ(part.linkRoundingRadius, parts[k].linkRoundingRadius);
                EXPECT_EQ(part.linkRoundingDots, parts[k].linkRoundingDots);
                EXPECT_EQ(part.linkCollapsed, parts[k].linkCollapsed);
                EXPECT_NEAR(part.shelfStart.x, parts[k].shelfStart.x, 1e-6);
                EXPECT_NEAR(part.shelfEnd.y, parts[k].shelfEnd.y, 1e-6);
                EXPECT_NEAR(part.linkMiddle.x, parts[k].linkMiddle.x, 1e-6);
                EXPECT_NEAR(part.linkMiddle.y, parts[k].linkMiddle.y, 1e-6);
            }
        }
    }
}

TEST(GridEvaluator, MatricesAreTheProductsOfTheirSteps) {
    for (std::uint32_t seed = 200; seed <= 260; ++seed) {
        SCOPED_TRACE(seed);
        GridScene scene;
        Numbers numbers(seed);
        setRandomScene(numbers, scene);
        ParameterSnapshot& p = scene.snapshot;
        p.UseCompCamera = numbers.coin();
        p.ShapeBillboard = numbers.coin();
        p.GlobalScale = numbers.coin() ? 100.0 : numbers.between(10.0, 300.0);
        p.Rotation = numbers.coin() ? 0.0 : numbers.between(-180.0, 180.0);
        p.Rotation3DX = numbers.coin() ? 0.0 : numbers.between(-180.0, 180.0);
        p.Rotation3DY = numbers.coin() ? 0.0 : numbers.between(-180.0, 180.0);
        p.CenterZ = numbers.between(-100.0, 100.0);
        scene.place = {0.5F, 0.25F, 12.0F, -7.0F};
        scene.viewProjection.view.translate(3.0F, -4.0F, 50.0F);
        scene.viewProjection.view.rotateY(numbers.between(0.0, 90.0));
        if (numbers.coin()) {  // nothing that turns or sizes a cell varies
            for (PropertyEvaluator* property :
                 {&p.InstanceSize, &p.InstanceRotation, &p.InstanceRotation3DX, &p.InstanceRotation3DY, &p.ShapeAnchorX,
                  &p.ShapeAnchorY, &p.ShapeRaysCount}) {
                property->Noise.Multiplier = 0.0;
                property->Noise.buildTable();
            }
        }
        GridEvaluator evaluator = scene.evaluator();
        const Matrix grid = referenceGridMatrix(p, scene.viewProjection.view, scene.place);
        EXPECT_EQ(evaluator.gridMatrix(), grid);
        GridInstances instances(evaluator);
        for (A_long index = 0; index < instances.cells().count(); ++index) {
            InstanceState cell = instances.cells()[index];
            const Matrix expected = referenceCellMatrix(p, grid, scene.place, cell);
            EXPECT_EQ(cell.matrix, expected);
            evaluator.BuildCellMatrix(cell);
            EXPECT_EQ(cell.matrix, expected);
        }
    }
}

TEST(GridEvaluator, PositionsAreMultipliedInDoublePrecision) {
    GridScene scene;
    scene.setCounts(4, 1);
    scene.snapshot.GridWidth = 1234.56789;
    const float part = 1.0F / 3.0F;
    EXPECT_EQ(evaluatedCell(scene, 1).x, static_cast<float>(static_cast<double>(part - 0.5F) * 1234.56789));
    EXPECT_EQ(evaluatedCell(scene, 1).y, 0.0F);
    EXPECT_EQ(evaluatedCell(scene, 0).x, static_cast<float>(-0.5 * 1234.56789));
}

TEST(GridEvaluator, AOneByOneGridIsEvaluatedInItsMiddle) {
    GridScene scene;
    scene.setCounts(1, 1);
    addNoise(scene.snapshot.InstanceSize, 5.0, 3);
    EXPECT_EQ(evaluatedCell(scene).radius,
              static_cast<float>(scene.snapshot.InstanceSize.evaluate(0.5F, 0.5F)) * 1.4142135F);
    EXPECT_EQ(evaluatedCell(scene).x, 0.0F);
    EXPECT_EQ(evaluatedCell(scene).y, 0.0F);
}

TEST(GridEvaluator, PartsCountIsTruncatedAndBelowOneKillsTheCell) {
    GridScene scene;
    struct Row {
        double rays;
        A_long parts;
    };
    for (const Row& row :
         {Row{3.9, 3}, Row{2.9, 2}, Row{1.0, 1}, Row{0.9, 0}, Row{0.0, 0}, Row{-0.5, 0}, Row{-7.0, 0}}) {
        scene.snapshot.ShapeRaysCount.Value = row.rays;
        const InstanceState cell = evaluatedCell(scene);
        EXPECT_EQ(cell.partsCount, row.parts) << row.rays;
        EXPECT_EQ(cell.visible, row.parts > 0) << row.rays;
    }
}

TEST(GridEvaluator, FourPartsMakeTheSizeTheHalfSideOfASquare) {
    GridScene scene;
    EXPECT_EQ(evaluatedCell(scene).radius, 10.0F * 1.4142135F);
    scene.snapshot.ShapeRaysCount.Value = 4.99;
    EXPECT_EQ(evaluatedCell(scene).radius, 10.0F * 1.4142135F);
    scene.snapshot.ShapeRaysCount.Value = 5.0;
    EXPECT_EQ(evaluatedCell(scene).radius, 10.0F);
    scene.snapshot.ShapeRaysCount.Value = 3.99;
    EXPECT_EQ(evaluatedCell(scene).radius, 10.0F);
}

TEST(GridEvaluator, TexturedQuadsHaveFourPartsWhateverTheCount) {
    GridScene scene;
    scene.snapshot.ShapeType = 2;
    scene.snapshot.ShapeRaysCount.Value = 0.0;
    scene.snapshot.ShapeDrawMode = 2;
    const InstanceState cell = evaluatedCell(scene);
    EXPECT_EQ(cell.partsCount, 4);
    EXPECT_EQ(cell.radius, 10.0F * 1.4142135F);
    EXPECT_EQ(cell.stroke, 0);
    EXPECT_EQ(cell.visible, 1);
}

TEST(GridEvaluator, StrokeFollowsTheDrawModeAndIsUnsetForOthers) {
    GridScene scene;
    for (const A_long mode : {0, 1, 2, 3}) {
        scene.snapshot.ShapeDrawMode = mode;
        EXPECT_EQ(evaluatedCell(scene).stroke, mode == 2) << mode;
    }
}

TEST(GridEvaluator, StrokeWidthIsNeverZero) {
    GridScene scene;
    for (const double width : {0.0, -3.0, 0.01, 0.005}) {
        scene.snapshot.ShapeStrokeWidth.Value = width;
        EXPECT_EQ(evaluatedCell(scene).strokeWidth, 0.01F * 0.01F) << width;
    }
    scene.snapshot.ShapeStrokeWidth.Value = 0.02;
    EXPECT_EQ(evaluatedCell(scene).strokeWidth, 0.02F * 0.01F);
}

TEST(GridEvaluator, FeatherUpToATenThousandthIsNone) {
    GridScene scene;
    for (const bool inPixels : {true, false}) {
        scene.snapshot.ShapeFeatherScreenSpace = inPixels;
        for (const double feather : {0.0001, 0.00005, 0.0, -1.0}) {
            scene.snapshot.ShapeFeatherPixels = feather;
            scene.snapshot.ShapeFeatherPercents = feather;
            EXPECT_EQ(evaluatedCell(scene).feather, 0.0F) << feather;
        }
        scene.snapshot.ShapeFeatherPixels = 0.0002;
        scene.snapshot.ShapeFeatherPercents = 0.0002;
        EXPECT_EQ(evaluatedCell(scene).feather, inPixels ? 0.0002F : 0.0002F * 0.01F);
    }
}

TEST(GridEvaluator, AlphaIsClampedBelowAndAboveOnlyWithItsOption) {
    GridScene scene;
    scene.snapshot.InstanceAlpha.Value = 1.7;
    scene.snapshot.InstanceAlpha.Flag = false;
    EXPECT_EQ(evaluatedCell(scene).a, 1.7F);
    scene.snapshot.InstanceAlpha.Flag = true;
    EXPECT_EQ(evaluatedCell(scene).a, 1.0F);
    scene.snapshot.InstanceAlpha.Value = -0.2;
    EXPECT_EQ(evaluatedCell(scene).a, 0.0F);
}

TEST(GridEvaluator, CellsOfNoSizeAreDead) {
    GridScene scene;
    scene.snapshot.ShapeRaysCount.Value = 3.0;
    struct Row {
        double size;
        bool live;
    };
    for (const Row& row : {Row{0.01, false}, Row{0.0100001, true}, Row{0.0, false}, Row{-5.0, false},
                           Row{std::numeric_limits<double>::quiet_NaN(), false}}) {
        scene.snapshot.InstanceSize.Value = row.size;
        EXPECT_EQ(evaluatedCell(scene).visible, row.live) << row.size;
    }
}

TEST(GridEvaluator, VisibilityIsDrawnByColumnAndRow) {
    GridScene scene;
    scene.setCounts(20, 20);
    scene.snapshot.InstanceVisible.Probability = 50.0;
    scene.snapshot.InstanceVisible.Seed = 9;
    GridEvaluator evaluator = scene.evaluator();
    GridInstances instances(evaluator);
    int shown = 0;
    for (A_long index = 0; index < 400; ++index) {
        EXPECT_EQ(instances.cells()[index].visible != 0, scene.snapshot.InstanceVisible.test(index % 20, index / 20));
        shown += instances.cells()[index].visible;
    }
    EXPECT_GT(shown, 120);
    EXPECT_LT(shown, 280);
}

TEST(GridEvaluator, DepthAndRotationsInSpaceCountOnlyUnderTheCameraOption) {
    GridScene scene;
    scene.snapshot.InstanceOffsetZ.Value = 25.0;
    scene.snapshot.InstanceRotation3DX.Value = 30.0;
    scene.snapshot.InstanceRotation3DY.Value = 40.0;
    scene.snapshot.Rotation3DX = 10.0;
    scene.snapshot.Rotation3DY = 20.0;
    scene.snapshot.CenterZ = 70.0;
    InstanceState flat = evaluatedCell(scene);
    EXPECT_EQ(flat.z, 25.0F);
    EXPECT_EQ(flat.angleX, 30.0F);
    EXPECT_EQ(flat.angleY, 40.0F);
    scene.evaluator().BuildCellMatrix(flat);
    EXPECT_EQ(flat.matrix.m[14], 0.0F);
    EXPECT_EQ(flat.matrix.m[2], 0.0F);
    EXPECT_EQ(flat.matrix.m[6], 0.0F);
    EXPECT_EQ(flat.matrix.m[0], 10.0F * 1.4142135F);

    // Without a camera in the composition the option still counts.
    scene.snapshot.UseCompCamera = true;
    scene.snapshot.Rotation3DX = scene.snapshot.Rotation3DY = 0.0;
    InstanceState spatial = evaluatedCell(scene);
    scene.evaluator().BuildCellMatrix(spatial);
    EXPECT_EQ(spatial.matrix.m[14], 95.0F);
    EXPECT_NE(spatial.matrix.m[2], 0.0F);
}

TEST(GridEvaluator, TheAnchorIsAFractionOfTheRadius) {
    GridScene scene;
    scene.setCounts(1, 1);
    scene.snapshot.ShapeRaysCount.Value = 3.0;
    scene.snapshot.ShapeAnchorX.Value = 50.0;
    scene.snapshot.ShapeAnchorY.Value = -100.0;
    InstanceState cell = evaluatedCell(scene);
    scene.evaluator().BuildCellMatrix(cell);
    EXPECT_FLOAT_EQ(cell.matrix.m[12], 400.0F + 5.0F);
    EXPECT_FLOAT_EQ(cell.matrix.m[13], 300.0F - 10.0F);
}

TEST(GridEvaluator, ABillboardKeepsItsPlaceAndFacesTheScreen) {
    GridScene scene;
    scene.setCounts(1, 1);
    scene.snapshot.UseCompCamera = true;
    scene.snapshot.ShapeBillboard = true;
    scene.snapshot.Rotation3DY = 50.0;
    scene.snapshot.InstanceRotation3DX.Value = 33.0;
    scene.snapshot.ShapeRaysCount.Value = 3.0;
    scene.snapshot.GlobalScale = 200.0;
    scene.place = {0.5F, 0.25F, 0.0F, 0.0F};
    scene.snapshot.ShapeAnchorX.Value = 100.0;
    InstanceState cell = evaluatedCell(scene);
    scene.evaluator().BuildCellMatrix(cell);
    const Matrix expected = Matrix::diagonal(2.0F * 0.5F * 10.0F, 2.0F * 0.25F * 10.0F, 2.0F * 0.5F, 1.0F);
    for (int element = 0; element < 12; ++element) {
        EXPECT_EQ(cell.matrix.m[element], expected.m[element]) << element;
    }
    EXPECT_EQ(cell.matrix.m[15], 1.0F);
    // The anchor moves it by the radius along the turned x axis; the centre lies at (400, 300) pixels of the view.
    const double turn = 50.0 * std::numbers::pi / 180.0;
    EXPECT_NEAR(cell.matrix.m[12], 400.0 + 0.5 * 2.0 * 10.0 * std::cos(turn), 1e-4);
    EXPECT_NEAR(cell.matrix.m[14], -0.5 * 2.0 * 10.0 * std::sin(turn), 1e-4);
}

TEST(GridEvaluator, TheOriginCountsOnlyWithoutACamera) {
    GridScene scene;
    scene.place = {1.0F, 1.0F, 30.0F, 40.0F};
    EXPECT_EQ(scene.evaluator().gridMatrix().m[12], 370.0F);
    EXPECT_EQ(scene.evaluator().gridMatrix().m[13], 260.0F);
    scene.viewProjection.usesCamera = 1;
    EXPECT_EQ(scene.evaluator().gridMatrix().m[12], 400.0F);
    EXPECT_EQ(scene.evaluator().gridMatrix().m[13], 300.0F);
}

TEST(GridEvaluator, UnequalDownsamplingScalesDepthByTheHorizontalFactor) {
    GridScene scene;
    scene.place = {0.5F, 0.25F, 0.0F, 0.0F};
    const Matrix grid = scene.evaluator().gridMatrix();
    EXPECT_EQ(grid.m[0], 0.5F);
    EXPECT_EQ(grid.m[5], 0.25F);
    EXPECT_EQ(grid.m[10], 0.5F);
}

TEST(GridEvaluator, FramesAreChosenByTheSplittingMode) {
    GridScene scene;
    scene.setCounts(4, 3);
    scene.snapshot.ShapeType = 2;
    scene.atlas.frameCount = 11;
    scene.snapshot.ShapeFrameIndex.Value = 40.0;  // 0.4 of ten steps: frame 5
    for (const A_long mode : {1, 2}) {
        scene.snapshot.ShapeFramesSplittingMode = mode;
        EXPECT_EQ(evaluatedCell(scene, 6).spriteIndex, 5);
    }
    scene.snapshot.ShapeFramesSplittingMode = 3;
    for (A_long index = 0; index < 12; ++index) {
        EXPECT_EQ(evaluatedCell(scene, index).spriteIndex, index + 1);
    }
    scene.snapshot.ShapeFramesSplittingMode = 4;
    EXPECT_EQ(evaluatedCell(scene, 6).spriteIndex, 0);
    scene.snapshot.ShapeFramesSplittingMode = 1;
    scene.snapshot.ShapeType = 1;
    EXPECT_EQ(evaluatedCell(scene, 6).spriteIndex, 0);
}

TEST(GridEvaluator, TheAnimationMovesFramesByTheFrameNumberTimesTheSpeed) {
    GridScene scene;
    scene.snapshot.ShapeType = 2;
    scene.atlas.frameCount = 11;
    scene.host.inData.current_time = 300;
    scene.host.inData.time_step = 100;
    scene.snapshot.ShapeFramesAnimationSpeed = 2.0;
    EXPECT_EQ(evaluatedCell(scene).spriteIndex, 1);
    scene.snapshot.ShapeFramesAnimationSequence = true;
    EXPECT_EQ(evaluatedCell(scene).spriteIndex, 6);  // 6 / 11 of ten steps is 5.45
}

}  // namespace
}  // namespace Tessavoy
