#include "Source/Gl/InstanceBuffers.h"

#include "HostInterface/Constants.h"

#include <glbinding/gl33core/gl.h>

using namespace gl33core;

namespace Tessavoy::AESDK_OpenGL {

namespace {

void deleteInstanceBuffers(AESDK_OpenGL_EffectRenderData& renderData) {
    glDeleteBuffers(1, &renderData.instanceVertexBuffer);
    glDeleteBuffers(1, &renderData.instanceIndexBuffer);
    renderData.instanceVertexBuffer = renderData.instanceIndexBuffer = 0;
    renderData.instanceVertexCapacity = renderData.instanceIndexCapacity = 0;
}

void makeBufferIfMissing(GLenum target, std::uint32_t& buffer, std::int32_t& capacity, std::int32_t need) {
    if (buffer == 0) {
        glGenBuffers(1, &buffer);
        glBindBuffer(target, buffer);
        glBufferData(target, need, nullptr, GL_DYNAMIC_DRAW);
        capacity = need;
    }
}

/// Twice the bytes of so many records.
std::int32_t doubledSize(std::int64_t count, std::int64_t bytesEach) {
    const std::int64_t need = count * bytesEach * 2;
    if (need > INT32_MAX) {
        throw PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
    }
    return static_cast<std::int32_t>(need);
}

void* mapForWriting(GLenum target, GLuint buffer) {
    glBindBuffer(target, buffer);
    return glMapBuffer(target, GL_WRITE_ONLY);
}

void unmapAndUnbind(GLenum target, GLuint buffer, const void* address) {
    if (address != nullptr) {
        glBindBuffer(target, buffer);
        glUnmapBuffer(target);
    }
    glBindBuffer(target, 0);
}

}  // namespace

void EnsureInstanceBuffers(AESDK_OpenGL_EffectRenderData& renderData, std::int64_t vertexCount,
                           std::int64_t vertexStride, std::int64_t indexCount, std::int64_t indexSize) {
    const std::int32_t vertexNeed = doubledSize(vertexCount, vertexStride);
    const std::int32_t indexNeed = doubledSize(indexCount, indexSize);
    if (renderData.instanceVertexCapacity < vertexNeed || renderData.instanceIndexCapacity < indexNeed) {
        deleteInstanceBuffers(renderData);
    }
    if (renderData.instanceVao == 0) {
        glGenVertexArrays(1, &renderData.instanceVao);
    }
    glBindVertexArray(renderData.instanceVao);
    makeBufferIfMissing(GL_ARRAY_BUFFER, renderData.instanceVertexBuffer, renderData.instanceVertexCapacity,
                        vertexNeed);
    makeBufferIfMissing(GL_ELEMENT_ARRAY_BUFFER, renderData.instanceIndexBuffer, renderData.instanceIndexCapacity,
                        indexNeed);
}

MappedInstanceBuffers::MappedInstanceBuffers(AESDK_OpenGL_EffectRenderData& renderData) : mRenderData(renderData) {
    mVertices = mapForWriting(GL_ARRAY_BUFFER, renderData.instanceVertexBuffer);
    mIndices = static_cast<std::uint32_t*>(mapForWriting(GL_ELEMENT_ARRAY_BUFFER, renderData.instanceIndexBuffer));
    if (mVertices == nullptr || mIndices == nullptr) {
        unmap();
        deleteInstanceBuffers(renderData);
        throw PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
    }
}

MappedInstanceBuffers::~MappedInstanceBuffers() {
    unmap();
}

void MappedInstanceBuffers::unmap() {
    unmapAndUnbind(GL_ARRAY_BUFFER, mRenderData.instanceVertexBuffer, mVertices);
    unmapAndUnbind(GL_ELEMENT_ARRAY_BUFFER, mRenderData.instanceIndexBuffer, mIndices);
    mVertices = nullptr;
    mIndices = nullptr;
}

}  // namespace Tessavoy::AESDK_OpenGL
