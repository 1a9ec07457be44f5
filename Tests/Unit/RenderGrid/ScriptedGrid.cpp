#include "Tests/Unit/RenderGrid/ScriptedGrid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace Tessavoy {

namespace {

bool sameBits(const void* left, const void* right, std::size_t size) {
    return std::memcmp(left, right, size) == 0;
}

std::vector<InstanceState> recordsOf(GridEvaluator& evaluator) {
    GridInstances instances(evaluator);
    const InstanceState* const first = instances.cells().data();
    std::vector<InstanceState> records(first, first + instances.cells().count());
    for (InstanceState& record : records) {
        record.parts = nullptr;
    }
    return records;
}

}  // namespace

ScriptedGrid::ScriptedGrid() {
    scene.host.inData.current_time = 1000;
    scene.host.inData.time_step = 100;
    scene.host.inData.time_scale = 2500;
    scene.host.constSequenceData = &mSequenceBlock;
}

void ScriptedGrid::chooseTextureLayer() {
    PF_ParamDef layer{};
    layer.param_type = PF_Param_LAYER;
    layer.u.ld.data = &mPixel;
    layer.u.ld.width = layer.u.ld.height = 1;
    layer.u.ld.rowbytes = sizeof mPixel;
    scene.snapshot.layers.checkouts.push_back(layer);
    scene.snapshot.ShapeType = 2;
    scene.snapshot.ShapeTextureLayerIndex = 2;
}

std::vector<InstanceState> ScriptedGrid::evaluated() {
    GridScript script(&scene.host.inData, scene.snapshot);
    GridEvaluator evaluator = scene.evaluator(script.usable());
    return recordsOf(evaluator);
}

std::vector<InstanceState> ScriptedGrid::evaluated(const std::string& script) {
    sequence.script = script;
    return evaluated();
}

std::vector<InstanceState> ScriptedGrid::unscripted() {
    GridEvaluator evaluator = scene.evaluator();
    return recordsOf(evaluator);
}

std::vector<RecordingSink::Batch> ScriptedGrid::drawn(const std::string& script) {
    sequence.script = script;
    GridScript gridScript(&scene.host.inData, scene.snapshot);
    return drawScene(scene, gridScript.usable());
}

void ScriptedGrid::expectNothingReported() const {
    EXPECT_STREQ(scene.host.outData.return_msg, "");
    EXPECT_EQ(scene.host.outData.out_flags, 0);
}

bool sameRecord(const InstanceState& left, const InstanceState& right) {
    constexpr std::array numbers = {&InstanceState::x,       &InstanceState::y,           &InstanceState::z,
                                    &InstanceState::radius,  &InstanceState::r,           &InstanceState::g,
                                    &InstanceState::b,       &InstanceState::a,           &InstanceState::feather,
                                    &InstanceState::anchorX, &InstanceState::strokeWidth, &InstanceState::anchorY,
                                    &InstanceState::angleX,  &InstanceState::angleY,      &InstanceState::angle,
                                    &InstanceState::scaleX,  &InstanceState::scaleY,      &InstanceState::angleOffset};
    return std::all_of(numbers.begin(), numbers.end(),
                       [&](const auto field) { return sameBits(&(left.*field), &(right.*field), sizeof(float)); }) &&
           sameBits(&left.matrix, &right.matrix, sizeof(Matrix)) && left.i == right.i && left.j == right.j &&
           left.visible == right.visible && left.spriteIndex == right.spriteIndex &&
           left.featherScreenSpace == right.featherScreenSpace && left.stroke == right.stroke &&
           left.partsCount == right.partsCount;
}

bool sameRecords(const std::vector<InstanceState>& left, const std::vector<InstanceState>& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), sameRecord);
}

}  // namespace Tessavoy
