#include <cstdio>
#include <cstdlib>
#include <thread>

#include "Host/HostError.h"
#include "Tests/Module/ModuleFixture.h"
#include "Tests/Support/ApplicationContext.h"

namespace TessavoyHost {
namespace {

using Tessavoy::Testing::anyContextIsCurrent;
using Tessavoy::Testing::ApplicationContext;
using testing::ExitedWithCode;

using ModuleContext = ModuleFixture;

TEST_F(ModuleContext, OfTheApplicationStaysCurrentThroughoutTheModulesLife) {
    const ApplicationContext application;
    ASSERT_TRUE(application.isThere());
    host();
    application.expectCurrent("after the set-up");
    {
        const auto instance = instanceOf(fourSquaresScene());
        for (int frame = 0; frame < 2; ++frame) {
            const FrameResult result = instance->renderFrame({});
            expectPicture(result.output, fourSquares());
            application.expectCurrent("after a frame");
        }
    }
    closeHost();
    application.expectCurrent("after the set-down");
}

TEST_F(ModuleContext, OfTheApplicationStaysCurrentWhenAFrameFails) {
    const ApplicationContext application;
    ASSERT_TRUE(application.isThere());
    const auto instance = instanceOf(fourSquaresScene());
    for (const char* call : {"checkout_param", "checkout_output", "PF_GetPixelFormat", "host_new_handle", "abort"}) {
        host().faults().failNth(call, 1, PF_Err_INVALID_CALLBACK);
        EXPECT_NE(instance->renderFrame({}).error, PF_Err_NONE) << call;
        application.expectCurrent(call);
        host().faults().clear();
    }
    ModuleScene tooMany = fourSquaresScene();
    tooMany.set("CountX", 100000).set("CountY", 100000);
    EXPECT_NE(instanceOf(tooMany)->renderFrame({}).error, PF_Err_NONE);
    application.expectCurrent("after a grid that is too large");
}

TEST_F(ModuleContext, IsNoneAfterAFrameWhereThereWasNone) {
    const auto instance = instanceOf(fourSquaresScene());
    EXPECT_FALSE(anyContextIsCurrent());
    instance->renderFrame({});
    EXPECT_FALSE(anyContextIsCurrent());
    std::thread([&] {
        instance->renderFrame({});
        EXPECT_FALSE(anyContextIsCurrent());
    }).join();
}

// A set-down on this thread destroys contexts that other, ended threads made, and a new set-up makes them anew.
TEST_F(ModuleContext, IsMadeAnewAfterASetDown) {
    for (int life = 0; life < 3; ++life) {
        const auto instance = instanceOf(fourSquaresScene());
        expectPicture(instance->renderFrame({}).output, fourSquares());
        std::thread([&] { expectPicture(instance->renderFrame({}).output, fourSquares()); }).join();
    }
    closeHost();
    expectPicture(render(fourSquaresScene()).output, fourSquares());
}

#ifndef _WIN32  // where the driver can't be hidden so

// Ends with 0 when the set-up fails as it must where there is no OpenGL.
void setUpWithoutOpenGl() {
    for (const char* name : {"__EGL_VENDOR_LIBRARY_FILENAMES", "__EGL_VENDOR_LIBRARY_DIRS", "LIBGL_DRIVERS_PATH"})
        setenv(name, "/nowhere", 1);
    try {
        const EffectHost host(std::filesystem::path(TESSAVOY_MODULE), HostOptions{});
    } catch (const HostError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        std::_Exit(error.status() == ExitStatus::Module ? 0 : 2);
    }
    std::_Exit(1);
}

// The environment counts when the process first uses OpenGL, so a process of its own is asked.
TEST(ModuleContextDeathTest, ThatCannotBeMadeFailsTheSetUp) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(setUpWithoutOpenGl(), ExitedWithCode(0), "setting the module up failed with error 4");
}

#endif

}  // namespace
}  // namespace TessavoyHost
