#include "Host/Command/OutputPattern.h"

#include <algorithm>
#include <string_view>

#include "Host/HostError.h"
#include "Host/Scene/Files.h"

namespace TessavoyHost {
namespace {

[[noreturn]] void refuse(const std::string& text) {
    throw HostError(ExitStatus::CommandLine, "--output: " + text);
}

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

// ".png, .tif, .exr or .pam"
std::string writtenSuffixes() {
    std::vector<std::string_view> suffixes;
    for (const auto& known : usualSuffixes()) {
        suffixes.push_back(known.suffix);
    }
    return alternatives(suffixes);
}

FileFormat formatOf(const std::string& text) {
    const std::string suffix = lowered(utf8(pathFromUtf8(text).extension()));
    const auto known = fileSuffixes();
    const auto found = std::find_if(known.begin(), known.end(), [&](const auto& one) { return one.suffix == suffix; });
    if (found == known.end()) {
        refuse('"' + text + "\" must end in " + writtenSuffixes() + ", or be - for the standard output");
    }
    if (!found->isWritten) {
        refuse('"' + text + "\": this build writes " + writtenSuffixes() + " and raw frames");
    }
    return found->format;
}

// "%5d" fills with spaces in C; nobody wants those in a file's name.
void refuseOtherPercents(const std::string& text, std::string_view name) {
    constexpr std::string_view digits = "0123456789";
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] != '%') {
            continue;
        }
        if (name.substr(i).starts_with("%%")) {
            ++i;
            continue;
        }
        const std::size_t end = std::min(name.find_first_not_of(digits, i + 1), name.size());
        const std::string_view place = name.substr(i, end + 1 - i);
        if (place.size() > 2 && place.back() == 'd' && findNumberPlaces(place).empty()) {
            refuse('"' + text + "\": " + std::string(place) + " is no place for a number; write such as %04d");
        }
    }
}

std::string withoutEscapes(std::string_view name) {
    std::string result;
    for (std::size_t i = 0; i < name.size(); ++i) {
        result += name[i];
        i += name.substr(i).starts_with("%%") ? 1 : 0;
    }
    return result;
}

std::optional<NumberPlace> onlyPlace(const std::string& text, std::string_view name) {
    const auto places = findNumberPlaces(name);
    const auto isLone = [](const NumberPlace& place) { return place.isLoneHash; };
    if (std::any_of(places.begin(), places.end(), isLone)) {
        refuse('"' + text + "\": a lone # means a number to some tools and not to others; write ## or %d");
    }
    if (places.size() > 1) {
        refuse('"' + text + "\" has more than one place for the frame's number");
    }
    return places.empty() ? std::nullopt : std::optional(places.front());
}

}  // namespace

std::vector<FileSuffix> usualSuffixes() {
    std::vector<FileSuffix> suffixes;
    for (const auto& known : fileSuffixes()) {
        if (known.isWritten && (suffixes.empty() || suffixes.back().format != known.format)) {
            suffixes.push_back(known);
        }
    }
    return suffixes;
}

std::string namePattern() {
    return "out.####" + std::string(usualSuffixes().front().suffix);
}

OutputPattern::OutputPattern(const std::string& text) : mText(text) {
    if (!isStandardOutput()) {
        mFormat = formatOf(text);
        takeName(text);
    }
}

// Folders are there already under the names that they have; only the file's name is a pattern.
void OutputPattern::takeName(const std::string& text) {
    constexpr bool hasBackslashes = std::filesystem::path::preferred_separator == '\\';
    const std::size_t start = text.find_last_of(hasBackslashes ? "/\\" : "/") + 1;  // 0 without a folder
    const std::string folder = text.substr(0, start);
    const std::string name = text.substr(start);
    refuseOtherPercents(text, name);
    auto place = onlyPlace(text, name);
    if (!place) {
        mFile = folder + withoutEscapes(name);
        return;
    }
    const std::string before = folder + withoutEscapes(name.substr(0, place->start));
    const std::string after = withoutEscapes(name.substr(place->start + place->length));
    const std::string placeText = name.substr(place->start, place->length);
    place->start = before.size();
    mNumbered = NumberedName(before + placeText + after, *place);
}

std::filesystem::path OutputPattern::folder() const {
    const auto parent = pathFromUtf8(mText).parent_path();
    return parent.empty() ? std::filesystem::path(".") : parent;
}

std::filesystem::path OutputPattern::file(int frame) const {
    return pathFromUtf8(mNumbered ? mNumbered->with(frame) : mFile);
}

}  // namespace TessavoyHost
