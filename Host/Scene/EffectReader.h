#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "Host/Project.h"
#include "Host/Scene/JsonNode.h"
#include "Host/Scene/ParameterTable.h"
#include "Host/Scene/Values.h"

namespace TessavoyHost {

// Longest name of a custom slot, in bytes.
inline constexpr std::size_t longestSlotName = 31;

// Whether the scene's script counts. One that is replaced must be named rightly, but its file is left alone.
enum class SceneScript { Read, Replaced };

// Reads the "effect" part of a scene into the project: effectLayer, parameters, slotNames and script. What the scene
// gives itself takes the place of what the saved project that it names holds. Files are relative to the folder.
void readEffect(const JsonNode& node, const std::filesystem::path& folder, const ParameterTable& table,
                const SceneNames& names, SceneScript script, Project& project);

// The track of the parameter with that id, or a problem.
std::optional<ParameterTrack> readParameter(const std::string& id, const JsonNode& node, const ParameterTable& table,
                                            const SceneNames& names);

// The text of a script file, which must be readable and hold no zero byte; else a problem in words and nothing.
std::optional<std::string> readScriptFile(const std::filesystem::path& file, std::string& problem);

}  // namespace TessavoyHost
