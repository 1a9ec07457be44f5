#pragma once

struct lua_State;

namespace Tessavoy {

struct ParameterSnapshot;
class ScriptHost;

/// Defines the functions with which a script reads the custom parameters, as globals, in their order. Each is a closure
/// over the snapshot, which may be null, and the host; neither is owned.
///
/// A bad argument never raises an error in Lua: what is no number reads as 0, and a slot that is none is slot 1. A
/// failure of the host raises one, but what was thrown is kept by the ScriptHost and comes out of its runCell. Without
/// a snapshot, and outside a cell, the functions that read the frame give zeros.
void registerScriptApi(lua_State* lua, const ParameterSnapshot* snapshot, ScriptHost* host);

}  // namespace Tessavoy
