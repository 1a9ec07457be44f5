#pragma once

#include "HostInterface/Effect.h"
#include "Source/Matrix.h"
#include "Source/Parameter/ParametersCustom.h"
#include "Source/Path.h"
#include "Source/RenderGrid/CellScript.h"
#include "Source/RenderGrid/InstanceState.h"
#include "Source/Script/ChangedOutputs.h"
#include "Source/Script/SlotNameTable.h"

#include <array>
#include <exception>
#include <string_view>

struct lua_State;

namespace Tessavoy {

struct ParameterSnapshot;

/// The user's script, compiled for one frame: a Lua 5.4 state that holds it as a function, called once a cell. Made on
/// the thread that renders the frame, and for that frame alone; nothing of a state outlasts it. All standard libraries
/// are open, and neither memory nor time is limited.
///
/// Host memory that can't be had throws 4 (as PF_ErrorValue), in every function that takes the in-data.
class ScriptHost {
public:
    ScriptHost() = default;

    /// As `release`. The in-data of the last call must still be that of the running command.
    ~ScriptHost();

    ScriptHost(const ScriptHost&) = delete;
    ScriptHost& operator=(const ScriptHost&) = delete;

    /// Makes a state, compiles `text` (Lua, the body of the cell's function, up to its zero; may be empty) and defines
    /// the API functions in it. False when the text doesn't compile; `errorText` then says why, and no state is live.
    ///
    /// snapshot: what the API functions read, not owned and alive as long as this; null for a check of the text alone.
    bool compile(PF_InData* inData, const char* text, const ParameterSnapshot* snapshot);

    /// Runs the script for a cell, which it reads and rewrites in place. True on success, and when no state is live.
    /// On failure the cell is as it was, `errorText` says why, and the state is closed, so that all later calls leave
    /// their cells alone.
    ///
    /// A failure of the host inside an API function comes out as it was thrown there, whatever the script made of it;
    /// the state is closed then too.
    /// The inputs' matrix must live until the next call or `release`.
    bool runCell(PF_InData* inData, const CellScriptInputs& inputs, InstanceState& cell);

    /// Closes the state and frees the error text.
    void release(PF_InData* inData);

    /// The last failure in Lua's words, with the line number of the assembled chunk; empty for none.
    const char* errorText() const { return mErrorText == nullptr ? "" : mErrorText; }

    // What the API functions need of the frame.

    PF_InData* inData() const { return mInData; }

    /// What `compile` was given.
    const ParameterSnapshot* snapshot() const { return mSnapshot; }

    float downsampleX() const { return mDownsampleX; }
    float downsampleY() const { return mDownsampleY; }

    /// The grid's matrix while cells are run; null before the first cell and when the state is closing, when a
    /// finalizer of the script's may still call an API function.
    const Matrix* gridMatrix() const { return mGridMatrix; }

    /// The table of a host path, flattened at its first use in the frame.
    const PathTable& pathTable(A_u_long pathId);

    /// The slot of a kind with this name, 1 to 10; 1 for a name that nobody assigned.
    A_long slotNamed(CustomParameterType kind, std::string_view name);

    /// Keeps a C++ exception that may not pass through Lua's frames, unless one is kept already.
    void keepFailure(std::exception_ptr failure);

private:
    void makeState();
    bool fail();
    void closeState();
    void freeErrorText();
    void rethrowKeptFailure();

    PF_InData* mInData = nullptr;
    const ParameterSnapshot* mSnapshot = nullptr;
    lua_State* mState = nullptr;
    char* mErrorText = nullptr;  ///< in host memory
    float mDownsampleX = 1.0F;
    float mDownsampleY = 1.0F;
    const Matrix* mGridMatrix = nullptr;
    OutputSet mChanged = 0;  ///< the outputs that the script may change
    PathTableCache mPaths;
    std::array<SlotNameTable, CustomParameterKinds> mSlotNames;
    std::exception_ptr mFailure;
};

}  // namespace Tessavoy
