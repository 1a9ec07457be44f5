#include "Source/Gl/RenderTargets.h"

#include "HostInterface/Constants.h"
#include "Source/Gl/Fault.h"
#include "Source/Gl/Programs.h"
#include "Source/Gl/Textures.h"
#include "Source/HostAccess/Exception.h"

#include <glbinding/gl33core/gl.h>

#include <array>
#include <string_view>

using namespace gl33core;

namespace Tessavoy::AESDK_OpenGL {

namespace {

constexpr std::string_view completeText = "OK";

void deleteSceneTarget(AESDK_OpenGL_EffectRenderData& renderData) {
    glBindTexture(GL_TEXTURE_2D, 0);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    deleteTexture(renderData.sceneTexture);
    renderData.sceneTexture = 0;
}

void deleteSizedObjects(AESDK_OpenGL_EffectRenderData& renderData) {
    glDeleteFramebuffers(1, &renderData.fboId);
    glDeleteRenderbuffers(1, &renderData.renderbuffer);
    deleteTexture(renderData.resolveTexture);
    deleteTexture(renderData.outputTexture);
    glDeleteBuffers(1, &renderData.quadVertexBuffer);
    glDeleteVertexArrays(1, &renderData.quadVao);
    renderData.fboId = renderData.renderbuffer = 0;
    renderData.resolveTexture = renderData.outputTexture = 0;
    renderData.quadVertexBuffer = renderData.quadVao = 0;
}

void deleteOutdated(AESDK_OpenGL_EffectRenderData& renderData, std::uint16_t width, std::uint16_t height,
                    bool multisampled) {
    const bool resized = width != renderData.renderWidth || height != renderData.renderHeight;
    if (resized || multisampled != renderData.multisampled) {
        deleteSceneTarget(renderData);
    }
    if (resized) {
        deleteSizedObjects(renderData);
    }
}

/// A strip of four vertices over the whole picture: position in render pixels, then texture coordinate.
void makeQuad(AESDK_OpenGL_EffectRenderData& renderData) {
    const float w = renderData.renderWidth;
    const float h = renderData.renderHeight;
    const std::array<float, 20> vertices = {0, 0, 0, 0, 0,  //
                                            w, 0, 0, 1, 0,  //
                                            0, h, 0, 0, 1,  //
                                            w, h, 0, 1, 1};
    glGenVertexArrays(1, &renderData.quadVao);
    glBindVertexArray(renderData.quadVao);
    glGenBuffers(1, &renderData.quadVertexBuffer);
    glBindBuffer(GL_ARRAY_BUFFER, renderData.quadVertexBuffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof vertices, vertices.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindVertexArray(0);
}

/// The renderbuffer has neither storage nor an attachment, and needs none: no pass tests depth.
void makeFramebuffer(AESDK_OpenGL_EffectRenderData& renderData) {
    glGenFramebuffers(1, &renderData.fboId);
    glBindFramebuffer(GL_FRAMEBUFFER, renderData.fboId);
    glGenRenderbuffers(1, &renderData.renderbuffer);
    glBindRenderbuffer(GL_RENDERBUFFER, renderData.renderbuffer);
}

void makeTargetIfMissing(std::uint32_t& texture, std::int32_t width, std::int32_t height) {
    if (texture == 0) {
        texture = makeFloatTexture(width, height);
    }
}

void makeTargets(AESDK_OpenGL_EffectRenderData& renderData) {
    const std::int32_t scale = renderData.multisampled ? 2 : 1;
    const std::int32_t width = renderData.renderWidth;
    const std::int32_t height = renderData.renderHeight;
    makeTargetIfMissing(renderData.sceneTexture, scale * width, scale * height);
    makeTargetIfMissing(renderData.resolveTexture, width, height);
    makeTargetIfMissing(renderData.outputTexture, width, height);
}

}  // namespace

void PrepareRenderTargets(AESDK_OpenGL_EffectRenderData& renderData, std::uint16_t width, std::uint16_t height,
                          bool multisampled) {
    deleteOutdated(renderData, width, height, multisampled);
    renderData.renderWidth = width;
    renderData.renderHeight = height;
    renderData.multisampled = multisampled;
    if (renderData.quadVao == 0) {
        makeQuad(renderData);
    }
    if (renderData.fboId == 0) {
        makeFramebuffer(renderData);
    }
    makeTargets(renderData);
    buildMissingPrograms(renderData);
}

void AttachTarget(AESDK_OpenGL_EffectRenderData& renderData, std::uint32_t texture) {
    glBindFramebuffer(GL_FRAMEBUFFER, renderData.fboId);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    glDrawBuffer(GL_COLOR_ATTACHMENT0);
    if (framebufferStatusText() != completeText) {
        throw AESDK_OpenGL_Fault(faultFramebuffer);
    }
}

const char* framebufferStatusText() {
    return framebufferStatusText(static_cast<std::uint32_t>(glCheckFramebufferStatus(GL_FRAMEBUFFER)));
}

const char* framebufferStatusText(std::uint32_t status) {
    switch (static_cast<GLenum>(status)) {
        case GL_FRAMEBUFFER_COMPLETE:
            return completeText.data();
        case GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT:
            return "Framebuffer incomplete, incomplete attachment!";
        case GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT:
            return "Framebuffer incomplete, missing attachment!";
        case GL_FRAMEBUFFER_INCOMPLETE_DRAW_BUFFER:
            return "Framebuffer incomplete, missing draw buffer!";
        case GL_FRAMEBUFFER_INCOMPLETE_READ_BUFFER:
            return "Framebuffer incomplete, missing read buffer!";
        case GL_FRAMEBUFFER_UNSUPPORTED:
            return "Unsupported framebuffer format!";
        default:
            return "Unknown error!";
    }
}

void checkFramebuffer(PF_InData* inData, PF_OutData* outData) {
    const char* status = framebufferStatusText();
    if (status != completeText) {
        outData->out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
        inData->utils->ansi.sprintf(outData->return_msg, "%s", status);
        throw Exception(PF_Err_OUT_OF_MEMORY);
    }
}

void startPass(PF_InData* inData, PF_OutData* outData, AESDK_OpenGL_EffectRenderData& renderData,
               std::uint32_t target) {
    AttachTarget(renderData, target);
    checkFramebuffer(inData, outData);
}

void setViewport(std::int32_t width, std::int32_t height) {
    glViewport(0, 0, width, height);
}

void setTransparentClearColor() {
    glClearColor(0.0F, 0.0F, 0.0F, 0.0F);
}

void clearTarget() {
    glClear(GL_COLOR_BUFFER_BIT);
}

void releaseTargets() {
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glBindTexture(GL_TEXTURE_2D, 0);
}

}  // namespace Tessavoy::AESDK_OpenGL
