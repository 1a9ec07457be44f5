#include "Host/TimeBase.h"

#include <gtest/gtest.h>

namespace TessavoyHost {
namespace {

TEST(HostTimeBase, CountsLayerTimeFromTheLayersStart) {
    const TimeBase base({100, 100, {30000, 1001}, 10}, 1.001);
    EXPECT_EQ(base.scale, 30000u);
    EXPECT_EQ(base.step, 1001);
    EXPECT_EQ(base.start, 30030);
    EXPECT_EQ(base.layerTimeOf(0), -30030);
    EXPECT_EQ(base.layerTimeOf(31), 1001);
    EXPECT_DOUBLE_EQ(base.compositionSeconds(0, 30000), 1.001);
    EXPECT_DOUBLE_EQ(base.compositionSeconds(1, 2), 1.501);
}

TEST(HostTimeBase, KeepsTheScaleWhereATimeIsExact) {
    EXPECT_EQ(toTime(1.92, 25).value, 48);
    EXPECT_EQ(toTime(1.92, 25).scale, 25u);
    EXPECT_EQ(toTime(-0.04, 25).value, -1);
}

// 10 / 24 is no whole number of 25ths of a second.
TEST(HostTimeBase, FindsTheFractionBehindOtherTimes) {
    const A_Time time = toTime(10.0 / 24, 25);
    EXPECT_EQ(time.value, 5);
    EXPECT_EQ(time.scale, 12u);
    EXPECT_EQ(seconds(time), 10.0 / 24);
    EXPECT_EQ(toTime(-1001.0 / 30000, 25).value, -1001);
    EXPECT_EQ(toTime(-1001.0 / 30000, 25).scale, 30000u);
}

TEST(HostProject, CountsFramesThatBeginBeforeTheEnd) {
    EXPECT_EQ((Composition{1, 1, {25, 1}, 4.0}).frameCount(), 100);
    EXPECT_EQ((Composition{1, 1, {25, 1}, 4.01}).frameCount(), 101);
    EXPECT_EQ((Composition{1, 1, {30000, 1001}, 1001 / 30000.0 * 90}).frameCount(), 90);
    EXPECT_EQ((Composition{1, 1, {10, 1}, 0.3}).frameCount(), 3);
}

}  // namespace
}  // namespace TessavoyHost
