#include "Host/Scene/SceneFile.h"

#include "Host/HostError.h"
#include "Host/Scene/CameraReader.h"
#include "Host/Scene/CompositionReader.h"
#include "Host/Scene/EffectReader.h"
#include "Host/Scene/Files.h"
#include "Host/Scene/JsonText.h"
#include "Host/Scene/MasksReader.h"
#include "Host/Scene/Overrides.h"

namespace TessavoyHost {
namespace {

constexpr int formatVersion = 1;

// Stands in for a composition that is wrong, so that the rest of the scene can be looked at too.
Composition placeholderComposition() {
    Composition composition;
    composition.width = composition.height = 1;
    composition.duration = 1;
    return composition;
}

constexpr std::size_t longestTextTold = 32;

// The value where it is a number or a short text, otherwise what it is.
std::string versionInWords(const nlohmann::json& version) {
    const bool isShortText = version.is_string() && version.get_ref<const std::string&>().size() <= longestTextTold;
    return version.is_number() || isShortText ? version.dump() : typeInWords(version);
}

void checkVersion(const JsonObject& scene) {
    const auto version = scene.require("tessavoy");
    if (version && version->json() != formatVersion) {
        version->problem("this command reads version " + std::to_string(formatVersion) + " of the format, not " +
                         versionInWords(version->json()));
    }
}

SceneNames namesOf(const LayerList& layers, const std::vector<Mask>& masks) {
    SceneNames names;
    names.layers = layers.names;
    for (const auto& mask : masks) {
        names.masks.push_back(mask.name);
    }
    return names;
}

// Reads everything into the project, as far as it goes, and gives the names that its values may refer to.
SceneNames readParts(const JsonNode& root, const std::filesystem::path& folder, const ParameterTable& table,
                     const ImageAccess& images, SceneScript script, Project& project) {
    const JsonObject scene(root, {"tessavoy", "composition", "layers", "masks", "camera", "effect"});
    checkVersion(scene);
    const auto compositionNode = scene.require("composition");
    const auto composition = compositionNode ? readComposition(*compositionNode) : std::nullopt;
    project.composition = composition.value_or(placeholderComposition());

    const auto layersNode = scene.require("layers");
    const auto layers = layersNode ? readLayers(*layersNode, folder, project.composition, images) : LayerList{};
    project.layers = layers.sources;
    if (const auto masks = scene.find("masks")) {
        project.masks = readMasks(*masks);
    }
    if (const auto camera = scene.find("camera")) {
        project.camera = readCamera(*camera);
    }
    const SceneNames names = namesOf(layers, project.masks);
    if (const auto effect = scene.require("effect")) {
        readEffect(*effect, folder, table, names, script, project);
    }
    return names;
}

}  // namespace

SceneText loadSceneText(const std::filesystem::path& file) {
    std::string reason;
    auto json = readFile(file, reason);
    if (!json) {
        throw HostError(ExitStatus::Scene, utf8(file) + ": " + reason);
    }
    return {file, std::move(*json)};
}

Project readScene(const SceneText& scene, const ParameterTable& table, const SceneOverrides& overrides,
                  const ImageAccess& images) {
    Project project;
    Problems problems;
    const auto json = parseJsonText(scene.json, problems);
    // Where a key stands twice nobody knows which value is meant, so what follows from either is not told.
    problems.throwIfAny(ExitStatus::Scene, utf8(scene.file));
    const SceneScript script = overrides.script ? SceneScript::Replaced : SceneScript::Read;
    const SceneNames names =
        readParts(JsonNode(*json, Place(), problems), scene.file.parent_path(), table, images, script, project);
    problems.throwIfAny(ExitStatus::Scene, utf8(scene.file));
    applyOverrides(overrides, table, names, project);
    return project;
}

}  // namespace TessavoyHost
