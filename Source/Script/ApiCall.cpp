#include "Source/Script/ApiCall.h"

#include "Source/Script/FiniteNumber.h"

#include <lua.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace Tessavoy {

namespace {

constexpr int snapshotUpvalue = 1;
constexpr int hostUpvalue = 2;

}  // namespace

ApiCall::ApiCall(lua_State* lua)
    : mLua(lua),
      mSnapshot(static_cast<const ParameterSnapshot*>(lua_touserdata(lua, lua_upvalueindex(snapshotUpvalue)))),
      mHost(static_cast<ScriptHost*>(lua_touserdata(lua, lua_upvalueindex(hostUpvalue)))) {}

double ApiCall::number(int position) const {
    return lua_tonumberx(mLua, position, nullptr);
}

double ApiCall::finite(int position) const {
    return zeroForInfinity(number(position));
}

A_long ApiCall::slot(CustomParameterType kind) const {
    if (lua_type(mLua, 1) == LUA_TSTRING) {
        std::size_t length = 0;
        const char* name = lua_tolstring(mLua, 1, &length);
        return mHost->slotNamed(kind, std::string_view(name, length));
    }
    const double slot = number(1);
    if (!std::isfinite(slot) || slot < 1.0) {
        return 1;
    }
    return static_cast<A_long>(std::min<double>(slot, CustomSlotEntries));
}

void ApiCall::push(double result) const {
    lua_pushnumber(mLua, result);
}

void ApiCall::push(std::initializer_list<float> results) const {
    for (const float result : results) {
        push(double{result});
    }
}

}  // namespace Tessavoy
