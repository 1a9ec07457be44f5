#pragma once

#include "Source/Gl/PlatformContext.h"

#include <array>
#include <cstdint>
#include <memory>
#include <set>

namespace gl {
enum class GLextension : int;
}

namespace Tessavoy::AESDK_OpenGL {

/// An OpenGL context of the effect's own and what is known about it. One such object is the common context of the
/// plug-in; all others derive from this class and share its objects. The common context itself holds no object.
class AESDK_OpenGL_EffectCommonData {
public:
    AESDK_OpenGL_EffectCommonData() = default;

    /// Leaves no context current on the calling thread when this object had one.
    virtual ~AESDK_OpenGL_EffectCommonData();

    AESDK_OpenGL_EffectCommonData(const AESDK_OpenGL_EffectCommonData&) = delete;
    AESDK_OpenGL_EffectCommonData& operator=(const AESDK_OpenGL_EffectCommonData&) = delete;

    /// Creates the context, shared with that of `common` when one is given (null: this is the common one), leaves it
    /// current, prints its description to the standard output stream and reads the limits. Throws AESDK_OpenGL_Fault
    /// with code 1 when any step fails; it may then be called again, and ends what the failed attempt made.
    void SetUpContext(const AESDK_OpenGL_EffectCommonData* common);

    /// Makes the context current on the calling thread. Throws AESDK_OpenGL_Fault with code 1 when that fails.
    void MakeContextCurrent();

    bool initialised = false;                ///< set on per-thread objects only, once SetUpContext has succeeded
    std::set<gl::GLextension> extensions;    ///< of the context, as glbinding knows them
    std::int32_t maxArrayTextureLayers = 0;  ///< GL_MAX_ARRAY_TEXTURE_LAYERS
    std::int32_t maxTextureSize = 0;         ///< GL_MAX_TEXTURE_SIZE, texels in each direction

protected:
    /// Makes the context current if there is one and the platform allows it.
    bool tryMakeCurrent();

private:
    void endContext() noexcept;

    std::unique_ptr<PlatformContext> mContext;
};

/// What one render thread draws with: its context, programs, targets and buffers. They are kept from frame to frame. A
/// GL name of zero means that the object has not been created yet.
class AESDK_OpenGL_EffectRenderData : public AESDK_OpenGL_EffectCommonData {
public:
    /// Makes the context current on the calling thread, deletes every object in it, and leaves no context current.
    ~AESDK_OpenGL_EffectRenderData() override;

    std::uint32_t fboId = 0;
    std::uint32_t renderbuffer = 0;

    std::uint16_t renderWidth = 0;   ///< pixels of the picture, not of a doubled scene
    std::uint16_t renderHeight = 0;  ///< pixels
    bool multisampled = false;       ///< whether sceneTexture has twice the width and height

    std::uint32_t shapeProgram = 0;
    std::uint32_t textureProgram = 0;
    std::uint32_t shapeZProgram = 0;
    std::uint32_t textureZProgram = 0;
    std::uint32_t copyProgram = 0;
    std::uint32_t multisampleResolveProgram = 0;
    std::uint32_t outputProgram = 0;
    std::uint32_t backgroundProgram = 0;

    std::uint32_t sceneTexture = 0;
    std::uint32_t resolveTexture = 0;
    std::uint32_t outputTexture = 0;

    std::uint32_t instanceVao = 0;
    std::uint32_t instanceVertexBuffer = 0;
    std::uint32_t instanceIndexBuffer = 0;
    std::int32_t instanceVertexCapacity = 0;  ///< bytes
    std::int32_t instanceIndexCapacity = 0;   ///< bytes

    std::uint32_t quadVao = 0;
    std::uint32_t quadVertexBuffer = 0;

private:
    void deleteObjects();
};

/// The names of the render data's programs, in the order in which they are built and deleted.
inline constexpr std::array programFields = {
    &AESDK_OpenGL_EffectRenderData::shapeProgram,  &AESDK_OpenGL_EffectRenderData::textureProgram,
    &AESDK_OpenGL_EffectRenderData::shapeZProgram, &AESDK_OpenGL_EffectRenderData::textureZProgram,
    &AESDK_OpenGL_EffectRenderData::copyProgram,   &AESDK_OpenGL_EffectRenderData::multisampleResolveProgram,
    &AESDK_OpenGL_EffectRenderData::outputProgram, &AESDK_OpenGL_EffectRenderData::backgroundProgram,
};

}  // namespace Tessavoy::AESDK_OpenGL
