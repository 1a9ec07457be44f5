#include "Host/Faults.h"

#include <gtest/gtest.h>

#include <new>

namespace TessavoyHost {
namespace {

TEST(HostFaults, StrikeTheNthCallOfTheNameAndNoOther) {
    Faults faults;
    faults.failNth("checkout_param", 3, 513);
    EXPECT_EQ(faults.answerOf("checkout_param"), 0);
    EXPECT_EQ(faults.answerOf("checkin_param"), 0);
    EXPECT_EQ(faults.answerOf("checkout_param"), 0);
    EXPECT_EQ(faults.struck(), 0);
    EXPECT_EQ(faults.answerOf("checkout_param"), 513);
    EXPECT_EQ(faults.struck(), 1);
    EXPECT_EQ(faults.answerOf("checkout_param"), 0);
}

TEST(HostFaults, CanCountCallsOfEveryName) {
    Faults faults;
    faults.failNth(Faults::anyCall, 2, 4);
    EXPECT_EQ(faults.answerOf("abort"), 0);
    EXPECT_EQ(faults.answerOf("iterate"), 4);
}

TEST(HostFaults, CanRunOutOfMemoryInTheNthCall) {
    Faults faults;
    faults.exhaustNth("abort", 2);
    EXPECT_EQ(faults.answerOf("abort"), 0);
    EXPECT_THROW(faults.answerOf("abort"), std::bad_alloc);
    EXPECT_EQ(faults.struck(), 1);
    EXPECT_EQ(faults.answerOf("abort"), 0);
}

TEST(HostFaults, EndWhenCleared) {
    Faults faults;
    faults.failNth("abort", 1, 517);
    faults.removeSuite("PF World Suite", 2);
    EXPECT_TRUE(faults.suiteRemoved("PF World Suite", 2));
    EXPECT_FALSE(faults.suiteRemoved("PF World Suite", 1));
    faults.clear();
    EXPECT_EQ(faults.answerOf("abort"), 0);
    EXPECT_FALSE(faults.suiteRemoved("PF World Suite", 2));
}

}  // namespace
}  // namespace TessavoyHost
