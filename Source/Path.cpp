#include "Source/Path.h"

#include "HostInterface/Suites.h"
#include "Source/Assert.h"
#include "Source/Evaluate/Truncation.h"
#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/SuiteHandler.h"

#include <algorithm>
#include <iterator>

namespace Tessavoy {

namespace {

constexpr A_long roughFrequency = 100;
constexpr A_long mostPoints = A_long{1} << 20;

// 2^20 times this, and 2^31 segments of it, stay finite.
constexpr double greatestLength = 1e298;

double heldLength(double length) {
    return length > 0 ? std::min(length, greatestLength) : 0.0;
}

A_long pointCount(double length, double step) {
    return std::min(truncated(length / step), mostPoints - 1) + 1;
}

/// A path that is checked out while this object lives. Once checkIn was called the host has it back, whatever it
/// answered; until then it goes back at this object's end, and an error of the host's is ignored there.
class CheckedOutPath {
public:
    CheckedOutPath(SuiteHandler& suites, const PF_InData& inData, A_u_long pathId)
        : mSuites(suites), mQuery(suites.get<PF_PathQuerySuite1>()), mReference(inData.effect_ref), mId(pathId) {
        throwOnError(
            mQuery.PF_CheckoutPath(mReference, mId, inData.current_time, inData.time_step, inData.time_scale, &mPath));
        mCheckedOut = true;
    }

    ~CheckedOutPath() {
        if (mCheckedOut) {
            giveBack();
        }
    }

    CheckedOutPath(const CheckedOutPath&) = delete;
    CheckedOutPath& operator=(const CheckedOutPath&) = delete;

    void checkIn() { throwOnError(giveBack()); }

    A_long segmentCount() const {
        A_long numSegments = 0;
        throwOnError(data().PF_PathNumSegments(mReference, mPath, &numSegments));
        TESSAVOY_ASSERT(numSegments >= 0, "numSegments >= 0");
        return numSegments;
    }

    PathPoint firstVertex() const {
        PF_PathVertex vertex{};
        throwOnError(data().PF_PathVertexInfo(mReference, mPath, 0, &vertex));
        return {vertex.x, vertex.y};
    }

    const PF_PathDataSuite1& data() const { return mSuites.get<PF_PathDataSuite1>(); }
    PF_ProgPtr reference() const { return mReference; }
    PF_PathOutlinePtr path() const { return mPath; }

private:
    PF_Err giveBack() {
        mCheckedOut = false;
        return mQuery.PF_CheckinPath(mReference, mId, 0, mPath);
    }

    SuiteHandler& mSuites;
    const PF_PathQuerySuite1& mQuery;
    PF_ProgPtr mReference;
    A_u_long mId;
    PF_PathOutlinePtr mPath = nullptr;
    bool mCheckedOut = false;
};

/// One segment, prepared by the host for measuring while this object lives; given back by the same rule.
class PreparedSegment {
public:
    PreparedSegment(const CheckedOutPath& path, A_long segment, A_long frequency)
        : mPath(path), mData(path.data()), mSegment(segment) {
        throwOnError(mData.PF_PathPrepareSegLength(path.reference(), path.path(), segment, frequency, &mPreparation));
        mPrepared = true;
    }

    ~PreparedSegment() {
        if (mPrepared) {
            giveBack();
        }
    }

    PreparedSegment(const PreparedSegment&) = delete;
    PreparedSegment& operator=(const PreparedSegment&) = delete;

    void cleanUp() { throwOnError(giveBack()); }

    double length() {
        double length = 0;
        throwOnError(mData.PF_PathGetSegLength(mPath.reference(), mPath.path(), mSegment, &mPreparation, &length));
        return heldLength(length);
    }

    PathPoint pointAt(double distance) {
        PathPoint point;
        throwOnError(mData.PF_PathEvalSegLength(mPath.reference(), mPath.path(), &mPreparation, mSegment, distance,
                                                &point.x, &point.y));
        return point;
    }

private:
    PF_Err giveBack() {
        mPrepared = false;
        return mData.PF_PathCleanupSegLength(mPath.reference(), mPath.path(), mSegment, &mPreparation);
    }

    const CheckedOutPath& mPath;
    const PF_PathDataSuite1& mData;
    A_long mSegment;
    PF_PathSegPrepPtr mPreparation = nullptr;
    bool mPrepared = false;
};

double roughLength(const CheckedOutPath& path, A_long segment) {
    PreparedSegment prepared(path, segment, roughFrequency);
    const double length = prepared.length();
    prepared.cleanUp();
    return length;
}

/// Enters a segment's points with keys that go on from `start`, and returns its length. The rough length serves only to
/// choose how many points there are; the segment is prepared anew with that number, so that the length agrees with
/// them.
double addSegment(PathTable::Points& points, double start, const CheckedOutPath& path, A_long segment, double step) {
    const A_long count = pointCount(roughLength(path, segment), step);
    PreparedSegment prepared(path, segment, count);
    const double length = prepared.length();
    for (A_long k = 1; k <= count; ++k) {
        const double distance = k * length / count;
        points.insert_or_assign(points.end(), start + distance, prepared.pointAt(distance));
    }
    prepared.cleanUp();
    return length;
}

}  // namespace

PathTable PathTable::build(PF_InData* inData, A_u_long pathId, double step) {
    SuiteHandler suites(inData->pica_basicP);
    CheckedOutPath path(suites, *inData, pathId);
    PathTable table;
    const A_long numSegments = path.segmentCount();
    if (numSegments > 0) {
        table.mPoints.emplace(0.0, path.firstVertex());
    }
    for (A_long segment = 0; segment < numSegments; ++segment) {
        table.mLength += addSegment(table.mPoints, table.mLength, path, segment, step);
    }
    path.checkIn();
    return table;
}

PathPoint PathTable::sample(double part) const {
    if (mPoints.empty()) {
        return {};
    }
    const double distance = part * mLength;
    const auto after = mPoints.upper_bound(distance);
    if (after == mPoints.begin()) {
        return after->second;
    }
    const auto before = std::prev(after);
    if (after == mPoints.end()) {
        return before->second;
    }
    const auto& [startKey, start] = *before;
    const auto& [endKey, end] = *after;
    const double f = (distance - startKey) / (endKey - startKey);
    return {start.x + (end.x - start.x) * f, start.y + (end.y - start.y) * f};
}

}  // namespace Tessavoy
