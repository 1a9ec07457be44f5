#include "Source/Editors/GradientParameter.h"

#include <gtest/gtest.h>

#include "Tests/Support/FakeHandleHost.h"

namespace Tessavoy {
namespace {

TEST(GradientParameter, NewHandleHoldsTheDefaultAndIsFreedWithItsGradient) {
    FakeHandleHost host;
    PF_Handle handle = nullptr;
    ASSERT_EQ(NewGradientHandle(&host.inData, &handle), PF_Err_NONE);
    EXPECT_EQ(CheckOutGradient(&host.inData, handle)->points, defaultGradient().points);

    PF_ArbParamsExtra extra{};
    extra.which_function = PF_Arbitrary_DISPOSE_FUNC;
    extra.u.dispose_func_params = {nullptr, handle};
    EXPECT_EQ(HandleGradientArbitrary(&host.inData, &host.outData, &extra), PF_Err_NONE);
    EXPECT_EQ(host.liveHandles(), 0u);
}

TEST(GradientParameter, WithoutMemoryThereIsNoHandle) {
    FakeHandleHost host;
    PF_Handle handle = nullptr;
    host.failCall(2);
    EXPECT_EQ(NewGradientHandle(&host.inData, &handle), 512);
    EXPECT_EQ(handle, nullptr);
}

}  // namespace
}  // namespace Tessavoy
