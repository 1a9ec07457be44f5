#include "Tests/Support/FakePathHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <utility>

#include "Tests/Support/SuiteTable.h"

namespace Tessavoy {

namespace {

FakePathHost* host = nullptr;

PF_PathOutlinePtr thePath() {
    return reinterpret_cast<PF_PathOutlinePtr>(host);
}

void expectPath(PF_ProgPtr effect, PF_PathOutlinePtr path) {
    EXPECT_EQ(effect, host->inData.effect_ref);
    EXPECT_EQ(path, thePath());
    EXPECT_EQ(host->pathCount, 1) << "a path that isn't checked out";
}

/// Null, and the running test fails, when the handle isn't alive or belongs to another segment.
const FakePathHost::Preparation* preparationOf(PF_PathSegPrepPtr* handle, A_long segment) {
    const auto found = host->preparations.find(*handle);
    if (found == host->preparations.end() || found->second->segment != segment) {
        ADD_FAILURE() << "a handle that isn't alive for segment " << segment;
        return nullptr;
    }
    return found->second.get();
}

PF_Err checkoutPath(PF_ProgPtr effect, PF_PathID id, A_long time, A_long step, A_u_long scale,
                    PF_PathOutlinePtr* path) {
    EXPECT_EQ(effect, host->inData.effect_ref);
    EXPECT_EQ(id, FakePathHost::id);
    EXPECT_EQ(time, FakePathHost::currentTime);
    EXPECT_EQ(step, FakePathHost::timeStep);
    EXPECT_EQ(scale, FakePathHost::timeScale);
    const PF_Err error = host->note({"PF_CheckoutPath"});
    if (error == 0) {
        ++host->pathCount;
        host->preparationsOfSegment.clear();
        *path = thePath();
    }
    return error;
}

PF_Err checkinPath(PF_ProgPtr effect, PF_PathID id, PF_Boolean changed, PF_PathOutlinePtr path) {
    expectPath(effect, path);
    EXPECT_EQ(id, FakePathHost::id);
    EXPECT_EQ(changed, 0);
    EXPECT_TRUE(host->preparations.empty()) << "checked in with a segment still prepared";
    --host->pathCount;
    return host->note({"PF_CheckinPath"});
}

PF_Err numSegments(PF_ProgPtr effect, PF_PathOutlinePtr path, A_long* count) {
    expectPath(effect, path);
    *count = host->reportedSegments.value_or(static_cast<A_long>(host->segments.size()));
    return host->note({"PF_PathNumSegments"});
}

PF_Err vertexInfo(PF_ProgPtr effect, PF_PathOutlinePtr path, A_long point, PF_PathVertex* vertex) {
    expectPath(effect, path);
    EXPECT_EQ(point, 0);
    *vertex = {host->firstVertex.x, host->firstVertex.y, -1, -1, -1, -1};
    return host->note({"PF_PathVertexInfo"});
}

PF_Err prepare(PF_ProgPtr effect, PF_PathOutlinePtr path, A_long segment, A_long frequency, PF_PathSegPrepPtr* handle) {
    expectPath(effect, path);
    EXPECT_GT(frequency, 0);
    const PF_Err error = host->note({"PF_PathPrepareSegLength", segment, static_cast<double>(frequency)});
    if (error == 0) {
        const bool rough = host->preparationsOfSegment[segment]++ % 2 == 0;
        auto preparation = std::make_unique<FakePathHost::Preparation>(FakePathHost::Preparation{segment, rough});
        *handle = reinterpret_cast<PF_PathSegPrepPtr>(preparation.get());
        host->preparations.emplace(*handle, std::move(preparation));
    }
    return error;
}

PF_Err getLength(PF_ProgPtr effect, PF_PathOutlinePtr path, A_long segment, PF_PathSegPrepPtr* handle,
                 PF_FpLong* length) {
    expectPath(effect, path);
    if (const auto* preparation = preparationOf(handle, segment)) {
        const FakePathHost::Segment& measured = host->segments.at(segment);
        *length = preparation->rough ? measured.roughLength : measured.length;
    }
    return host->note({"PF_PathGetSegLength", segment});
}

PF_Err evaluate(PF_ProgPtr effect, PF_PathOutlinePtr path, PF_PathSegPrepPtr* handle, A_long segment, PF_FpLong length,
                PF_FpLong* x, PF_FpLong* y) {
    expectPath(effect, path);
    if (const auto* preparation = preparationOf(handle, segment)) {
        EXPECT_FALSE(preparation->rough) << "evaluated by the rough preparation";
        const PathPoint point = host->segments.at(segment).pointAt(length);
        *x = point.x;
        *y = point.y;
    }
    return host->note({"PF_PathEvalSegLength", segment, length});
}

PF_Err cleanUp(PF_ProgPtr effect, PF_PathOutlinePtr path, A_long segment, PF_PathSegPrepPtr* handle) {
    expectPath(effect, path);
    preparationOf(handle, segment);
    host->preparations.erase(*handle);
    *handle = nullptr;
    return host->note({"PF_PathCleanupSegLength", segment});
}

const void* findTable(const char* name, std::int32_t version) {
    static const PF_PathQuerySuite1 query = [] {
        PF_PathQuerySuite1 table{};
        table.PF_CheckoutPath = checkoutPath;
        table.PF_CheckinPath = checkinPath;
        return table;
    }();
    static const PF_PathDataSuite1 data = [] {
        PF_PathDataSuite1 table{};
        table.PF_PathNumSegments = numSegments;
        table.PF_PathVertexInfo = vertexInfo;
        table.PF_PathPrepareSegLength = prepare;
        table.PF_PathGetSegLength = getLength;
        table.PF_PathEvalSegLength = evaluate;
        table.PF_PathCleanupSegLength = cleanUp;
        return table;
    }();
    const void* table = tableFor(name, version, query);
    return table != nullptr ? table : tableFor(name, version, data);
}

SPErr acquireSuite(const char* name, std::int32_t version, const void** suite) {
    *suite = nullptr;
    const PF_Err error = host->note({name});
    if (error != 0 || host->absentSuites.contains(name)) {
        return 1;
    }
    *suite = findTable(name, version);
    EXPECT_NE(*suite, nullptr) << name << " " << version << " isn't served by this host";
    ++host->suiteCount;
    return 0;
}

SPErr releaseSuite(const char* name, std::int32_t version) {
    EXPECT_NE(findTable(name, version), nullptr);
    --host->suiteCount;
    return 0;
}

}  // namespace

FakePathHost::FakePathHost() {
    EXPECT_EQ(host, nullptr);
    host = this;
    basic.AcquireSuite = acquireSuite;
    basic.ReleaseSuite = releaseSuite;
    inData.pica_basicP = &basic;
    inData.effect_ref = reinterpret_cast<PF_ProgPtr>(this);
    inData.current_time = currentTime;
    inData.time_step = timeStep;
    inData.time_scale = timeScale;
}

FakePathHost::~FakePathHost() {
    EXPECT_EQ(livePaths(), 0) << "paths left out";
    EXPECT_EQ(livePreparations(), 0) << "segments left prepared";
    EXPECT_EQ(liveSuites(), 0) << "suites not released";
    host = nullptr;
}

FakePathHost::Segment FakePathHost::line(PathPoint from, PathPoint to) {
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    return {length, length, [from, to, length](double distance) {
                const double part = length > 0 ? distance / length : 0;
                return PathPoint{from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
            }};
}

void FakePathHost::addLines(const std::vector<PathPoint>& points) {
    firstVertex = points.front();
    for (std::size_t i = 1; i < points.size(); ++i) {
        segments.push_back(line(points[i - 1], points[i]));
    }
}

void FakePathHost::failCall(int n) {
    calls.clear();
    firstFailing = lastFailing = n;
    firstFailure = 0;
    suiteFailed = false;
}

void FakePathHost::failFrom(int n) {
    failCall(n);
    lastFailing = INT_MAX;
}

int FakePathHost::countOf(std::string_view name) const {
    return static_cast<int>(
        std::count_if(calls.begin(), calls.end(), [&](const Call& call) { return call.name == name; }));
}

PF_Err FakePathHost::note(Call call) {
    calls.push_back(std::move(call));
    const int n = static_cast<int>(calls.size());
    if (firstFailing == 0 || n < firstFailing || n > lastFailing) {
        return 0;
    }
    if (firstFailure == 0) {
        firstFailure = n;
        suiteFailed = calls.back().name.ends_with("Suite");
    }
    return errorOf(n);
}

}  // namespace Tessavoy
