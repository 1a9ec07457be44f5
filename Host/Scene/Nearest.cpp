#include "Host/Scene/Nearest.h"

#include <algorithm>

namespace TessavoyHost {
namespace {

char lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool sameLetter(char a, char b) {
    return lowered(a) == lowered(b);
}

std::size_t allowedEdits(std::string_view text) {
    return std::min<std::size_t>(4, 1 + text.size() / 4);
}

bool goesOnAfterDot(const std::string& candidate, std::string_view text) {
    return candidate.size() > text.size() && candidate.starts_with(text) && candidate[text.size()] == '.';
}

}  // namespace

std::size_t editDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> beforeLast(to.size() + 1), last(to.size() + 1), row(to.size() + 1);
    for (std::size_t column = 0; column <= to.size(); ++column) {
        last[column] = column;
    }
    for (std::size_t i = 1; i <= from.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (sameLetter(from[i - 1], to[j - 1]) ? 0 : 1);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
            if (i > 1 && j > 1 && sameLetter(from[i - 1], to[j - 2]) && sameLetter(from[i - 2], to[j - 1])) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
        std::swap(beforeLast, last);
        std::swap(last, row);
    }
    return last[to.size()];
}

std::optional<std::string> nearestName(std::string_view text, const std::vector<std::string>& candidates) {
    std::size_t best = allowedEdits(text) + 1;
    const std::string* nearest = nullptr;
    for (const auto& candidate : candidates) {
        const std::size_t distance = editDistance(text, candidate);
        if (distance < best) {
            best = distance;
            nearest = &candidate;
        }
    }
    if (nearest != nullptr) {
        return *nearest;
    }
    const auto longer = std::find_if(candidates.begin(), candidates.end(),
                                     [text](const std::string& candidate) { return goesOnAfterDot(candidate, text); });
    return longer == candidates.end() ? std::nullopt : std::optional<std::string>(*longer);
}

std::string didYouMean(std::string_view text, const std::vector<std::string>& candidates) {
    const auto nearest = nearestName(text, candidates);
    return nearest ? "; did you mean \"" + *nearest + "\"?" : std::string();
}

}  // namespace TessavoyHost
