// Where the script comes into the evaluation of a cell.

#include "Source/RenderGrid/GridEvaluator.h"

#include "Tests/Unit/RenderGrid/RenderGridFixture.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace Tessavoy {
namespace {

InstanceState evaluatedCell(GridScene& scene, A_long index, CellScript* script) {
    InstanceState cell;
    scene.evaluator(script).EvaluateCell(index, cell);
    return cell;
}

TEST(CellScript, ScriptsRunOnceForEachLiveCellInCellOrder) {
    GridScene scene;
    scene.setCounts(30, 5);
    scene.snapshot.InstanceVisible.Probability = 60.0;
    scene.snapshot.HexGrid = true;
    std::vector<A_long> order;
    FunctionScript script([&](const CellScriptInputs& inputs, InstanceState& cell) {
        order.push_back(cell.j * 30 + cell.i);
        EXPECT_EQ(cell.visible, 1);
        EXPECT_EQ(cell.parts, nullptr);
        EXPECT_EQ(cell.angleOffset, 0.0F);
        EXPECT_EQ(cell.scaleX, 100.0F);
        EXPECT_EQ(cell.strokeWidth, 20.0F);
        EXPECT_EQ(cell.radius, 10.0F * 1.4142135F);
        EXPECT_EQ(inputs.xPart, static_cast<float>(cell.i) / 29.0F + (cell.j % 2 == 1 ? 1.0F / 58.0F : 0.0F));
        EXPECT_EQ(inputs.yPart, static_cast<float>(cell.j) / 4.0F);
        EXPECT_EQ(inputs.xCount, 30);
        EXPECT_EQ(inputs.yCount, 5);
        EXPECT_EQ(inputs.gridWidth, 300.0);
        EXPECT_EQ(inputs.gridHeight, 200.0);
        EXPECT_EQ(inputs.downsampleX, 0.5F);
        EXPECT_EQ(inputs.downsampleY, 0.25F);
        EXPECT_EQ(inputs.gridMatrix.m[0], 0.5F);
        return true;
    });
    scene.place = {0.5F, 0.25F, 0.0F, 0.0F};
    GridEvaluator evaluator = scene.evaluator(&script);
    GridInstances instances(evaluator);
    std::vector<A_long> live;
    for (A_long index = 0; index < 150; ++index) {
        if (scene.snapshot.InstanceVisible.test(index % 30, index / 30)) {
            live.push_back(index);
        }
    }
    EXPECT_EQ(order, live);
    EXPECT_EQ(script.runs, std::vector<PF_InData*>(live.size(), &scene.host.inData));
    EXPECT_TRUE(script.failures.empty());
}

TEST(CellScript, AScriptCanHideACellButNotReviveOne) {
    GridScene scene;
    scene.setCounts(2, 1);
    scene.snapshot.InstanceSize.Value = 0.0;
    FunctionScript reviver([](const CellScriptInputs&, InstanceState& cell) {
        cell.visible = 1;
        return true;
    });
    EXPECT_EQ(evaluatedCell(scene, 0, &reviver).visible, 0);
    EXPECT_TRUE(reviver.runs.empty());
    scene.snapshot.InstanceSize.Value = 10.0;
    FunctionScript hider([](const CellScriptInputs&, InstanceState& cell) {
        cell.visible = 0;
        return true;
    });
    EXPECT_EQ(evaluatedCell(scene, 0, &hider).visible, 0);
    EXPECT_EQ(hider.runs.size(), 1U);
}

TEST(CellScript, ScriptResultsAreNotHeldToTheThresholdsOfEvaluation) {
    GridScene scene;
    FunctionScript script([](const CellScriptInputs&, InstanceState& cell) {
        cell.strokeWidth = 0.0F;
        cell.radius = -3.0F;
        cell.feather = 0.00001F;
        cell.partsCount = 4;
        return true;
    });
    scene.snapshot.ShapeRaysCount.Value = 3.0;
    const InstanceState cell = evaluatedCell(scene, 0, &script);
    EXPECT_EQ(cell.strokeWidth, 0.0F);
    EXPECT_EQ(cell.radius, -3.0F);
    EXPECT_EQ(cell.feather, 0.00001F);
    EXPECT_EQ(cell.visible, 1);
}

TEST(CellScript, AFailedScriptLeavesTheCellAndTheOthersGoOn) {
    GridScene scene;
    FunctionScript script([](const CellScriptInputs&, InstanceState& cell) { return cell.i != 2; });
    GridEvaluator evaluator = scene.evaluator(&script);
    GridInstances instances(evaluator);
    EXPECT_EQ(script.runs.size(), 12U);
    EXPECT_EQ(script.failures, (std::vector<std::pair<A_long, A_long>>{{2, 0}, {2, 1}, {2, 2}}));
    EXPECT_EQ(script.reportedTo, &scene.host.outData);
    EXPECT_EQ(instances.cells()[2].scaleX, 1.0F);
    EXPECT_EQ(instances.cells()[2].visible, 1);
}

}  // namespace
}  // namespace Tessavoy
