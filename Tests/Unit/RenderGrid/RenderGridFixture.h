#pragma once

#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/RenderGrid/BatchWalk.h"
#include "Source/RenderGrid/GridEvaluator.h"
#include "Source/RenderGrid/GridInstances.h"
#include "Tests/Support/FakeHandleHost.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace Tessavoy {

/// A host, and the parameters of a small grid: filled squares of size 10 with a feather of one pixel, without a camera.
struct GridScene {
    GridScene();

    FakeHandleHost host;
    ParameterSnapshot snapshot;
    FramePlace place;
    ViewProjection viewProjection;
    TextureAtlas atlas;

    /// The evaluator of the scene as it stands.
    GridEvaluator evaluator(CellScript* script = nullptr);

    void setCounts(A_long countX, A_long countY);
};

/// Noise on a property, from this seed, with a table.
void addNoise(PropertyEvaluator& property, double multiplier, A_long seed);

/// A script made of a function; what it returns is its success.
class FunctionScript final : public CellScript {
public:
    using Body = std::function<bool(const CellScriptInputs&, InstanceState&)>;

    explicit FunctionScript(Body body) : mBody(std::move(body)) {}

    bool runCell(PF_InData* inData, const CellScriptInputs& inputs, InstanceState& cell) override;
    void reportFailure(PF_InData* inData, PF_OutData* outData, const InstanceState& cell) override;

    /// What came with the calls.
    std::vector<PF_InData*> runs;
    std::vector<std::pair<A_long, A_long>> failures;  ///< columns and rows
    PF_OutData* reportedTo = nullptr;

private:
    Body mBody;
};

/// Keeps what is written.
class RecordingSink final : public BatchSink {
public:
    struct Batch {
        BatchSize room{};
        BatchSize written{};
        std::vector<std::byte> vertices;
        std::vector<std::uint32_t> indices;

        /// The vertices of a batch without a texture.
        std::vector<InstanceVertex> shapes() const;
        std::vector<TexturedInstanceVertex> quads() const;
    };

    BatchRoom begin(const BatchSize& size) override;
    void end(const BatchSize& written) override;

    std::vector<Batch> batches;
};

/// Evaluates the scene and writes all its batches.
std::vector<RecordingSink::Batch> drawScene(GridScene& scene, CellScript* script = nullptr);

/// Numbers that are the same in every run.
class Numbers {
public:
    explicit Numbers(std::uint32_t seed) : mGenerator(seed) {}

    double between(double low, double high) {
        return low + (high - low) * (static_cast<double>(mGenerator()) / 4294967295.0);
    }
    A_long oneOf(A_long first, A_long last) { return first + static_cast<A_long>(mGenerator() % (last - first + 1)); }
    bool coin() { return mGenerator() % 2 == 0; }

private:
    std::mt19937 mGenerator;
};

}  // namespace Tessavoy
