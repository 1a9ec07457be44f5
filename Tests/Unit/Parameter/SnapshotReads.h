#pragma once

#include "Source/Parameter/ParameterSnapshot.h"

#include <functional>
#include <string>
#include <vector>

namespace Tessavoy {

/// One checkout of a snapshot's read: the parameter asked for, and what of the snapshot it fills (nothing for a custom
/// layer).
struct SnapshotRead {
    std::string id;
    std::function<std::vector<double>(const ParameterSnapshot&)> fields;
};

/// All 617 checkouts in the order that the list of checkouts is known to have, written down on its own.
std::vector<SnapshotRead> expectedReads();

}  // namespace Tessavoy
