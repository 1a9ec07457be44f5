#include "Host/Scene/SavedProject.h"

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>
#include <vector>

#include "Host/EffectHost.h"
#include "Host/HostCall.h"
#include "Host/HostError.h"
#include "Host/Scene/Files.h"
#include "Host/Scene/QuietSax.h"
#include "Host/Scene/Tracks.h"
#include "Host/SequenceBlock.h"

namespace TessavoyHost {
namespace {

using Json = nlohmann::json;

constexpr const char* formatName = "tessavoy project";
constexpr int formatVersion = 1;

Json asBytes(const std::vector<std::byte>& flat) {
    const auto* first = reinterpret_cast<const std::uint8_t*>(flat.data());
    return Json::binary(std::vector<std::uint8_t>(first, first + flat.size()));
}

std::vector<std::byte> bytesOf(const Json& binary) {
    const auto& bytes = binary.get_binary();
    const auto* first = reinterpret_cast<const std::byte*>(bytes.data());
    return {first, first + bytes.size()};
}

// A value as scenes write it.
class ValueWriter {
public:
    ValueWriter(const Project& project, ParameterKind kind) : mProject(project), mKind(kind) {}

    Json operator()(double value) const {
        switch (mKind) {
            case ParameterKind::Checkbox:
                return value != 0;
            case ParameterKind::Popup:
                return static_cast<int>(value);
            default:
                return value;
        }
    }
    Json operator()(const ColorValue& value) const { return {value.red, value.green, value.blue, value.alpha}; }
    Json operator()(const Point2& value) const { return {value.x, value.y}; }
    Json operator()(const Point3& value) const { return {value.x, value.y, value.z}; }
    Json operator()(const LayerReference& value) const {
        return value.layer < 0 ? Json() : Json(mProject.layers.at(static_cast<std::size_t>(value.layer))->name());
    }
    Json operator()(const MaskReference& value) const {
        return value.id == 0 ? Json() : Json(mProject.masks.at(value.id - 1).name);
    }
    Json operator()(const ArbitraryValue& value) const { return asBytes(value.flat); }

private:
    const Project& mProject;
    ParameterKind mKind;
};

Json trackAsJson(const ParameterTrack& track, const ValueWriter& writer) {
    if (track.keys.size() == 1) {
        return std::visit(writer, track.keys.front().value);
    }
    Json keys = Json::array();
    for (const Key& key : track.keys) {
        keys.push_back({{"time", key.time}, {"value", std::visit(writer, key.value)}, {"ease", easeWord(key.ease)}});
    }
    return {{"keys", keys}};
}

Json parametersAsJson(EffectInstance& instance, const ParameterTable& table) {
    Json list = Json::array();
    for (int index = 1; index < table.count(); ++index) {
        const ParameterKind kind = table.kind(index);
        if (holdsValue(kind)) {
            const ValueWriter writer(instance.project(), kind);
            list.push_back({{"diskId", table.at(index).definition.uu.id},
                            {"value", trackAsJson(instance.values().saved(index), writer)}});
        }
    }
    return list;
}

// Where the bytes nest deeper than any saved project does, which would have the library's reader call itself as deeply.
class DepthLimit : public QuietSax {
public:
    bool start_object(std::size_t) override { return enter(); }
    bool end_object() override { return leave(); }
    bool start_array(std::size_t) override { return enter(); }
    bool end_array() override { return leave(); }

private:
    static constexpr int deepest = 8;

    bool enter() { return ++mDepth <= deepest; }
    bool leave() {
        --mDepth;
        return true;
    }

    int mDepth = 0;
};

// Nothing for bytes that are no CBOR of a saved project's depth.
std::optional<Json> parseCbor(const std::string& bytes) {
    DepthLimit limit;
    if (!Json::sax_parse(bytes, &limit, Json::input_format_t::cbor)) {
        return std::nullopt;
    }
    return Json::from_cbor(bytes);
}

// Checks that the file is one of these, for this effect; false, with the problem noted, when it isn't.
bool isSavedProject(const JsonNode& root) {
    const Json& json = root.json();
    if (!json.is_object() || json.value("format", Json()) != formatName) {
        root.problem("is no saved project; write one with: tessavoy save SCENE -o FILE");
        return false;
    }
    if (json.value("version", Json()) != formatVersion) {
        root.problem("this command reads version " + std::to_string(formatVersion) +
                     " of saved projects; save it again with this command");
        return false;
    }
    return true;
}

class ParameterReader {
public:
    ParameterReader(const ParameterTable& table, const SceneNames& names, Project& project)
        : mTable(table), mNames(names), mProject(project) {
        for (int index = 1; index < table.count(); ++index) {
            if (holdsValue(table.kind(index))) {
                mIndexes.emplace(table.at(index).definition.uu.id, index);
            }
        }
    }

    void read(const JsonNode& node) {
        const JsonObject object(node, {"diskId", "value"});
        const auto diskId = object.requireInteger("diskId", 0, INT32_MAX);
        const auto value = object.require("value");
        if (!diskId || !value) {
            return;
        }
        const auto found = mIndexes.find(*diskId);
        if (found == mIndexes.end()) {
            node.problem("the effect keeps no value under disk id " + std::to_string(*diskId));
            return;
        }
        if (!mRead.insert(*diskId).second) {
            node.problem("disk id " + std::to_string(*diskId) + " stands twice");
            return;
        }
        if (auto track = readValue(*value, found->second)) {
            mProject.parameters[found->second] = std::move(*track);
        }
    }

private:
    // A registered default counts even where it lies outside of the registered range.
    static bool isDefault(const JsonNode& value, const RegisteredParameter& parameter) {
        const auto number = registeredDefault(parameter.definition, 0, 0);
        return value.json().is_number() && std::holds_alternative<double>(number) &&
               value.json().get<double>() == std::get<double>(number);
    }

    std::optional<ParameterTrack> readValue(const JsonNode& node, int index) const {
        const RegisteredParameter& parameter = mTable.at(index);
        const ParameterKind kind = mTable.kind(index);
        const auto overTime = variesOverTime(parameter.definition) ? OverTime::MayVary : OverTime::Fixed;
        return readTrack(node, overTime, [&](const JsonNode& value) -> std::optional<ParameterValue> {
            if (kind != ParameterKind::Gradient && kind != ParameterKind::Ramp) {
                return isDefault(value, parameter) ? registeredDefault(parameter.definition, 0, 0)
                                                   : readParameterValue(value, parameter, mNames);
            }
            if (!value.json().is_binary()) {
                value.wrongType("a byte string");
                return std::nullopt;
            }
            return ArbitraryValue{bytesOf(value.json())};
        });
    }

    const ParameterTable& mTable;
    const SceneNames& mNames;
    Project& mProject;
    std::map<std::int32_t, int> mIndexes;
    std::set<std::int32_t> mRead;
};

void readSequenceData(const JsonNode& node, Project& project) {
    if (!node.json().is_binary()) {
        node.wrongType("a byte string");
        return;
    }
    auto texts = readSequenceBlock(bytesOf(node.json()));
    if (!texts) {
        node.problem("is not in the effect's saved form");
        return;
    }
    project.script = std::move(texts->script);
    project.slotNames = std::move(texts->names);
}

}  // namespace

std::string savedProject(EffectInstance& instance, const ParameterTable& table) {
    const ModuleDescription& effect = instance.host().description();
    try {
        const Json project = {{"format", formatName},
                              {"version", formatVersion},
                              {"effect", effect.matchName},
                              {"effectVersion", effect.version},
                              {"parameters", parametersAsJson(instance, table)},
                              {"sequenceData", asBytes(instance.flattenedSequenceData())}};
        const std::vector<std::uint8_t> bytes = Json::to_cbor(project);
        return {bytes.begin(), bytes.end()};
    } catch (const HostCallFailure& failure) {
        throw HostError(ExitStatus::Module,
                        "the effect doesn't give its data to be saved, error " + std::to_string(failure.error));
    }
}

void readSavedProject(const JsonNode& node, const std::filesystem::path& file, const ParameterTable& table,
                      const SceneNames& names, Project& project) {
    std::string reason;
    const auto bytes = readFile(file, reason);
    if (!bytes) {
        node.problem(utf8(file) + ": " + reason);
        return;
    }
    const auto json = parseCbor(*bytes).value_or(Json());
    const JsonNode root = node.elsewhere(json, Place(node.place().text() + " (" + utf8(file) + ")"));
    if (!isSavedProject(root)) {
        return;
    }
    const JsonObject saved(root, {"format", "version", "effect", "effectVersion", "parameters", "sequenceData"});
    const auto parameters = saved.require("parameters");
    if (const auto elements = parameters ? parameters->elements() : std::nullopt) {
        ParameterReader reader(table, names, project);
        for (const JsonNode& element : *elements) {
            reader.read(element);
        }
    }
    if (const auto sequence = saved.require("sequenceData")) {
        readSequenceData(*sequence, project);
    }
}

}  // namespace TessavoyHost
