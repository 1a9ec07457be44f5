#include "Source/Editors/RampParameter.h"

#include <gtest/gtest.h>

#include "Tests/Support/FakeHandleHost.h"

namespace Tessavoy {
namespace {

PF_Err dispose(FakeHandleHost& host, PF_Handle handle) {
    PF_ArbParamsExtra extra{};
    extra.which_function = PF_Arbitrary_DISPOSE_FUNC;
    extra.u.dispose_func_params = {nullptr, handle};
    return HandleRampArbitrary(&host.inData, &host.outData, &extra);
}

TEST(RampParameter, NewHandlesHoldTheDefaultOfTheirMode) {
    for (const A_long mode : {0, 1}) {
        FakeHandleHost host;
        PF_Handle handle = nullptr;
        ASSERT_EQ(NewRampHandle(&host.inData, mode, &handle), PF_Err_NONE);
        EXPECT_EQ(CheckOutRamp(&host.inData, handle)->mode, mode);
        EXPECT_EQ(CheckOutRamp(&host.inData, handle)->interpolation, mode);
        EXPECT_EQ(dispose(host, handle), PF_Err_NONE);
        EXPECT_EQ(host.liveHandles(), 0u);
    }
}

TEST(RampParameter, RegistrationCanSetTheInterpolationOfANewHandle) {
    FakeHandleHost host;
    PF_Handle handle = nullptr;
    ASSERT_EQ(NewRampHandle(&host.inData, RampModeAll, &handle), PF_Err_NONE);
    CheckOutRamp(&host.inData, handle)->interpolation = RampInterpolationBezier;
    EXPECT_EQ(CheckOutRamp(&host.inData, handle)->interpolation, 3);
    EXPECT_EQ(EvaluateRamp(*CheckOutRamp(&host.inData, handle), 0.5f), 1.0f);
    EXPECT_EQ(dispose(host, handle), PF_Err_NONE);
}

}  // namespace
}  // namespace Tessavoy
