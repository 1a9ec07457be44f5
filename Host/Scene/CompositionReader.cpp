#include "Host/Scene/CompositionReader.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "Host/Image.h"
#include "Host/Scene/Values.h"

namespace TessavoyHost {
namespace {

constexpr double mostTimeUnits = std::numeric_limits<std::int32_t>::max();

std::optional<int> wholeNumber(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isWhole = error == std::errc() && end == text.data() + text.size() && value > 0;
    return isWhole ? std::optional<int>(value) : std::nullopt;
}

std::optional<Rational> fractionFromText(std::string_view text) {
    const auto slash = text.find('/');
    if (slash == std::string_view::npos) {
        return std::nullopt;
    }
    const auto num = wholeNumber(text.substr(0, slash));
    const auto den = wholeNumber(text.substr(slash + 1));
    return num && den ? std::optional(Rational{*num, static_cast<std::uint32_t>(*den)}) : std::nullopt;
}

std::optional<double> readPositive(const JsonNode& node) {
    const auto value = node.number(anyNumber);
    if (value && *value <= 0) {
        node.problem("must be above 0, not " + numberInWords(*value));
        return std::nullopt;
    }
    return value;
}

// The host counts time in frameRate.num units a second, with 32 bits.
bool checkLength(const JsonNode& duration, const Composition& composition) {
    if (composition.duration * composition.frameRate.num > mostTimeUnits) {
        duration.problem(numberInWords(composition.duration) + " seconds are more than the host's clock holds at " +
                         std::to_string(composition.frameRate.num) + " units a second");
        return false;
    }
    if (composition.frameCount() < 1) {
        duration.problem("is shorter than one frame");
        return false;
    }
    return true;
}

}  // namespace

std::optional<Rational> simplestFraction(double value) {
    if (value > mostTimeUnits) {
        return std::nullopt;
    }
    const Rational nearest = nearestFraction(value, std::numeric_limits<std::int32_t>::max());
    const bool isNear = std::abs(nearest.value() - value) <= 1e-9 * value;
    return isNear ? std::optional(nearest) : std::nullopt;
}

std::optional<Rational> readFrameRate(const JsonNode& node) {
    if (node.json().is_string()) {
        const auto rate = fractionFromText(node.json().get<std::string>());
        if (!rate) {
            node.problem("must be a number or a fraction such as \"30000/1001\"");
        }
        return rate;
    }
    const auto value = readPositive(node);
    const auto rate = value ? simplestFraction(*value) : std::nullopt;
    if (value && !rate) {
        node.problem(numberInWords(*value) + " is no simple fraction; write it as one, such as \"30000/1001\"");
    }
    return rate;
}

std::optional<Composition> readComposition(const JsonNode& node) {
    const JsonObject object(node, {"width", "height", "frameRate", "duration"});
    const auto width = object.requireInteger("width", 1, maximumPictureSide);
    const auto height = object.requireInteger("height", 1, maximumPictureSide);
    const auto rateNode = object.require("frameRate");
    const auto durationNode = object.require("duration");
    const auto frameRate = rateNode ? readFrameRate(*rateNode) : std::nullopt;
    const auto duration = durationNode ? readPositive(*durationNode) : std::nullopt;
    if (!width || !height || !frameRate || !duration) {
        return std::nullopt;
    }
    Composition composition;
    composition.width = *width;
    composition.height = *height;
    composition.frameRate = *frameRate;
    composition.duration = *duration;
    return checkLength(*durationNode, composition) ? std::optional(composition) : std::nullopt;
}

}  // namespace TessavoyHost
