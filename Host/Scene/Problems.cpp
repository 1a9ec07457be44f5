#include "Host/Scene/Problems.h"

#include <algorithm>

namespace TessavoyHost {
namespace {

bool isPlainWord(std::string_view key) {
    const auto isWordLetter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    };
    return !key.empty() && std::all_of(key.begin(), key.end(), isWordLetter);
}

}  // namespace

Place Place::child(std::string_view key) const {
    const std::string step = isPlainWord(key) ? std::string(key) : '"' + std::string(key) + '"';
    return Place(mText.empty() ? step : mText + '.' + step);
}

Place Place::element(std::size_t index) const {
    return Place(mText + '[' + std::to_string(index) + ']');
}

void Problems::add(const Place& place, const std::string& text) {
    mLines.push_back(place.text().empty() ? text : place.text() + ": " + text);
}

void Problems::throwIfAny(ExitStatus status, const std::string& source) const {
    if (mLines.empty()) {
        return;
    }
    std::string all;
    for (const auto& line : mLines) {
        all += (all.empty() ? "" : "\n") + (source.empty() ? line : source + ": " + line);
    }
    throw HostError(status, all);
}

}  // namespace TessavoyHost
