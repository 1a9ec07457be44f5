#include "Source/Script/ScriptPanic.h"

#include <lua.hpp>

#ifdef _WIN32
#include <windows.h>
#else
#include <cstdio>
#endif

namespace Tessavoy {

namespace {

constexpr const char* title = "Lua error";

void showBox(const char* text) {
#ifdef _WIN32
    MessageBoxA(nullptr, text, title, MB_OK);
#else
    std::fprintf(stderr, "%s: %s\n", title, text);
#endif
}

}  // namespace

int showScriptPanic(lua_State* lua) {
    const char* text = lua_tolstring(lua, -1, nullptr);
    showBox(text == nullptr ? "Error object is not a string" : text);
    return 0;
}

}  // namespace Tessavoy
