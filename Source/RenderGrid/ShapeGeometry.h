#pragma once

#include "Source/RenderGrid/InstanceState.h"
#include "Source/RenderGrid/InstanceVertex.h"
#include "Source/RenderGrid/Outline.h"
#include "Source/RenderGrid/ShapeIndices.h"
#include "Source/TextureAtlas.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tessavoy {

/// Where the next cell of a batch is written. The memory must have room for what CountInstance says.
struct EmissionCursor {
    std::uint32_t nextVertex = 0;    ///< number of the next vertex in its batch
    std::byte* vertex = nullptr;     ///< where it goes: an InstanceVertex, or where there is an atlas a textured one
    std::uint32_t* index = nullptr;  ///< where the next index goes
};

/// What emission needs to know of its frame.
struct EmissionFrame {
    const TextureAtlas* atlas = nullptr;  ///< not owned; null unless the instances show a texture
    float downsampleX = 1.0F;
    float downsampleY = 1.0F;
};

/// How much one cell writes. Counts that 32 bits can't hold stand at their bound.
struct InstanceCount {
    std::uint32_t vertices = 0;
    std::uint32_t indices = 0;

    friend bool operator==(const InstanceCount&, const InstanceCount&) = default;
};

/// Whether these counts alone are beyond what 32 bits can number.
inline bool isOversized(const InstanceCount& count) {
    return ~count.indices < count.vertices;
}

/// How a shape's outline is drawn.
OutlineMode outlineMode(const InstanceState& cell);

/// The points of an outline made of these parts: one for each pointed corner, two and the dots for each rounded one.
std::uint64_t outlinePointCount(const InstancePart* parts, A_long count);

/// The vertices and indices that a cell writes: none when it isn't visible. A stroke of width 0 writes fewer.
InstanceCount CountInstance(const EmissionFrame& frame, const InstanceState& cell);

/// The same when the number of points in the cell's outline is known.
InstanceCount CountInstance(const EmissionFrame& frame, const InstanceState& cell, std::uint64_t points);

/// The vertices of one cell on their way from the shape to the buffers. Its memory is kept from cell to cell.
class OutlineBuilder {
public:
    /// Makes the outline in shape units: the centre of a filled shape, then the corners in order, with the feather when
    /// it is a fraction of the shape.
    void build(const InstanceState& cell);

    /// Carries the outline into view space, as seen from the instance's origin (the matrix without its translation),
    /// and adds a feather that is in pixels.
    void turnToView(const EmissionFrame& frame, const InstanceState& cell);

    /// Fills the slots of the outline; see ApplyFeather, whose feather is called width here.
    void feather(bool stroke, double width, double factorX, double factorY);

    const std::vector<OutlineVertex>& vertices() const { return mVertices; }

private:
    void addPart(const InstanceState& cell, A_long k);

    std::vector<OutlineVertex> mVertices;
};

/// Writes the vertices and triangles of a cell and moves the cursor behind them; nothing for a cell that isn't visible.
/// This is the plain way, which computes every cell anew: InstanceEmitter gives the same, and sooner.
void EmitInstance(const EmissionFrame& frame, const InstanceState& cell, OutlineBuilder& builder,
                  EmissionCursor& cursor);

/// The quad of a cell with a texture; writes TexturedInstanceVertex records.
void emitTexturedQuad(const TextureAtlas& atlas, const InstanceState& cell, EmissionCursor& cursor);

}  // namespace Tessavoy
