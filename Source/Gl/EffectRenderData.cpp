#include "Source/Gl/EffectRenderData.h"

#include "Source/Gl/Fault.h"
#include "Source/Gl/FunctionTables.h"

#include <glbinding/ContextInfo.h>
#include <glbinding/Meta.h>
#include <glbinding/Version.h>
#include <glbinding/gl33core/gl.h>

#include <iostream>
#include <mutex>
#include <sstream>

using namespace gl33core;

namespace Tessavoy::AESDK_OpenGL {

namespace {

/// Written in one piece and under a lock, because several threads may set their contexts up at once: a host may have
/// put a stream buffer of its own in place, and unlike the console's those are not safe to write from several threads.
void printDescription() {
    std::ostringstream text;
    text << "\nOpenGL Version:  " << glbinding::ContextInfo::version()   //
         << "\nOpenGL Vendor:   " << glbinding::ContextInfo::vendor()    //
         << "\nOpenGL Renderer: " << glbinding::ContextInfo::renderer()  //
         << "\nOpenGL Revision: " << glbinding::Meta::glRevision() << " (gl.xml)\n\n";
    static std::mutex output;
    const std::lock_guard lock(output);
    std::cout << text.str() << std::flush;
}

}  // namespace

AESDK_OpenGL_EffectCommonData::~AESDK_OpenGL_EffectCommonData() {
    endContext();
}

void AESDK_OpenGL_EffectCommonData::endContext() noexcept {
    if (mContext != nullptr) {
        giveFunctionTableBack(mContext->handle());
        mContext.reset();
    }
}

void AESDK_OpenGL_EffectCommonData::SetUpContext(const AESDK_OpenGL_EffectCommonData* common) {
    if (common != nullptr && common->mContext == nullptr) {
        throw AESDK_OpenGL_Fault(faultContext);
    }
    endContext();  // of an attempt that failed
    mContext = createPlatformContext(common != nullptr ? common->mContext.get() : nullptr);
    MakeContextCurrent();  // once more, which also finds its table of entry points
    printDescription();
    extensions = glbinding::ContextInfo::extensions();
    glGetIntegerv(GL_MAX_ARRAY_TEXTURE_LAYERS, &maxArrayTextureLayers);
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &maxTextureSize);
}

void AESDK_OpenGL_EffectCommonData::MakeContextCurrent() {
    if (!tryMakeCurrent()) {
        throw AESDK_OpenGL_Fault(faultContext);
    }
}

bool AESDK_OpenGL_EffectCommonData::tryMakeCurrent() {
    if (mContext == nullptr || !mContext->makeCurrent()) {
        return false;
    }
    useFunctionTable(mContext->handle());
    return true;
}

AESDK_OpenGL_EffectRenderData::~AESDK_OpenGL_EffectRenderData() {
    const FunctionTableUse use;
    if (tryMakeCurrent()) {
        deleteObjects();
    }
}

/// A name of zero is nothing to the GL's delete calls.
void AESDK_OpenGL_EffectRenderData::deleteObjects() {
    for (const std::uint32_t texture : {sceneTexture, resolveTexture, outputTexture}) {
        glDeleteTextures(1, &texture);
    }
    for (const auto program : programFields) {
        glDeleteProgram(this->*program);
    }
    glDeleteFramebuffers(1, &fboId);
    glDeleteRenderbuffers(1, &renderbuffer);
    if (instanceVao != 0) {
        glDeleteBuffers(1, &instanceVertexBuffer);
        glDeleteBuffers(1, &instanceIndexBuffer);
        glDeleteVertexArrays(1, &instanceVao);
    }
    if (quadVao != 0) {
        glDeleteBuffers(1, &quadVertexBuffer);
        glDeleteVertexArrays(1, &quadVao);
    }
}

}  // namespace Tessavoy::AESDK_OpenGL
