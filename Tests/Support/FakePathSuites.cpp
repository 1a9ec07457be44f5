#include "Tests/Support/FakePathSuites.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "Tests/Support/SuiteTable.h"

namespace Tessavoy {

namespace {

FakePathSuites* suites = nullptr;

FakePath& pathBehind(PF_ProgPtr effect, PF_PathOutlinePtr path) {
    EXPECT_EQ(effect, suites->inData.effect_ref);
    EXPECT_EQ(suites->pathCount, 1) << "a path that isn't checked out";
    return *reinterpret_cast<FakePath*>(path);
}

/// Null, and the running test fails, when the handle isn't alive or belongs to another segment.
const FakePathSuites::Preparation* preparationOf(const FakePath& path, PF_PathSegPrepPtr* handle, A_long segment) {
    const auto found = suites->preparations.find(*handle);
    if (found == suites->preparations.end() || found->second->path != &path || found->second->segment != segment) {
        ADD_FAILURE() << "a handle that isn't alive for segment " << segment;
        return nullptr;
    }
    return found->second.get();
}

PF_Err checkoutPath(PF_ProgPtr effect, PF_PathID id, A_long time, A_long step, A_u_long scale,
                    PF_PathOutlinePtr* path) {
    EXPECT_EQ(effect, suites->inData.effect_ref);
    EXPECT_EQ(time, suites->inData.current_time);
    EXPECT_EQ(step, suites->inData.time_step);
    EXPECT_EQ(scale, suites->inData.time_scale);
    const PF_Err error = suites->note({"PF_CheckoutPath"});
    if (error == 0) {
        ++suites->pathCount;
        suites->checkouts.push_back(id);
        suites->preparationsOfSegment.clear();
        *path = reinterpret_cast<PF_PathOutlinePtr>(&suites->paths.at(id));
    }
    return error;
}

PF_Err checkinPath(PF_ProgPtr effect, PF_PathID id, PF_Boolean changed, PF_PathOutlinePtr path) {
    EXPECT_EQ(&pathBehind(effect, path), &suites->paths.at(id));
    EXPECT_EQ(changed, 0);
    EXPECT_TRUE(suites->preparations.empty()) << "checked in with a segment still prepared";
    --suites->pathCount;
    return suites->note({"PF_CheckinPath"});
}

PF_Err numSegments(PF_ProgPtr effect, PF_PathOutlinePtr path, A_long* count) {
    const FakePath& asked = pathBehind(effect, path);
    *count = asked.reportedSegments.value_or(static_cast<A_long>(asked.segments.size()));
    return suites->note({"PF_PathNumSegments"});
}

PF_Err vertexInfo(PF_ProgPtr effect, PF_PathOutlinePtr path, A_long point, PF_PathVertex* vertex) {
    const PathPoint& first = pathBehind(effect, path).firstVertex;
    EXPECT_EQ(point, 0);
    *vertex = {first.x, first.y, -1, -1, -1, -1};
    return suites->note({"PF_PathVertexInfo"});
}

PF_Err prepare(PF_ProgPtr effect, PF_PathOutlinePtr path, A_long segment, A_long frequency, PF_PathSegPrepPtr* handle) {
    const FakePath& asked = pathBehind(effect, path);
    EXPECT_GT(frequency, 0);
    const PF_Err error = suites->note({"PF_PathPrepareSegLength", segment, static_cast<double>(frequency)});
    if (error == 0) {
        const bool rough = suites->preparationsOfSegment[segment]++ % 2 == 0;
        auto preparation =
            std::make_unique<FakePathSuites::Preparation>(FakePathSuites::Preparation{&asked, segment, rough});
        *handle = reinterpret_cast<PF_PathSegPrepPtr>(preparation.get());
        suites->preparations.emplace(*handle, std::move(preparation));
    }
    return error;
}

PF_Err getLength(PF_ProgPtr effect, PF_PathOutlinePtr path, A_long segment, PF_PathSegPrepPtr* handle,
                 PF_FpLong* length) {
    const FakePath& asked = pathBehind(effect, path);
    if (const auto* preparation = preparationOf(asked, handle, segment)) {
        const FakePath::Segment& measured = asked.segments.at(static_cast<std::size_t>(segment));
        *length = preparation->rough ? measured.roughLength : measured.length;
    }
    return suites->note({"PF_PathGetSegLength", segment});
}

PF_Err evaluate(PF_ProgPtr effect, PF_PathOutlinePtr path, PF_PathSegPrepPtr* handle, A_long segment, PF_FpLong length,
                PF_FpLong* x, PF_FpLong* y) {
    const FakePath& asked = pathBehind(effect, path);
    if (const auto* preparation = preparationOf(asked, handle, segment)) {
        EXPECT_FALSE(preparation->rough) << "evaluated by the rough preparation";
        const PathPoint point = asked.segments.at(static_cast<std::size_t>(segment)).pointAt(length);
        *x = point.x;
        *y = point.y;
    }
    return suites->note({"PF_PathEvalSegLength", segment, length});
}

PF_Err cleanUp(PF_ProgPtr effect, PF_PathOutlinePtr path, A_long segment, PF_PathSegPrepPtr* handle) {
    preparationOf(pathBehind(effect, path), handle, segment);
    suites->preparations.erase(*handle);
    *handle = nullptr;
    return suites->note({"PF_PathCleanupSegLength", segment});
}

}  // namespace

FakePath::Segment FakePath::line(PathPoint from, PathPoint to) {
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    return {length, length, [from, to, length](double distance) {
                const double part = length > 0 ? distance / length : 0;
                return PathPoint{from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
            }};
}

void FakePath::addLines(const std::vector<PathPoint>& points) {
    firstVertex = points.front();
    for (std::size_t i = 1; i < points.size(); ++i) {
        segments.push_back(line(points[i - 1], points[i]));
    }
}

const void* FakePathSuites::find(const char* name, std::int32_t version) {
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
    return tableFor(name, version, query, data);
}

FakePathSuites::FakePathSuites(const PF_InData& ofInData, Note ofNote) : inData(ofInData), note(std::move(ofNote)) {
    EXPECT_EQ(suites, nullptr);
    suites = this;
}

FakePathSuites::~FakePathSuites() {
    EXPECT_EQ(livePaths(), 0) << "paths left out";
    EXPECT_EQ(livePreparations(), 0) << "segments left prepared";
    suites = nullptr;
}

}  // namespace Tessavoy
