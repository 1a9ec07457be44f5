#include <sys/resource.h>

#include "Tests/Module/ModuleFixture.h"
#include "Tests/Support/ApplicationContext.h"

namespace TessavoyHost {
namespace {

using ModuleLimits = ModuleFixture;

TEST_F(ModuleLimits, AGridTooLargeForAnyMemoryIsAnError) {
    ModuleScene scene = fourSquaresScene();
    scene.key("CountX", 0, 100000, Ease::Hold).key("CountX", 0.04, 2, Ease::Hold);
    scene.key("CountY", 0, 100000, Ease::Hold).key("CountY", 0.04, 2, Ease::Hold);
    const auto instance = instanceOf(scene);
    for (int round = 0; round < 3; ++round) {
        expectOutOfMemory(instance->renderFrame({}));
        const FrameResult next = instance->renderFrame({.frame = 1});
        expectGood(next);
        expectPicture(next.output, fourSquares());
    }
}

TEST_F(ModuleLimits, AGridWithTooManyPartsIsAnError) {
    ModuleScene scene = fourSquaresScene();
    scene.set("CountX", 1000).set("CountY", 1000).set("ShapeRaysCount.Value", 10000);
    const auto instance = instanceOf(scene);
    expectOutOfMemory(instance->renderFrame({}));
}

// A picture that no render target can hold; with multisampling the target is twice as large.
TEST_F(ModuleLimits, APictureLargerThanTheGpuAllowsIsAnError) {
    const int limit = Tessavoy::Testing::ApplicationContext().largestTexture();
    ASSERT_GT(limit, 0);
    const auto pictureOf = [&](int width, int height, int multisampling) {
        ModuleScene scene = sharpScene(width, height);
        return instanceOf(scene.set("MSAA", multisampling).set("CountX", 0))->renderFrame({});
    };
    for (const FrameResult& result : {pictureOf(limit + 1, 1, 1), pictureOf(1, limit + 1, 1),
                                      pictureOf(limit / 2 + 1, 1, 2), pictureOf(1, limit / 2 + 1, 2)}) {
        expectOutOfMemory(result);
    }
    expectPicture(render(fourSquaresScene()).output, fourSquares());
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

// Ends with 0 when a grid that passes the memory of this process is an error, and the next frame is right.
void renderInLittleMemory() {
    const QuietOutput quiet;
    const rlimit limit{rlim_t{6} << 30, rlim_t{6} << 30};
    if (setrlimit(RLIMIT_AS, &limit) != 0)
        std::_Exit(2);
    EffectHost host(std::filesystem::path(TESSAVOY_MODULE), HostOptions{});
    ModuleScene scene = fourSquaresScene();
    scene.key("CountX", 0, 20000, Ease::Hold).key("CountX", 0.04, 2, Ease::Hold);
    scene.key("CountY", 0, 20000, Ease::Hold).key("CountY", 0.04, 2, Ease::Hold);
    const auto instance = host.createInstance(scene.project);
    expectOutOfMemory(instance->renderFrame({}));
    const FrameResult next = instance->renderFrame({.frame = 1});
    expectGood(next);
    expectPicture(next.output, fourSquares());
    std::_Exit(testing::Test::HasFailure() ? 1 : 0);
}

TEST(ModuleLimitsDeathTest, AGridTooLargeForThisMemoryIsAnError) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(renderInLittleMemory(), testing::ExitedWithCode(0), "");
}

#endif

}  // namespace
}  // namespace TessavoyHost
