#include <atomic>

#include "Host/CommandContext.h"
#include "Host/SmartRenderCallbacks.h"
#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

using testing::IsEmpty;

// A frame whose output world is the test's: of another size or place than the input, or of no known format.
class ModuleOutputWorld : public ModuleFixture {
protected:
    struct Rendered {
        CommandResult result;
        World output;
    };

    Rendered renderInto(const ModuleScene& scene, World output, const FrameRequest& request = {}) {
        const auto instance = instanceOf(scene);
        const CommandSetting setting{request.frame,       request.bitsPerChannel, request.downsampleX,
                                     request.downsampleY, request.cancel,         nullptr};
        FrameWorlds worlds;
        worlds.output = std::move(output);
        checkOutOwnLayer(*instance, setting, worlds);
        CommandContext context(host(), instance.get(), PF_Cmd_SMART_RENDER, setting);
        context.frame = &worlds;
        PF_SmartRenderInput input{};
        PF_SmartRenderCallbacks callbacks = smartRenderCallbacks;
        PF_SmartRenderExtra extra{&input, &callbacks};
        context.run(nullptr, nullptr, &extra);
        return {context.finish(), std::move(worlds.output)};
    }

private:
    // What the pre-render does for a request of the whole layer.
    void checkOutOwnLayer(EffectInstance& instance, const CommandSetting& setting, FrameWorlds& worlds) {
        CommandContext context(host(), &instance, PF_Cmd_SMART_PRE_RENDER, setting);
        context.frame = &worlds;
        PF_PreRenderInput input{};
        input.output_request.rect = {0, 0, instance.effectLayer().width(), instance.effectLayer().height()};
        PF_PreRenderOutput output{};
        PF_PreRenderCallbacks callbacks = preRenderCallbacks;
        PF_PreRenderExtra extra{&input, &output, &callbacks};
        EXPECT_EQ(context.run(nullptr, nullptr, &extra), PF_Err_NONE);
        EXPECT_THAT(context.finish().broken, IsEmpty());
    }
};

// Floats are copied pixel by pixel over the output, the other depths row by row: both end where either world does.
TEST_F(ModuleOutputWorld, NarrowerThanTheInputGetsTheFirstPixelsOfEachRow) {
    for (const int bits : {8, 16, 32}) {
        SCOPED_TRACE(bits);
        const Rendered frame = renderInto(fourSquaresScene(), World(30, 20, bits), {.bitsPerChannel = bits});
        EXPECT_EQ(frame.result.error, PF_Err_NONE);
        EXPECT_THAT(frame.result.broken, IsEmpty());
        expectPicture(frame.output, {fourSquares()[0]});
    }
}

TEST_F(ModuleOutputWorld, WiderThanTheInputKeepsItsOtherPixels) {
    for (const int bits : {8, 16, 32}) {
        SCOPED_TRACE(bits);
        const Rendered frame = renderInto(fourSquaresScene(), World(90, 60, bits), {.bitsPerChannel = bits});
        EXPECT_EQ(frame.result.error, PF_Err_NONE);
        EXPECT_THAT(frame.result.broken, IsEmpty());
        expectPicture(frame.output, fourSquares());
    }
}

// The grid is placed by the output's origin, and the render's size is the input's.
TEST_F(ModuleOutputWorld, PlacesTheGridByItsOrigin) {
    World output(64, 48, 8);
    output.record().origin_x = 5;
    output.record().origin_y = -3;
    const Rendered frame = renderInto(fourSquaresScene(), std::move(output));
    EXPECT_EQ(frame.result.error, PF_Err_NONE);
    std::vector<Patch> moved = fourSquares();
    for (Patch& patch : moved) {
        patch.place.x -= 5;
        patch.place.y += 3;
    }
    expectPicture(frame.output, moved);
}

// With a camera the origin moves the frustum, and the squares move by as much.
TEST_F(ModuleOutputWorld, PlacesTheFrustumByItsOrigin) {
    ModuleScene scene = fourSquaresScene();
    scene.set("UseCompCamera", 1);
    scene.project.camera = facingCamera(100);
    World output(64, 48, 8);
    output.record().origin_x = -6;
    output.record().origin_y = 2;
    const Rendered frame = renderInto(scene, std::move(output));
    EXPECT_EQ(frame.result.error, PF_Err_NONE);
    std::vector<Patch> moved = fourSquares();
    for (Patch& patch : moved) {
        patch.place.x += 6;
        patch.place.y -= 2;
    }
    expectPicture(frame.output, moved);
}

TEST_F(ModuleOutputWorld, OfNoKnownFormatIsAnError) {
    host().faults().failNth("PF_GetPixelFormat", 1, PF_Err_BAD_CALLBACK_PARAM);
    const Rendered frame = renderInto(fourSquaresScene(), World(64, 48, 8));
    EXPECT_EQ(frame.result.error, PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(frame.result.message, "");
    EXPECT_THAT(frame.result.broken, IsEmpty());
    expectPicture(frame.output, {});
}

// A frame that is cancelled is noticed when it is complete: its pixels are there.
TEST_F(ModuleOutputWorld, IsCompleteWhenTheFrameIsCancelled) {
    std::atomic<bool> cancel = true;
    const Rendered frame = renderInto(fourSquaresScene(), World(64, 48, 8), {.cancel = &cancel});
    EXPECT_EQ(frame.result.error, PF_Interrupt_CANCEL);
    EXPECT_THAT(frame.result.broken, IsEmpty());
    expectPicture(frame.output, fourSquares());
}

}  // namespace
}  // namespace TessavoyHost
