#define EGL_NO_X11

#include "Source/Gl/Fault.h"
#include "Source/Gl/PlatformContext.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <array>
#include <string_view>

namespace Tessavoy::AESDK_OpenGL {

namespace {

/// True when a space-separated list of extension names (null: an empty one) holds the name as a whole word.
bool holdsName(const char* list, std::string_view name) {
    std::string_view rest = list != nullptr ? list : "";
    while (!rest.empty()) {
        const std::size_t end = rest.find(' ');
        if (rest.substr(0, end) == name) {
            return true;
        }
        rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
    }
    return false;
}

EGLDisplay initialised(EGLDisplay display) {
    return display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr) == EGL_TRUE ? display : EGL_NO_DISPLAY;
}

EGLDisplay platformDisplay(EGLenum platform, void* nativeDisplay) {
    const auto getDisplay =
        reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(eglGetProcAddress("eglGetPlatformDisplayEXT"));
    return getDisplay != nullptr ? initialised(getDisplay(platform, nativeDisplay, nullptr)) : EGL_NO_DISPLAY;
}

EGLDisplay surfacelessDisplay(const char* clientExtensions) {
    return holdsName(clientExtensions, "EGL_MESA_platform_surfaceless")
               ? platformDisplay(EGL_PLATFORM_SURFACELESS_MESA, nullptr)
               : EGL_NO_DISPLAY;
}

EGLDisplay firstDeviceDisplay(const char* clientExtensions) {
    const auto queryDevices = reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    if (!holdsName(clientExtensions, "EGL_EXT_platform_device") || queryDevices == nullptr) {
        return EGL_NO_DISPLAY;
    }
    EGLDeviceEXT device = nullptr;
    EGLint count = 0;
    if (queryDevices(1, &device, &count) != EGL_TRUE || count < 1) {
        return EGL_NO_DISPLAY;
    }
    return platformDisplay(EGL_PLATFORM_DEVICE_EXT, device);
}

EGLDisplay openDisplay() {
    const char* clientExtensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    EGLDisplay display = surfacelessDisplay(clientExtensions);
    if (display == EGL_NO_DISPLAY) {
        display = firstDeviceDisplay(clientExtensions);
    }
    if (display == EGL_NO_DISPLAY) {
        display = initialised(eglGetDisplay(EGL_DEFAULT_DISPLAY));
    }
    if (display == EGL_NO_DISPLAY) {
        throw AESDK_OpenGL_Fault(faultContext);
    }
    return display;
}

/// The display of the whole process, opened on first use. It is never terminated: a display is shared by everyone in
/// the process who asks for the same one, the application's own drawing included.
EGLDisplay processDisplay() {
    static const EGLDisplay display = openDisplay();
    return display;
}

EGLConfig chooseConfig(EGLDisplay display) {
    constexpr std::array<EGLint, 13> wanted = {EGL_SURFACE_TYPE,
                                               EGL_PBUFFER_BIT,
                                               EGL_RENDERABLE_TYPE,
                                               EGL_OPENGL_BIT,
                                               EGL_RED_SIZE,
                                               8,
                                               EGL_GREEN_SIZE,
                                               8,
                                               EGL_BLUE_SIZE,
                                               8,
                                               EGL_ALPHA_SIZE,
                                               8,
                                               EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (eglChooseConfig(display, wanted.data(), &config, 1, &count) != EGL_TRUE || count < 1) {
        throw AESDK_OpenGL_Fault(faultContext);
    }
    return config;
}

EGLContext createContext(EGLDisplay display, EGLContext shared) {
    const char* extensions = eglQueryString(display, EGL_EXTENSIONS);
    if (!holdsName(extensions, "EGL_KHR_create_context") || !holdsName(extensions, "EGL_KHR_surfaceless_context") ||
        eglBindAPI(EGL_OPENGL_API) != EGL_TRUE) {
        throw AESDK_OpenGL_Fault(faultContext);
    }
    constexpr std::array<EGLint, 5> version = {EGL_CONTEXT_MAJOR_VERSION_KHR, 3, EGL_CONTEXT_MINOR_VERSION_KHR, 3,
                                               EGL_NONE};
    const EGLContext context = eglCreateContext(display, chooseConfig(display), shared, version.data());
    if (context == EGL_NO_CONTEXT) {
        throw AESDK_OpenGL_Fault(faultContext);
    }
    return context;
}

/// A context without any surface: drawing goes to framebuffer objects alone.
class EglContext final : public PlatformContext {
public:
    EglContext(EGLDisplay display, EGLContext shared) : mDisplay(display), mContext(createContext(display, shared)) {}

    ~EglContext() override {
        eglMakeCurrent(mDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(mDisplay, mContext);
    }

    EglContext(const EglContext&) = delete;
    EglContext& operator=(const EglContext&) = delete;

    bool makeCurrent() noexcept override {
        return eglBindAPI(EGL_OPENGL_API) == EGL_TRUE &&
               eglMakeCurrent(mDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, mContext) == EGL_TRUE;
    }

    std::intptr_t handle() const noexcept override { return reinterpret_cast<std::intptr_t>(mContext); }

    EGLContext context() const { return mContext; }

private:
    EGLDisplay mDisplay;
    EGLContext mContext;
};

}  // namespace

std::unique_ptr<PlatformContext> createPlatformContext(const PlatformContext* common) {
    const EGLContext shared = common != nullptr ? static_cast<const EglContext*>(common)->context() : EGL_NO_CONTEXT;
    auto context = std::make_unique<EglContext>(processDisplay(), shared);
    if (!context->makeCurrent()) {
        throw AESDK_OpenGL_Fault(faultContext);
    }
    return context;
}

CurrentContext currentContext() noexcept {
    return {eglQueryAPI(), eglGetCurrentDisplay(), eglGetCurrentSurface(EGL_DRAW), eglGetCurrentSurface(EGL_READ),
            eglGetCurrentContext()};
}

void restoreContext(const CurrentContext& previous) noexcept {
    if (previous.context != EGL_NO_CONTEXT) {
        eglMakeCurrent(previous.display, previous.drawSurface, previous.readSurface, previous.context);
    } else if (const EGLDisplay display = eglGetCurrentDisplay(); display != EGL_NO_DISPLAY) {
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
    if (previous.api != EGL_NONE) {
        eglBindAPI(previous.api);
    }
}

}  // namespace Tessavoy::AESDK_OpenGL
