#include "Source/Gl/PixelTransfer.h"

#include "HostInterface/Constants.h"
#include "Source/HostAccess/Exception.h"

#include <glbinding/gl33core/gl.h>

using namespace gl33core;

namespace Tessavoy::AESDK_OpenGL {

PixelTransfer GetPixelTransfer(PF_PixelFormat pixelFormat) {
    constexpr float full16bit = 65535.0F / 32768.0F;
    switch (pixelFormat) {
        case PF_PixelFormat_ARGB32:
            return {4, static_cast<std::uint32_t>(GL_UNSIGNED_BYTE), 1.0F};
        case PF_PixelFormat_ARGB64:
            return {8, static_cast<std::uint32_t>(GL_UNSIGNED_SHORT), full16bit};
        case PF_PixelFormat_ARGB128:
            return {16, static_cast<std::uint32_t>(GL_FLOAT), 1.0F};
        default:
            throw Exception(PF_Err_BAD_CALLBACK_PARAM);
    }
}

}  // namespace Tessavoy::AESDK_OpenGL
