#pragma once

#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/Parameter/ParametersCustom.h"
#include "Source/Script/FiniteNumber.h"
#include "Source/Script/ScriptHost.h"

#include <lua.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace Tessavoy {

/// The span of one call from a script: its arguments by position, from 1, and its results. A script may make many in
/// every cell, so all of this is inline.
///
/// Nothing here raises a Lua error, so objects with destructors may live in a call. A call may push as many results as
/// Lua grants a C function (20).
class ApiCall {
public:
    /// For a closure whose second upvalue is a ScriptHost. The snapshot is the host's: reading another upvalue would
    /// take as long as reading an argument.
    explicit ApiCall(lua_State* lua)
        : mLua(lua), mHost(static_cast<ScriptHost*>(lua_touserdata(lua, lua_upvalueindex(2)))) {}

    /// Whether a frame's cell is being run, so that `snapshot` and the host's matrix are there. A script that took the
    /// upvalue away, with the debug library, has no frame either.
    bool hasFrame() const { return mHost != nullptr && mHost->snapshot() != nullptr && mHost->gridMatrix() != nullptr; }

    const ParameterSnapshot& snapshot() const { return *mHost->snapshot(); }
    ScriptHost& host() const { return *mHost; }

    /// The argument as a number; 0 for what is none.
    double number(int position) const { return lua_tonumberx(mLua, position, nullptr); }

    /// The same with 0 for an infinity.
    double finite(int position) const { return zeroForInfinity(number(position)); }

    /// `finite` in single precision.
    float single(int position) const { return static_cast<float>(finite(position)); }

    /// Argument 1 as a slot of a kind, 1 to 21: a text is a slot's name; a number counts without its fraction and is
    /// lowered to 21; what is neither, or is below 1, is slot 1.
    A_long slot(CustomParameterType kind) const {
        if (lua_type(mLua, 1) == LUA_TSTRING) {
            return namedSlot(kind);
        }
        int isWhole = 0;  // the usual case, and the quickest to read
        const lua_Integer whole = lua_tointegerx(mLua, 1, &isWhole);
        if (isWhole != 0) {
            return static_cast<A_long>(std::clamp<lua_Integer>(whole, 1, CustomSlotEntries));
        }
        const double slot = finite(1);
        return slot >= 1.0 ? static_cast<A_long>(std::min<double>(slot, CustomSlotEntries)) : 1;
    }

    /// Each a number of its own, in order.
    template <class... Results>
    void push(Results... results) const {
        (lua_pushnumber(mLua, static_cast<lua_Number>(results)), ...);
    }

private:
    A_long namedSlot(CustomParameterType kind) const {
        std::size_t length = 0;
        const char* name = lua_tolstring(mLua, 1, &length);
        return mHost->slotNamed(kind, std::string_view(name, length));
    }

    lua_State* mLua;
    ScriptHost* mHost;
};

}  // namespace Tessavoy
