#include "Source/Gl/ReadBack.h"

#include "HostInterface/Constants.h"
#include "HostInterface/Suites.h"
#include "Source/Gl/TransferMutex.h"
#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/SuiteHandler.h"

#include <glbinding/gl33core/gl.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

using namespace gl33core;

namespace Tessavoy::AESDK_OpenGL {

namespace {

/// The picture as the GL gave it: rows of `width` pixels without gaps.
struct PictureBlock {
    const std::byte* pixels;
    A_long width;
    A_long height;
};

/// Called by the host for each pixel of the output world, possibly on several threads at once.
PF_Err copyFloatPixel(void* reference, A_long x, A_long y, PF_PixelFloat*, PF_PixelFloat* out) noexcept {
    const auto& block = *static_cast<const PictureBlock*>(reference);
    if (x < block.width && y < block.height) {
        const std::size_t pixel = static_cast<std::size_t>(y) * block.width + x;
        std::memcpy(out, block.pixels + pixel * sizeof *out, sizeof *out);
    }
    return PF_Err_NONE;
}

void copyFloatPixels(SuiteHandler& suites, PF_InData* inData, PictureBlock block, PF_EffectWorld* inputWorld,
                     PF_EffectWorld* outputWorld) {
    const auto& suite = suites.get<PF_iterateFloatSuite1>();
    throwOnError(
        suite.iterate(inData, 0, inputWorld->height, inputWorld, nullptr, &block, copyFloatPixel, outputWorld));
}

std::byte* firstPixel(PF_InData* inData, PF_EffectWorld* world, PF_PixelFormat pixelFormat) {
    PF_Pixel8* pixels8 = nullptr;
    PF_Pixel16* pixels16 = nullptr;
    const bool deep = pixelFormat == PF_PixelFormat_ARGB64;
    throwOnError(deep ? inData->utils->get_pixel_data16(world, nullptr, &pixels16)
                      : inData->utils->get_pixel_data8(world, nullptr, &pixels8));
    auto* pixels = deep ? reinterpret_cast<std::byte*>(pixels16) : reinterpret_cast<std::byte*>(pixels8);
    if (pixels == nullptr) {
        throw Exception(PF_Err_INTERNAL_STRUCT_DAMAGED);
    }
    return pixels;
}

/// A row of the world begins at a whole pixel, also when rowbytes isn't a whole number of them.
void copyRows(const PictureBlock& block, std::byte* pixels, const PF_EffectWorld& world, std::size_t bytesPerPixel) {
    const std::size_t rowBytes = bytesPerPixel * static_cast<std::size_t>(std::min(world.width, block.width));
    const std::ptrdiff_t pixelSize = static_cast<std::ptrdiff_t>(bytesPerPixel);
    for (A_long y = 0; y < std::min(world.height, block.height); ++y) {
        const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(y) * world.rowbytes / pixelSize * pixelSize;
        std::memcpy(pixels + offset, block.pixels + bytesPerPixel * static_cast<std::size_t>(y) * block.width,
                    rowBytes);
    }
}

void* lockedBlock(const PF_HandleSuite1& handles, PF_Handle handle) {
    if (handle == nullptr) {
        throw Exception(PF_Err_OUT_OF_MEMORY);
    }
    void* block = handles.host_lock_handle(handle);
    if (block == nullptr) {
        handles.host_dispose_handle(handle);
        throw Exception(PF_Err_OUT_OF_MEMORY);
    }
    return block;
}

void readPixels(A_long width, A_long height, std::uint32_t glType, void* block) {
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    const std::lock_guard lock(ImageTransferMutex);
    glReadPixels(0, 0, width, height, GL_RGBA, static_cast<GLenum>(glType), block);
}

}  // namespace

void ReadBackOutput(const AESDK_OpenGL_EffectRenderData& renderData, PF_InData* inData, PF_EffectWorld* inputWorld,
                    PF_EffectWorld* outputWorld, PF_PixelFormat pixelFormat, A_long bytesPerPixel,
                    std::uint32_t glType) {
    SuiteHandler suites(inData->pica_basicP);
    const auto& handles = suites.get<PF_HandleSuite1>();
    const A_long width = renderData.renderWidth;
    const A_long height = renderData.renderHeight;
    PF_Handle handle = handles.host_new_handle(static_cast<A_HandleSize>(width) * height * bytesPerPixel);
    void* pixels = lockedBlock(handles, handle);
    readPixels(width, height, glType, pixels);
    const PictureBlock block = {static_cast<const std::byte*>(pixels), width, height};
    if (pixelFormat == PF_PixelFormat_ARGB128) {
        copyFloatPixels(suites, inData, block, inputWorld, outputWorld);
    } else if (pixelFormat == PF_PixelFormat_ARGB64 || pixelFormat == PF_PixelFormat_ARGB32) {
        if (outputWorld->height > 0) {  // a world without rows may have no address
            copyRows(block, firstPixel(inData, outputWorld, pixelFormat), *outputWorld,
                     static_cast<std::size_t>(bytesPerPixel));
        }
    } else {
        throw Exception(PF_Err_BAD_CALLBACK_PARAM);
    }
    handles.host_unlock_handle(handle);
    handles.host_dispose_handle(handle);
}

}  // namespace Tessavoy::AESDK_OpenGL
