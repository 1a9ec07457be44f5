#include "Source/Container.h"

#include "Tests/Support/FakeHandleHost.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace Tessavoy {
namespace {

struct Record {
    int number;
    float value;
};

TEST(Container, HoldsItsRecordsInOneLockedHandleThatIsGivenBack) {
    FakeHandleHost host;
    {
        Container<Record> records(&host.inData, 5);
        EXPECT_EQ(records.count(), 5);
        EXPECT_EQ(host.liveHandles(), 1U);
        EXPECT_EQ(host.liveLocks(), 1);
        for (A_long i = 0; i < 5; ++i) {
            records[i] = {i, 0.5F * static_cast<float>(i)};
        }
        EXPECT_EQ(records.data()[4].number, 4);
        EXPECT_EQ(&records[3], records.data() + 3);
    }
    EXPECT_EQ(host.liveHandles(), 0U);
    EXPECT_EQ(host.liveLocks(), 0);
    EXPECT_EQ(host.liveSuites(), 0);
}

TEST(Container, ACountOfZeroAllocatesNothingAndHasANullAddress) {
    FakeHandleHost host;
    const Container<Record> records(&host.inData, 0);
    EXPECT_EQ(records.data(), nullptr);
    EXPECT_EQ(host.liveHandles(), 0U);
    EXPECT_EQ(host.liveSuites(), 0);
}

TEST(Container, ARefusedHandleThrows512AsTheHostsErrorEnumeration) {
    FakeHandleHost host;
    host.failCall(2);  // the suite comes first
    try {
        Container<Record> records(&host.inData, 5);
        FAIL();
    } catch (PF_ErrorValue error) {
        EXPECT_EQ(error, PF_Err_INTERNAL_STRUCT_DAMAGED);
    }
    EXPECT_EQ(host.liveSuites(), 0);
}

TEST(Container, ARefusedLockThrows4AndGivesTheHandleBack) {
    FakeHandleHost host;
    host.failCall(3);
    try {
        Container<Record> records(&host.inData, 5);
        FAIL();
    } catch (PF_ErrorValue error) {
        EXPECT_EQ(error, PF_Err_OUT_OF_MEMORY);
    }
    EXPECT_EQ(host.liveHandles(), 0U);
    EXPECT_EQ(host.liveLocks(), 0);
}

TEST(Container, ACountThatNoIndexReachesAsksTheHostForNothing) {
    FakeHandleHost host;
    for (const std::int64_t count : {std::int64_t{-1}, std::int64_t{INT32_MAX} + 1, std::int64_t{1} << 40}) {
        EXPECT_THROW(Container<Record>(&host.inData, count), PF_ErrorValue) << count;
    }
    EXPECT_EQ(host.liveSuites(), 0);
}

TEST(ContainerDeathTest, AnIndexOutsideStopsTheProcess) {
    FakeHandleHost host;
    Container<Record> records(&host.inData, 5);
    EXPECT_DEATH(records[-1], "ind >= 0, file Source/Container");
    EXPECT_DEATH(records[5], "ind < mCount, file Source/Container");
}

}  // namespace
}  // namespace Tessavoy
