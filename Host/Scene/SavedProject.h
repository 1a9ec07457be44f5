#pragma once

#include <filesystem>
#include <string>

#include "Host/EffectInstance.h"
#include "Host/Project.h"
#include "Host/Scene/JsonNode.h"
#include "Host/Scene/ParameterTable.h"
#include "Host/Scene/Values.h"

// What a project keeps of one instance of the effect, in a file of its own: CBOR (RFC 8949), one map of
//
//   "format"         "tessavoy project"
//   "version"        1, of this format
//   "effect"         the effect's match name
//   "effectVersion"  its version number
//   "parameters"     a list in the panel's order of maps with "diskId", an integer, and "value": the value or the keys
//                    as scenes write them, but gradients and ramps as byte strings, in the effect's own flat form
//   "sequenceData"   a byte string: script and slot names in the effect's own flat form
//
// Layers and masks stand there by name, since they belong to the composition. The same instance gives the same bytes.

namespace TessavoyHost {

// The file's bytes. Throws HostError when the module refuses to flatten its data.
std::string savedProject(EffectInstance& instance, const ParameterTable& table);

// Puts what the file holds into the project: parameters, script and slot names. What is wrong with it are problems at
// the node's place, with the file's name; the values are checked as a scene's are.
void readSavedProject(const JsonNode& node, const std::filesystem::path& file, const ParameterTable& table,
                      const SceneNames& names, Project& project);

}  // namespace TessavoyHost
