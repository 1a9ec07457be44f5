#pragma once

#include <cstdint>

namespace Tessavoy {

/// How the outline of an instance is drawn; it decides the order of the vertices and the triangles between them.
struct OutlineMode {
    bool stroke = false;     ///< two rings with a band between them, instead of a centre and one ring
    bool feathered = false;  ///< each ring vertex is followed by a transparent one outside

    /// Vertices written before the ring: the centre of a filled shape.
    int centreVertices() const { return stroke ? 0 : 1; }

    /// Vertices of one place on the ring.
    int verticesPerPlace() const { return (stroke ? 2 : 1) * (feathered ? 2 : 1); }

    /// Indices of one place on the ring.
    int indicesPerPlace() const { return 3 * (stroke ? 2 : 1) * (feathered ? 3 : 1); }
};

/// Writes the triangles of a cell of so many vertices, which start at vertex number base. Returns the end of what was
/// written: indicesPerPlace() for each whole place on the ring. A cell without a place gets none, not even the
/// triangles that close the ring.
std::uint32_t* writeShapeIndices(OutlineMode mode, std::uint32_t base, std::uint32_t vertexCount, std::uint32_t* out);

}  // namespace Tessavoy
