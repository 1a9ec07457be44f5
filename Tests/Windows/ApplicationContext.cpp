#include "Tests/Support/ApplicationContext.h"

#include "Host/Windows/WindowsHeader.h"

#include <gtest/gtest.h>

#include <GL/gl.h>

// On Windows an application's context is one of a window of its own.

namespace Tessavoy::Testing {

namespace {

HDC deviceOf(void* surface) {
    return static_cast<HDC>(surface);
}

}  // namespace

ApplicationContext::ApplicationContext() {
    const HWND window =
        CreateWindowExA(0, "STATIC", "application", 0, 0, 0, 16, 16, nullptr, nullptr, nullptr, nullptr);
    const HDC device = GetDC(window);
    PIXELFORMATDESCRIPTOR wanted{};
    wanted.nSize = sizeof wanted;
    wanted.nVersion = 1;
    wanted.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL;
    wanted.cColorBits = 32;
    SetPixelFormat(device, ChoosePixelFormat(device, &wanted), &wanted);
    mDisplay = window;
    mSurfaces = {device, device};
    mContext = wglCreateContext(device);
    wglMakeCurrent(device, static_cast<HGLRC>(mContext));
}

ApplicationContext::~ApplicationContext() {
    wglMakeCurrent(nullptr, nullptr);
    wglDeleteContext(static_cast<HGLRC>(mContext));
    ReleaseDC(static_cast<HWND>(mDisplay), deviceOf(mSurfaces[0]));
    DestroyWindow(static_cast<HWND>(mDisplay));
}

void ApplicationContext::expectCurrent(const char* when) const {
    EXPECT_EQ(wglGetCurrentContext(), mContext) << when;
    EXPECT_EQ(wglGetCurrentDC(), mSurfaces[0]) << when;
}

int ApplicationContext::largestTexture() const {
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    return largest;
}

bool anyContextIsCurrent() {
    return wglGetCurrentContext() != nullptr;
}

}  // namespace Tessavoy::Testing
