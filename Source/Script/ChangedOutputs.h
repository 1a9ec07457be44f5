#pragma once

#include <cstdint>

struct lua_State;

namespace Tessavoy {

/// A set of a script's outputs: bit k for the k-th name of ScriptText::outputs, from 0.
using OutputSet = std::uint32_t;

/// The outputs that this script may change: `text` is the user's own, and the state holds the chunk made of it, which
/// has run. Those that it leaves alone come back from every call as they went in and need not be read. An output is in
/// the set unless it is certain that it stays, which is so when
///
/// - the text doesn't end the function that it stands in, which then ends with the chunk's last line;
/// - none of its words is the output's name: Lua knows a variable by no other way than its name;
/// - none is one of those by which a function's results or variables can be changed without naming them: an early
///   `return`, another function under this one's name, and whatever leads to the debug library or to chunks that could
///   name it.
///
/// Words are looked for everywhere, in comments and texts, too.
OutputSet outputsThatMayChange(lua_State* lua, const char* text);

}  // namespace Tessavoy
