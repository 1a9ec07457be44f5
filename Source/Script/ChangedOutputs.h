#pragma once

#include <cstdint>

struct lua_State;

namespace Tessavoy {

/// A set of a script's outputs: bit k for the k-th name of ScriptText::outputs, from 0.
using OutputSet = std::uint32_t;

/// The outputs that this script may change: `text` is the user's own, which compiled. Those that it leaves alone come
/// back from every call as they went in and need not be read. An output is in the set unless it is certain that it
/// stays, which is so when
///
/// - nothing in the text ends the function that it stands in: it has no `end`, or is a block by itself;
/// - none of its words is the output's name: Lua knows a variable by no other way than its name;
/// - none is one of those by which a function's results or variables can be changed without naming them: an early
///   `return`, another function under this one's name, and whatever leads to the debug library or to chunks that could
///   name it.
///
/// Words are looked for everywhere, in comments and texts, too.
OutputSet outputsThatMayChange(lua_State* lua, const char* text);

}  // namespace Tessavoy
