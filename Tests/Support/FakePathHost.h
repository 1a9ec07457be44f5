#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "HostInterface/Effect.h"
#include "HostInterface/Suites.h"
#include "Source/Path.h"

namespace Tessavoy {

/// A host of one path, for code that needs "PF Path Query Suite" 1 and "PF Path Data Suite" 1 and no other.
///
/// It notes every call. One host exists at a time; it fails the running test when something comes to it that it never
/// gave out, and at its end when something was not given back.
class FakePathHost {
public:
    /// A call, with the segment that it asks about and its frequency (preparing) or distance (evaluating).
    struct Call {
        std::string_view name;  ///< outlives the host
        A_long segment = 0;
        double number = 0;

        friend bool operator==(const Call&, const Call&) = default;
        friend std::ostream& operator<<(std::ostream& out, const Call& call) {
            return out << call.name << " " << call.segment << " " << call.number;
        }
    };

    struct Segment {
        double roughLength = 0;  ///< what its first preparation after a checkout measures
        double length = 0;       ///< what its second one measures
        std::function<PathPoint(double distance)> pointAt;
    };

    static constexpr PF_PathID id = 7;
    static constexpr A_long currentTime = 1200;
    static constexpr A_long timeStep = 100;
    static constexpr A_u_long timeScale = 2500;

    /// The error of the n-th call, counted from 1, when it is told to fail.
    static constexpr PF_Err errorOf(int n) { return 1000 + n; }

    FakePathHost();
    ~FakePathHost();

    FakePathHost(const FakePathHost&) = delete;
    FakePathHost& operator=(const FakePathHost&) = delete;

    /// A straight segment that both preparations measure alike.
    static Segment line(PathPoint from, PathPoint to);

    /// Appends straight segments through the points, the first of which becomes vertex 0.
    void addLines(const std::vector<PathPoint>& points);

    PF_InData inData{};
    PathPoint firstVertex;
    std::vector<Segment> segments;
    /// What PF_PathNumSegments answers instead of the truth.
    std::optional<A_long> reportedSegments;

    /// Suites that the host lacks, by name.
    std::set<std::string> absentSuites;

    /// The n-th call from now fails, or every call from the n-th on. Suites that are asked for count as calls, those
    /// that are given back don't. What gives something back is done all the same.
    void failCall(int n);
    void failFrom(int n);

    /// Whether a call failed on demand, and whether that was a suite.
    bool failed() const { return firstFailure != 0; }
    bool failedAtASuite() const { return suiteFailed; }

    /// Every call in its order; a suite that is asked for is noted by its name.
    std::vector<Call> calls;
    int countOf(std::string_view name) const;

    /// What is out at the moment.
    int livePaths() const { return pathCount; }
    int livePreparations() const { return static_cast<int>(preparations.size()); }
    int liveSuites() const { return suiteCount; }

    /// For the host's functions: what a handle of a prepared segment stands for.
    struct Preparation {
        A_long segment;
        bool rough;
    };
    /// For the host's functions: notes a call and gives its result.
    PF_Err note(Call call);

    std::map<PF_PathSegPrepPtr, std::unique_ptr<Preparation>> preparations;
    std::map<A_long, int> preparationsOfSegment;
    int pathCount = 0;
    int suiteCount = 0;

private:
    SPBasicSuite basic{};
    int firstFailing = 0;
    int lastFailing = 0;
    int firstFailure = 0;
    bool suiteFailed = false;
};

}  // namespace Tessavoy
