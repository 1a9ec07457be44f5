#include "Source/Script/ScriptHost.h"

#include "Source/HostAccess/HostBlock.h"
#include "Source/Script/CellExchange.h"
#include "Source/Script/ScriptApi.h"
#include "Source/Script/ScriptPanic.h"
#include "Source/Script/ScriptText.h"

#include <lua.hpp>

#include <cstdlib>
#include <cstring>
#include <utility>

namespace Tessavoy {

namespace {

constexpr double pathStep = 5.0;

/// Lua's memory comes from the C library and has no bound.
void* reallocate(void*, void* block, std::size_t, std::size_t newSize) {
    if (newSize == 0) {
        std::free(block);
        return nullptr;
    }
    return std::realloc(block, newSize);
}

/// Loads the user's text as the body of the cell's function; a status of Lua's. The chunk, or the message, is on the
/// stack.
int loadChunk(PF_InData* inData, lua_State* lua, const char* text) {
    const HostBlock chunk(inData, std::strlen(text) + ScriptText::chunkOverhead);
    inData->utils->ansi.sprintf(chunk.characters(), ScriptText::chunkTemplate, ScriptText::functionName,
                                ScriptText::inputs, ScriptText::outputs, text, ScriptText::outputs);
    return luaL_loadbufferx(lua, chunk.characters(), std::strlen(chunk.characters()), ScriptText::chunkName, nullptr);
}

}  // namespace

ScriptHost::~ScriptHost() {
    closeState();
    freeErrorText();
}

bool ScriptHost::compile(PF_InData* inData, const char* text, const ParameterSnapshot* snapshot) {
    release(inData);
    mSnapshot = snapshot;
    makeState();
    if (loadChunk(inData, mState, text) != LUA_OK || lua_pcallk(mState, 0, 0, 0, 0, nullptr) != LUA_OK) {
        return fail();
    }
    mChanged = outputsThatMayChange(mState, text);
    registerScriptApi(mState, snapshot, this);
    return true;
}

void ScriptHost::makeState() {
    mState = lua_newstate(reallocate, this);
    if (mState == nullptr) {
        throw PF_Err_OUT_OF_MEMORY;
    }
    lua_atpanic(mState, showScriptPanic);
    luaL_openlibs(mState);
    // A cell puts the function with its arguments on the stack, more than Lua grants unasked.
    constexpr int cellSlots = 1 + ScriptText::inputCount + ScriptText::outputCount;
    if (lua_checkstack(mState, cellSlots) == 0) {
        throw PF_Err_OUT_OF_MEMORY;
    }
}

bool ScriptHost::runCell(PF_InData* inData, const CellScriptInputs& inputs, InstanceState& cell) {
    mInData = inData;
    mDownsampleX = inputs.downsampleX;
    mDownsampleY = inputs.downsampleY;
    mGridMatrix = &inputs.gridMatrix;
    if (mState == nullptr) {
        return true;
    }
    freeErrorText();
    lua_getglobal(mState, ScriptText::functionName);
    pushCell(mState, *inData, inputs, cell);
    const int status =
        lua_pcallk(mState, ScriptText::inputCount + ScriptText::outputCount, ScriptText::outputCount, 0, 0, nullptr);
    rethrowKeptFailure();
    if (status != LUA_OK) {
        return fail();
    }
    readCell(mState, mChanged, cell);
    lua_settop(mState, 0);
    return true;
}

void ScriptHost::release(PF_InData* inData) {
    mInData = inData;
    closeState();
    freeErrorText();
}

const PathTable& ScriptHost::pathTable(A_u_long pathId) {
    const auto found = mPaths.find(pathId);
    if (found != mPaths.end()) {
        return found->second;
    }
    return mPaths.emplace(pathId, PathTable::build(mInData, pathId, pathStep)).first->second;
}

A_long ScriptHost::slotNamed(CustomParameterType kind, std::string_view name) {
    return mSlotNames[static_cast<std::size_t>(kind)].slotNamed(mInData, kind, name);
}

void ScriptHost::keepFailure(std::exception_ptr failure) {
    if (mFailure == nullptr) {
        mFailure = std::move(failure);
    }
}

/// Takes the message from the top of Lua's stack and closes the state. Always false.
bool ScriptHost::fail() {
    mGridMatrix = nullptr;  // making a text of a number may run finalizers
    const char* message = lua_tolstring(mState, -1, nullptr);
    message = message == nullptr ? "" : message;
    HostBlock copy(mInData, std::strlen(message) + 1);
    std::strcpy(copy.characters(), message);
    freeErrorText();
    mErrorText = copy.handOn();
    closeState();
    return false;
}

void ScriptHost::closeState() {
    mGridMatrix = nullptr;
    if (mState != nullptr) {
        lua_close(std::exchange(mState, nullptr));
    }
    mFailure = nullptr;  // what a finalizer met concerns nobody any more
}

void ScriptHost::freeErrorText() {
    HostFree(mInData, std::exchange(mErrorText, nullptr));
}

void ScriptHost::rethrowKeptFailure() {
    if (mFailure != nullptr) {
        const std::exception_ptr failure = std::exchange(mFailure, nullptr);
        closeState();
        std::rethrow_exception(failure);
    }
}

}  // namespace Tessavoy
