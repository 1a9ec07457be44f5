#pragma once

#include "Source/RenderGrid/DrawOrder.h"
#include "Source/RenderGrid/GridInstances.h"

#include <cstddef>
#include <cstdint>

namespace Tessavoy {

/// A frame that is drawn has something to draw with: anything else is an assertion. A measurement does without.
void requireRenderContext(const void* renderContext);

/// Memory for one batch. It is written from front to back and never read.
struct BatchRoom {
    void* vertices;
    std::uint32_t* indices;
};

/// The size of a batch.
struct BatchSize {
    std::size_t vertexCount;
    std::size_t indexCount;
    std::size_t vertexStride;  ///< bytes: 40 when the frame has a texture, else 28
};

/// Where batches go: to buffers that are drawn, or to a measurement.
class BatchSink {
public:
    virtual ~BatchSink() = default;

    /// Gives room for a batch of this size, which is not empty. Both blocks are aligned to 4 bytes or more.
    virtual BatchRoom begin(const BatchSize& size) = 0;

    /// The batch is written. The counts are those of what was written, which may be less than the room.
    virtual void end(const BatchSize& written) = 0;
};

/// Writes the visible cells of a frame in this order, in batches: one, as long as the numbers of its vertices and
/// indices fit 32 bits. A single cell whose counts don't fit ends the frame. Throws the plain integer 512 for a batch
/// that has more than an index can number. That a batch has vertices and no indices is an assertion.
void writeBatches(GridInstances& instances, DrawOrder& order, BatchSink& sink);

/// The same by a frame's two cursors. That both go by depth when the left one does is an assertion.
void writeBatches(GridInstances& instances, GridToSequence& left, GridToSequence& right, BatchSink& sink);

/// The smallest and the largest depth of all vertices of a frame.
struct ZBounds {
    float minimum;
    float maximum;
};

/// Takes batches into host memory and looks at their depths.
class ZBoundsSink final : public BatchSink {
public:
    /// Depths are view-space z divided by downsampleX. The bounds stay as they are when nothing is written.
    ZBoundsSink(PF_InData* inData, float downsampleX, ZBounds& bounds);
    ~ZBoundsSink() override;

    ZBoundsSink(const ZBoundsSink&) = delete;
    ZBoundsSink& operator=(const ZBoundsSink&) = delete;

    BatchRoom begin(const BatchSize& size) override;
    void end(const BatchSize& written) override;

private:
    void take(float z);
    void freeBlocks();

    PF_InData* mInData;
    float mDownsampleX;
    ZBounds& mBounds;
    bool mHasVertex = false;
    void* mVertices = nullptr;
    void* mIndices = nullptr;
};

/// Evaluates and emits a frame without drawing it, and measures the depths of its vertices; the bounds stay as they are
/// when the frame has none.
void measureDepths(GridEvaluator& evaluator, ZBounds& bounds);

/// The order that a frame's parameters ask for.
DrawOrder drawOrderOf(GridInstances& instances);

}  // namespace Tessavoy
