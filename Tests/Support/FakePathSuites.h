#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string_view>
#include <vector>

#include "HostInterface/Effect.h"
#include "HostInterface/Suites.h"
#include "Source/Path.h"

namespace Tessavoy {

/// A path of a fake host's.
struct FakePath {
    struct Segment {
        double roughLength = 0;  ///< what its first preparation after a checkout measures
        double length = 0;       ///< what its second one measures
        std::function<PathPoint(double distance)> pointAt;
    };

    /// A straight segment that both preparations measure alike.
    static Segment line(PathPoint from, PathPoint to);

    /// Appends straight segments through the points, the first of which becomes vertex 0.
    void addLines(const std::vector<PathPoint>& points);

    PathPoint firstVertex;
    std::vector<Segment> segments;
    /// What PF_PathNumSegments answers instead of the truth.
    std::optional<A_long> reportedSegments;
};

/// A call on the path suites, with the segment that it asks about and its frequency (preparing) or distance
/// (evaluating).
struct FakePathCall {
    std::string_view name;  ///< outlives the host
    A_long segment = 0;
    double number = 0;

    friend bool operator==(const FakePathCall&, const FakePathCall&) = default;
    friend std::ostream& operator<<(std::ostream& out, const FakePathCall& call) {
        return out << call.name << " " << call.segment << " " << call.number;
    }
};

/// "PF Path Query Suite" 1 and "PF Path Data Suite" 1 of a fake host, with paths by their ids.
///
/// One at a time exists; it fails the running test when something comes to it that it never gave out, and at its end
/// when something was not given back.
class FakePathSuites {
public:
    /// Hears of every call, in order, and says how it ends. What gives something back is done all the same.
    using Note = std::function<PF_Err(const FakePathCall&)>;

    /// inData: of the command that will call, which must live as long as this.
    FakePathSuites(const PF_InData& inData, Note note);
    ~FakePathSuites();

    FakePathSuites(const FakePathSuites&) = delete;
    FakePathSuites& operator=(const FakePathSuites&) = delete;

    /// The table of one of the two suites; null for any other.
    static const void* find(const char* name, std::int32_t version);

    std::map<A_u_long, FakePath> paths;

    /// The ids that were checked out, in order.
    std::vector<A_u_long> checkouts;

    /// What is out at the moment.
    int livePaths() const { return pathCount; }
    int livePreparations() const { return static_cast<int>(preparations.size()); }

    /// For the host's functions: what a handle of a prepared segment stands for.
    struct Preparation {
        const FakePath* path;
        A_long segment;
        bool rough;
    };
    const PF_InData& inData;
    const Note note;
    std::map<PF_PathSegPrepPtr, std::unique_ptr<Preparation>> preparations;
    std::map<A_long, int> preparationsOfSegment;
    int pathCount = 0;
};

}  // namespace Tessavoy
