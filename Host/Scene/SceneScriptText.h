#pragma once

#include <string>

namespace TessavoyHost {

// The text of a scene file with another "scriptText" in its "effect", added there where it lacks. All other bytes stay,
// remarks and order too. The text must be a scene that was read without a problem, the script UTF-8.
std::string withScriptText(const std::string& sceneJson, const std::string& script);

}  // namespace TessavoyHost
