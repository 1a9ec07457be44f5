#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "Source/Path.h"
#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

// Tables of the paths of a host that measures curves.
class PathTableOfACurve : public HostFixture {
protected:
    Tessavoy::PathTable tableOf(const Mask& mask) {
        Project project = FakeProject::project();
        project.masks = {mask};
        Tessavoy::PathTable table;
        renderWith(project, [&](PF_InData* inData) { table = Tessavoy::PathTable::build(inData, 1, 5.0); });
        return table;
    }

    // A quarter of a circle about the origin, from (radius, 0) to (0, radius), as one cubic segment.
    static constexpr double radius = 100;
    static constexpr double arm = 55.22847498;
    static Mask quarterCircle() {
        return {"Quarter", false, {{{radius, 0}, {}, {0, arm}}, {{0, radius}, {arm, 0}, {}}}};
    }
};

// The quarter circle's curve as a fine polygon, read by the distance along it. A chord of the circle of the angle a is
// shorter than its arc by a^2 / 24 of it, 3e-12 at 200000 chords.
class FinePolygon {
public:
    FinePolygon(double radius, double arm) {
        constexpr int chords = 200000;
        for (int i = 0; i <= chords; ++i) {
            const double t = static_cast<double>(i) / chords, s = 1 - t;
            const Point2 point = {s * s * (s + 3 * t) * radius + 3 * s * t * t * arm,
                                  t * t * (t + 3 * s) * radius + 3 * s * s * t * arm};
            const double step = i == 0 ? 0 : std::hypot(point.x - mPoints.back().x, point.y - mPoints.back().y);
            mDistances.push_back(i == 0 ? 0 : mDistances.back() + step);
            mPoints.push_back(point);
        }
    }

    double length() const { return mDistances.back(); }

    Point2 pointAt(double distance) const {
        const auto above = std::upper_bound(mDistances.begin(), mDistances.end() - 1, distance);
        const std::size_t i = static_cast<std::size_t>(above - mDistances.begin());
        const double f = (distance - mDistances[i - 1]) / (mDistances[i] - mDistances[i - 1]);
        const Point2 &from = mPoints[i - 1], &to = mPoints[i];
        return {from.x + (to.x - from.x) * f, from.y + (to.y - from.y) * f};
    }

private:
    std::vector<double> mDistances;
    std::vector<Point2> mPoints;
};

// 157.1 pixels at a step of 5 are 32 points, at equal distances along the curve.
TEST_F(PathTableOfACurve, ItsPointsLieAtEqualDistancesAlongIt) {
    const Tessavoy::PathTable table = tableOf(quarterCircle());
    const FinePolygon polygon(radius, arm);
    EXPECT_NEAR(table.length(), polygon.length(), polygon.length() * 1e-9);
    ASSERT_EQ(table.points().size(), 33u);
    int k = 0;
    for (const auto& [key, point] : table.points()) {
        EXPECT_NEAR(key, k * polygon.length() / 32, polygon.length() * 1e-9);
        const Point2 expected = polygon.pointAt(k * polygon.length() / 32);
        EXPECT_NEAR(point.x, expected.x, polygon.length() * 1e-9) << k;
        EXPECT_NEAR(point.y, expected.y, polygon.length() * 1e-9) << k;
        ++k;
    }
}

// Between its points the table is a polygon: off the circle by at most chord^2 / 8 radius, 25 / 800. A twentieth more
// for the curve, whose own bend differs from the circle's.
TEST_F(PathTableOfACurve, AFractionIsWithinTheBulgeOfAChordOfThatArcLength) {
    const Tessavoy::PathTable table = tableOf(quarterCircle());
    const FinePolygon polygon(radius, arm);
    for (int i = 0; i <= 1000; ++i) {
        const double part = i / 1000.0;
        const Tessavoy::PathPoint point = table.sample(part);
        const Point2 expected = polygon.pointAt(part * polygon.length());
        EXPECT_LE(std::hypot(point.x - expected.x, point.y - expected.y), 25.0 / 800 * 1.05) << part;
    }
}

TEST_F(PathTableOfACurve, AClosedPathEndsWhereItBegan) {
    const Tessavoy::PathTable table =
        tableOf({"Triangle", true, {{{10, 10}, {}, {}}, {{50, 10}, {}, {}}, {{50, 40}, {}, {}}}});
    EXPECT_NEAR(table.length(), 40 + 30 + 50, 1e-7);
    EXPECT_NEAR(table.sample(1).x, 10, 1e-9);
    EXPECT_NEAR(table.sample(1).y, 10, 1e-9);
    EXPECT_NEAR(table.sample(95.0 / 120).x, 30, 1e-7);
    EXPECT_NEAR(table.sample(95.0 / 120).y, 25, 1e-7);
}

}  // namespace
}  // namespace TessavoyHost
