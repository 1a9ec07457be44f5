#pragma once

#include "Tests/Support/FakeHandleHost.h"
#include "Tests/Support/FakePathSuites.h"

#include <map>
#include <string>

namespace Tessavoy {

/// The path suites beside the suites of a FakeHandleHost. Its calls count among those of that host that can be told to
/// fail. One at a time.
class FakePaths : public FakePathSuites {
public:
    /// Takes the place of the in-data's basic suite, and passes other suites on.
    explicit FakePaths(FakeHandleHost& handleHost);
    ~FakePaths();

    /// How often each suite was acquired, by name.
    std::map<std::string, int> acquisitions;

    /// What a failing call answers.
    PF_Err failure = 13;

    // For the host's functions.
    FakeHandleHost& host;
    SPBasicSuite* handleBasic;

private:
    SPBasicSuite mBasic{};
};

}  // namespace Tessavoy
