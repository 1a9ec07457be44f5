#include "Tests/Unit/Gl/GlTesting.h"

#include "Source/Gl/RenderTargets.h"
#include "Source/Gl/Textures.h"
#include "Source/Gl/ThreadRenderData.h"

#include <glbinding/gl33core/gl.h>

#include <cstring>

using namespace gl33core;

namespace Tessavoy::Testing {

using namespace AESDK_OpenGL;

void GlTest::SetUp() {
    const QuietOutput quiet;
    setUpCommonContext();
    mRestorer.emplace();
    mRenderData = prepareThreadRenderData();
}

void GlTest::TearDown() {
    mRenderData.reset();
    mRestorer.reset();
    EXPECT_EQ(setDownContexts(), 0);
}

void GlTest::beginScene(std::uint16_t width, std::uint16_t height, const Colour& clear, bool multisampled) {
    const int scale = multisampled ? 2 : 1;
    PrepareRenderTargets(renderData(), width, height, multisampled);
    AttachTarget(renderData(), renderData().sceneTexture);
    setViewport(scale * width, scale * height);
    clearTo(clear);
}

ViewProjection flatView(int width, int height) {
    ViewProjection view;
    view.projection.translate(-1.0F, -1.0F, 0.0F);
    view.projection.scale(2.0F / static_cast<float>(width), 2.0F / static_cast<float>(height), 0.0005F);
    return view;
}

std::vector<std::uint32_t> takeGlErrors() {
    std::vector<std::uint32_t> errors;
    for (GLenum error = glGetError(); error != GL_NO_ERROR; error = glGetError()) {
        errors.push_back(static_cast<std::uint32_t>(error));
    }
    return errors;
}

std::vector<Colour> readTarget(int width, int height) {
    std::vector<Colour> texels(static_cast<std::size_t>(width) * height);
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_FLOAT, texels.data());
    return texels;
}

std::uint32_t makeTexture(int width, int height, const std::vector<Colour>& texels) {
    const std::uint32_t texture = makeFloatTexture(width, height);
    fillFloatTexture(texture, width, height, texels.front().data());
    return texture;
}

void clearTo(const Colour& colour) {
    glClearColor(colour[0], colour[1], colour[2], colour[3]);
    glClear(GL_COLOR_BUFFER_BIT);
    setTransparentClearColor();
}

int liveObjects() {
    constexpr GLuint highestName = 4096;
    int count = 0;
    for (GLuint name = 1; name <= highestName; ++name) {
        for (const GLboolean& exists :
             {glIsTexture(name), glIsBuffer(name), glIsVertexArray(name), glIsFramebuffer(name), glIsRenderbuffer(name),
              glIsProgram(name), glIsShader(name)}) {
            count += exists == GL_TRUE ? 1 : 0;
        }
    }
    return count;
}

std::int32_t glState(gl::GLenum name) {
    GLint state = -1;
    glGetIntegerv(name, &state);
    return state;
}

float uniformOf(std::uint32_t program, const char* name) {
    float value = -1;
    glGetUniformfv(program, glGetUniformLocation(program, name), &value);
    return value;
}

void expectNear(const Colour& actual, const Colour& expected, float tolerance) {
    for (std::size_t channel = 0; channel < 4; ++channel) {
        EXPECT_NEAR(actual[channel], expected[channel], tolerance) << "channel " << channel;
    }
}

std::vector<ShapeVertex> rectangle(float left, float top, float right, float bottom, float z, const Colour& colour) {
    return {{left, top, z, colour}, {right, top, z, colour}, {left, bottom, z, colour}, {right, bottom, z, colour}};
}

namespace {

template <class Vertex>
void drawRectangles(AESDK_OpenGL_EffectRenderData& renderData, const ViewProjection& view,
                    const std::vector<Vertex>& vertices, const BatchSettings& settings, bool textured) {
    constexpr std::array<std::uint32_t, 6> corners = {0, 1, 2, 2, 1, 3};
    std::vector<std::uint32_t> indices;
    for (std::uint32_t first = 0; first < vertices.size(); first += 4) {
        for (const std::uint32_t corner : corners) {
            indices.push_back(first + corner);
        }
    }
    EnsureInstanceBuffers(renderData, static_cast<std::int64_t>(vertices.size()), sizeof(Vertex),
                          static_cast<std::int64_t>(indices.size()), sizeof(std::uint32_t));
    MappedInstanceBuffers buffers(renderData);
    std::memcpy(buffers.vertices(), vertices.data(), vertices.size() * sizeof(Vertex));
    std::memcpy(buffers.indices(), indices.data(), indices.size() * sizeof(std::uint32_t));
    buffers.unmap();
    DrawInstanceBatch(renderData, static_cast<std::int32_t>(indices.size()), sizeof(Vertex), textured, settings.atlas,
                      {view, settings.fog, settings.zDepth, settings.multiplier16bit, settings.blendMode});
}

}  // namespace

void drawShapes(AESDK_OpenGL_EffectRenderData& renderData, const ViewProjection& view,
                const std::vector<ShapeVertex>& vertices, const BatchSettings& settings) {
    drawRectangles(renderData, view, vertices, settings, false);
}

void drawSprites(AESDK_OpenGL_EffectRenderData& renderData, const ViewProjection& view,
                 const std::vector<SpriteVertex>& vertices, const BatchSettings& settings) {
    drawRectangles(renderData, view, vertices, settings, true);
}

}  // namespace Tessavoy::Testing
