#include "Host/Scene/EffectReader.h"

#include <algorithm>
#include <set>
#include <utility>

#include "Host/Scene/Files.h"
#include "Host/Scene/Nearest.h"
#include "Host/Scene/SavedProject.h"
#include "Host/Scene/Tracks.h"

namespace TessavoyHost {
namespace {

int readEffectLayer(const JsonObject& effect, const std::vector<std::string>& layers) {
    const auto node = effect.require("layer");
    const auto name = node ? node->name() : std::nullopt;
    if (!name) {
        return 0;
    }
    const auto found = std::find(layers.begin(), layers.end(), *name);
    if (found == layers.end()) {
        node->problem("there is no layer \"" + *name + '"' + didYouMean(*name, layers));
        return 0;
    }
    return static_cast<int>(found - layers.begin());
}

std::string whyNoValue(ParameterKind kind) {
    switch (kind) {
        case ParameterKind::Group:
            return "is a group and takes no value";
        case ParameterKind::Button:
            return "is a button and takes no value";
        case ParameterKind::Script:
            return "is given as \"script\" or \"scriptText\" of the effect";
        default:
            return "is of a kind that scenes can't give";
    }
}

void readParameters(const JsonNode& node, const ParameterTable& table, const SceneNames& names, Project& project) {
    if (!node.json().is_object()) {
        node.wrongType("an object");
        return;
    }
    for (const auto& [id, value] : node.json().items()) {
        auto track = readParameter(id, node.child(id), table, names);
        if (track) {
            project.parameters[*table.index(id)] = std::move(*track);
        }
    }
}

// The names of slots, which must differ within a family, also from those that a saved project gave to other slots.
class SlotNames {
public:
    SlotNames(const ParameterTable& table, Project& project) : mSlots(table.slots()), mProject(project) {}

    void read(const JsonNode& node) {
        for (const CustomSlot& slot : mSlots) {
            const auto saved = mProject.slotNames.find(slot.diskId);
            if (saved != mProject.slotNames.end() && !node.json().contains(slot.id)) {
                mTaken.insert({slot.family, saved->second});
            }
        }
        for (const auto& [id, value] : node.json().items()) {
            readOne(id, node.child(id));
        }
    }

private:
    void readOne(const std::string& id, const JsonNode& node) {
        const auto slot =
            std::find_if(mSlots.begin(), mSlots.end(), [&id](const CustomSlot& known) { return known.id == id; });
        if (slot == mSlots.end()) {
            node.problem("is no custom slot" + didYouMean(id, slotIds()));
            return;
        }
        const auto name = node.name();
        if (name && isUsable(node, slot->family, *name)) {
            mProject.slotNames[slot->diskId] = *name;
        }
    }

    bool isUsable(const JsonNode& node, const std::string& family, const std::string& name) {
        if (name.size() > longestSlotName) {
            node.problem("has " + std::to_string(name.size()) + " bytes; a name has at most " +
                         std::to_string(longestSlotName));
            return false;
        }
        if (!mTaken.insert({family, name}).second) {
            node.problem("another slot of \"" + family + "\" is called \"" + name + "\" already");
            return false;
        }
        return true;
    }

    std::vector<std::string> slotIds() const {
        std::vector<std::string> ids;
        for (const auto& slot : mSlots) {
            ids.push_back(slot.id);
        }
        return ids;
    }

    std::vector<CustomSlot> mSlots;
    Project& mProject;
    std::set<std::pair<std::string, std::string>> mTaken;
};

void readNames(const JsonNode& node, const ParameterTable& table, Project& project) {
    if (!node.json().is_object()) {
        node.wrongType("an object");
        return;
    }
    SlotNames(table, project).read(node);
}

void readScript(const JsonObject& effect, const std::filesystem::path& folder, SceneScript use, Project& project) {
    const auto fileNode = effect.find("script");
    const auto textNode = effect.find("scriptText");
    if (fileNode && textNode) {
        textNode->problem("stands beside \"script\"; give one of them");
    }
    if (textNode) {
        const auto text = textNode->text();
        if (text && text->find('\0') != std::string::npos) {
            textNode->problem("must not hold a zero byte");
        }
        project.script = text.value_or("");
        return;
    }
    const auto fileName = fileNode ? fileNode->name() : std::nullopt;
    if (!fileName || use == SceneScript::Replaced) {
        return;
    }
    std::string problem;
    project.scriptFile = folder / pathFromUtf8(*fileName);
    auto script = readScriptFile(project.scriptFile, problem);
    if (!script) {
        fileNode->problem(problem);
    }
    project.script = script.value_or("");
}

}  // namespace

std::optional<ParameterTrack> readParameter(const std::string& id, const JsonNode& node, const ParameterTable& table,
                                            const SceneNames& names) {
    const auto index = table.index(id);
    if (!index) {
        node.problem("unknown parameter" + didYouMean(id, table.valueIds()));
        return std::nullopt;
    }
    if (!holdsValue(table.kind(*index))) {
        node.problem(whyNoValue(table.kind(*index)));
        return std::nullopt;
    }
    const auto& parameter = table.at(*index);
    const auto overTime = variesOverTime(parameter.definition) ? OverTime::MayVary : OverTime::Fixed;
    return readTrack(node, overTime, [&parameter, &names](const JsonNode& value) {
        return readParameterValue(value, parameter, names);
    });
}

std::optional<std::string> readScriptFile(const std::filesystem::path& file, std::string& problem) {
    std::string reason;
    auto script = readFile(file, reason);
    if (script && script->find('\0') != std::string::npos) {
        reason = "holds a zero byte, and is no script";
        script.reset();
    }
    if (!script) {
        problem = utf8(file) + ": " + reason;
    }
    return script;
}

void readEffect(const JsonNode& node, const std::filesystem::path& folder, const ParameterTable& table,
                const SceneNames& names, SceneScript script, Project& project) {
    const JsonObject effect(node, {"layer", "parameters", "names", "script", "scriptText", "project"});
    project.effectLayer = readEffectLayer(effect, names.layers);
    if (const auto saved = effect.find("project")) {
        if (const auto file = saved->name()) {
            readSavedProject(*saved, folder / pathFromUtf8(*file), table, names, project);
        }
    }
    if (const auto parameters = effect.find("parameters")) {
        readParameters(*parameters, table, names, project);
    }
    if (const auto slotNames = effect.find("names")) {
        readNames(*slotNames, table, project);
    }
    readScript(effect, folder, script, project);
}

}  // namespace TessavoyHost
