// One frame of the grid without OpenGL: evaluation, parts, points, order, counts and emission, on one thread, with the
// host's memory used again from frame to frame. Times are per frame; "cell" is the time per cell. All memory, that of
// the bounds and of the batches too, comes from where the command's comes from: in large pages, where there are any.
//
//   GridMemset       the bound: a memset of the bytes that a frame of GridConstant writes
//   GridTraffic      a bound nearer to the frame: the same bytes in the same order, copied out of the first cache
//   PerlinLoop       the bound of what noise adds: three scalar noises for each cell in a plain loop
//   GridConstant     the default polygon, all properties constant: at most 4 times GridMemset
//   GridNoise        the same with noise on size, rotation, hue and brightness: at most GridConstant plus PerlinLoop
//   GridByZ          GridNoise under a camera, with noise in depth, sorted by it
//   GridShelfNoise   parts that differ from cell to cell, so that every outline is made on its own

#include "Source/MemoryWrites.h"
#include "Source/RenderGrid/BatchWalk.h"
#include "Source/RenderGrid/GridEvaluator.h"
#include "Source/RenderGrid/GridInstances.h"

#include "Host/BlockPool.h"
#include "Host/Handles.h"
#include "HostInterface/SuiteIdentity.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

namespace Tessavoy {
namespace {

using TessavoyHost::BlockPool;

/// A block as the host's pool gives it, out of a pool of its own: what is kept for others would count in the shared
/// one.
class PoolMemory {
public:
    /// Touched, so that no page comes new.
    explicit PoolMemory(std::size_t bytes) : mBlock(mPool.take(bytes)) { std::memset(mBlock.data, 1, bytes); }
    ~PoolMemory() { mPool.give(mBlock); }

    PoolMemory(const PoolMemory&) = delete;
    PoolMemory& operator=(const PoolMemory&) = delete;

    std::byte* get() const { return mBlock.data; }
    std::size_t size() const { return mBlock.capacity; }

private:
    BlockPool mPool;
    BlockPool::Block mBlock;
};

/// As much of a host as lends memory, and lends it again when it got it back.
class RecyclingHost {
public:
    RecyclingHost() {
        mSuite.host_new_handle = [](A_HandleSize size) { return handles().make(size); };
        mSuite.host_lock_handle = [](PF_Handle handle) { return handles().lock(handle); };
        mSuite.host_unlock_handle = [](PF_Handle handle) { handles().unlock(handle); };
        mSuite.host_dispose_handle = [](PF_Handle handle) { handles().dispose(handle); };
        mBasic.AcquireSuite = [](const char* name, std::int32_t, const void** suite) -> SPErr {
            const bool known = std::string_view(name) == SuiteIdentity<PF_HandleSuite1>::name;
            *suite = known ? &mSuite : nullptr;
            return known ? 0 : 1;
        };
        mBasic.ReleaseSuite = [](const char*, std::int32_t) -> SPErr { return 0; };
        inData.pica_basicP = &mBasic;
        inData.time_step = 1;
    }

    RecyclingHost(const RecyclingHost&) = delete;
    RecyclingHost& operator=(const RecyclingHost&) = delete;

    PF_InData inData{};
    PF_OutData outData{};

private:
    static TessavoyHost::Handles& handles() {
        static TessavoyHost::Handles handles;
        return handles;
    }

    inline static PF_HandleSuite1 mSuite{};
    SPBasicSuite mBasic{};
};

/// Buffers that stand for mapped ones; they grow and never shrink.
class MemorySink final : public BatchSink {
public:
    BatchRoom begin(const BatchSize& size) override {
        grow(mVertices, size.vertexCount * size.vertexStride);
        grow(mIndices, size.indexCount * sizeof(std::uint32_t));
        return {mVertices->get(), reinterpret_cast<std::uint32_t*>(mIndices->get())};
    }

    void end(const BatchSize& written) override { benchmark::DoNotOptimize(written); }

private:
    using Buffer = std::unique_ptr<PoolMemory>;

    static void grow(Buffer& buffer, std::size_t bytes) {
        if (buffer == nullptr || buffer->size() < bytes) {
            buffer = std::make_unique<PoolMemory>(bytes);
        }
    }

    Buffer mVertices;
    Buffer mIndices;
};

/// The default polygon on a square grid: four parts, filled, size 10, feather of one pixel.
void setDefaults(ParameterSnapshot& snapshot, A_long side) {
    snapshot.CountX = side;
    snapshot.CountY = side;
    snapshot.GridWidth = 20.0 * side;
    snapshot.GridHeight = 20.0 * side;
    snapshot.GlobalScale = 100.0;
    snapshot.CenterPos = {960.0, 540.0};
    snapshot.InstanceSize.Value = 10.0;
    snapshot.InstanceColor.Color = {0.8, 0.3, 0.1, 1.0};
    snapshot.InstanceAlpha.Value = 1.0;
    snapshot.InstanceVisible.Probability = 100.0;
    snapshot.ShapeType = 1;
    snapshot.ShapeTextureLayerIndex = 1;
    snapshot.ShapeDrawMode = 1;
    snapshot.ShapeScaleX.Value = 100.0;
    snapshot.ShapeUniformScaling = true;
    snapshot.ShapeFeatherScreenSpace = true;
    snapshot.ShapeFeatherPixels = 1.0;
    snapshot.ShapeStrokeWidth.Value = 10.0;
    snapshot.ShapeRaysCount.Value = 4.0;
    for (PropertyEvaluator* property :
         {&snapshot.InstanceSize, &snapshot.InstanceRotation, &snapshot.InstanceOffsetZ, &snapshot.InstanceColor.Hue,
          &snapshot.InstanceColor.Brightness, &snapshot.ShapeShelfLength}) {
        property->ValueOffset = 100.0;
        property->Layer.Index = 1;
    }
}

void setNoise(PropertyEvaluator& property, double multiplier, A_long seed) {
    property.Noise.Multiplier = multiplier;
    property.Noise.Seed = seed;
    property.Noise.Scale = 100.0;
    property.Noise.ScaleX = 1.0;
    property.Noise.ScaleY = 1.0;
    property.Noise.MultLayer.Index = 1;
    property.Noise.buildTable();
}

void setSizeRotationColourNoise(ParameterSnapshot& snapshot) {
    setNoise(snapshot.InstanceSize, 5.0, 1);
    setNoise(snapshot.InstanceRotation, 90.0, 2);
    setNoise(snapshot.InstanceColor.Hue, 60.0, 3);
    setNoise(snapshot.InstanceColor.Brightness, 20.0, 4);
}

/// One frame, as the draw makes it but for OpenGL.
void renderFrame(RecyclingHost& host, ParameterSnapshot& snapshot, BatchSink& sink) {
    const ViewProjection flat;
    const TextureAtlas atlas;
    GridEvaluator evaluator(snapshot, {&host.inData, &host.outData, FramePlace{}, flat, atlas});
    GridInstances instances(evaluator);
    DrawOrder order = drawOrderOf(instances);
    writeBatches(instances, order, sink);
}

template <class Setup>
void runFrames(benchmark::State& state, const Setup& setup) {
    const A_long side = static_cast<A_long>(state.range(0));
    RecyclingHost host;
    MemorySink sink;
    ParameterSnapshot snapshot(&host.inData);
    setDefaults(snapshot, side);
    setup(snapshot);
    renderFrame(host, snapshot, sink);
    for (auto _ : state) {
        renderFrame(host, snapshot, sink);
    }
    state.counters["cell"] = benchmark::Counter(
        static_cast<double>(side) * side, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void GridConstant(benchmark::State& state) {
    runFrames(state, [](ParameterSnapshot&) {});
}

void GridNoise(benchmark::State& state) {
    runFrames(state, setSizeRotationColourNoise);
}

void GridByZ(benchmark::State& state) {
    runFrames(state, [](ParameterSnapshot& snapshot) {
        setSizeRotationColourNoise(snapshot);
        setNoise(snapshot.InstanceOffsetZ, 500.0, 5);
        snapshot.UseCompCamera = true;
        snapshot.SortByZ = true;
    });
}

void GridShelfNoise(benchmark::State& state) {
    runFrames(state, [](ParameterSnapshot& snapshot) { setNoise(snapshot.ShapeShelfLength, 40.0, 6); });
}

void GridMemset(benchmark::State& state) {
    const std::size_t cells = static_cast<std::size_t>(state.range(0) * state.range(0));
    const std::size_t bytes =
        sizeof(InstanceState) + 4 * sizeof(InstancePart) + 9 * sizeof(InstanceVertex) + 36 * sizeof(std::uint32_t);
    const PoolMemory memory(cells * bytes);
    for (auto _ : state) {
        std::memset(memory.get(), 2, cells * bytes);
        benchmark::ClobberMemory();
    }
    state.counters["cell"] = benchmark::Counter(
        static_cast<double>(cells), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// As vertices and indices are written: into the caches, whose lines are asked for ahead.
void writeByPieces(std::byte* to, const std::byte* from, std::size_t bytes, Extent extent) {
    constexpr std::size_t piece = 4 * cacheLine;
    for (std::size_t at = 0; at < bytes; at += piece) {
        const std::size_t size = std::min(piece, bytes - at);
        std::memcpy(to + at, from + at, size);
        if (extent == Extent::BeyondCaches) {
            prefetchForward(to + at, size);
        }
    }
}

/// What a frame's bytes cost on their way to memory: for some cells at a time records and parts, past the caches where
/// a frame writes them so, and then vertices and indices.
void GridTraffic(benchmark::State& state) {
    constexpr std::size_t group = 64;
    constexpr std::size_t record = group * sizeof(InstanceState);
    constexpr std::size_t parts = group * 4 * sizeof(InstancePart);
    constexpr std::size_t vertices = group * 9 * sizeof(InstanceVertex);
    constexpr std::size_t indices = group * 36 * sizeof(std::uint32_t);
    const std::size_t groups = static_cast<std::size_t>(state.range(0) * state.range(0)) / group;
    const Extent extent = extentOf(groups * (record + parts));
    const PoolMemory source(vertices);
    const PoolMemory records(groups * record);
    const PoolMemory partsMemory(groups * parts);
    const PoolMemory vertexMemory(groups * vertices);
    const PoolMemory indexMemory(groups * indices);
    for (auto _ : state) {
        for (std::size_t k = 0; k < groups; ++k) {
            writeForward(records.get() + k * record, source.get(), record, extent);
            writeForward(partsMemory.get() + k * parts, source.get(), parts, extent);
            writeByPieces(vertexMemory.get() + k * vertices, source.get(), vertices, extent);
            writeByPieces(indexMemory.get() + k * indices, source.get(), indices, extent);
        }
        benchmark::ClobberMemory();
    }
    state.counters["cell"] =
        benchmark::Counter(static_cast<double>(groups * group),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void PerlinLoop(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    const PerlinTable table(1);
    for (auto _ : state) {
        double sum = 0.0;
        for (int row = 0; row < side; ++row) {
            for (int column = 0; column < side; ++column) {
                const double x = 10.0 * column / side;
                const double y = 10.0 * row / side;
                sum += table.perlin(x, y, 0.25) + table.perlin(y, x, 0.5) + table.perlin(x, y, 0.75);
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    state.counters["cell"] = benchmark::Counter(
        static_cast<double>(side) * side, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void sides(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(100)->Arg(320)->Arg(1000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(GridMemset)->Apply(sides);
BENCHMARK(GridTraffic)->Apply(sides);
BENCHMARK(PerlinLoop)->Apply(sides);
BENCHMARK(GridConstant)->Apply(sides);
BENCHMARK(GridNoise)->Apply(sides);
BENCHMARK(GridByZ)->Apply(sides);
BENCHMARK(GridShelfNoise)->Apply(sides);

}  // namespace
}  // namespace Tessavoy
