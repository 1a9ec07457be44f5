#include "Tests/Unit/RenderGrid/RenderGridFixture.h"

namespace Tessavoy {

GridScene::GridScene() : snapshot(&host.inData) {
    host.inData.time_step = 1;
    snapshot.CountX = 4;
    snapshot.CountY = 3;
    snapshot.GridWidth = 300.0;
    snapshot.GridHeight = 200.0;
    snapshot.GlobalScale = 100.0;
    snapshot.CenterPos = {400.0, 300.0};
    snapshot.InstanceSize.Value = 10.0;
    snapshot.InstanceColor.Color = {0.75, 0.5, 0.25, 1.0};
    snapshot.InstanceAlpha.Value = 1.0;
    snapshot.InstanceVisible.Probability = 100.0;
    snapshot.ShapeType = 1;
    snapshot.ShapeTextureLayerIndex = 1;
    snapshot.ShapeFramesSplittingMode = 1;
    snapshot.ShapeXFramesInTexture = 1;
    snapshot.ShapeYFramesInTexture = 1;
    snapshot.ShapeDrawMode = 1;
    snapshot.ShapeUniformScaling = true;
    snapshot.ShapeScaleX.Value = 100.0;
    snapshot.ShapeScaleY.Value = 100.0;
    snapshot.ShapeFeatherScreenSpace = true;
    snapshot.ShapeFeatherPixels = 1.0;
    snapshot.ShapeFeatherPercents = 10.0;
    snapshot.ShapeStrokeWidth.Value = 20.0;
    snapshot.ShapeRaysCount.Value = 4.0;
}

GridEvaluator GridScene::evaluator(CellScript* script) {
    return GridEvaluator(snapshot, {&host.inData, &host.outData, place, viewProjection, atlas, 1.0F, script});
}

void GridScene::setCounts(A_long countX, A_long countY) {
    snapshot.CountX = countX;
    snapshot.CountY = countY;
}

void addNoise(PropertyEvaluator& property, double multiplier, A_long seed) {
    property.ValueOffset = 100.0;
    property.Noise.Multiplier = multiplier;
    property.Noise.Seed = seed;
    property.Noise.Scale = 37.0;
    property.Noise.ScaleX = 1.0;
    property.Noise.ScaleY = 1.5;
    property.Noise.OffsetZ = 3.0;
    property.Noise.MultLayer.Index = 1;
    property.Noise.buildTable();
}

bool FunctionScript::runCell(PF_InData* inData, const CellScriptInputs& inputs, InstanceState& cell) {
    runs.push_back(inData);
    return mBody(inputs, cell);
}

void FunctionScript::reportFailure(PF_InData*, PF_OutData* outData, const InstanceState& cell) {
    reportedTo = outData;
    failures.emplace_back(cell.i, cell.j);
}

namespace {

template <class Vertex>
std::vector<Vertex> taken(const RecordingSink::Batch& batch) {
    std::vector<Vertex> vertices(batch.written.vertexCount);
    std::memcpy(vertices.data(), batch.vertices.data(), vertices.size() * sizeof(Vertex));
    return vertices;
}

}  // namespace

std::vector<InstanceVertex> RecordingSink::Batch::shapes() const {
    return taken<InstanceVertex>(*this);
}

std::vector<TexturedInstanceVertex> RecordingSink::Batch::quads() const {
    return taken<TexturedInstanceVertex>(*this);
}

BatchRoom RecordingSink::begin(const BatchSize& size) {
    Batch& batch = batches.emplace_back();
    batch.room = size;
    batch.vertices.resize(size.vertexCount * size.vertexStride);
    batch.indices.resize(size.indexCount);
    return {batch.vertices.data(), batch.indices.data()};
}

void RecordingSink::end(const BatchSize& written) {
    batches.back().written = written;
}

std::vector<RecordingSink::Batch> drawScene(GridScene& scene, CellScript* script) {
    GridEvaluator evaluator = scene.evaluator(script);
    GridInstances instances(evaluator);
    DrawOrder order = drawOrderOf(instances);
    RecordingSink sink;
    writeBatches(instances, order, sink);
    return std::move(sink.batches);
}

}  // namespace Tessavoy
