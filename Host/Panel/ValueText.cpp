#include "Host/Panel/ValueText.h"

#include <cmath>
#include <cstdio>

#include "Host/EffectHost.h"
#include "Host/Scene/ParameterTable.h"

namespace TessavoyHost {
namespace {

constexpr int pointPrecision = 1;
constexpr int anglePrecision = 1;
constexpr const char* degrees = "\xC2\xB0";

// With so many digits behind the point, and no minus before a zero.
std::string fixedText(double number, int precision) {
    const auto write = [precision](char* text, std::size_t size, double value) {
        return std::snprintf(text, size, "%.*f", precision, value);
    };
    std::string text(static_cast<std::size_t>(write(nullptr, 0, number)), '\0');
    write(text.data(), text.size() + 1, number);
    const bool isZero = text.find_first_not_of("-0.") == std::string::npos;
    return isZero && text.front() == '-' ? text.substr(1) : text;
}

// Whole turns and the rest, which has the same sign.
std::string angleText(double angle) {
    const double turns = std::trunc(angle / 360);
    const std::string rest = fixedText(angle - turns * 360, anglePrecision);
    return fixedText(turns, 0) + 'x' + (rest.front() == '-' ? "" : "+") + rest + degrees;
}

std::string floatText(double value, const PF_FloatSliderDef& slider) {
    const bool isPercent = (slider.display_flags & PF_ValueDisplayFlag_PERCENT) != 0;
    return fixedText(value, slider.precision) + (isPercent ? "%" : "");
}

std::string choiceText(double value, const RegisteredParameter& parameter) {
    const auto choices = splitChoices(parameter.popupTexts);
    const bool isThere = value >= 1 && value <= static_cast<double>(choices.size());
    return isThere ? choices[static_cast<std::size_t>(value) - 1] : fixedText(value, 0);
}

// Writes each kind of value of the parameter.
struct TextWriter {
    const RegisteredParameter& parameter;
    const Project& project;

    std::string operator()(double value) const {
        const PF_ParamDefUnion& u = parameter.definition.u;
        switch (parameter.definition.param_type) {
            case PF_Param_SLIDER:
                return fixedText(std::round(value), 0);
            case PF_Param_FIX_SLIDER:
                return fixedText(value, u.fd.precision);
            case PF_Param_FLOAT_SLIDER:
                return floatText(value, u.fs_d);
            case PF_Param_ANGLE:
                return angleText(value);
            case PF_Param_POPUP:
                return choiceText(value, parameter);
            default:
                return {};
        }
    }
    std::string operator()(const Point2& point) const {
        return fixedText(point.x, pointPrecision) + ", " + fixedText(point.y, pointPrecision);
    }
    std::string operator()(const Point3& point) const {
        return (*this)(Point2{point.x, point.y}) + ", " + fixedText(point.z, pointPrecision);
    }
    std::string operator()(const LayerReference& reference) const {
        const bool isThere = reference.layer >= 0 && reference.layer < static_cast<int>(project.layers.size());
        return isThere ? project.layers[static_cast<std::size_t>(reference.layer)]->name() : "None";
    }
    std::string operator()(const MaskReference& reference) const {
        const bool isThere = reference.id >= 1 && reference.id <= project.masks.size();
        return isThere ? project.masks[reference.id - 1].name : "None";
    }
    std::string operator()(const ColorValue&) const { return {}; }
    std::string operator()(const ArbitraryValue&) const { return {}; }
};

}  // namespace

std::string valueText(const EffectInstance& instance, int parameter, double time) {
    const RegisteredParameter& registered = instance.host().parameters()[static_cast<std::size_t>(parameter)];
    if (registered.definition.param_type == PF_Param_ARBITRARY_DATA)
        return {};
    return std::visit(TextWriter{registered, instance.project()}, instance.values().at(parameter, time));
}

}  // namespace TessavoyHost
