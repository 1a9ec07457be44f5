#include "Host/Scene/Values.h"

#include <algorithm>
#include <charconv>

#include "Host/Scene/ArbitraryValues.h"
#include "Host/Scene/Nearest.h"

namespace TessavoyHost {
namespace {

template <class Value>
std::optional<ParameterValue> widened(const std::optional<Value>& value) {
    return value ? std::optional<ParameterValue>(*value) : std::nullopt;
}

NumberRange sliderRange(const PF_SliderDef& slider) {
    return {static_cast<double>(slider.valid_min), static_cast<double>(slider.valid_max)};
}

NumberRange floatSliderRange(const PF_FloatSliderDef& slider) {
    return {static_cast<double>(slider.valid_min), static_cast<double>(slider.valid_max)};
}

std::optional<ParameterValue> readCheckbox(const JsonNode& node) {
    const auto value = node.truth();
    return value ? std::optional<ParameterValue>(*value ? 1.0 : 0.0) : std::nullopt;
}

std::optional<ParameterValue> readPopup(const JsonNode& node, const RegisteredParameter& parameter) {
    if (node.json().is_number()) {
        const auto number = node.integer(1, parameter.definition.u.pd.num_choices);
        return number ? std::optional<ParameterValue>(static_cast<double>(*number)) : std::nullopt;
    }
    if (!node.json().is_string()) {
        node.wrongType("one of the popup's texts or its number");
        return std::nullopt;
    }
    const auto choice = node.word(splitChoices(parameter.popupTexts));
    return choice ? std::optional<ParameterValue>(*choice + 1.0) : std::nullopt;
}

// The position of a name in the list, or -1 for null.
std::optional<int> readName(const JsonNode& node, const std::vector<std::string>& names, const std::string& what) {
    if (node.json().is_null()) {
        return -1;
    }
    if (!node.json().is_string()) {
        node.wrongType("the name of a " + what + ", or null");
        return std::nullopt;
    }
    const auto name = node.json().get<std::string>();
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end()) {
        node.problem("there is no " + what + " \"" + name + '"' + didYouMean(name, names));
        return std::nullopt;
    }
    return static_cast<int>(found - names.begin());
}

std::optional<ParameterValue> readLayer(const JsonNode& node, const std::vector<std::string>& layers) {
    const auto layer = readName(node, layers, "layer");
    return layer ? std::optional<ParameterValue>(LayerReference{*layer}) : std::nullopt;
}

std::optional<ParameterValue> readPath(const JsonNode& node, const std::vector<std::string>& masks) {
    const auto mask = readName(node, masks, "mask");
    return mask ? std::optional<ParameterValue>(MaskReference{static_cast<std::uint32_t>(*mask + 1)}) : std::nullopt;
}

std::optional<ColorValue> readColorText(const JsonNode& node) {
    const auto text = node.json().get<std::string>();
    std::uint32_t bits = 0;
    const char* end = text.data() + text.size();
    const bool isColor = (text.size() == 7 || text.size() == 9) && text[0] == '#' &&
                         std::from_chars(text.data() + 1, end, bits, 16).ptr == end;
    if (!isColor) {
        node.problem('"' + text + "\" is no colour; write \"#rrggbb\", \"#rrggbbaa\" or [r, g, b, a]");
        return std::nullopt;
    }
    const std::uint32_t rgba = text.size() == 7 ? bits << 8 | 0xff : bits;
    const auto channel = [rgba](int shift) { return static_cast<std::uint8_t>(rgba >> shift & 0xff); };
    return ColorValue{channel(24), channel(16), channel(8), channel(0)};
}

}  // namespace

std::optional<ParameterValue> readParameterValue(const JsonNode& node, const RegisteredParameter& parameter,
                                                 const SceneNames& names) {
    const auto& definition = parameter.definition;
    switch (kindOf(definition)) {
        case ParameterKind::Slider:
            return widened(node.number(sliderRange(definition.u.sd)));
        case ParameterKind::FloatSlider:
            return widened(node.number(floatSliderRange(definition.u.fs_d)));
        case ParameterKind::Angle:
            return widened(node.number(fixedPointRange));
        case ParameterKind::Checkbox:
            return readCheckbox(node);
        case ParameterKind::Popup:
            return readPopup(node, parameter);
        case ParameterKind::Color:
            return widened(readColor(node));
        case ParameterKind::Point:
            return widened(readPoint2(node, fixedPointRange));
        case ParameterKind::Point3D:
            return widened(readPoint3(node, anyNumber));
        case ParameterKind::Layer:
            return readLayer(node, names.layers);
        case ParameterKind::Path:
            return readPath(node, names.masks);
        case ParameterKind::Gradient:
            return widened(readGradient(node));
        case ParameterKind::Ramp:
            return widened(readRamp(node));
        default:
            node.problem("takes no value");
            return std::nullopt;
    }
}

std::optional<ColorValue> readColor(const JsonNode& node) {
    if (node.json().is_string()) {
        return readColorText(node);
    }
    if (!node.json().is_array() || (node.json().size() != 3 && node.json().size() != 4)) {
        node.wrongType("\"#rrggbb\", \"#rrggbbaa\", or a list of 3 or 4 numbers");
        return std::nullopt;
    }
    const auto elements = node.elements();
    std::vector<std::uint8_t> channels;
    for (const auto& element : *elements) {
        if (const auto channel = element.integer(0, 255)) {
            channels.push_back(static_cast<std::uint8_t>(*channel));
        }
    }
    if (channels.size() != node.json().size()) {
        return std::nullopt;
    }
    return ColorValue{channels[0], channels[1], channels[2], channels.size() == 4 ? channels[3] : std::uint8_t{255}};
}

std::optional<Point2> readPoint2(const JsonNode& node, NumberRange range) {
    const auto values = node.numbers(2, range);
    return values ? std::optional(Point2{(*values)[0], (*values)[1]}) : std::nullopt;
}

std::optional<Point3> readPoint3(const JsonNode& node, NumberRange range) {
    const auto values = node.numbers(3, range);
    return values ? std::optional(Point3{(*values)[0], (*values)[1], (*values)[2]}) : std::nullopt;
}

}  // namespace TessavoyHost
