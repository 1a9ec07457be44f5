#include "Source/Editors/ZBoundsDialog.h"

#include "Source/HostAccess/Exception.h"
#include "Tests/Support/DialogTexts.h"
#include "Tests/Unit/Editors/DialogHost.h"

#include <gtest/gtest.h>

#include <limits>

namespace Tessavoy {
namespace {

using TessavoyHost::boundsDialog;

TEST(ZBoundsDialog, ShowsTheMaximumBeforeTheMinimum) {
    DialogHost host;
    EXPECT_EQ(ShowZBoundsDialog(&host.inData(), -12.5F, 1000.25F), PF_Err_NONE);
    EXPECT_EQ(host.scripts, std::vector<std::string>{boundsDialog("1000.25", "-12.5")});
    EXPECT_EQ(host.handleSizes, std::vector<std::size_t>{428});
}

TEST(ZBoundsDialog, ShowsZeros) {
    DialogHost host;
    EXPECT_EQ(ShowZBoundsDialog(&host.inData(), 0, 0), PF_Err_NONE);
    EXPECT_EQ(host.scripts.at(0), boundsDialog("0", "0"));
}

// The longest numbers that there are fit into the block; the host checks it.
TEST(ZBoundsDialog, HasRoomForEveryNumber) {
    using Limits = std::numeric_limits<float>;
    DialogHost host;
    for (const float number : {-Limits::max(), -Limits::min(), -Limits::denorm_min(), -1.23456789e-30F,
                               -Limits::infinity(), -Limits::quiet_NaN(), -123456.7F, -0.000123456F}) {
        EXPECT_EQ(ShowZBoundsDialog(&host.inData(), number, number), PF_Err_NONE);
    }
    EXPECT_EQ(host.scripts.at(0), boundsDialog("-3.40282e+38", "-3.40282e+38"));
}

TEST(ZBoundsDialog, NeedsNoAnswer) {
    DialogHost host;
    host.answer.reset();
    EXPECT_EQ(ShowZBoundsDialog(&host.inData(), 1, 2), PF_Err_NONE);
    host.answer = "2";
    EXPECT_EQ(ShowZBoundsDialog(&host.inData(), 1, 2), PF_Err_NONE);
    host.answer = "";
    EXPECT_EQ(ShowZBoundsDialog(&host.inData(), 1, 2), PF_Err_NONE);
}

TEST(ZBoundsDialog, ReturnsTheHostsErrorAsItStands) {
    DialogHost host;
    host.scriptError = PF_Err_INVALID_CALLBACK;
    EXPECT_EQ(ShowZBoundsDialog(&host.inData(), 1, 2), PF_Err_INVALID_CALLBACK);
    host.scriptError = PF_Err_NONE;
    host.freeError = PF_Err_INVALID_INDEX;
    EXPECT_EQ(ShowZBoundsDialog(&host.inData(), 1, 2), PF_Err_INVALID_INDEX);
}

// Calls that can fail: four suites, the handle, its lock. Without a handle it is 512, without its lock 4.
TEST(ZBoundsDialog, EndsWithoutASuiteOrMemory) {
    std::vector<PF_Err> errors;
    for (int call = 1;; ++call) {
        DialogHost host;
        host.handles.failCall(call);
        try {
            errors.push_back(ShowZBoundsDialog(&host.inData(), 1, 2));
        } catch (PF_Err error) {
            errors.push_back(error);
        }
        EXPECT_EQ(host.scripts.size(), host.handles.failed() ? 0u : 1u) << call;
        if (!host.handles.failed()) {
            break;
        }
    }
    // The memory suite, the handle suite, the handle, the lock, the text suite, the utility suite.
    EXPECT_EQ(errors, (std::vector<PF_Err>{516, 516, 512, 4, 516, 516, 0}));
}

TEST(ZBoundsDialog, NeedsThePluginId) {
    DialogHost host;
    host.inData().global_data = nullptr;
    try {
        ShowZBoundsDialog(&host.inData(), 1, 2);
        FAIL() << "nothing was thrown";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.code(), 512);
        EXPECT_STREQ(exception.what(), "Failed to get global data while constructing an AEGP effect");
    }
    EXPECT_TRUE(host.scripts.empty());
}

}  // namespace
}  // namespace Tessavoy
