#pragma once

#include "HostInterface/Effect.h"
#include "Source/RenderGrid/CellScript.h"
#include "Source/RenderGrid/InstanceState.h"
#include "Source/Script/ChangedOutputs.h"

struct lua_State;

namespace Tessavoy {

/// The frame that the command renders, counted from the layer's start; 0 for a host without a time step.
A_long frameNumber(const PF_InData& inData);

/// Pushes the inputs and the outputs of a cell, in the order of their names in ScriptText. The stack must have room.
void pushCell(lua_State* lua, const PF_InData& inData, const CellScriptInputs& inputs, const InstanceState& cell);

/// Reads the outputs from stack positions 1 to 22 into the cell, which is that of pushCell; pops nothing. Those that
/// are not in `changed` came back as they went in.
///
/// What is no number reads as 0. Infinities become 0, NaN stays. In partsCount and spriteIndex, which are truncated,
/// NaN becomes 0 and what an integer can't hold its nearest bound; so does an infinity in partsCount alone. The test
/// for infinity is made in double precision: a finite number too large for single precision is stored as an infinity.
void readCell(lua_State* lua, OutputSet changed, InstanceState& cell);

}  // namespace Tessavoy
