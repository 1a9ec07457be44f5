#include "Source/RenderGrid/BatchWalk.h"

#include "Source/Assert.h"
#include "Source/HostAccess/HostMemory.h"
#include "Source/MemoryWrites.h"
#include "Source/RenderGrid/OutlinePattern.h"

#include <cstring>
#include <limits>
#include <span>

namespace Tessavoy {

void requireRenderContext(const void* renderContext) {
    TESSAVOY_ASSERT(renderContext != nullptr, "renderContext != nullptr");
}

namespace {

/// What the cells between the two cursors will write.
struct BatchMeasure {
    std::size_t vertices = 0;
    std::size_t indices = 0;
};

/// Moves the right cursor to the end of the batch, cell by cell: an oversized one ends it.
template <class Sequence>
BatchMeasure measureByCells(GridInstances& instances, const EmissionFrame& frame, Sequence& right) {
    BatchMeasure sums;
    while (!right.IsEnd()) {
        const InstanceCount count = CountInstance(frame, instances.cell(right.GetInd()));
        right.Next();
        if (isOversized(count)) {
            right.Prev();
            break;
        }
        sums.vertices += count.vertices;
        sums.indices += count.indices;
    }
    return sums;
}

/// The same; without an oversized cell the batch is the whole frame, whose sums are known.
template <class Sequence>
BatchMeasure measureBatch(GridInstances& instances, const EmissionFrame& frame, Sequence& right) {
    if (instances.hasOversizedCell()) {
        return measureByCells(instances, frame, right);
    }
    right.skipToEnd();
    return {instances.vertexTotal(), instances.indexTotal()};
}

/// The cells from the cursor on that lie side by side, one at least.
std::span<const InstanceState> cellsAt(GridInstances& instances, const GridToSequence& left) {
    return instances.cellsFrom(left.GetInd());
}

/// Records in the order of depth lie anywhere in memory; they are asked for some cells before they are needed.
std::span<const InstanceState> cellsAt(GridInstances& instances, const GridToSequenceByZ& left) {
    constexpr std::ptrdiff_t steps = 8;
    prefetch(instances.cell(left.indexAhead(steps)));
    return {&instances.cell(left.GetInd()), 1};
}

/// Writes a cell. Beyond the caches, asks for the memory that later ones will be written to.
void writeCell(const InstanceState& cell, Extent extent, InstanceEmitter& emitter, EmissionCursor& cursor) {
    const EmissionCursor start = cursor;
    emitter.emit(cell, cursor);
    if (extent == Extent::BeyondCaches) {
        prefetchForward(cursor.vertex, static_cast<std::size_t>(cursor.vertex - start.vertex));
        prefetchForward(cursor.index, static_cast<std::size_t>(cursor.index - start.index) * sizeof *cursor.index);
    }
}

/// Writes the cells from the left cursor up to the right one.
template <class Sequence>
void writeBatch(GridInstances& instances, Sequence& left, const Sequence& right, InstanceEmitter& emitter,
                EmissionCursor& cursor) {
    while (!samePlace(left, right)) {
        for (const InstanceState& cell : cellsAt(instances, left)) {
            if (samePlace(left, right)) {
                return;
            }
            writeCell(cell, instances.extent(), emitter, cursor);
            left.Sequence::Next();
        }
    }
}

/// The walk of both cursors, which are of the same class.
template <class Sequence>
void walk(GridInstances& instances, Sequence& left, Sequence& right, BatchSink& sink) {
    const EmissionFrame frame = instances.evaluator().emissionFrame();
    const bool textured = frame.atlas != nullptr;
    InstanceEmitter emitter(frame, instances.outlinesDependOnCountOnly());
    left.Reset();
    right.Reset();
    while (!left.IsEnd() && !right.IsEnd()) {
        const BatchMeasure sums = measureBatch(instances, frame, right);
        if (sums.vertices == 0 || sums.indices == 0) {
            TESSAVOY_ASSERT(sums.vertices == 0 && sums.indices == 0, "vertsCount == 0 && indsCount == 0");
            return;
        }
        if (sums.vertices > std::numeric_limits<std::uint32_t>::max()) {
            throw PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
        }
        const BatchSize size{sums.vertices, sums.indices,
                             textured ? sizeof(TexturedInstanceVertex) : sizeof(InstanceVertex)};
        const BatchRoom room = sink.begin(size);
        EmissionCursor cursor{0, static_cast<std::byte*>(room.vertices), room.indices};
        writeBatch(instances, left, right, emitter, cursor);
        sink.end({cursor.nextVertex, static_cast<std::size_t>(cursor.index - room.indices), size.vertexStride});
    }
}

}  // namespace

void writeBatches(GridInstances& instances, DrawOrder& order, BatchSink& sink) {
    writeBatches(instances, order.left(), order.right(), sink);
}

void writeBatches(GridInstances& instances, GridToSequence& left, GridToSequence& right, BatchSink& sink) {
    auto* const leftByZ = dynamic_cast<GridToSequenceByZ*>(&left);
    auto* const rightByZ = dynamic_cast<GridToSequenceByZ*>(&right);
    if (leftByZ != nullptr) {
        TESSAVOY_ASSERT(rightByZ != nullptr, "rightByZ != nullptr");
        walk(instances, *leftByZ, *rightByZ, sink);
    } else {
        walk(instances, left, right, sink);
    }
}

ZBoundsSink::ZBoundsSink(PF_InData* inData, float downsampleX, ZBounds& bounds)
    : mInData(inData), mDownsampleX(downsampleX), mBounds(bounds) {}

ZBoundsSink::~ZBoundsSink() {
    freeBlocks();
}

BatchRoom ZBoundsSink::begin(const BatchSize& size) {
    mVertices = HostAlloc(mInData, size.vertexCount * size.vertexStride);
    mIndices = HostAlloc(mInData, size.indexCount * sizeof(std::uint32_t));
    return {mVertices, static_cast<std::uint32_t*>(mIndices)};
}

void ZBoundsSink::end(const BatchSize& written) {
    const char* vertex = static_cast<const char*>(mVertices) + offsetof(InstanceVertex, z);
    for (std::size_t k = 0; k < written.vertexCount; ++k, vertex += written.vertexStride) {
        float z = 0.0F;
        std::memcpy(&z, vertex, sizeof z);
        take(z / mDownsampleX);
    }
    freeBlocks();
}

void ZBoundsSink::take(float z) {
    if (!mHasVertex) {
        mBounds = {z, z};
        mHasVertex = true;
    }
    if (z < mBounds.minimum) {
        mBounds.minimum = z;
    }
    if (z > mBounds.maximum) {
        mBounds.maximum = z;
    }
}

void ZBoundsSink::freeBlocks() {
    HostFree(mInData, mVertices);
    HostFree(mInData, mIndices);
    mVertices = nullptr;
    mIndices = nullptr;
}

DrawOrder drawOrderOf(GridInstances& instances) {
    const GridEvaluator& evaluator = instances.evaluator();
    const bool byZ = evaluator.sortsByZ();
    return DrawOrder(byZ, evaluator.CountX(), evaluator.CountY(), byZ ? instances.cells().data() : nullptr);
}

void measureDepths(GridEvaluator& evaluator, ZBounds& bounds) {
    GridInstances instances(evaluator);
    DrawOrder order = drawOrderOf(instances);
    ZBoundsSink sink(evaluator.inData(), evaluator.place().downsampleX, bounds);
    writeBatches(instances, order, sink);
}

}  // namespace Tessavoy
