#pragma once

#include <string>

namespace TessavoyHost {

// The effect's three dialog scripts, as they reach the host. The texts put in stand between single quotes and must be
// escaped already.
std::string renameDialog(const std::string& name);
std::string boundsDialog(const std::string& maximum, const std::string& minimum);
std::string editorDialog(const std::string& script);

// The variables that the editor names.
const std::string& scriptInputs();
const std::string& scriptOutputs();

// The text of the single-quoted literal that follows the first `before` in a script, as the script's language reads it:
// with the escapes of JSON strings, characters being bytes. It is a failure of the test when there is none.
std::string literalAfter(const std::string& script, const std::string& before);

// What the editor shows above the script, and where its fields stand.
std::string editorHelpStart();
inline constexpr std::size_t editorHelpField = 0;
inline constexpr std::size_t editorScriptField = 1;

}  // namespace TessavoyHost
