#include "Source/Gl/ArrayTexture.h"

#include "Source/Gl/TransferMutex.h"

#include <glbinding/gl33core/gl.h>

using namespace gl33core;

namespace Tessavoy::AESDK_OpenGL {

std::uint32_t makeArrayTexture(std::int32_t width, std::int32_t height, std::int32_t depth) {
    GLuint texture = 0;
    glActiveTexture(GL_TEXTURE0);
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D_ARRAY, texture);
    gl::glTexStorage3D(GL_TEXTURE_2D_ARRAY, 1, GL_RGBA32F, width, height, depth);
    glTexParameteri(GL_TEXTURE_2D_ARRAY, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D_ARRAY, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D_ARRAY, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D_ARRAY, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    return texture;
}

void fillArrayTexture(const ArrayRegion& region, std::int32_t rowPixels, std::uint32_t glType, const void* pixels) {
    glPixelStorei(GL_UNPACK_ROW_LENGTH, rowPixels);
    const std::lock_guard lock(ImageTransferMutex);
    glTexSubImage3D(GL_TEXTURE_2D_ARRAY, 0, region.x, region.y, region.layer, region.width, region.height, 1, GL_RGBA,
                    static_cast<GLenum>(glType), pixels);
}

}  // namespace Tessavoy::AESDK_OpenGL
