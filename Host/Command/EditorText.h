#pragma once

#include <optional>
#include <string>

namespace TessavoyHost {

// What the user's editor is given: the help as remarks of Lua between two marked lines, and the script below the second
// of them, closed by a line end.
std::string editorText(const std::string& help, const std::string& script);

// The script in what the editor left: all that stands below the second mark, or everything where both marks are gone. A
// line end that editorText added is taken off again. Nothing where only one of the marks is there, so that nobody can
// tell where the script begins.
std::optional<std::string> scriptInEditorText(const std::string& text, const std::string& scriptBefore);

}  // namespace TessavoyHost
