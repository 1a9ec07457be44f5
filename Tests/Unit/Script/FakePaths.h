#pragma once

#include "HostInterface/Suites.h"
#include "Tests/Support/FakeHandleHost.h"

#include <array>
#include <map>
#include <vector>

namespace Tessavoy {

/// Paths of straight, open segments behind "PF Path Query Suite" 1 and "PF Path Data Suite" 1, beside the suites of a
/// FakeHandleHost. Its calls count among those of that host that can be told to fail. One at a time.
class FakePaths {
public:
    using Point = std::array<double, 2>;

    /// Takes the place of the in-data's basic suite, and passes other suites on.
    explicit FakePaths(FakeHandleHost& handleHost);

    /// It is a failure of the test when a path or a preparation is still out.
    ~FakePaths();

    FakePaths(const FakePaths&) = delete;
    FakePaths& operator=(const FakePaths&) = delete;

    /// Vertices by path id, in the host's coordinates.
    std::map<A_u_long, std::vector<Point>> paths;

    /// The ids that were checked out, in order.
    std::vector<A_u_long> checkouts;

    /// How often each suite was acquired, by name.
    std::map<std::string, int> acquisitions;

    /// What a failing call answers.
    PF_Err failure = 13;

    // For the host's functions.
    FakeHandleHost& host;
    SPBasicSuite* handleBasic;
    int pathsOut = 0;
    int preparationsOut = 0;

private:
    SPBasicSuite mBasic{};
};

}  // namespace Tessavoy
