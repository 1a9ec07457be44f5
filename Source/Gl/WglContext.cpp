#include "Source/Gl/Fault.h"
#include "Source/Gl/PlatformContext.h"

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX  // some standard libraries define it
#define NOMINMAX
#endif
#include <windows.h>

#include <atomic>
#include <cstring>
#include <string>
#include <utility>

namespace Tessavoy::AESDK_OpenGL {

namespace {

// WGL_ARB_create_context and WGL_ARB_extensions_string.
constexpr int WGL_CONTEXT_MAJOR_VERSION_ARB = 0x2091;
constexpr int WGL_CONTEXT_MINOR_VERSION_ARB = 0x2092;
using GetExtensionsString = const char*(WINAPI*)(HDC);
using CreateContextAttribs = HGLRC(WINAPI*)(HDC, HGLRC, const int*);

/// Fetched while the common context is created, and used for all others.
GetExtensionsString wglGetExtensionsStringARB = nullptr;
CreateContextAttribs wglCreateContextAttribsARB = nullptr;

std::atomic<int> ContextClassCounter = 0;

void require(bool succeeded) {
    if (!succeeded) {
        throw AESDK_OpenGL_Fault(faultContext);
    }
}

/// For what fails while a context is taken down, where nothing can be done about it: the reason is read, for those who
/// watch, and dropped.
void ignoreFailure(bool succeeded) noexcept {
    if (!succeeded) {
        GetLastError();
    }
}

template <class Function>
Function entryPoint(const char* name) {
    // Through void*: the compiler would take a direct cast between function types for a mistake.
    return reinterpret_cast<Function>(reinterpret_cast<void*>(wglGetProcAddress(name)));
}

/// A window class of the object's own. Taking it back fails as long as the window lives, and that is as it should be:
/// the class goes with the process.
class WindowClass {
public:
    WindowClass() : mName("AESDK_OpenGL_Tessavoy_Win_Class" + std::to_string(ContextClassCounter++)) {
        WNDCLASSEXA windowClass{};
        windowClass.cbSize = sizeof windowClass;
        windowClass.style = CS_HREDRAW | CS_VREDRAW;
        windowClass.lpfnWndProc = DefWindowProcA;
        windowClass.hInstance = GetModuleHandleA(nullptr);
        windowClass.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
        windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
        windowClass.lpszClassName = mName.c_str();
        require(RegisterClassExA(&windowClass) != 0);
    }
    ~WindowClass() { UnregisterClassA(mName.c_str(), GetModuleHandleA(nullptr)); }
    WindowClass(const WindowClass&) = delete;
    WindowClass& operator=(const WindowClass&) = delete;

    const char* name() const { return mName.c_str(); }

private:
    std::string mName;
};

/// The device context of a window that is never shown. The window is not destroyed here, since only the thread that
/// made it may do that; the system does so when that thread ends.
class HiddenWindow {
public:
    explicit HiddenWindow(const WindowClass& windowClass)
        : mWindow(CreateWindowExA(WS_EX_APPWINDOW | WS_EX_WINDOWEDGE, windowClass.name(), "OpenGL-using FBOs in AE", 0,
                                  0, 0, 8, 8, nullptr, nullptr, nullptr, nullptr)) {
        require(mWindow != nullptr);
        mDevice = GetDC(mWindow);
        require(mDevice != nullptr);
    }
    ~HiddenWindow() { ReleaseDC(mWindow, mDevice); }
    HiddenWindow(const HiddenWindow&) = delete;
    HiddenWindow& operator=(const HiddenWindow&) = delete;

    HDC device() const { return mDevice; }

private:
    HWND mWindow;
    HDC mDevice = nullptr;
};

void setPixelFormat(HDC device) {
    PIXELFORMATDESCRIPTOR descriptor{};
    descriptor.nSize = sizeof descriptor;
    descriptor.nVersion = 1;
    descriptor.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL;
    descriptor.iPixelType = PFD_TYPE_RGBA;
    descriptor.cColorBits = 32;
    descriptor.cDepthBits = 8;
    const int format = ChoosePixelFormat(device, &descriptor);
    require(format != 0 && SetPixelFormat(device, format, &descriptor) != FALSE);
}

/// An OpenGL context of a device, deleted at its end on whatever thread that is.
class DeviceContext {
public:
    explicit DeviceContext(HGLRC context) : mContext(context) { require(context != nullptr); }
    ~DeviceContext() {
        ignoreFailure(wglMakeCurrent(nullptr, nullptr) != FALSE);
        ignoreFailure(wglDeleteContext(mContext) != FALSE);
    }
    DeviceContext(const DeviceContext&) = delete;
    DeviceContext& operator=(const DeviceContext&) = delete;

    HGLRC get() const { return mContext; }

private:
    HGLRC mContext;
};

/// The common context is of the oldest kind, with which the entry points for others are asked for.
HGLRC create(HDC device, bool isCommon) {
    setPixelFormat(device);
    if (isCommon) {
        return wglCreateContext(device);
    }
    constexpr int version[] = {WGL_CONTEXT_MAJOR_VERSION_ARB, 3, WGL_CONTEXT_MINOR_VERSION_ARB, 3, 0};
    require(wglCreateContextAttribsARB != nullptr);
    return wglCreateContextAttribsARB(device, nullptr, version);
}

/// With the common context current.
void fetchEntryPoints(HDC device) {
    wglGetExtensionsStringARB = entryPoint<GetExtensionsString>("wglGetExtensionsStringARB");
    require(wglGetExtensionsStringARB != nullptr);
    const char* extensions = wglGetExtensionsStringARB(device);
    if (extensions != nullptr && std::strstr(extensions, "WGL_ARB_create_context") != nullptr) {
        wglCreateContextAttribsARB = entryPoint<CreateContextAttribs>("wglCreateContextAttribsARB");
    }
    require(wglCreateContextAttribsARB != nullptr);
}

class WglContext final : public PlatformContext {
public:
    explicit WglContext(const WglContext* common)
        : mWindow(mClass), mContext(create(mWindow.device(), common == nullptr)) {
        require(makeCurrent());
        if (common == nullptr) {
            fetchEntryPoints(mWindow.device());
        } else {
            require(wglShareLists(common->mContext.get(), mContext.get()) != FALSE);
        }
    }

    bool makeCurrent() noexcept override { return wglMakeCurrent(mWindow.device(), mContext.get()) != FALSE; }

    std::intptr_t handle() const noexcept override { return reinterpret_cast<std::intptr_t>(mContext.get()); }

private:
    WindowClass mClass;
    HiddenWindow mWindow;
    DeviceContext mContext;
};

}  // namespace

std::unique_ptr<PlatformContext> createPlatformContext(const PlatformContext* common) {
    return std::make_unique<WglContext>(static_cast<const WglContext*>(common));
}

CurrentContext currentContext() noexcept {
    CurrentContext current;
    current.context = wglGetCurrentContext();
    current.drawSurface = wglGetCurrentDC();
    return current;
}

void restoreContext(const CurrentContext& previous) noexcept {
    ignoreFailure(wglMakeCurrent(static_cast<HDC>(previous.drawSurface), static_cast<HGLRC>(previous.context)) !=
                  FALSE);
}

}  // namespace Tessavoy::AESDK_OpenGL
