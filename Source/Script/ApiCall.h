#pragma once

#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/Parameter/ParametersCustom.h"
#include "Source/Script/ScriptHost.h"

#include <initializer_list>

struct lua_State;

namespace Tessavoy {

/// The span of one call from a script: its arguments by position, from 1, and its results.
///
/// Nothing here raises a Lua error, so objects with destructors may live in a call. A call may push as many results as
/// Lua grants a C function (20).
class ApiCall {
public:
    /// For a closure over a snapshot and a ScriptHost.
    explicit ApiCall(lua_State* lua);

    /// Whether a frame's cell is being run, so that `snapshot` and the host's matrix are there. A script that took the
    /// upvalues away, with the debug library, has no frame either.
    bool hasFrame() const { return mSnapshot != nullptr && mHost != nullptr && mHost->gridMatrix() != nullptr; }

    const ParameterSnapshot& snapshot() const { return *mSnapshot; }
    ScriptHost& host() const { return *mHost; }

    /// The argument as a number; 0 for what is none.
    double number(int position) const;

    /// The same with 0 for an infinity.
    double finite(int position) const;

    /// `finite` in single precision.
    float single(int position) const { return static_cast<float>(finite(position)); }

    /// Argument 1 as a slot of a kind, 1 to 21: a text is a slot's name; a number counts without its fraction and is
    /// lowered to 21; what is neither, or is below 1, is slot 1.
    A_long slot(CustomParameterType kind) const;

    void push(double result) const;
    void push(std::initializer_list<float> results) const;

private:
    lua_State* mLua;
    const ParameterSnapshot* mSnapshot;
    ScriptHost* mHost;
};

}  // namespace Tessavoy
