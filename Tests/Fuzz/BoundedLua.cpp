// Stands between the effect and Lua: the linker's --wrap sends the effect's calls here. The product sets a script no
// bounds and hands it the file system; under a fuzzer both would end the run without a finding.

#include "Tests/Fuzz/BoundedLua.h"

#include <lua.hpp>

#include <cstdlib>

extern "C" {
lua_State* __real_lua_newstate(lua_Alloc allocate, void* data);
void __real_luaL_openlibs(lua_State* lua);
lua_State* __wrap_lua_newstate(lua_Alloc allocate, void* data);
void __wrap_luaL_openlibs(lua_State* lua);
}

namespace TessavoyFuzz {

namespace {

constexpr int instructionsPerCheck = 1000;

std::int64_t instructionsLeft = 0;
std::int64_t bytesLeft = 0;
lua_Alloc effectsAllocate = nullptr;

void* allocateWithin(void* data, void* block, std::size_t oldSize, std::size_t newSize) {
    const auto freed = static_cast<std::int64_t>(block == nullptr ? 0 : oldSize);
    const auto growth = static_cast<std::int64_t>(newSize) - freed;
    if (growth > bytesLeft) {
        return nullptr;
    }
    void* result = effectsAllocate(data, block, oldSize, newSize);
    if (result != nullptr || newSize == 0) {
        bytesLeft -= growth;
    }
    return result;
}

/// Coroutines take the hook over from the one that makes them, with its step.
void countInstructions(lua_State* lua, lua_Debug*) {
    instructionsLeft -= lua_gethookcount(lua);
    if (instructionsLeft <= 0) {
        // Whoever catches the error gets no further either.
        lua_sethook(lua, countInstructions, LUA_MASKCOUNT, 1);
        luaL_error(lua, "the budget is used up");
    }
}

/// Takes away what leaves the process, and what Lua itself doesn't hold against a hostile script: the debug library and
/// precompiled code. A metatable of the globals is refused too: the effect sets and gets its own globals outside every
/// protected call, where an error in a metamethod is meant to stop the process.
constexpr const char* removal = R"(
os, io, package, debug, require, dofile, loadfile, string.dump = nil
print = function() end
local plainLoad = load
load = function(chunk, name, _, ...) return plainLoad(chunk, name, 't', ...) end
local globals, plainSetmetatable = _G, setmetatable
setmetatable = function(t, ...) return t ~= globals and plainSetmetatable(t, ...) end
)";

}  // namespace

void refillBudget() {
    instructionsLeft = instructionBudget;
    bytesLeft = byteBudget;
}

}  // namespace TessavoyFuzz

lua_State* __wrap_lua_newstate(lua_Alloc allocate, void* data) {
    using namespace TessavoyFuzz;
    effectsAllocate = allocate;
    lua_State* lua = __real_lua_newstate(allocateWithin, data);
    if (lua != nullptr) {
        lua_sethook(lua, countInstructions, LUA_MASKCOUNT, instructionsPerCheck);
    }
    return lua;
}

void __wrap_luaL_openlibs(lua_State* lua) {
    __real_luaL_openlibs(lua);
    if (luaL_dostring(lua, TessavoyFuzz::removal) != LUA_OK) {
        std::abort();
    }
}
