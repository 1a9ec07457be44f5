#include "Host/Command/OutputPattern.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

constexpr std::array<std::pair<std::string_view, FileFormat>, 4> suffixes{
    {{".png", FileFormat::Png}, {".tif", FileFormat::Tiff}, {".tiff", FileFormat::Tiff}, {".exr", FileFormat::Exr}}};

[[noreturn]] void refuse(const std::string& text) {
    throw HostError(ExitStatus::CommandLine, "--output: " + text);
}

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

FileFormat formatOf(const std::string& text) {
    const std::string suffix = lowered(std::filesystem::path(text).extension().string());
    const auto found =
        std::find_if(suffixes.begin(), suffixes.end(), [&suffix](const auto& known) { return known.first == suffix; });
    if (found == suffixes.end()) {
        refuse('"' + text + "\" must end in .png, .tif or .exr, or be - for the standard output");
    }
    return found->second;
}

std::optional<NumberedName> numberedName(const std::string& text) {
    const auto places = findNumberPlaces(text);
    if (places.empty()) {
        return std::nullopt;
    }
    const auto isLone = [](const NumberPlace& place) { return place.isLoneHash; };
    if (std::any_of(places.begin(), places.end(), isLone)) {
        refuse('"' + text + "\": a lone # means a number to some tools and not to others; write ## or %d");
    }
    if (places.size() > 1) {
        refuse('"' + text + "\" has more than one place for the frame's number");
    }
    if (text.find('/', places[0].start) != std::string::npos) {
        refuse('"' + text + "\": the frame's number must stand in the file's name, not in the folder's");
    }
    return NumberedName(text, places[0]);
}

}  // namespace

OutputPattern::OutputPattern(const std::string& text) : mText(text) {
    if (!isStandardOutput()) {
        mFormat = formatOf(text);
        mNumbered = numberedName(text);
    }
}

std::filesystem::path OutputPattern::folder() const {
    const auto parent = std::filesystem::path(mText).parent_path();
    return parent.empty() ? std::filesystem::path(".") : parent;
}

std::filesystem::path OutputPattern::file(int frame) const {
    return mNumbered ? mNumbered->with(frame) : mText;
}

}  // namespace TessavoyHost
