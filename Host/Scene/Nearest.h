#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TessavoyHost {

// Single-character insertions, deletions, replacements and swaps of neighbours that turn one text into the other
// (optimal string alignment), letter case of ASCII left out of account.
std::size_t editDistance(std::string_view from, std::string_view to);

// The candidate that a mistyped text most likely meant, the first of equals: one within a few edits (about one in four
// characters), else one that goes on with a dot after the text, as "Size.Value" does after "Size". None if nothing is
// near.
std::optional<std::string> nearestName(std::string_view text, const std::vector<std::string>& candidates);

// `; did you mean "X"?` for the nearest candidate, or nothing.
std::string didYouMean(std::string_view text, const std::vector<std::string>& candidates);

}  // namespace TessavoyHost
