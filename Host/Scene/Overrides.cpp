#include "Host/Scene/Overrides.h"

#include <utility>

#include "Host/HostError.h"
#include "Host/Scene/EffectReader.h"
#include "Host/Scene/JsonText.h"

namespace TessavoyHost {
namespace {

bool isMeantAsJson(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    return first != std::string::npos && (text[first] == '{' || text[first] == '[');
}

// Names of layers and masks may look like numbers.
bool takesNames(ParameterKind kind) {
    return kind == ParameterKind::Layer || kind == ParameterKind::Path;
}

// The text as JSON, or itself where it is none. Lists and objects must be right, with the problems in the list.
nlohmann::json jsonOrText(const std::string& text, bool namesOnly, Problems& problems) {
    Problems ofText;
    auto json = parseJsonText(text, ofText);
    if (!ofText.empty() && isMeantAsJson(text)) {
        problems = ofText;
    }
    const bool isValue = json && !(namesOnly && (json->is_number() || json->is_boolean()));
    return isValue ? std::move(*json) : nlohmann::json(text);
}

class OverrideReader {
public:
    OverrideReader(const ParameterTable& table, const SceneNames& names, Project& project)
        : mTable(table), mNames(names), mProject(project) {}

    void apply(const std::string& id, const std::string& text) {
        const Place place("--set " + id);
        const auto index = mTable.index(id);
        Problems ofText;
        const auto json = jsonOrText(text, index && takesNames(mTable.kind(*index)), ofText);
        for (const auto& line : ofText.lines()) {
            mProblems.add(place, line);
        }
        if (ofText.empty()) {
            if (auto track = readParameter(id, JsonNode(json, place, mProblems), mTable, mNames)) {
                mProject.parameters[*index] = std::move(*track);
            }
        }
    }

    void applyScript(const std::filesystem::path& file) {
        std::string problem;
        auto script = readScriptFile(file, problem);
        if (script) {
            mProject.script = std::move(*script);
            mProject.scriptFile = file;
        } else {
            mProblems.add(Place("--script"), problem);
        }
    }

    void finish() const { mProblems.throwIfAny(ExitStatus::CommandLine); }

private:
    const ParameterTable& mTable;
    const SceneNames& mNames;
    Project& mProject;
    Problems mProblems;
};

}  // namespace

void applyOverrides(const SceneOverrides& overrides, const ParameterTable& table, const SceneNames& names,
                    Project& project) {
    OverrideReader reader(table, names, project);
    for (const auto& [id, text] : overrides.parameters) {
        reader.apply(id, text);
    }
    if (overrides.script) {
        reader.applyScript(*overrides.script);
    }
    reader.finish();
}

}  // namespace TessavoyHost
