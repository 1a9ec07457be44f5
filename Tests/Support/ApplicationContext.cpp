#define EGL_NO_X11

#include "Tests/Support/ApplicationContext.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <gtest/gtest.h>

namespace Tessavoy::Testing {

namespace {

EGLDisplay surfacelessDisplay() {
    const auto display =
        reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(eglGetProcAddress("eglGetPlatformDisplayEXT"));
    return display == nullptr ? EGL_NO_DISPLAY : display(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
}

EGLConfig configOf(EGLDisplay display) {
    constexpr EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_ES2_BIT, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    eglChooseConfig(display, wanted, &config, 1, &count);
    return config;
}

}  // namespace

ApplicationContext::ApplicationContext() : mDisplay(surfacelessDisplay()) {
    if (!eglInitialize(mDisplay, nullptr, nullptr) || !eglBindAPI(EGL_OPENGL_ES_API)) {
        return;
    }
    const EGLConfig config = configOf(mDisplay);
    constexpr EGLint size[] = {EGL_WIDTH, 8, EGL_HEIGHT, 8, EGL_NONE};
    for (EGLSurface& surface : mSurfaces) {
        surface = eglCreatePbufferSurface(mDisplay, config, size);
    }
    constexpr EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
    mContext = eglCreateContext(mDisplay, config, EGL_NO_CONTEXT, version);
    EXPECT_TRUE(eglMakeCurrent(mDisplay, mSurfaces[0], mSurfaces[1], mContext));
}

ApplicationContext::~ApplicationContext() {
    if (!isThere()) {
        return;
    }
    eglMakeCurrent(mDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(mDisplay, mContext);
    for (EGLSurface surface : mSurfaces) {
        eglDestroySurface(mDisplay, surface);
    }
}

void ApplicationContext::expectCurrent(const char* when) const {
    EXPECT_TRUE(isThere()) << when;
    EXPECT_EQ(eglGetCurrentContext(), mContext) << when;
    EXPECT_EQ(eglGetCurrentSurface(EGL_DRAW), mSurfaces[0]) << when;
    EXPECT_EQ(eglGetCurrentSurface(EGL_READ), mSurfaces[1]) << when;
    EXPECT_EQ(eglGetCurrentDisplay(), mDisplay) << when;
    EXPECT_EQ(eglQueryAPI(), static_cast<EGLenum>(EGL_OPENGL_ES_API)) << when;
}

int ApplicationContext::largestTexture() const {
    constexpr unsigned maxTextureSize = 0x0D33;
    int size = 0;
    if (const auto getInteger = reinterpret_cast<void (*)(unsigned, int*)>(eglGetProcAddress("glGetIntegerv"))) {
        getInteger(maxTextureSize, &size);
    }
    return size;
}

bool anyContextIsCurrent() {
    return eglGetCurrentContext() != EGL_NO_CONTEXT;
}

}  // namespace Tessavoy::Testing
