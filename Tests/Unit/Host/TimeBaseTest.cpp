#include "Host/TimeBase.h"

#include <gtest/gtest.h>

#include <limits>

#include "Host/HostError.h"

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

// The time of every frame is the nearest double to it, wherever the layer begins, as that of a key that is typed for
// it.
TEST(HostTimeBase, RoundsTheTimeOfAFrameOnce) {
    for (const double start : {0.0, 0.3, 0.1, 0.2, -0.3}) {
        for (const int rate : {10, 25, 60}) {
            const TimeBase base({100, 100, {rate, 1}, 10}, start);
            for (int frame = 0; frame < 200; ++frame)
                EXPECT_EQ(base.compositionSeconds(base.layerTimeOf(frame), base.scale),
                          static_cast<double>(frame) / rate)
                    << start << ' ' << rate << ' ' << frame;
        }
    }
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

// 100000 seconds are 3 * 10^9 units of 1 / 30000 second, beyond 2^31 - 1.
TEST(HostTimeBase, TakesACoarserScaleForTimesThatDoNotFit) {
    EXPECT_EQ(toTime(100000, 30000).value, 100000);
    EXPECT_EQ(toTime(100000, 30000).scale, 1u);
    EXPECT_EQ(toTime(-100000.5, 30000).value, -200001);
    EXPECT_EQ(toTime(-100000.5, 30000).scale, 2u);
    EXPECT_EQ(toTime(2147483647, 1).value, 2147483647);
}

TEST(HostTimeBase, RefusesTimesBeyondTheClock) {
    EXPECT_THROW(toTime(2147483648.0, 1), HostError);
    EXPECT_THROW(toTime(-1e300, 25), HostError);
    EXPECT_THROW(toTime(std::numeric_limits<double>::quiet_NaN(), 25), HostError);
    EXPECT_THROW(TimeBase({100, 100, {30000, 1001}, 10}, 100000), HostError);
    EXPECT_THROW(TimeBase({100, 100, {30000, 1001}, 10}, -100000), HostError);
    // 71582.788 * 30000 is 2147483640.
    EXPECT_EQ(TimeBase({100, 100, {30000, 1001}, 10}, -71582.788).start, -2147483640);
}

// The convergents of pi are 3, 22/7, 333/106, 355/113, 103993/33102 and 104348/33215; the last is the first within
// 10^-9.
TEST(HostRational, FindsTheNearestFractionWithinTheLimit) {
    constexpr double pi = 3.14159265358979323846;
    EXPECT_EQ(nearestFraction(pi, 1), (Rational{3, 1}));
    EXPECT_EQ(nearestFraction(pi, 112), (Rational{333, 106}));
    EXPECT_EQ(nearestFraction(pi, 1000), (Rational{355, 113}));
    EXPECT_EQ(nearestFraction(pi, 2147483647), (Rational{103993, 33102}));
}

TEST(HostRational, KeepsWholeNumbers) {
    for (const std::int32_t whole : {0, 1, 7, 2147483647})
        EXPECT_EQ(nearestFraction(whole, 1000000), (Rational{whole, 1}));
}

TEST(HostProject, CountsFramesThatBeginBeforeTheEnd) {
    EXPECT_EQ((Composition{1, 1, {25, 1}, 4.0}).frameCount(), 100);
    EXPECT_EQ((Composition{1, 1, {25, 1}, 4.01}).frameCount(), 101);
    EXPECT_EQ((Composition{1, 1, {30000, 1001}, 1001 / 30000.0 * 90}).frameCount(), 90);
    EXPECT_EQ((Composition{1, 1, {10, 1}, 0.3}).frameCount(), 3);
}

}  // namespace
}  // namespace TessavoyHost
