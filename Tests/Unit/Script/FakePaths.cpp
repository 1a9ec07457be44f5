#include "Tests/Unit/Script/FakePaths.h"

#include "Tests/Support/SuiteTable.h"

#include <gtest/gtest.h>

#include <cmath>

namespace Tessavoy {

namespace {

FakePaths* fake = nullptr;

using Vertices = std::vector<FakePaths::Point>;

const Vertices& verticesOf(PF_PathOutlinePtr path) {
    return *reinterpret_cast<const Vertices*>(path);
}

double lengthOf(const Vertices& path, A_long segment) {
    const auto& from = path.at(static_cast<std::size_t>(segment));
    const auto& to = path.at(static_cast<std::size_t>(segment) + 1);
    return std::hypot(to[0] - from[0], to[1] - from[1]);
}

PF_Err checkoutPath(PF_ProgPtr effect, PF_PathID id, A_long time, A_long step, A_u_long scale,
                    PF_PathOutlinePtr* path) {
    const PF_InData& inData = fake->host.inData;
    EXPECT_EQ(effect, inData.effect_ref);
    EXPECT_EQ(time, inData.current_time);
    EXPECT_EQ(step, inData.time_step);
    EXPECT_EQ(scale, inData.time_scale);
    if (fake->host.failsNow()) {
        return fake->failure;
    }
    fake->checkouts.push_back(id);
    ++fake->pathsOut;
    *path = reinterpret_cast<PF_PathOutlinePtr>(&fake->paths.at(id));
    return 0;
}

PF_Err checkinPath(PF_ProgPtr, PF_PathID, PF_Boolean changed, PF_PathOutlinePtr) {
    EXPECT_EQ(changed, 0);
    --fake->pathsOut;
    return 0;
}

PF_Err numSegments(PF_ProgPtr, PF_PathOutlinePtr path, A_long* count) {
    *count = static_cast<A_long>(verticesOf(path).size()) - 1;
    return fake->host.failsNow() ? fake->failure : 0;
}

PF_Err vertexInfo(PF_ProgPtr, PF_PathOutlinePtr path, A_long point, PF_PathVertex* vertex) {
    const auto& [x, y] = verticesOf(path).at(static_cast<std::size_t>(point));
    *vertex = {x, y, 0, 0, 0, 0};
    return fake->host.failsNow() ? fake->failure : 0;
}

PF_Err prepareSegLength(PF_ProgPtr, PF_PathOutlinePtr, A_long, A_long frequency, PF_PathSegPrepPtr* preparation) {
    EXPECT_GT(frequency, 0);
    if (fake->host.failsNow()) {
        return fake->failure;
    }
    ++fake->preparationsOut;
    *preparation = reinterpret_cast<PF_PathSegPrepPtr>(fake);
    return 0;
}

PF_Err getSegLength(PF_ProgPtr, PF_PathOutlinePtr path, A_long segment, PF_PathSegPrepPtr*, PF_FpLong* length) {
    *length = lengthOf(verticesOf(path), segment);
    return fake->host.failsNow() ? fake->failure : 0;
}

PF_Err evalSegLength(PF_ProgPtr, PF_PathOutlinePtr path, PF_PathSegPrepPtr*, A_long segment, PF_FpLong distance,
                     PF_FpLong* x, PF_FpLong* y) {
    const Vertices& vertices = verticesOf(path);
    const double part = distance / lengthOf(vertices, segment);
    const auto& from = vertices.at(static_cast<std::size_t>(segment));
    const auto& to = vertices.at(static_cast<std::size_t>(segment) + 1);
    *x = from[0] + (to[0] - from[0]) * part;
    *y = from[1] + (to[1] - from[1]) * part;
    return fake->host.failsNow() ? fake->failure : 0;
}

PF_Err cleanupSegLength(PF_ProgPtr, PF_PathOutlinePtr, A_long, PF_PathSegPrepPtr*) {
    --fake->preparationsOut;
    return 0;
}

const void* pathSuite(const char* name, std::int32_t version) {
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
        table.PF_PathPrepareSegLength = prepareSegLength;
        table.PF_PathGetSegLength = getSegLength;
        table.PF_PathEvalSegLength = evalSegLength;
        table.PF_PathCleanupSegLength = cleanupSegLength;
        return table;
    }();
    const void* table = tableFor(name, version, query);
    return table != nullptr ? table : tableFor(name, version, data);
}

SPErr acquireSuite(const char* name, std::int32_t version, const void** suite) {
    ++fake->acquisitions[name];
    *suite = pathSuite(name, version);
    if (*suite == nullptr) {
        return fake->handleBasic->AcquireSuite(name, version, suite);
    }
    if (fake->host.absentSuites.contains(name) || fake->host.failsNow()) {
        *suite = nullptr;
        return 1;
    }
    ++fake->host.suiteCount;
    return 0;
}

SPErr releaseSuite(const char* name, std::int32_t version) {
    if (pathSuite(name, version) == nullptr) {
        return fake->handleBasic->ReleaseSuite(name, version);
    }
    --fake->host.suiteCount;
    return 0;
}

}  // namespace

FakePaths::FakePaths(FakeHandleHost& handleHost) : host(handleHost), handleBasic(handleHost.inData.pica_basicP) {
    EXPECT_EQ(fake, nullptr);
    fake = this;
    mBasic.AcquireSuite = acquireSuite;
    mBasic.ReleaseSuite = releaseSuite;
    host.inData.pica_basicP = &mBasic;
}

FakePaths::~FakePaths() {
    EXPECT_EQ(pathsOut, 0) << "paths not checked in";
    EXPECT_EQ(preparationsOut, 0) << "preparations not cleaned up";
    host.inData.pica_basicP = handleBasic;
    fake = nullptr;
}

}  // namespace Tessavoy
