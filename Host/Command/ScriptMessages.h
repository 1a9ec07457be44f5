#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "Host/EffectInstance.h"
#include "Host/Scene/ParameterTable.h"

namespace TessavoyHost {

// The user's script as messages name it.
struct ScriptSource {
    std::string name;  // its file, or the scene's file and the place of the text in it
    std::string text;
};

// scene: the file that the project was read from.
ScriptSource scriptSourceOf(const Project& project, const std::filesystem::path& scene);

// A message of the effect with Lua's positions in the chunk that the effect makes of the script turned into the user's
// own: `[string "script"]:5: ` into `wave.lua:3: `. A position behind the script's end becomes its last line.
std::string inUsersLines(const std::string& message, const ScriptSource& script);

// The same for a message about a script that doesn't compile, in which Lua names other lines too: "at line 5" becomes
// "at line 3", and nothing is said of the function that the effect puts round the script.
std::string compileErrorInUsersLines(const std::string& message, const ScriptSource& script);

// What is wrong with the script: Lua's message for one that doesn't compile, in the user's lines, with what helps where
// that is plain. The effect shows it in its control alone, so that is where it is read.
std::optional<std::string> scriptProblem(EffectInstance& instance, const ParameterTable& table,
                                         const ScriptSource& script);

// Whether a message of a frame says that the script failed in it. The frames after it may be without the script.
bool isScriptFailure(const std::string& message);

}  // namespace TessavoyHost
