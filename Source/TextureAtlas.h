#pragma once

#include "HostInterface/Effect.h"
#include "Source/Gl/EffectRenderData.h"
#include "Source/HostAccess/SuiteHandler.h"

#include <cstdint>

namespace Tessavoy {

/// Where one frame lies in the atlas: texture coordinates 0 to 1, v growing with the rows of the picture, and the array
/// layer.
struct AtlasFrameRect {
    float left = 0;
    float top = 0;
    float right = 0;
    float bottom = 0;
    float layer = 0;
};

/// All frames of a layer in one array texture, so that one draw can show any of them. Built anew for each rendered
/// frame, once per object, with the render data's context current. Without a build, or from a layer without pixels, it
/// is one frame over the whole and has no texture; a later frame of a timeline that has no pixels leaves its place as
/// the GL made it. Pixels are in the host's component order.
class TextureAtlas {
public:
    TextureAtlas() = default;

    /// Deletes the texture, in the context that is current.
    ~TextureAtlas();

    TextureAtlas(const TextureAtlas&) = delete;
    TextureAtlas& operator=(const TextureAtlas&) = delete;

    /// Frames cut from one picture, row by row from its top left: as many as given across and down. A limit that isn't
    /// 0 lowers the number of frames.
    ///
    /// Both builds throw Exception with code 512 and a text when the texture would be wider or higher than the GPU
    /// takes (how many layers it takes is not asked), and with the host's code when it gives no pixels; a host without
    /// "PF Pixel Data Suite" gives the plain integer 516.
    void BuildFromImage(PF_InData* inData, const AESDK_OpenGL::AESDK_OpenGL_EffectRenderData& renderData,
                        PF_EffectWorld* layerWorld, std::uint32_t columns, std::uint32_t rows, std::int32_t limit);

    /// One frame per frame of the layer that the layer parameter chooses, over that layer's duration. Any host error
    /// throws Exception with its code. What is checked out of the host is checked in again on every path.
    void BuildFromTimeline(PF_InData* inData, const AESDK_OpenGL::AESDK_OpenGL_EffectRenderData& renderData,
                           PF_ParamIndex layerParamIndex);

    /// The place of a frame, counted from 0 and clamped to those that there are. An atlas of no frames (a layer shorter
    /// than one frame) has no places: the rectangle is then empty, and nothing should be drawn with it.
    void GetFrameRect(AtlasFrameRect& rect, std::int32_t frame) const;

    std::uint32_t columns = 1;  ///< frames side by side on one array layer
    std::uint32_t rows = 1;     ///< frames one under the other on one array layer
    std::int32_t frameCount = 1;
    std::uint32_t mTextureWidth = 0;   ///< texels
    std::uint32_t mTextureHeight = 0;  ///< texels
    std::uint32_t mTextureDepth = 0;   ///< array layers
    std::uint32_t textureName = 0;     ///< 0 without a texture

private:
    /// The size of one frame in texels, and how many frames the largest texture holds on one array layer.
    struct FramePage {
        std::uint32_t frameWidth = 0;
        std::uint32_t frameHeight = 0;
        std::uint32_t frames = 0;
    };

    FramePage arrangeFrames(std::uint32_t frameWidth, std::uint32_t frameHeight, std::uint32_t maxTextureSize);
    void createTexture(std::uint32_t maxTextureSize);
    void upload(SuiteHandler& suites, PF_EffectWorld* layer, std::uint32_t xOffset, std::uint32_t yOffset,
                std::uint32_t zOffset);
};

}  // namespace Tessavoy
