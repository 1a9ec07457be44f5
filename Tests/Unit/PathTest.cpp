#include "Source/Path.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "Source/HostAccess/Exception.h"
#include "Tests/Support/FakePathHost.h"

namespace Tessavoy {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr const char* querySuite = "PF Path Query Suite";
constexpr const char* dataSuite = "PF Path Data Suite";
constexpr int mostPoints = 1 << 20;

PathTable build(FakePathHost& host) {
    return PathTable::build(&host.inData, FakePathHost::id, 5.0);
}

void expectPoint(const PathPoint& point, double x, double y, double tolerance = 1e-12) {
    EXPECT_NEAR(point.x, x, tolerance);
    EXPECT_NEAR(point.y, y, tolerance);
}

std::vector<double> keysOf(const PathTable& table) {
    std::vector<double> keys;
    for (const auto& [key, point] : table.points()) {
        keys.push_back(key);
    }
    return keys;
}

// 12 pixels at a step of 5: 2.4 cut to 2, plus 1, are 3 points; 3 pixels have 1.
TEST(PathTableBuild, CallsTheHostInItsOrderAndKeysItsPointsByDistance) {
    FakePathHost host;
    host.path.addLines({{10, 20}, {22, 20}, {22, 23}});
    const PathTable table = build(host);

    const std::vector<FakePathHost::Call> expected = {{querySuite},
                                                      {"PF_CheckoutPath"},
                                                      {dataSuite},
                                                      {"PF_PathNumSegments"},
                                                      {"PF_PathVertexInfo"},
                                                      {"PF_PathPrepareSegLength", 0, 100},
                                                      {"PF_PathGetSegLength", 0},
                                                      {"PF_PathCleanupSegLength", 0},
                                                      {"PF_PathPrepareSegLength", 0, 3},
                                                      {"PF_PathGetSegLength", 0},
                                                      {"PF_PathEvalSegLength", 0, 4},
                                                      {"PF_PathEvalSegLength", 0, 8},
                                                      {"PF_PathEvalSegLength", 0, 12},
                                                      {"PF_PathCleanupSegLength", 0},
                                                      {"PF_PathPrepareSegLength", 1, 100},
                                                      {"PF_PathGetSegLength", 1},
                                                      {"PF_PathCleanupSegLength", 1},
                                                      {"PF_PathPrepareSegLength", 1, 1},
                                                      {"PF_PathGetSegLength", 1},
                                                      {"PF_PathEvalSegLength", 1, 3},
                                                      {"PF_PathCleanupSegLength", 1},
                                                      {"PF_CheckinPath"}};
    EXPECT_EQ(host.calls, expected);

    EXPECT_EQ(keysOf(table), (std::vector<double>{0, 4, 8, 12, 15}));
    EXPECT_EQ(table.length(), 15);
    expectPoint(table.points().at(0), 10, 20);
    expectPoint(table.points().at(4), 14, 20);
    expectPoint(table.points().at(8), 18, 20);
    expectPoint(table.points().at(12), 22, 20);
    expectPoint(table.points().at(15), 22, 23);
}

TEST(PathTableBuild, ASegmentHasItsLengthOverTheStepCutOffPlusOnePoints) {
    for (const auto& [length, count] : std::vector<std::pair<double, int>>{
             {0.01, 1}, {4.99, 1}, {5, 2}, {9.99, 2}, {10, 3}, {499.9, 100}, {500, 101}}) {
        FakePathHost host;
        host.path.addLines({{0, 0}, {length, 0}});
        build(host);
        EXPECT_EQ(host.countOf("PF_PathEvalSegLength"), count) << length;
    }
}

TEST(PathTableBuild, TheStepIsTheCallersOwn) {
    FakePathHost host;
    host.path.addLines({{0, 0}, {30, 0}});
    const PathTable table = PathTable::build(&host.inData, FakePathHost::id, 16);
    EXPECT_EQ(keysOf(table), (std::vector<double>{0, 15, 30}));
}

// 100 / 5 + 1 points, 50 / 21 apart.
TEST(PathTableBuild, TheRoughLengthOnlyChoosesTheNumberOfPoints) {
    FakePathHost host;
    host.path.addLines({{0, 0}, {50, 0}});
    host.path.segments[0].roughLength = 100;
    const PathTable table = build(host);
    EXPECT_EQ(table.length(), 50);
    ASSERT_EQ(table.points().size(), 22u);
    int k = 0;
    for (const auto& [key, point] : table.points()) {
        EXPECT_NEAR(key, k * 50.0 / 21, 1e-12);
        expectPoint(point, k * 50.0 / 21, 0);
        ++k;
    }
}

TEST(PathTableBuild, APathWithoutSegmentsIsEmptyAndIsAskedForNoVertex) {
    FakePathHost host;
    host.path.firstVertex = {3, 4};
    const PathTable table = build(host);
    EXPECT_TRUE(table.points().empty());
    EXPECT_EQ(table.length(), 0);
    for (const double part : {0.0, 0.5, 1.0, -1.0, nan, infinity}) {
        expectPoint(table.sample(part), 0, 0, 0);
    }
    const std::vector<FakePathHost::Call> expected = {
        {querySuite}, {"PF_CheckoutPath"}, {dataSuite}, {"PF_PathNumSegments"}, {"PF_CheckinPath"}};
    EXPECT_EQ(host.calls, expected);
}

// The later point takes the key: (3, 4) at 0 gives way to the end of the segment, wherever the host puts that.
TEST(PathTableBuild, AZeroLengthSegmentOverwritesThePointBeforeIt) {
    FakePathHost host;
    host.path.firstVertex = {3, 4};
    host.path.segments.push_back({0, 0, [](double) { return PathPoint{5, 6}; }});
    host.path.segments.push_back(FakePath::line({5, 6}, {9, 6}));
    host.path.segments.push_back({0, 0, [](double) { return PathPoint{9, 7}; }});
    host.path.segments.push_back(FakePath::line({9, 7}, {9, 11}));
    const PathTable table = build(host);
    EXPECT_EQ(keysOf(table), (std::vector<double>{0, 4, 8}));
    expectPoint(table.points().at(0), 5, 6);
    expectPoint(table.points().at(4), 9, 7);
    expectPoint(table.sample(0.25), 7, 6.5);
    expectPoint(table.sample(0.75), 9, 9);
}

TEST(PathTableBuild, APathOfNoLengthIsOnePoint) {
    FakePathHost host;
    host.path.addLines({{3, 4}, {3, 4}, {3, 4}});
    const PathTable table = build(host);
    EXPECT_EQ(keysOf(table), std::vector<double>{0});
    for (const double part : {0.0, 0.5, 1.0, -1.0, 2.0, nan, infinity, -infinity}) {
        expectPoint(table.sample(part), 3, 4, 0);
    }
}

// 1 pixel is less than the spacing of doubles at 1e17, so that both segments end at one key.
TEST(PathTableBuild, KeysThatRoundingMakesEqualLeaveTheLaterPoint) {
    FakePathHost host;
    host.path.segments.push_back({1, 1e17, [](double) { return PathPoint{1, 1}; }});
    host.path.segments.push_back({1, 1, [](double) { return PathPoint{2, 2}; }});
    const PathTable table = build(host);
    EXPECT_EQ(keysOf(table), (std::vector<double>{0, 1e17}));
    expectPoint(table.sample(1), 2, 2, 0);
}

TEST(PathTableBuild, CostsTwoPreparationsASegmentAndOneEvaluationAPoint) {
    FakePathHost host;
    std::vector<PathPoint> corners;
    for (int i = 0; i <= 40; ++i) {
        corners.push_back({i * 17.0, i % 2 * 9.0});
    }
    host.path.addLines(corners);
    const PathTable table = build(host);
    EXPECT_EQ(host.countOf(querySuite), 1);
    EXPECT_EQ(host.countOf(dataSuite), 1);
    EXPECT_EQ(host.countOf("PF_CheckoutPath"), 1);
    EXPECT_EQ(host.countOf("PF_CheckinPath"), 1);
    EXPECT_EQ(host.countOf("PF_PathVertexInfo"), 1);
    EXPECT_EQ(host.countOf("PF_PathPrepareSegLength"), 2 * 40);
    EXPECT_EQ(host.countOf("PF_PathCleanupSegLength"), 2 * 40);
    EXPECT_EQ(host.countOf("PF_PathEvalSegLength"), static_cast<int>(table.points().size()) - 1);
}

TEST(PathTableBuild, ReadingAsksNothingOfTheHost) {
    PathTableCache cache;
    {
        FakePathHost host;
        host.path.addLines({{0, 0}, {100, 0}});
        cache.emplace(FakePathHost::id, build(host));
        const std::size_t calls = host.calls.size();
        cache.at(FakePathHost::id).sample(0.5);
        EXPECT_EQ(host.calls.size(), calls);
    }
    expectPoint(cache.at(FakePathHost::id).sample(0.5), 50, 0);
}

TEST(PathTableBuild, ANegativeNumberOfSegmentsStopsTheProcess) {
    FakePathHost host;
    host.path.reportedSegments = -1;
    EXPECT_DEATH(build(host), "numSegments >= 0, file Source/Path.cpp");
}

// A square of 100 a side whose last segment leads back to the first vertex.
class PathTableSample : public testing::Test {
protected:
    PathTableSample() {
        FakePathHost host;
        host.path.addLines({{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 0}});
        mTable = build(host);
    }

    PathTable mTable;
};

TEST_F(PathTableSample, FractionsOfTheLengthLieOnTheSides) {
    expectPoint(mTable.sample(0.125), 50, 0);
    expectPoint(mTable.sample(0.25), 100, 0);
    expectPoint(mTable.sample(0.3), 100, 20);
    expectPoint(mTable.sample(0.6125), 55, 100);
    expectPoint(mTable.sample(0.99), 0, 4);
}

TEST_F(PathTableSample, TheEndsAreHeldAndNeverWrap) {
    FakePathHost host;
    host.path.addLines({{7, 8}, {47, 8}, {47, 38}});
    const PathTable open = build(host);
    for (const double part : {0.0, -0.0, -1e-300, -0.5, -1e300, -infinity}) {
        expectPoint(open.sample(part), 7, 8, 0);
        expectPoint(mTable.sample(part), 0, 0, 0);
    }
    for (const double part : {1.0, 1.5, 1e300, infinity}) {
        expectPoint(open.sample(part), 47, 38);
        expectPoint(mTable.sample(part), 0, 0);
    }
}

// No key is greater than NaN, as none is greater than the length.
TEST_F(PathTableSample, NaNGivesTheLastPoint) {
    FakePathHost host;
    host.path.addLines({{7, 8}, {47, 8}});
    expectPoint(build(host).sample(nan), 47, 8);
}

TEST_F(PathTableSample, HalfOfAStraightSegmentIsItsMiddle) {
    FakePathHost host;
    host.path.addLines({{20, 30}, {80, 110}});
    expectPoint(build(host).sample(0.5), 50, 70);
}

TEST_F(PathTableSample, AShortSegmentIsALineToItsEnd) {
    FakePathHost host;
    host.path.addLines({{0, 0}, {3, 4 - 1e-9}});
    const PathTable table = build(host);
    EXPECT_EQ(table.points().size(), 2u);
    expectPoint(table.sample(0.2), 0.6, 0.8, 1e-9);
}

// What the build holds an absurd length to, and the number of points that it asks for then.
struct AbsurdLength {
    double given;
    double held;
    int points;
};
const std::vector<AbsurdLength> absurdLengths = {
    {nan, 0, 1},
    {-1, 0, 1},
    {-1e300, 0, 1},
    {-infinity, 0, 1},
    {1e-320, 1e-320, 1},
    {1e300, 1e298, mostPoints},
    {std::numeric_limits<double>::max(), 1e298, mostPoints},
    {infinity, 1e298, mostPoints},
    // The last that is not held, and the first that is: 2^20 - 1 steps, and one more.
    {5.0 * (mostPoints - 1), 5.0 * (mostPoints - 1), mostPoints},
    {5.0 * mostPoints, 5.0 * mostPoints, mostPoints}};

TEST(PathTableAbsurd, ARoughLengthAsksForAtMost2To20PointsAndAtLeastOne) {
    for (const AbsurdLength& length : absurdLengths) {
        FakePathHost host;
        host.path.addLines({{0, 0}, {100, 0}});
        host.path.segments[0].roughLength = length.given;
        const PathTable table = build(host);
        EXPECT_EQ(host.countOf("PF_PathEvalSegLength"), length.points) << length.given;
        EXPECT_EQ(table.length(), 100);
        expectPoint(table.sample(1), 100, 0);
        expectPoint(table.sample(0.5), 50, 0);
    }
}

TEST(PathTableAbsurd, ALengthIsHeldToARangeThatSumsToAFiniteNumber) {
    for (const AbsurdLength& length : absurdLengths) {
        FakePathHost host;
        host.path.firstVertex = {1, 1};
        for (int i = 0; i < 3; ++i) {
            host.path.segments.push_back({12, length.given, [](double) { return PathPoint{2, 2}; }});
        }
        const PathTable table = build(host);
        EXPECT_DOUBLE_EQ(table.length(), 3 * length.held) << length.given;
        EXPECT_DOUBLE_EQ(table.points().rbegin()->first, table.length());
        for (const double part : {-1.0, 0.0, 0.3, 0.7, 1.0, 2.0, nan, infinity, -infinity}) {
            const PathPoint point = table.sample(part);
            EXPECT_TRUE(point.x >= 1 && point.x <= 2) << length.given << " at " << part;
        }
    }
}

TEST(PathTableAbsurd, PointsThatAreNoNumbersPassThrough) {
    FakePathHost host;
    host.path.firstVertex = {nan, infinity};
    host.path.segments.push_back({4, 4, [](double) { return PathPoint{-infinity, nan}; }});
    const PathTable table = build(host);
    EXPECT_EQ(table.sample(-1).y, infinity);
    EXPECT_EQ(table.sample(1).x, -infinity);
    EXPECT_TRUE(std::isnan(table.sample(0.5).x));
}

/// What building threw: Exception's code, or the plain integer of a missing suite with `plain` set.
struct Failure {
    bool plain = false;
    PF_Err code = PF_Err_NONE;
};

Failure failureOf(FakePathHost& host) {
    try {
        build(host);
    } catch (const Exception& exception) {
        return {false, exception.code()};
    } catch (PF_Err error) {
        return {true, error};
    }
    return {};
}

void expectNothingOut(const FakePathHost& host, int n) {
    EXPECT_EQ(host.livePreparations(), 0) << "call " << n;
    EXPECT_EQ(host.livePaths(), 0) << "call " << n;
    EXPECT_EQ(host.liveSuites(), 0) << "call " << n;
}

class PathTableFailures : public testing::Test {
protected:
    PathTableFailures() { mHost.path.addLines({{0, 0}, {12, 0}, {12, 3}}); }

    void expectFailure(int n) {
        const Failure failure = failureOf(mHost);
        const PF_Err error = mHost.failedAtASuite() ? 516 : FakePathHost::errorOf(n);
        EXPECT_EQ(failure.plain, mHost.failedAtASuite()) << "call " << n;
        EXPECT_EQ(failure.code, mHost.failed() ? error : 0) << "call " << n;
        expectNothingOut(mHost, n);
    }

    FakePathHost mHost;
};

// The 22 calls of the first test, each failing once: what was begun is given back and the host's code comes out.
TEST_F(PathTableFailures, EveryCallInTurnThrowsItsCodeAndLeavesNothingOut) {
    int n = 0;
    do {
        mHost.failCall(++n);
        expectFailure(n);
    } while (mHost.failed());
    EXPECT_EQ(n, 22 + 1);
}

// Giving back fails too then; the error that came first is the one that counts.
TEST_F(PathTableFailures, TheFirstErrorWinsWhenGivingBackFailsToo) {
    int n = 0;
    do {
        mHost.failFrom(++n);
        expectFailure(n);
    } while (mHost.failed());
    EXPECT_EQ(n, 22 + 1);
}

// Prepared, then a failing evaluation: the segment goes back before the path, and nothing else is called.
TEST_F(PathTableFailures, TheSegmentGoesBackBeforeThePath) {
    mHost.failCall(11);
    EXPECT_EQ(failureOf(mHost).code, FakePathHost::errorOf(11));
    const std::vector<FakePathHost::Call> last(mHost.calls.end() - 3, mHost.calls.end());
    const std::vector<FakePathHost::Call> expected = {
        {"PF_PathEvalSegLength", 0, 4}, {"PF_PathCleanupSegLength", 0}, {"PF_CheckinPath"}};
    EXPECT_EQ(last, expected);
}

// A clean-up or check-in that fails is not tried again: the host has taken the thing back.
TEST_F(PathTableFailures, WhatWasGivenBackWithAnErrorIsNotGivenBackAgain) {
    mHost.failCall(8);
    EXPECT_EQ(failureOf(mHost).code, FakePathHost::errorOf(8));
    EXPECT_EQ(mHost.countOf("PF_PathCleanupSegLength"), 1);
    EXPECT_EQ(mHost.countOf("PF_CheckinPath"), 1);
    mHost.failCall(22);
    EXPECT_EQ(failureOf(mHost).code, FakePathHost::errorOf(22));
    EXPECT_EQ(mHost.countOf("PF_CheckinPath"), 1);
}

TEST_F(PathTableFailures, AMissingSuiteThrowsThePlainInteger516) {
    for (const char* suite : {querySuite, dataSuite}) {
        mHost.calls.clear();
        mHost.absentSuites = {suite};
        const Failure failure = failureOf(mHost);
        EXPECT_TRUE(failure.plain) << suite;
        EXPECT_EQ(failure.code, 516) << suite;
        EXPECT_EQ(mHost.countOf("PF_CheckinPath"), mHost.countOf("PF_CheckoutPath")) << suite;
        expectNothingOut(mHost, 0);
    }
}

TEST_F(PathTableFailures, AHostWithoutABasicSuiteThrowsThePlainInteger516) {
    mHost.inData.pica_basicP = nullptr;
    const Failure failure = failureOf(mHost);
    EXPECT_TRUE(failure.plain);
    EXPECT_EQ(failure.code, 516);
    EXPECT_TRUE(mHost.calls.empty());
}

}  // namespace
}  // namespace Tessavoy
