#include "Source/Gl/Textures.h"

#include "Source/Gl/TransferMutex.h"

#include <glbinding/gl33core/gl.h>

using namespace gl33core;

namespace Tessavoy::AESDK_OpenGL {

std::uint32_t makeFloatTexture(std::int32_t width, std::int32_t height) {
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    {
        const std::lock_guard lock(ImageTransferMutex);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA32F, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    }
    glBindTexture(GL_TEXTURE_2D, 0);
    return texture;
}

void fillFloatTexture(std::uint32_t texture, std::int32_t width, std::int32_t height, const float* texels) {
    glBindTexture(GL_TEXTURE_2D, texture);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, width);
    {
        const std::lock_guard lock(ImageTransferMutex);
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, GL_RGBA, GL_FLOAT, texels);
    }
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    glBindTexture(GL_TEXTURE_2D, 0);
}

void deleteTexture(std::uint32_t texture) {
    glDeleteTextures(1, &texture);
}

}  // namespace Tessavoy::AESDK_OpenGL
