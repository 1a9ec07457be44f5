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

/// Gives one result after the other: read from its stack position, from 1, or if it can't have changed, what went in.
class Results {
public:
    Results(lua_State* lua, OutputSet changed) : mLua(lua), mChanged(changed) {}

    std::uint8_t truth(std::uint8_t before) {
        return static_cast<std::uint8_t>(next() ? lua_toboolean(mLua, mPosition) : before != 0);
    }
    float finite(float before) {
        return static_cast<float>(zeroForInfinity(next() ? lua_tonumberx(mLua, mPosition, nullptr) : before));
    }
    A_long wholeNumber(A_long before) { return next() ? truncated(lua_tonumberx(mLua, mPosition, nullptr)) : before; }
    A_long finiteWholeNumber(A_long before) {
        return next() ? truncated(zeroForInfinity(lua_tonumberx(mLua, mPosition, nullptr))) : before;
    }

private:
    bool next() { return (mChanged >> mPosition++ & 1) != 0; }

    lua_State* mLua;
    OutputSet mChanged;
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

void readCell(lua_State* lua, OutputSet changed, InstanceState& cell) {
    Results results(lua, changed);
    cell.visible = results.truth(cell.visible);
    cell.x = results.finite(cell.x);
    cell.y = results.finite(cell.y);
    cell.z = results.finite(cell.z);
    cell.angleX = results.finite(cell.angleX);
    cell.angleY = results.finite(cell.angleY);
    cell.angle = results.finite(cell.angle);
    cell.radius = results.finite(cell.radius);
    cell.r = results.finite(cell.r);
    cell.g = results.finite(cell.g);
    cell.b = results.finite(cell.b);
    cell.a = results.finite(cell.a);
    cell.feather = results.finite(cell.feather);
    cell.stroke = results.truth(cell.stroke);
    cell.strokeWidth = results.finite(cell.strokeWidth);
    cell.partsCount = results.wholeNumber(cell.partsCount);
    cell.anchorX = results.finite(cell.anchorX);
    cell.anchorY = results.finite(cell.anchorY);
    cell.scaleX = results.finite(cell.scaleX);
    cell.scaleY = results.finite(cell.scaleY);
    cell.angleOffset = results.finite(cell.angleOffset);
    cell.spriteIndex = results.finiteWholeNumber(cell.spriteIndex);
}

}  // namespace Tessavoy
