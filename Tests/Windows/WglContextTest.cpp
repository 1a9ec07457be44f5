#include "Host/EffectHost.h"
#include "Host/HostError.h"
#include "Host/Windows/WindowsHeader.h"
#include "Host/WineContexts.h"
#include "Tests/Module/ModuleFixture.h"
#include "Tests/Windows/SystemCalls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

// What the module asks of Windows for its contexts, call by call.

namespace TessavoyHost {
namespace {

using Tessavoy::SystemCalls;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Lt;

const std::string className = "AESDK_OpenGL_Tessavoy_Win_Class";

bool isOurs(HWND window) {
    char name[64] = {};
    GetClassNameA(window, name, sizeof name);
    return std::string(name).starts_with(className);
}

/// Loads the module with its calls noted; under Wine behind what makes its contexts work there.
class WglContext : public testing::Test {
protected:
    WglContext() : mModule(LoadLibraryA(TESSAVOY_MODULE)) {
        if (runsUnderWine()) {
            shareContextsAtCreation(mModule);
        }
        calls.emplace(mModule);
    }

    ~WglContext() override {
        host.reset();
        EXPECT_NE(FreeLibrary(mModule), FALSE);
        EXPECT_EQ(GetModuleHandleA("Tessavoy.aex"), nullptr) << "the module is still loaded";
        freeClasses();
    }

    void setUp() { host.emplace(std::filesystem::path(TESSAVOY_MODULE), HostOptions{}); }

    static FrameResult renderOn(EffectInstance& instance) {
        FrameResult result;
        std::thread([&] { result = instance.renderFrame({}); }).join();
        return result;
    }

    std::optional<SystemCalls> calls;
    std::optional<EffectHost> host;

private:
    static constexpr int mostClasses = 250;

    static BOOL CALLBACK destroyOurs(HWND window, LPARAM) {
        if (isOurs(window)) {
            DestroyWindow(window);
        }
        return TRUE;
    }

    /// The module leaves its classes to the process, and when it is loaded anew begins with their first name again.
    static void freeClasses() {
        EnumWindows(destroyOurs, 0);
        for (int number = 0; number < mostClasses; ++number) {
            UnregisterClassA((className + std::to_string(number)).c_str(), GetModuleHandleA(nullptr));
        }
    }

    HMODULE mModule;
};

std::vector<std::string> windowCalls(int number) {
    const std::string name = className + std::to_string(number);
    const std::string window = "window " + std::to_string(number);
    return {"RegisterClassExA " + name + " style 3",
            "CreateWindowExA 40100 " + name + " \"OpenGL-using FBOs in AE\" style 0 at 0,0 of 8x8: " + window,
            "GetDC " + window, "ChoosePixelFormat " + window, "SetPixelFormat " + window};
}

std::vector<std::string> joined(std::vector<std::string> first, const std::vector<std::string>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

TEST_F(WglContext, TheCommonOneIsOfTheOldKindAndFetchesTheEntryPoints) {
    setUp();
    EXPECT_EQ(
        calls->take(),
        joined(windowCalls(0), {"wglCreateContext window 0: context 0", "wglMakeCurrent window 0 context 0",
                                "wglGetProcAddress wglGetExtensionsStringARB", "wglGetExtensionsStringARB window 0",
                                "wglGetProcAddress wglCreateContextAttribsARB",
                                "wglMakeCurrent window 0 context 0",  // once more
                                "wglMakeCurrent none none"}));        // as it was before
}

// Version 3.3, without a profile or flags, and the sharing after it was made current.
TEST_F(WglContext, ARenderThreadsSharesWithItAfterItWasCurrent) {
    setUp();
    const auto instance = host->createInstance(fourSquaresScene().project);
    calls->take();
    expectGood(renderOn(*instance));
    EXPECT_EQ(calls->take(),
              joined(windowCalls(1), {"wglCreateContextAttribsARB window 1 2091=3 2092=3: context 1",
                                      "wglMakeCurrent window 1 context 1", "wglShareLists context 0 context 1",
                                      "wglMakeCurrent window 1 context 1",  // once more
                                      "wglMakeCurrent window 1 context 1",  // for the frame
                                      "wglMakeCurrent none none"}));
}

TEST_F(WglContext, AThreadKeepsItsOwnFromFrameToFrame) {
    setUp();
    const auto instance = host->createInstance(fourSquaresScene().project);
    std::thread([&] {
        expectGood(instance->renderFrame({}));
        calls->take();
        expectGood(instance->renderFrame({}));
        EXPECT_THAT(calls->take(), ElementsAre("wglMakeCurrent window 1 context 1", "wglMakeCurrent none none"));
    }).join();
}

TEST_F(WglContext, TwoThreadsHaveTwo) {
    setUp();
    const auto instance = host->createInstance(fourSquaresScene().project);
    expectGood(renderOn(*instance));
    expectGood(renderOn(*instance));
    for (const char* number : {"0", "1", "2"}) {
        EXPECT_EQ(calls->countOf(std::string("RegisterClassExA AESDK_OpenGL_Tessavoy_Win_Class") + number), 1);
    }
    EXPECT_EQ(calls->countOf("wglCreateContextAttribsARB"), 2);
}

// The window stays: only its own thread may destroy it.
TEST_F(WglContext, EndsWithItsDeviceContextAndItsClass) {
    setUp();
    calls->take();
    host->setDown();
    EXPECT_THAT(calls->take(), ElementsAre("wglMakeCurrent none none", "wglDeleteContext context 0",
                                           "ReleaseDC window 0", "UnregisterClassA AESDK_OpenGL_Tessavoy_Win_Class0"));
}

TEST_F(WglContext, ADriverWithoutCreateContextFailsTheSetUp) {
    calls->pretendExtensions("WGL_ARB_extensions_string WGL_ARB_pixel_format");
    try {
        setUp();
        FAIL() << "it was set up";
    } catch (const HostError& error) {
        EXPECT_THAT(error.what(), HasSubstr("error 4"));
    }
    EXPECT_EQ(calls->countOf("wglGetProcAddress wglCreateContextAttribsARB"), 0);
    EXPECT_EQ(calls->countOf("wglDeleteContext"), calls->countOf("wglCreateContext"));
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

// Whatever step fails: the frame is out of memory to the host, and the thread's next one tries it anew, with another
// window of another class.
TEST_F(WglContext, AThreadWhoseContextFailedMakesAnotherForItsNextFrame) {
    setUp();
    const auto instance = host->createInstance(fourSquaresScene().project);
    int number = 1;  // 0 is the common one's
    for (const char* step : {"RegisterClassExA", "CreateWindowExA", "GetDC", "ChoosePixelFormat", "SetPixelFormat",
                             "wglCreateContextAttribsARB", "wglMakeCurrent", "wglShareLists"}) {
        SCOPED_TRACE(step);
        std::thread([&] {
            calls->refuseOnce(step);
            EXPECT_EQ(instance->renderFrame({}).error, 4);
            EXPECT_EQ(calls->countOf("RegisterClassExA " + className + std::to_string(number++) + ' '), 1);
            EXPECT_EQ(wglGetCurrentContext(), nullptr);
            expectGood(instance->renderFrame({}));
            EXPECT_EQ(calls->countOf("RegisterClassExA " + className + std::to_string(number++) + ' '), 1);
            EXPECT_EQ(wglGetCurrentContext(), nullptr);
        }).join();
    }
    const int made = calls->countOf("RegisterClassExA");
    EXPECT_EQ(made, number) << "one class each, and the common one's";
}

BOOL CALLBACK countOurWindows(HWND window, LPARAM count) {
    *reinterpret_cast<int*>(count) += isOurs(window);
    return TRUE;
}

int ourWindows() {
    int count = 0;
    EnumWindows(countOurWindows, reinterpret_cast<LPARAM>(&count));
    return count;
}

/// Bytes in use in the heaps of the process, where the module's memory comes from. What drivers take beside is theirs.
std::size_t memoryInUse() {
    std::vector<HANDLE> heaps(64);
    heaps.resize(std::min<std::size_t>(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()), heaps.size()));
    std::size_t bytes = 0;
    for (const HANDLE heap : heaps) {
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heap, &entry) != FALSE) {
            bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
        }
    }
    return bytes;
}

// Each life on threads of its own, which take their windows with them. The classes can't go while a window lives, and
// so stay; a class is a name and a few numbers.
TEST_F(WglContext, AHundredLivesLeaveNoWindowsContextsOrMemory) {
    const ModuleScene scene = fourSquaresScene();
    constexpr std::ptrdiff_t livesAtOnce = 10;
    std::vector<std::ptrdiff_t> growths;
    for (int round = 0; round < 10; ++round) {
        const std::size_t before = memoryInUse();
        for (int life = 0; life < livesAtOnce; ++life) {
            std::thread([&] {
                setUp();
                {
                    const auto instance = host->createInstance(scene.project);
                    expectGood(renderOn(*instance));
                }
                const CommandResult end = host->setDown();
                EXPECT_THAT(end.broken, IsEmpty());
                host.reset();
            }).join();
            EXPECT_EQ(ourWindows(), 0);
        }
        growths.push_back(static_cast<std::ptrdiff_t>(memoryInUse() - before));
    }
    const int made = calls->countOf("wglCreateContext");  // of both kinds
    EXPECT_EQ(made, 200);
    EXPECT_EQ(calls->countOf("wglDeleteContext"), made);
    EXPECT_EQ(calls->countOf("GetDC"), 200);
    EXPECT_EQ(calls->countOf("ReleaseDC"), 200);
    EXPECT_EQ(calls->countOf("UnregisterClassA"), 200);

    // What the first lives fill stays filled. From then on, the smallest thing that a life could leave is a target of a
    // frame of 64 x 48 pixels, 16 bytes each; what is noted here of a life is less.
    constexpr std::ptrdiff_t oneTargetEach = livesAtOnce * std::ptrdiff_t{64 * 48 * 16};
    growths.erase(growths.begin());
    EXPECT_THAT(growths, Each(Lt(oneTargetEach)));
}

TEST_F(WglContext, EightThreadsRenderTheSameAtOnce) {
    setUp();
    const auto instance = host->createInstance(richScene(96, 54).project);
    const auto expected = bytesOf(renderOn(*instance).output);
    std::vector<std::thread> threads;
    std::vector<std::vector<std::byte>> pictures(8);
    for (auto& picture : pictures) {
        threads.emplace_back([&] {
            for (int frame = 0; frame < 4; ++frame) {
                picture = bytesOf(instance->renderFrame({}).output);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const auto& picture : pictures) {
        EXPECT_EQ(picture, expected);
    }
    EXPECT_EQ(calls->countOf("wglCreateContextAttribsARB"), 9);
}

}  // namespace
}  // namespace TessavoyHost
