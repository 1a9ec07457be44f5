#pragma once

#include <cstddef>

namespace Tessavoy {

/// Vertex of a shape: position in view space, then straight colour. Stride 28 bytes.
struct InstanceVertex {
    float x, y, z;     ///< attribute "Position", location 0
    float r, g, b, a;  ///< attribute "Color", location 3
};
static_assert(sizeof(InstanceVertex) == 28 && offsetof(InstanceVertex, r) == 12);

/// Vertex of a textured quad: a shape's vertex, then the place in the atlas. Stride 40 bytes.
struct TexturedInstanceVertex {
    float x, y, z;      ///< attribute "Position", location 0
    float r, g, b, a;   ///< attribute "Color", location 3
    float u, v, layer;  ///< attribute "UV3", location 2: texture coordinates from 0 to 1, array layer from 0
};
static_assert(sizeof(TexturedInstanceVertex) == 40 && offsetof(TexturedInstanceVertex, u) == 28);

}  // namespace Tessavoy
