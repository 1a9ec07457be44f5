#pragma once

#include "Source/Gl/EffectRenderData.h"

#include <cstdint>

namespace Tessavoy::AESDK_OpenGL {

/// Makes room for the vertices and indices of a batch, sizes in bytes. Buffers are made twice as large as needed, and
/// made anew when twice the need exceeds what they hold. The instance vertex array stays bound. Throws the plain
/// integer 512 when a buffer would be beyond 2 GiB.
void EnsureInstanceBuffers(AESDK_OpenGL_EffectRenderData& renderData, std::int64_t vertexCount,
                           std::int64_t vertexStride, std::int64_t indexCount, std::int64_t indexSize);

/// The two instance buffers, mapped for writing from their first byte on. Between mapping and unmapping no other
/// function of the GL layer is called.
class MappedInstanceBuffers {
public:
    /// After EnsureInstanceBuffers. Throws the plain integer 512 when the GL has no memory; the buffers are then
    /// deleted, so that the next frame starts afresh.
    explicit MappedInstanceBuffers(AESDK_OpenGL_EffectRenderData& renderData);

    /// Unmaps, if that wasn't done.
    ~MappedInstanceBuffers();

    MappedInstanceBuffers(const MappedInstanceBuffers&) = delete;
    MappedInstanceBuffers& operator=(const MappedInstanceBuffers&) = delete;

    void* vertices() const { return mVertices; }
    std::uint32_t* indices() const { return mIndices; }

    /// Both addresses end here. Neither buffer stays bound.
    void unmap();

private:
    AESDK_OpenGL_EffectRenderData& mRenderData;
    void* mVertices = nullptr;
    std::uint32_t* mIndices = nullptr;
};

}  // namespace Tessavoy::AESDK_OpenGL
