#pragma once

struct lua_State;

namespace Tessavoy {

/// Lua's panic function, for an error outside every protected call: shows the message on top of the stack to the user,
/// in a message box titled "Lua error" on Windows and as a line on standard error elsewhere. Lua then stops the
/// process.
int showScriptPanic(lua_State* lua);

}  // namespace Tessavoy
