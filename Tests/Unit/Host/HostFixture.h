#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Host/EffectHost.h"
#include "Tests/Support/FakeEffect.h"
#include "Tests/Support/FakeProject.h"

namespace TessavoyHost {

// A host of the fake effect, with its hooks put back for each test.
class HostFixture : public testing::Test {
protected:
    using Body = std::function<void(PF_InData*)>;

    HostFixture() { FakeEffect::hooks() = {}; }
    ~HostFixture() override { FakeEffect::hooks() = {}; }

    // Runs the body inside the smart render of a frame, before the usual work.
    static void duringRender(const Body& body) {
        FakeEffect::hooks().render = [body](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
            body(in);
            return FakeEffect::usualRender(in, extra);
        };
    }

    // Renders one frame of the project with the body inside; the frame must come out well.
    FrameResult renderWith(const Project& project, const Body& body, FrameRequest request = {},
                           const HostOptions& options = {}) {
        duringRender(body);
        EffectHost host(FakeEffect::entryPoints(), options);
        const auto instance = host.createInstance(project);
        FrameResult result = instance->renderFrame(request);
        EXPECT_EQ(result.error, PF_Err_NONE) << result.message;
        EXPECT_THAT(result.broken, testing::IsEmpty());
        EXPECT_THAT(host.broken(), testing::IsEmpty());
        return result;
    }

    static PF_Pixel pixelOf(const World& world, int x, int y) {
        return reinterpret_cast<const PF_Pixel*>(world.row(y))[x];
    }
};

}  // namespace TessavoyHost
