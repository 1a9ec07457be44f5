#include "Host/Command/SceneSchema.h"

#include <map>
#include <string>

#include "Host/Command/ParameterListing.h"
#include "Host/Image.h"
#include "Host/Scene/CompositionReader.h"
#include "Host/Scene/EffectReader.h"
#include "Host/Scene/JsonNode.h"
#include "Host/Scene/Values.h"

namespace TessavoyHost {
namespace {

using Json = nlohmann::ordered_json;

Json object(const Json& properties, const Json& required) {
    return {{"type", "object"}, {"properties", properties}, {"required", required}, {"additionalProperties", false}};
}

Json number(double least, double most) {
    return {{"type", "number"}, {"minimum", least}, {"maximum", most}};
}

Json integer(int least, int most) {
    return {{"type", "integer"}, {"minimum", least}, {"maximum", most}};
}

Json listOf(const Json& item, int least, int most) {
    return {{"type", "array"}, {"items", item}, {"minItems", least}, {"maxItems", most}};
}

Json words(const Json& texts) {
    return {{"enum", texts}};
}

Json reference(const std::string& definition) {
    return {{"$ref", "#/$defs/" + definition}};
}

Json described(Json schema, const std::string& description) {
    schema["description"] = description;
    return schema;
}

const Json positive{{"type", "number"}, {"exclusiveMinimum", 0}};
const Json nonEmptyText{{"type", "string"}, {"minLength", 1}};

Json colorSchema() {
    return {{"oneOf", Json::array({{{"type", "string"}, {"pattern", "^#([0-9a-fA-F]{6}|[0-9a-fA-F]{8})$"}},
                                   listOf(integer(0, 255), 3, 4)})}};
}

Json gradientSchema() {
    const Json point = object({{"t", reference("unit")},
                               {"kind", words({"linear", "sin", "edge"})},
                               {"color", listOf(reference("unit"), 4, 4)}},
                              {"t", "kind", "color"});
    return object({{"points", {{"type", "array"}, {"items", point}}}}, Json::array({"points"}));
}

Json rampSchema() {
    return object({{"mode", words({"all", "withoutSin"})},
                   {"interpolation", words({"sin", "line", "step", "bezier"})},
                   {"points", {{"type", "array"}, {"items", listOf(reference("unit"), 2, 2)}}}},
                  {"interpolation", "points"});
}

Json frameRateSchema() {
    return {{"oneOf", Json::array({positive, {{"type", "string"}, {"pattern", "^[0-9]+/[0-9]+$"}}})}};
}

Json fixedPointSchema() {
    return number(fixedPointRange.least, fixedPointRange.most);
}

Json sharedDefinitions() {
    return {{"unit", number(0, 1)},
            {"frameRate", frameRateSchema()},
            {"color", colorSchema()},
            {"point", listOf(fixedPointSchema(), 2, 2)},
            {"point3D", listOf({{"type", "number"}}, 3, 3)},
            {"gradient", gradientSchema()},
            {"ramp", rampSchema()},
            {"layerName", described({{"type", {"string", "null"}}}, "the name of a layer, or null")},
            {"maskName", described({{"type", {"string", "null"}}}, "the name of a mask, or null")},
            {"ease", words({"linear", "hold", "smooth"})}};
}

// The value, or keys of such values.
Json mayVary(const Json& value) {
    const Json key = object({{"time", described({{"type", "number"}}, "seconds, strictly rising")},
                             {"value", value},
                             {"ease", reference("ease")}},
                            {"time", "value"});
    const Json keys = {{"type", "array"}, {"items", key}, {"minItems", 1}};
    return {{"anyOf", Json::array({value, object({{"keys", keys}}, Json::array({"keys"}))})}};
}

Json popupSchema(const RegisteredParameter& parameter) {
    return {{"oneOf", Json::array({words(splitChoices(parameter.popupTexts)),
                                   integer(1, parameter.definition.u.pd.num_choices)})}};
}

Json sliderSchema(const Json& description) {
    return number(description["validMin"].get<double>(), description["validMax"].get<double>());
}

Json valueSchema(const ParameterTable& table, int index) {
    switch (table.kind(index)) {
        case ParameterKind::Slider:
        case ParameterKind::FloatSlider:
            return sliderSchema(describeParameter(table, index));
        case ParameterKind::Angle:
            return fixedPointSchema();
        case ParameterKind::Checkbox:
            return {{"type", "boolean"}};
        case ParameterKind::Popup:
            return popupSchema(table.at(index));
        case ParameterKind::Color:
            return reference("color");
        case ParameterKind::Point:
            return reference("point");
        case ParameterKind::Point3D:
            return reference("point3D");
        case ParameterKind::Layer:
            return reference("layerName");
        case ParameterKind::Path:
            return reference("maskName");
        case ParameterKind::Gradient:
            return reference("gradient");
        default:
            return reference("ramp");
    }
}

// Names alike schemas, so that each stands once among the definitions.
class SchemaPool {
public:
    Json share(const Json& schema) {
        const std::string text = schema.dump();
        const auto [entry, isNew] = mNames.try_emplace(text, "value" + std::to_string(mNames.size() + 1));
        if (isNew) {
            mDefinitions[entry->second] = schema;
        }
        return reference(entry->second);
    }
    const Json& definitions() const { return mDefinitions; }

private:
    std::map<std::string, std::string> mNames;
    Json mDefinitions = Json::object();
};

// Whether the registered default reads as a scene would write it; a point's is a percentage of the layer.
bool hasSceneDefault(ParameterKind kind) {
    return kind != ParameterKind::Point;
}

Json parametersSchema(const ParameterTable& table, SchemaPool& pool) {
    Json properties = Json::object();
    for (const auto& id : table.valueIds()) {
        const int index = *table.index(id);
        const Json value = valueSchema(table, index);
        const bool varies = variesOverTime(table.at(index).definition);
        Json schema = pool.share(varies ? mayVary(value) : value);
        const Json description = describeParameter(table, index);
        schema["title"] = description["label"];
        if (description.contains("default") && hasSceneDefault(table.kind(index))) {
            schema["default"] = description["default"];
        }
        properties[id] = schema;
    }
    return object(properties, Json::array());
}

Json namesSchema(const ParameterTable& table) {
    const Json name{{"type", "string"}, {"minLength", 1}, {"maxLength", longestSlotName}};
    Json properties = Json::object();
    for (const auto& slot : table.slots()) {
        properties[slot.id] = name;
    }
    return described(object(properties, Json::array()), "names of custom slots, each once within its kind");
}

Json effectSchema(const ParameterTable& table, SchemaPool& pool) {
    Json effect = object({{"layer", described(nonEmptyText, "the layer that the effect is applied to")},
                          {"parameters", parametersSchema(table, pool)},
                          {"names", namesSchema(table)},
                          {"script", described(nonEmptyText, "a file with the script")},
                          {"scriptText", {{"type", "string"}}},
                          {"project", described(nonEmptyText, "a file that tessavoy save wrote, to start from")}},
                         Json::array({"layer"}));
    effect["not"] = {{"required", {"script", "scriptText"}}};
    return effect;
}

Json compositionSchema() {
    const Json side = integer(1, maximumPictureSide);
    return object({{"width", side}, {"height", side}, {"frameRate", reference("frameRate")}, {"duration", positive}},
                  {"width", "height", "frameRate", "duration"});
}

Json layerSchema() {
    const Json side = integer(1, maximumPictureSide);
    const Json still = object({{"name", nonEmptyText}, {"image", nonEmptyText}}, {"name", "image"});
    const Json sequence = object({{"name", nonEmptyText},
                                  {"image", described(nonEmptyText, "a file name with a place for the number: ####")},
                                  {"first", {{"type", "integer"}, {"minimum", 0}}},
                                  {"count", {{"type", "integer"}, {"minimum", 1}}},
                                  {"frameRate", reference("frameRate")},
                                  {"start", described({{"type", "number"}}, "composition seconds")}},
                                 {"name", "image", "first", "count"});
    const Json solid =
        object({{"name", nonEmptyText}, {"solid", reference("color")}, {"width", side}, {"height", side}},
               {"name", "solid", "width", "height"});
    return {{"anyOf", Json::array({still, sequence, solid})}};
}

Json maskSchema() {
    const Json point = reference("point");
    const Json vertex = object({{"point", point}, {"in", point}, {"out", point}}, Json::array({"point"}));
    return object({{"name", nonEmptyText},
                   {"closed", {{"type", "boolean"}, {"default", true}}},
                   {"vertices", {{"type", "array"}, {"items", vertex}, {"minItems", 1}}}},
                  {"name", "vertices"});
}

Json cameraSchema(SchemaPool& pool) {
    const Json vector = pool.share(mayVary(reference("point3D")));
    return object({{"position", vector},
                   {"pointOfInterest", vector},
                   {"orientation", vector},
                   {"rotation", vector},
                   {"zoom", pool.share(mayVary(positive))}},
                  Json::array({"zoom"}));
}

Json arrayOf(const Json& item) {
    return {{"type", "array"}, {"items", item}};
}

}  // namespace

Json sceneSchema(const ParameterTable& table) {
    SchemaPool pool;
    const Json scene = object({{"tessavoy", {{"const", 1}, {"description", "version of the scene format"}}},
                               {"composition", compositionSchema()},
                               {"layers", arrayOf(layerSchema())},
                               {"masks", arrayOf(maskSchema())},
                               {"camera", cameraSchema(pool)},
                               {"effect", effectSchema(table, pool)}},
                              {"tessavoy", "composition", "layers", "effect"});
    Json schema{{"$schema", "https://json-schema.org/draft/2020-12/schema"}, {"title", "Tessavoy scene"}};
    schema.update(scene);
    schema["$defs"] = sharedDefinitions();
    schema["$defs"].update(pool.definitions());
    return schema;
}

}  // namespace TessavoyHost
