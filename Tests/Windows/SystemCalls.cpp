#include "Tests/Windows/SystemCalls.h"

#include "Host/Windows/ImportTable.h"
#include "Host/Windows/WindowsHeader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <sstream>
#include <utility>

namespace Tessavoy {

namespace {

SystemCalls* calls = nullptr;

template <class... Parts>
std::string line(const Parts&... parts) {
    std::ostringstream text;
    (text << ... << parts);
    return text.str();
}

/// The place of a thing among those that came before, where it is put if it is new.
std::string nameOf(const char* kind, std::vector<void*>& known, void* thing) {
    if (thing == nullptr) {
        return "none";
    }
    auto found = std::find(known.begin(), known.end(), thing);
    if (found == known.end()) {
        known.push_back(thing);
        found = std::prev(known.end());
    }
    return line(kind, " ", found - known.begin());
}

/// A window's own device context tells its window.
HWND windowOf(HDC device) {
    return device == nullptr ? nullptr : WindowFromDC(device);
}

}  // namespace

/// The functions that stand in the module's table of imports. Each notes its call and passes it on to what stood there.
struct Recorder {
    static std::string window(HWND window) {
        const std::lock_guard lock(calls->mMutex);
        return nameOf("window", calls->mWindows, window);
    }
    static std::string context(HGLRC context) {
        const std::lock_guard lock(calls->mMutex);
        return nameOf("context", calls->mContexts, context);
    }

    static inline decltype(&::RegisterClassExA) registerClassBefore = nullptr;
    static ATOM WINAPI registerClass(const WNDCLASSEXA* given) {
        WNDCLASSEXA rest = *given;
        rest.cbSize = rest.style = 0;
        rest.lpfnWndProc = nullptr;
        rest.hInstance = nullptr;
        rest.hCursor = nullptr;
        rest.hbrBackground = nullptr;
        rest.lpszClassName = nullptr;
        const WNDCLASSEXA zeros{};
        EXPECT_EQ(given->cbSize, sizeof *given);
        EXPECT_EQ(given->lpfnWndProc, &::DefWindowProcA);
        EXPECT_EQ(given->hInstance, GetModuleHandleA(nullptr)) << "the host's module, not the effect's";
        EXPECT_EQ(given->hCursor, LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW)));
        EXPECT_EQ(given->hbrBackground, GetStockObject(BLACK_BRUSH));
        EXPECT_EQ(std::memcmp(&rest, &zeros, sizeof zeros), 0) << "all other fields are zero";
        calls->note(line("RegisterClassExA ", given->lpszClassName, " style ", given->style));
        return calls->refuses("RegisterClassExA") ? ATOM{0} : registerClassBefore(given);
    }

    static inline decltype(&::CreateWindowExA) createWindowBefore = nullptr;
    static HWND WINAPI createWindow(DWORD extended, LPCSTR name, LPCSTR title, DWORD style, int x, int y, int width,
                                    int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter) {
        EXPECT_TRUE(parent == nullptr && menu == nullptr && instance == nullptr && parameter == nullptr);
        const HWND made = calls->refuses("CreateWindowExA")
                              ? nullptr
                              : createWindowBefore(extended, name, title, style, x, y, width, height, parent, menu,
                                                   instance, parameter);
        calls->note(line("CreateWindowExA ", std::hex, extended, std::dec, " ", name, " \"", title, "\" style ", style,
                         " at ", x, ",", y, " of ", width, "x", height, ": ", window(made)));
        return made;
    }

    static inline decltype(&::GetDC) getDcBefore = nullptr;
    static HDC WINAPI getDc(HWND of) {
        calls->note("GetDC " + window(of));
        return calls->refuses("GetDC") ? nullptr : getDcBefore(of);
    }

    static inline decltype(&::ReleaseDC) releaseDcBefore = nullptr;
    static int WINAPI releaseDc(HWND of, HDC device) {
        calls->note("ReleaseDC " + window(of));
        return releaseDcBefore(of, device);
    }

    static inline decltype(&::ChoosePixelFormat) choosePixelFormatBefore = nullptr;
    static int WINAPI choosePixelFormat(HDC device, const PIXELFORMATDESCRIPTOR* wanted) {
        PIXELFORMATDESCRIPTOR told{};
        told.nSize = 40;
        told.nVersion = 1;
        told.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL;
        told.iPixelType = PFD_TYPE_RGBA;
        told.cColorBits = 32;
        told.cDepthBits = 8;
        EXPECT_EQ(std::memcmp(wanted, &told, sizeof told), 0);
        calls->note("ChoosePixelFormat " + window(windowOf(device)));
        return calls->refuses("ChoosePixelFormat") ? 0 : choosePixelFormatBefore(device, wanted);
    }

    static inline decltype(&::SetPixelFormat) setPixelFormatBefore = nullptr;
    static BOOL WINAPI setPixelFormat(HDC device, int format, const PIXELFORMATDESCRIPTOR* wanted) {
        calls->note("SetPixelFormat " + window(windowOf(device)));
        return calls->refuses("SetPixelFormat") ? FALSE : setPixelFormatBefore(device, format, wanted);
    }

    static inline decltype(&::wglCreateContext) createContextBefore = nullptr;
    static HGLRC WINAPI createContext(HDC device) {
        const HGLRC made = createContextBefore(device);
        calls->note("wglCreateContext " + window(windowOf(device)) + ": " + context(made));
        return made;
    }

    static inline decltype(&::wglDeleteContext) deleteContextBefore = nullptr;
    static BOOL WINAPI deleteContext(HGLRC dropped) {
        calls->note("wglDeleteContext " + context(dropped));
        return deleteContextBefore(dropped);
    }

    static inline decltype(&::wglMakeCurrent) makeCurrentBefore = nullptr;
    static BOOL WINAPI makeCurrent(HDC device, HGLRC current) {
        const BOOL made = calls->refuses("wglMakeCurrent") ? FALSE : makeCurrentBefore(device, current);
        calls->note("wglMakeCurrent " + window(windowOf(device)) + " " + context(current) +
                    (made || current == nullptr ? "" : " refused"));
        return made;
    }

    static inline decltype(&::wglShareLists) shareListsBefore = nullptr;
    static BOOL WINAPI shareLists(HGLRC source, HGLRC target) {
        calls->note("wglShareLists " + context(source) + " " + context(target));
        return calls->refuses("wglShareLists") ? FALSE : shareListsBefore(source, target);
    }

    using CreateContextAttribs = HGLRC(WINAPI*)(HDC, HGLRC, const int*);
    static inline CreateContextAttribs createAttribsBefore = nullptr;
    static HGLRC WINAPI createAttribs(HDC device, HGLRC share, const int* attributes) {
        std::string list;
        for (const int* attribute = attributes; *attribute != 0; attribute += 2) {
            list += line(" ", std::hex, attribute[0], std::dec, "=", attribute[1]);
        }
        EXPECT_EQ(share, nullptr) << "sharing is asked for later";
        const HGLRC made =
            calls->refuses("wglCreateContextAttribsARB") ? nullptr : createAttribsBefore(device, share, attributes);
        calls->note("wglCreateContextAttribsARB " + window(windowOf(device)) + list + ": " + context(made));
        return made;
    }

    using GetExtensions = const char*(WINAPI*)(HDC);
    static inline GetExtensions getExtensionsBefore = nullptr;
    static const char* WINAPI getExtensions(HDC device) {
        calls->note("wglGetExtensionsStringARB " + window(windowOf(device)));
        return calls->mExtensions.empty() ? getExtensionsBefore(device) : calls->mExtensions.c_str();
    }

    static inline decltype(&::wglGetProcAddress) getProcAddressBefore = nullptr;
    static PROC WINAPI getProcAddress(LPCSTR name) {
        const PROC found = getProcAddressBefore(name);
        if (std::strcmp(name, "wglGetExtensionsStringARB") == 0) {
            calls->note(line("wglGetProcAddress ", name));
            getExtensionsBefore = reinterpret_cast<GetExtensions>(reinterpret_cast<void*>(found));
            return reinterpret_cast<PROC>(reinterpret_cast<void*>(getExtensions));
        }
        if (std::strcmp(name, "wglCreateContextAttribsARB") == 0) {
            calls->note(line("wglGetProcAddress ", name));
            createAttribsBefore = reinterpret_cast<CreateContextAttribs>(reinterpret_cast<void*>(found));
            return reinterpret_cast<PROC>(reinterpret_cast<void*>(createAttribs));
        }
        return found;  // the functions of OpenGL itself
    }

    static inline decltype(&::UnregisterClassA) unregisterClassBefore = nullptr;
    static BOOL WINAPI unregisterClass(LPCSTR name, HINSTANCE instance) {
        calls->note(line("UnregisterClassA ", name));
        return unregisterClassBefore(name, instance);
    }
};

namespace {

template <class Function>
void record(void* module, const char* library, const char* name, Function& before, Function function) {
    before = reinterpret_cast<Function>(
        TessavoyHost::replaceImport(module, library, name, reinterpret_cast<void*>(function)));
    EXPECT_NE(before, nullptr) << name << " is not imported";
}

}  // namespace

SystemCalls::SystemCalls(void* module) {
    calls = this;
    using R = Recorder;
    record(module, "user32.dll", "RegisterClassExA", R::registerClassBefore, &R::registerClass);
    record(module, "user32.dll", "UnregisterClassA", R::unregisterClassBefore, &R::unregisterClass);
    record(module, "user32.dll", "CreateWindowExA", R::createWindowBefore, &R::createWindow);
    record(module, "user32.dll", "GetDC", R::getDcBefore, &R::getDc);
    record(module, "user32.dll", "ReleaseDC", R::releaseDcBefore, &R::releaseDc);
    record(module, "gdi32.dll", "ChoosePixelFormat", R::choosePixelFormatBefore, &R::choosePixelFormat);
    record(module, "gdi32.dll", "SetPixelFormat", R::setPixelFormatBefore, &R::setPixelFormat);
    record(module, "opengl32.dll", "wglCreateContext", R::createContextBefore, &R::createContext);
    record(module, "opengl32.dll", "wglDeleteContext", R::deleteContextBefore, &R::deleteContext);
    record(module, "opengl32.dll", "wglMakeCurrent", R::makeCurrentBefore, &R::makeCurrent);
    record(module, "opengl32.dll", "wglShareLists", R::shareListsBefore, &R::shareLists);
    record(module, "opengl32.dll", "wglGetProcAddress", R::getProcAddressBefore, &R::getProcAddress);
}

SystemCalls::~SystemCalls() {
    calls = nullptr;
}

std::vector<std::string> SystemCalls::take() {
    const std::lock_guard lock(mMutex);
    return std::exchange(mNew, {});
}

int SystemCalls::countOf(const std::string& start) const {
    const std::lock_guard lock(mMutex);
    return static_cast<int>(
        std::count_if(mAll.begin(), mAll.end(), [&](const std::string& one) { return one.starts_with(start); }));
}

void SystemCalls::pretendExtensions(const std::string& extensions) {
    mExtensions = extensions;
}

void SystemCalls::refuseOnce(const std::string& function) {
    const std::lock_guard lock(mMutex);
    mRefused = function;
}

bool SystemCalls::refuses(const std::string& function) {
    const std::lock_guard lock(mMutex);
    const bool refused = mRefused == function;
    if (refused) {
        mRefused.clear();
    }
    return refused;
}

void SystemCalls::note(const std::string& text) {
    const std::lock_guard lock(mMutex);
    mNew.push_back(text);
    mAll.push_back(text);
}

}  // namespace Tessavoy
