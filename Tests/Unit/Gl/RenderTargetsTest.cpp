#include "Source/Gl/RenderTargets.h"

#include "HostInterface/Constants.h"
#include "Source/Gl/Fault.h"
#include "Source/Gl/Textures.h"
#include "Source/HostAccess/Exception.h"
#include "Tests/Unit/Gl/DrawingHost.h"
#include "Tests/Unit/Gl/GlTesting.h"

#include <glbinding/gl33core/gl.h>

using namespace gl33core;

namespace Tessavoy {
namespace {

using namespace AESDK_OpenGL;

class RenderTargetsTest : public Testing::GlTest {
protected:
    struct Size {
        GLint width = 0, height = 0;
        friend bool operator==(const Size&, const Size&) = default;
    };

    static Size sizeOf(GLuint texture) {
        Size size;
        glBindTexture(GL_TEXTURE_2D, texture);
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &size.width);
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &size.height);
        glBindTexture(GL_TEXTURE_2D, 0);
        return size;
    }

    std::array<GLuint, 3> targets() {
        return {renderData().sceneTexture, renderData().resolveTexture, renderData().outputTexture};
    }

    std::array<GLuint, 8> programs() {
        std::array<GLuint, 8> names{};
        for (std::size_t i = 0; i < names.size(); ++i) {
            names[i] = renderData().*programFields[i];
        }
        return names;
    }

    void useEveryTarget() {
        for (const GLuint target : targets()) {
            AttachTarget(renderData(), target);
            EXPECT_STREQ(framebufferStatusText(), "OK");
            clearTarget();
        }
    }
};

TEST_F(RenderTargetsTest, makesThreeFloatTargetsOfTheRenderSize) {
    PrepareRenderTargets(renderData(), 5, 3, false);
    for (const GLuint target : targets()) {
        EXPECT_EQ(sizeOf(target), (Size{5, 3}));
        glBindTexture(GL_TEXTURE_2D, target);
        GLint format = 0;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_INTERNAL_FORMAT, &format);
        EXPECT_EQ(format, static_cast<GLint>(GL_RGBA32F));
        for (const auto& [name, value] : {std::pair{GL_TEXTURE_MIN_FILTER, GL_LINEAR},
                                          {GL_TEXTURE_MAG_FILTER, GL_LINEAR},
                                          {GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE},
                                          {GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE}}) {
            GLint set = 0;
            glGetTexParameteriv(GL_TEXTURE_2D, name, &set);
            EXPECT_EQ(set, static_cast<GLint>(value));
        }
    }
    useEveryTarget();
    EXPECT_TRUE(Testing::takeGlErrors().empty());
}

TEST_F(RenderTargetsTest, multisampledDoublesTheSceneAlone) {
    PrepareRenderTargets(renderData(), 5, 3, true);
    EXPECT_EQ(sizeOf(renderData().sceneTexture), (Size{10, 6}));
    EXPECT_EQ(sizeOf(renderData().resolveTexture), (Size{5, 3}));
    EXPECT_EQ(sizeOf(renderData().outputTexture), (Size{5, 3}));
    useEveryTarget();
    EXPECT_TRUE(Testing::takeGlErrors().empty());
}

TEST_F(RenderTargetsTest, theSameSizeKeepsEverything) {
    PrepareRenderTargets(renderData(), 5, 3, false);
    const auto before = targets();
    const GLuint framebuffer = renderData().fboId;
    const GLuint quad = renderData().quadVao;
    const int objects = Testing::liveObjects();
    PrepareRenderTargets(renderData(), 5, 3, false);
    EXPECT_EQ(targets(), before);
    EXPECT_EQ(renderData().fboId, framebuffer);
    EXPECT_EQ(renderData().quadVao, quad);
    EXPECT_EQ(Testing::liveObjects(), objects);
}

/// Whether the GL object that stood under a name before is still the one: a marker in it survived.
void mark(GLuint texture) {
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 7);
    glBindTexture(GL_TEXTURE_2D, 0);
}

bool isMarked(GLuint texture) {
    GLint level = 0;
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, &level);
    glBindTexture(GL_TEXTURE_2D, 0);
    return level == 7;
}

TEST_F(RenderTargetsTest, anotherMultisampledAloneRebuildsOnlyTheScene) {
    PrepareRenderTargets(renderData(), 5, 3, false);
    for (const GLuint target : targets()) {
        mark(target);
    }
    const GLuint framebuffer = renderData().fboId;
    const GLuint quad = renderData().quadVao;
    const GLuint quadBuffer = renderData().quadVertexBuffer;
    const auto before = programs();
    PrepareRenderTargets(renderData(), 5, 3, true);
    EXPECT_FALSE(isMarked(renderData().sceneTexture));
    EXPECT_TRUE(isMarked(renderData().resolveTexture));
    EXPECT_TRUE(isMarked(renderData().outputTexture));
    EXPECT_EQ(renderData().fboId, framebuffer);
    EXPECT_EQ(renderData().quadVao, quad);
    EXPECT_EQ(renderData().quadVertexBuffer, quadBuffer);
    EXPECT_EQ(programs(), before);
    EXPECT_EQ(sizeOf(renderData().sceneTexture), (Size{10, 6}));
    useEveryTarget();
    // and back
    mark(renderData().sceneTexture);
    PrepareRenderTargets(renderData(), 5, 3, false);
    EXPECT_FALSE(isMarked(renderData().sceneTexture));
    EXPECT_TRUE(isMarked(renderData().resolveTexture));
    EXPECT_TRUE(isMarked(renderData().outputTexture));
    EXPECT_EQ(renderData().fboId, framebuffer);
    EXPECT_EQ(renderData().quadVertexBuffer, quadBuffer);
    EXPECT_EQ(sizeOf(renderData().sceneTexture), (Size{5, 3}));
    useEveryTarget();
}

TEST_F(RenderTargetsTest, anotherSizeRebuildsTargetsAndQuadAndKeepsProgramsAndInstanceBuffers) {
    PrepareRenderTargets(renderData(), 5, 3, false);
    EnsureInstanceBuffers(renderData(), 4, 28, 6, 4);
    for (const GLuint target : targets()) {
        mark(target);
    }
    const auto before = programs();
    const std::array instances = {renderData().instanceVao, renderData().instanceVertexBuffer,
                                  renderData().instanceIndexBuffer};
    const int objects = Testing::liveObjects();
    PrepareRenderTargets(renderData(), 6, 3, false);
    for (const GLuint target : targets()) {
        EXPECT_FALSE(isMarked(target));
        EXPECT_EQ(sizeOf(target), (Size{6, 3}));
    }
    EXPECT_EQ(programs(), before);
    EXPECT_EQ(
        (std::array{renderData().instanceVao, renderData().instanceVertexBuffer, renderData().instanceIndexBuffer}),
        instances);
    EXPECT_EQ(Testing::liveObjects(), objects);
    EXPECT_EQ(renderData().renderWidth, 6);
    EXPECT_EQ(renderData().renderHeight, 3);
    useEveryTarget();
    EXPECT_TRUE(Testing::takeGlErrors().empty());
}

TEST_F(RenderTargetsTest, theQuadHoldsTheCornersOfThePicture) {
    const auto vertices = [this] {
        std::array<float, 20> held{};
        glBindBuffer(GL_ARRAY_BUFFER, renderData().quadVertexBuffer);
        glGetBufferSubData(GL_ARRAY_BUFFER, 0, sizeof held, held.data());
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        return held;
    };
    PrepareRenderTargets(renderData(), 5, 3, true);
    EXPECT_EQ(vertices(), (std::array<float, 20>{0, 0, 0, 0, 0, 5, 0, 0, 1, 0, 0, 3, 0, 0, 1, 5, 3, 0, 1, 1}));
    PrepareRenderTargets(renderData(), 6, 4, true);
    EXPECT_EQ(vertices(), (std::array<float, 20>{0, 0, 0, 0, 0, 6, 0, 0, 1, 0, 0, 4, 0, 0, 1, 6, 4, 0, 1, 1}));
}

TEST_F(RenderTargetsTest, aSizeThatTheGlRefusesIsFaultThreeAtTheAttaching) {
    ASSERT_LT(renderData().maxTextureSize, 2 * 65535);
    PrepareRenderTargets(renderData(), 65535, 1, true);
    try {
        AttachTarget(renderData(), renderData().sceneTexture);
        FAIL() << "no fault";
    } catch (const AESDK_OpenGL_Fault& fault) {
        EXPECT_EQ(fault.code(), 3U);
    }
    EXPECT_FALSE(Testing::takeGlErrors().empty());
    PrepareRenderTargets(renderData(), 4, 4, false);
    useEveryTarget();
}

TEST_F(RenderTargetsTest, statusTextsNameWhatIsMissing) {
    PrepareRenderTargets(renderData(), 4, 4, false);
    EXPECT_THROW(AttachTarget(renderData(), 0), AESDK_OpenGL_Fault);
    EXPECT_STREQ(framebufferStatusText(), "Framebuffer incomplete, missing attachment!");
    GLuint empty = 0;
    glGenTextures(1, &empty);
    glBindTexture(GL_TEXTURE_2D, empty);
    EXPECT_THROW(AttachTarget(renderData(), empty), AESDK_OpenGL_Fault);
    EXPECT_STREQ(framebufferStatusText(), "Framebuffer incomplete, incomplete attachment!");
    glDeleteTextures(1, &empty);
}

TEST(FramebufferStatus, everyStatusHasItsText) {
    const std::pair<GLenum, const char*> texts[] = {
        {GL_FRAMEBUFFER_COMPLETE, "OK"},
        {GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT, "Framebuffer incomplete, incomplete attachment!"},
        {GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT, "Framebuffer incomplete, missing attachment!"},
        {GL_FRAMEBUFFER_INCOMPLETE_DRAW_BUFFER, "Framebuffer incomplete, missing draw buffer!"},
        {GL_FRAMEBUFFER_INCOMPLETE_READ_BUFFER, "Framebuffer incomplete, missing read buffer!"},
        {GL_FRAMEBUFFER_UNSUPPORTED, "Unsupported framebuffer format!"},
        {GL_FRAMEBUFFER_UNDEFINED, "Unknown error!"},
        {GL_FRAMEBUFFER_INCOMPLETE_MULTISAMPLE, "Unknown error!"},
        {GL_NONE, "Unknown error!"}};  // the query itself failed
    for (const auto& [status, text] : texts) {
        EXPECT_STREQ(framebufferStatusText(static_cast<std::uint32_t>(status)), text);
    }
}

TEST_F(RenderTargetsTest, theSecondCheckReportsToTheHost) {
    Testing::DrawingHost host;
    PrepareRenderTargets(renderData(), 4, 4, false);
    AttachTarget(renderData(), renderData().sceneTexture);
    checkFramebuffer(&host.inData, &host.outData);
    EXPECT_EQ(host.outData.out_flags, 0);
    EXPECT_STREQ(host.outData.return_msg, "");

    host.outData.out_flags = 1;
    EXPECT_THROW(AttachTarget(renderData(), 0), AESDK_OpenGL_Fault);
    try {
        checkFramebuffer(&host.inData, &host.outData);
        FAIL() << "no exception";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.code(), 4);
    }
    EXPECT_EQ(host.outData.out_flags, 1 | PF_OutFlag_DISPLAY_ERROR_MESSAGE);
    EXPECT_STREQ(host.outData.return_msg, "Framebuffer incomplete, missing attachment!");
}

TEST_F(RenderTargetsTest, clearingWritesTransparentBlackOverTheWholeTarget) {
    beginScene(3, 2, {1, 1, 1, 1});
    setViewport(1, 1);
    setTransparentClearColor();
    clearTarget();
    for (const Testing::Colour& texel : Testing::readTarget(3, 2)) {
        EXPECT_EQ(texel, (Testing::Colour{0, 0, 0, 0}));
    }
}

TEST_F(RenderTargetsTest, releasingLeavesNothingBound) {
    beginScene(3, 2);
    glBindTexture(GL_TEXTURE_2D, renderData().sceneTexture);
    releaseTargets();
    EXPECT_EQ(Testing::glState(GL_DRAW_FRAMEBUFFER_BINDING), 0);
    EXPECT_EQ(Testing::glState(GL_TEXTURE_BINDING_2D), 0);
    EXPECT_TRUE(Testing::takeGlErrors().empty());
}

}  // namespace
}  // namespace Tessavoy
