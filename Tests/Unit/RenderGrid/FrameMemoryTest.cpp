// What a frame's grid takes beside its records and its batch: a tenth of these at most. Records are what the host lends
// in handles, the batch is the sink's; both come from a heap that isn't watched, so that everything watched is beside
// them.

#include "HostInterface/SuiteIdentity.h"
#include "Tests/Unit/RenderGrid/HeapUse.h"
#include "Tests/Unit/RenderGrid/RenderGridFixture.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace Tessavoy {
namespace {

/// Lends handles in place of the scene's host, and adds up their sizes. One at a time.
class UnwatchedHandles {
public:
    explicit UnwatchedHandles(PF_InData& inData) : mInData(inData), mHost(inData.pica_basicP) {
        current() = this;
        mTable.host_new_handle = [](A_HandleSize size) { return current()->lend(size); };
        mTable.host_lock_handle = [](PF_Handle handle) -> void* { return *handle; };
        mTable.host_unlock_handle = [](PF_Handle) {};
        mTable.host_dispose_handle = [](PF_Handle handle) { std::free(handle); };
        mBasic.AcquireSuite = [](const char* name, std::int32_t version, const void** suite) -> SPErr {
            if (std::string_view(name) != SuiteIdentity<PF_HandleSuite1>::name) {
                return current()->mHost->AcquireSuite(name, version, suite);
            }
            *suite = &current()->mTable;
            return 0;
        };
        mBasic.ReleaseSuite = [](const char* name, std::int32_t version) -> SPErr {
            const bool own = std::string_view(name) == SuiteIdentity<PF_HandleSuite1>::name;
            return own ? 0 : current()->mHost->ReleaseSuite(name, version);
        };
        mInData.pica_basicP = &mBasic;
    }

    ~UnwatchedHandles() { mInData.pica_basicP = mHost; }

    UnwatchedHandles(const UnwatchedHandles&) = delete;
    UnwatchedHandles& operator=(const UnwatchedHandles&) = delete;

    int count() const { return mCount; }
    std::size_t bytes() const { return mBytes; }

private:
    static UnwatchedHandles*& current() {
        static UnwatchedHandles* handles = nullptr;
        return handles;
    }

    /// The block lies behind its handle, aligned as any block of the heap.
    PF_Handle lend(A_HandleSize size) {
        constexpr std::size_t header = alignof(std::max_align_t);
        char* const memory = static_cast<char*>(std::malloc(header + size));
        const auto handle = reinterpret_cast<PF_Handle>(memory);
        *handle = memory + header;
        ++mCount;
        mBytes += size;
        return handle;
    }

    PF_InData& mInData;
    SPBasicSuite* mHost;
    SPBasicSuite mBasic{};
    PF_HandleSuite1 mTable{};
    int mCount = 0;
    std::size_t mBytes = 0;
};

/// Room for batches, added up.
class UnwatchedSink : public BatchSink {
public:
    BatchRoom begin(const BatchSize& size) override {
        mBytes += size.vertexCount * size.vertexStride + size.indexCount * sizeof(std::uint32_t);
        mVertices.reset(std::malloc(size.vertexCount * size.vertexStride));
        mIndices.reset(std::malloc(size.indexCount * sizeof(std::uint32_t)));
        return {mVertices.get(), static_cast<std::uint32_t*>(mIndices.get())};
    }

    void end(const BatchSize&) override {}

    std::size_t bytes() const { return mBytes; }

private:
    struct Free {
        void operator()(void* block) const { std::free(block); }
    };

    std::unique_ptr<void, Free> mVertices;
    std::unique_ptr<void, Free> mIndices;
    std::size_t mBytes = 0;
};

/// All in bytes.
struct Footprint {
    int hostBlocks;
    std::size_t records;
    std::size_t batch;
    std::size_t beside;
};

Footprint footprintOf(GridScene& scene, UnwatchedSink& sink, CellScript* script = nullptr) {
    const UnwatchedHandles handles(scene.host.inData);
    const HeapUse heap;
    GridEvaluator evaluator = scene.evaluator(script);
    GridInstances instances(evaluator);
    DrawOrder order = drawOrderOf(instances);
    writeBatches(instances, order, sink);
    return {handles.count(), handles.bytes(), sink.bytes(), heap.peak()};
}

constexpr A_long side = 320;
constexpr std::size_t cells = std::size_t{side} * side;

struct NamedScene {
    const char* name;
    std::function<void(ParameterSnapshot&)> setUp;
};

void noiseInSizeRotationAndColour(ParameterSnapshot& snapshot) {
    addNoise(snapshot.InstanceSize, 5.0, 1);
    addNoise(snapshot.InstanceRotation, 90.0, 2);
    addNoise(snapshot.InstanceColor.Hue, 60.0, 3);
}

void orderedByDepth(ParameterSnapshot& snapshot) {
    addNoise(snapshot.InstanceOffsetZ, 500.0, 4);
    snapshot.UseCompCamera = true;
    snapshot.SortByZ = true;
}

const std::array<NamedScene, 6> namedScenes = {{
    {"squares", [](ParameterSnapshot&) {}},
    {"noise", noiseInSizeRotationAndColour},
    {"noise, ordered by depth",
     [](ParameterSnapshot& snapshot) {
         noiseInSizeRotationAndColour(snapshot);
         orderedByDepth(snapshot);
     }},
    {"outlines that are all different",
     [](ParameterSnapshot& snapshot) {
         addNoise(snapshot.ShapeShelfLength, 40.0, 5);
         snapshot.ShapeDrawMode = 2;
     }},
    {"numbers of parts that differ",
     [](ParameterSnapshot& snapshot) {
         addNoise(snapshot.ShapeRaysCount, 20.0, 6);
         orderedByDepth(snapshot);
     }},
    {"triangles without a feather",
     [](ParameterSnapshot& snapshot) {
         snapshot.ShapeRaysCount.Value = 3.0;
         snapshot.ShapeFeatherPixels = 0.0;
         orderedByDepth(snapshot);
     }},
}};

void expectATenthAtMost(const Footprint& footprint) {
    EXPECT_EQ(footprint.hostBlocks, 2);
    EXPECT_GE(footprint.records, cells * sizeof(InstanceState));
    EXPECT_GT(footprint.batch, 0U);
    EXPECT_LE(10 * footprint.beside, footprint.records + footprint.batch);
}

TEST(FrameMemory, BesideRecordsAndBatchIsATenthOfTheseAtMost) {
    for (const NamedScene& named : namedScenes) {
        SCOPED_TRACE(named.name);
        GridScene scene;
        scene.setCounts(side, side);
        named.setUp(scene.snapshot);
        UnwatchedSink sink;
        expectATenthAtMost(footprintOf(scene, sink));
    }
}

TEST(FrameMemory, BesideRecordsAndBatchIsATenthOfTheseAtMostUnderAScript) {
    GridScene scene;
    scene.setCounts(side, side);
    orderedByDepth(scene.snapshot);
    FunctionScript script([](const CellScriptInputs&, InstanceState& cell) {
        cell.partsCount = 3 + cell.i % 5;
        return true;
    });
    script.runs.reserve(cells);  // what the test itself notes down
    UnwatchedSink sink;
    expectATenthAtMost(footprintOf(scene, sink, &script));
}

// The map has an entry of eight bytes for each cell, and sorting takes as much again.
TEST(FrameMemory, OrderByDepthTakesSixteenBytesACell) {
    GridScene scene;
    scene.setCounts(side, side);
    UnwatchedSink plainSink;
    const std::size_t plain = footprintOf(scene, plainSink).beside;
    orderedByDepth(scene.snapshot);
    UnwatchedSink orderedSink;
    const std::size_t ordered = footprintOf(scene, orderedSink).beside;
    EXPECT_GE(ordered, 16 * cells);
    EXPECT_LT(ordered, 16 * cells + plain + 4096);
}

/// Takes as much as a copy of all records would.
class HoardingSink final : public UnwatchedSink {
public:
    void end(const BatchSize&) override { mHoard.resize(cells); }

private:
    std::vector<InstanceState> mHoard;
};

TEST(FrameMemory, ACopyOfTheRecordsWouldBeSeen) {
    GridScene scene;
    scene.setCounts(side, side);
    HoardingSink sink;
    const Footprint footprint = footprintOf(scene, sink);
    EXPECT_GT(10 * footprint.beside, footprint.records + footprint.batch);
}

TEST(HeapUse, IsTheMostThatWasOut) {
    const HeapUse heap;
    EXPECT_EQ(heap.peak(), 0U);
    { const std::vector<char> large(100000); }
    const std::unique_ptr<char[]> small = std::make_unique<char[]>(1000);
    struct alignas(256) Aligned {
        char bytes[512];
    };
    const auto aligned = std::make_unique<Aligned>();
    std::free(std::malloc(1000000));
    EXPECT_GE(heap.peak(), 100000U);
    EXPECT_LT(heap.peak(), 101000U);
}

}  // namespace
}  // namespace Tessavoy
