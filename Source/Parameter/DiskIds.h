#pragma once

#include "HostInterface/Types.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Tessavoy {

/// A run of disk ids: the numbers first to last, in order, belong to the ids that the text names.
///
/// The text holds words. A word is an id, or a section's prefix with ".*", which stands for all ids of the section in
/// the panel's order, less those that `less` names relative to the section (a name there covers all ids below it). "#"
/// in a word stands for 1 to 10, one after the other.
struct DiskIdRun {
    A_long first;
    A_long last;
    std::string_view ids;
    std::string_view less = {};
};

/// The record of which parameter is saved under which number. A shipped number never changes: a new parameter gets the
/// next unused one, a removed parameter's number stays retired.
std::span<const DiskIdRun> diskIdRuns();

/// The disk ids of the given ids, which are all ids in the order of the panel; 0 for an id without one. Stops with an
/// assertion where a run doesn't hold exactly as many ids as its numbers, or names an id twice.
std::vector<A_long> expandDiskIds(std::span<const std::string> ids);

}  // namespace Tessavoy
