#include "Host/Scene/NumberedName.h"

#include <algorithm>

namespace TessavoyHost {
namespace {

std::size_t runLength(std::string_view text, std::size_t start, bool (*belongs)(char)) {
    const auto first = text.begin() + static_cast<std::ptrdiff_t>(start);
    return static_cast<std::size_t>(std::find_if_not(first, text.end(), belongs) - first);
}

std::size_t hashesAt(std::string_view name, std::size_t start) {
    return runLength(name, start, [](char c) { return c == '#'; });
}

std::optional<NumberPlace> hashPlaceAt(std::string_view name, std::size_t start) {
    const bool bracketed = name[start] == '[';
    const std::size_t hashes = hashesAt(name, start + (bracketed ? 1 : 0));
    const bool isClosed = start + 1 + hashes < name.size() && name[start + 1 + hashes] == ']';
    if (hashes == 0 || (bracketed && !isClosed)) {
        return std::nullopt;
    }
    return NumberPlace{start, hashes + (bracketed ? 2 : 0), static_cast<int>(hashes), hashes == 1};
}

// "%d", or "%0Nd" with N of one or two digits.
std::optional<NumberPlace> percentPlaceAt(std::string_view name, std::size_t start) {
    const std::size_t digits = runLength(name, start + 1, [](char c) { return c >= '0' && c <= '9'; });
    const std::size_t end = start + 1 + digits;
    const std::string_view width = name.substr(start + 1, digits);
    const bool isWidth = digits == 0 || ((digits == 2 || digits == 3) && width.front() == '0');
    if (end >= name.size() || name[end] != 'd' || !isWidth) {
        return std::nullopt;
    }
    int wanted = 0;
    for (const char digit : width) {
        wanted = 10 * wanted + (digit - '0');
    }
    return NumberPlace{start, end + 1 - start, std::max(1, wanted), false};
}

std::optional<NumberPlace> placeAt(std::string_view name, std::size_t start) {
    switch (name[start]) {
        case '#':
        case '[':
            return hashPlaceAt(name, start);
        case '%':
            return percentPlaceAt(name, start);
        default:
            return std::nullopt;
    }
}

}  // namespace

std::vector<NumberPlace> findNumberPlaces(std::string_view name) {
    std::vector<NumberPlace> places;
    for (std::size_t i = 0; i < name.size();) {
        const auto place = placeAt(name, i);
        if (place) {
            places.push_back(*place);
        }
        const bool isEscapedPercent = name.substr(i).starts_with("%%");
        i += place ? place->length : isEscapedPercent ? 2 : 1;
    }
    return places;
}

NumberedName::NumberedName(std::string_view name, const NumberPlace& place)
    : mBefore(name.substr(0, place.start)),
      mAfter(name.substr(place.start + place.length)),
      mDigits(static_cast<std::size_t>(place.digits)) {}

std::string NumberedName::with(int number) const {
    std::string digits = std::to_string(number);
    if (digits.size() < mDigits) {
        digits.insert(0, mDigits - digits.size(), '0');
    }
    return mBefore + digits + mAfter;
}

}  // namespace TessavoyHost
