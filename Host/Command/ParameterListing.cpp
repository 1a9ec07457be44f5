#include "Host/Command/ParameterListing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <vector>

#include "Host/FixedPoint.h"
#include "Host/Scene/JsonNode.h"

namespace TessavoyHost {
namespace {

using Json = nlohmann::ordered_json;

// The shortest decimal that is the same single-precision number: 0.05, not 0.05000000074505806.
double shortest(float value) {
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    double result = value;
    std::from_chars(digits.data(), end, result);
    return result;
}

std::string labelOf(const PF_ParamDef& definition) {
    return std::string(definition.name, ::strnlen(definition.name, sizeof definition.name));
}

template <class Number>
void putRange(Json& object, Number validMin, Number validMax, Number sliderMin, Number sliderMax) {
    object["validMin"] = validMin;
    object["validMax"] = validMax;
    object["sliderMin"] = sliderMin;
    object["sliderMax"] = sliderMax;
}

void putSlider(Json& object, const PF_SliderDef& slider) {
    object["default"] = slider.dephault;
    putRange(object, slider.valid_min, slider.valid_max, slider.slider_min, slider.slider_max);
}

void putFloatSlider(Json& object, const PF_FloatSliderDef& slider) {
    object["default"] = shortest(slider.dephault);
    putRange(object, shortest(slider.valid_min), shortest(slider.valid_max), shortest(slider.slider_min),
             shortest(slider.slider_max));
    object["precision"] = slider.precision;
    object["percent"] = (slider.display_flags & PF_ValueDisplayFlag_PERCENT) != 0;
}

void putPopup(Json& object, const RegisteredParameter& parameter) {
    const auto& popup = parameter.definition.u.pd;
    object["default"] = popup.dephault;
    object["choices"] = splitChoices(parameter.popupTexts);
    object["declaredCount"] = popup.num_choices;
}

void putCheckbox(Json& object, const RegisteredParameter& parameter) {
    object["default"] = parameter.definition.u.bd.dephault != 0;
    object["text"] = parameter.text;
}

Json colorJson(const PF_Pixel& color) {
    return Json::array({color.red, color.green, color.blue, color.alpha});
}

// What depends on the type. Defaults of points are percentages of the layer's size.
void putTypeParts(Json& object, const RegisteredParameter& parameter) {
    const auto& u = parameter.definition.u;
    switch (parameter.definition.param_type) {
        case PF_Param_SLIDER:
            putSlider(object, u.sd);
            break;
        case PF_Param_FLOAT_SLIDER:
            putFloatSlider(object, u.fs_d);
            break;
        case PF_Param_ANGLE:
            object["default"] = fromFixed(u.ad.dephault);
            break;
        case PF_Param_CHECKBOX:
            putCheckbox(object, parameter);
            break;
        case PF_Param_POPUP:
            putPopup(object, parameter);
            break;
        case PF_Param_COLOR:
            object["default"] = colorJson(u.cd.dephault);
            break;
        case PF_Param_POINT:
            object["default"] = Json::array({fromFixed(u.td.x_dephault), fromFixed(u.td.y_dephault)});
            break;
        case PF_Param_POINT_3D:
            object["default"] = Json::array({u.point3d_d.x_dephault, u.point3d_d.y_dephault, u.point3d_d.z_dephault});
            break;
        case PF_Param_LAYER:
            object["default"] = u.ld.dephault == 0 ? Json(nullptr) : Json(u.ld.dephault);
            break;
        case PF_Param_PATH:
            object["default"] = u.path_d.dephault == 0 ? Json(nullptr) : Json(u.path_d.dephault);
            break;
        case PF_Param_BUTTON:
            object["text"] = parameter.text;
            break;
        default:
            break;
    }
}

const char* typeInWords(ParameterKind kind) {
    switch (kind) {
        case ParameterKind::Slider:
            return "slider";
        case ParameterKind::FloatSlider:
            return "float slider";
        case ParameterKind::Angle:
            return "angle";
        case ParameterKind::Checkbox:
            return "checkbox";
        case ParameterKind::Popup:
            return "popup";
        case ParameterKind::Color:
            return "colour";
        case ParameterKind::Point:
            return "point";
        case ParameterKind::Point3D:
            return "3D point";
        case ParameterKind::Layer:
            return "layer";
        case ParameterKind::Path:
            return "path";
        case ParameterKind::Gradient:
            return "gradient";
        case ParameterKind::Ramp:
            return "ramp";
        case ParameterKind::Script:
            return "script";
        case ParameterKind::Group:
            return "group";
        case ParameterKind::Button:
            return "button";
        default:
            return "other";
    }
}

std::string rangeInWords(const Json& object) {
    if (!object.contains("validMin")) {
        return {};
    }
    return numberInWords(object["validMin"].get<double>()) + " to " + numberInWords(object["validMax"].get<double>());
}

std::string defaultInWords(const Json& object) {
    if (!object.contains("default")) {
        return {};
    }
    const Json& value = object["default"];
    const bool isPopup = object.contains("choices");
    const auto choice = isPopup ? value.get<std::size_t>() : 0;
    if (isPopup && choice >= 1 && choice <= object["choices"].size()) {
        return object["choices"][choice - 1].get<std::string>();
    }
    return value.is_number() ? numberInWords(value.get<double>()) : value.dump();
}

std::string choicesInWords(const Json& object) {
    std::string words;
    if (object.contains("choices")) {
        for (const auto& choice : object["choices"]) {
            words += (words.empty() ? "" : ", ") + choice.get<std::string>();
        }
    }
    return words;
}

constexpr std::array<const char*, 8> columnTitles{"index", "disk id", "id",      "type",
                                                  "label", "range",   "default", "popup texts"};
using Row = std::array<std::string, columnTitles.size()>;

std::vector<Row> rowsOf(const ParameterTable& table) {
    std::vector<Row> rows;
    for (int index = 1; index < table.count(); ++index) {
        const Json object = describeParameter(table, index);
        rows.push_back({std::to_string(index), std::to_string(object["diskId"].get<int>()), table.id(index),
                        typeInWords(table.kind(index)), object["label"].get<std::string>(), rangeInWords(object),
                        defaultInWords(object), choicesInWords(object)});
    }
    return rows;
}

std::string joined(const Row& row, const std::string& between) {
    std::string line;
    for (std::size_t column = 0; column < row.size(); ++column) {
        line += (column == 0 ? "" : between) + row[column];
    }
    return line;
}

void padColumns(std::vector<Row>& rows) {
    for (std::size_t column = 0; column < columnTitles.size(); ++column) {
        std::size_t width = 0;
        for (const auto& row : rows) {
            width = std::max(width, row[column].size());
        }
        for (auto& row : rows) {
            row[column].resize(width, ' ');
        }
    }
}

Row titleRow() {
    Row titles;
    std::copy(columnTitles.begin(), columnTitles.end(), titles.begin());
    return titles;
}

std::string escapedForMarkdown(const std::string& text) {
    std::string escaped;
    for (const char letter : text) {
        escaped += letter == '|' ? "\\|" : std::string(1, letter);
    }
    return escaped;
}

}  // namespace

Json describeParameter(const ParameterTable& table, int index) {
    const auto& definition = table.at(index).definition;
    Json object{{"id", table.id(index)},         {"index", index},
                {"diskId", definition.uu.id},    {"type", definition.param_type},
                {"label", labelOf(definition)},  {"flags", definition.flags},
                {"uiFlags", definition.ui_flags}};
    putTypeParts(object, table.at(index));
    if (definition.ui_width != 0 || definition.ui_height != 0) {
        object["uiWidth"] = definition.ui_width;
        object["uiHeight"] = definition.ui_height;
    }
    return object;
}

std::string parametersAsJson(const ParameterTable& table) {
    std::string text;
    for (int index = 1; index < table.count(); ++index) {
        text += (text.empty() ? "[\n" : ",\n") + describeParameter(table, index).dump();
    }
    return text + "\n]\n";
}

std::string parametersAsText(const ParameterTable& table) {
    auto rows = rowsOf(table);
    rows.insert(rows.begin(), titleRow());
    padColumns(rows);
    std::string text;
    for (const auto& row : rows) {
        std::string line = joined(row, "  ");
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    }
    return text;
}

std::string parametersAsMarkdown(const ParameterTable& table) {
    std::string text = "| " + joined(titleRow(), " | ") + " |\n|";
    for (std::size_t column = 0; column < columnTitles.size(); ++column) {
        text += " --- |";
    }
    text += '\n';
    for (auto& row : rowsOf(table)) {
        std::transform(row.begin(), row.end(), row.begin(), escapedForMarkdown);
        row[2] = '`' + row[2] + '`';
        text += "| " + joined(row, " | ") + " |\n";
    }
    return text;
}

}  // namespace TessavoyHost
