#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Host/Project.h"
#include "Host/Scene/LayersReader.h"
#include "Host/Scene/ParameterTable.h"

namespace TessavoyHost {

// What the command line puts in the place of the scene's values.
struct SceneOverrides {
    std::vector<std::pair<std::string, std::string>> parameters;  // id, and value as JSON or plain text; the last wins
    std::optional<std::filesystem::path> script;
};

// A scene file's text and where it came from.
struct SceneText {
    std::filesystem::path file;
    std::string json;
};

// Throws HostError(Scene) when the file can't be read.
SceneText loadSceneText(const std::filesystem::path& file);

// The project that a scene describes. Throws HostError(Scene) with a line for everything that is wrong with the scene,
// each naming its place, and HostError(CommandLine) likewise for the overrides.
Project readScene(const SceneText& scene, const ParameterTable& table, const SceneOverrides& overrides,
                  const ImageAccess& images);

}  // namespace TessavoyHost
