#include "Source/Script/CellExchange.h"

#include "Source/Evaluate/Truncation.h"
#include "Source/Script/FiniteNumber.h"

#include <lua.hpp>

#include <cstdint>

namespace Tessavoy {

namespace {

void pushInputs(lua_State* lua, const PF_InData& inData, const CellScriptInputs& inputs, const InstanceState& cell) {
    lua_pushnumber(lua, static_cast<double>(inData.current_time) / inData.time_scale);
    lua_pushnumber(lua, frameNumber(inData));
    lua_pushnumber(lua, cell.i);
    lua_pushnumber(lua, cell.j);
    lua_pushnumber(lua, inputs.xPart);
    lua_pushnumber(lua, inputs.yPart);
    lua_pushinteger(lua, inputs.xCount);
    lua_pushinteger(lua, inputs.yCount);
    lua_pushnumber(lua, static_cast<float>(inputs.gridWidth));
    lua_pushnumber(lua, static_cast<float>(inputs.gridHeight));
}

void pushOutputs(lua_State* lua, const InstanceState& cell) {
    lua_pushboolean(lua, cell.visible);
    lua_pushnumber(lua, cell.x);
    lua_pushnumber(lua, cell.y);
    lua_pushnumber(lua, cell.z);
    lua_pushnumber(lua, cell.angleX);
    lua_pushnumber(lua, cell.angleY);
    lua_pushnumber(lua, cell.angle);
    lua_pushnumber(lua, cell.radius);
    lua_pushnumber(lua, cell.r);
    lua_pushnumber(lua, cell.g);
    lua_pushnumber(lua, cell.b);
    lua_pushnumber(lua, cell.a);
    lua_pushnumber(lua, cell.feather);
    lua_pushboolean(lua, cell.stroke);
    lua_pushnumber(lua, cell.strokeWidth);
    lua_pushnumber(lua, cell.partsCount);
    lua_pushnumber(lua, cell.anchorX);
    lua_pushnumber(lua, cell.anchorY);
    lua_pushnumber(lua, cell.scaleX);
    lua_pushnumber(lua, cell.scaleY);
    lua_pushnumber(lua, cell.angleOffset);
    lua_pushinteger(lua, cell.spriteIndex);
}

/// Reads one stack position after the other, from 1.
class Results {
public:
    explicit Results(lua_State* lua) : mLua(lua) {}

    std::uint8_t truth() { return static_cast<std::uint8_t>(lua_toboolean(mLua, ++mPosition)); }
    double number() { return lua_tonumberx(mLua, ++mPosition, nullptr); }
    float finite() { return static_cast<float>(zeroForInfinity(number())); }

private:
    lua_State* mLua;
    int mPosition = 0;
};

}  // namespace

A_long frameNumber(const PF_InData& inData) {
    return inData.time_step == 0 ? 0 : inData.current_time / inData.time_step;
}

void pushCell(lua_State* lua, const PF_InData& inData, const CellScriptInputs& inputs, const InstanceState& cell) {
    pushInputs(lua, inData, inputs, cell);
    pushOutputs(lua, cell);
}

void readCell(lua_State* lua, InstanceState& cell) {
    Results results(lua);
    cell.visible = results.truth();
    cell.x = results.finite();
    cell.y = results.finite();
    cell.z = results.finite();
    cell.angleX = results.finite();
    cell.angleY = results.finite();
    cell.angle = results.finite();
    cell.radius = results.finite();
    cell.r = results.finite();
    cell.g = results.finite();
    cell.b = results.finite();
    cell.a = results.finite();
    cell.feather = results.finite();
    cell.stroke = results.truth();
    cell.strokeWidth = results.finite();
    cell.partsCount = truncated(results.number());
    cell.anchorX = results.finite();
    cell.anchorY = results.finite();
    cell.scaleX = results.finite();
    cell.scaleY = results.finite();
    cell.angleOffset = results.finite();
    cell.spriteIndex = truncated(zeroForInfinity(results.number()));
}

}  // namespace Tessavoy
