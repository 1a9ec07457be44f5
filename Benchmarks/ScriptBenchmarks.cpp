// The user's script on one thread. Each figure's bound has the same name with "Bound" at its end.
//
// - ScriptCell: a cell through the script: pushed, run, read back. The bound is a bare protected call of the same
//   function with as many arguments and results, which are dropped unread: at most 1.25 times it for a script that
//   changes nothing. The bound in ScriptCellReadBound reads all results as well. Script 0 is empty, 1 changes two
//   outputs, and 2 is the same with a word that has all outputs read.
// - ScriptGetFloat, ScriptGetNoise, ScriptGetLayer: a call of the API function from a script's loop. The bound is the
//   same loop over a C function that returns constants, plus as often the work itself in a plain loop: at most 1.5
//   times it.
// - ScriptCompile: a script made ready for a frame, and released. The bound is a state with all libraries and the chunk
//   loaded, and closed: at most 1.2 times it.
//
// Items are cells, calls and compilations.

#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/Script/ScriptHost.h"
#include "Source/Script/ScriptText.h"

#include <benchmark/benchmark.h>
#include <lua.hpp>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace Tessavoy {
namespace {

/// A host that lends memory and one layer of 8-bit pixels, 320 x 180.
class SmallHost {
public:
    SmallHost() {
        mUtilities.ansi.sprintf = std::sprintf;
        mUtilities.host_new_handle = [](A_HandleSize size) {
            auto* handle = static_cast<void**>(std::malloc(sizeof(void*)));
            *handle = std::malloc(size);
            return handle;
        };
        mUtilities.host_lock_handle = [](PF_Handle handle) -> void* { return *handle; };
        mUtilities.host_unlock_handle = [](PF_Handle) {};
        mUtilities.host_dispose_handle = [](PF_Handle handle) {
            std::free(*handle);
            std::free(handle);
        };
        mUtilities.get_pixel_data8 = [](PF_EffectWorld* world, PF_PixelPtr, PF_Pixel8** pixels) -> PF_Err {
            *pixels = reinterpret_cast<PF_Pixel8*>(world->data);
            return 0;
        };
        inData.utils = &mUtilities;
        inData.time_step = 1;
        inData.time_scale = 25;
    }

    SmallHost(const SmallHost&) = delete;
    SmallHost& operator=(const SmallHost&) = delete;

    /// The layer as a parameter; its pixels live as long as the host.
    PF_ParamDef layer() {
        PF_ParamDef parameter{};
        parameter.param_type = PF_Param_LAYER;
        parameter.u.ld.width = width;
        parameter.u.ld.height = height;
        parameter.u.ld.rowbytes = width * static_cast<A_long>(sizeof(PF_Pixel8));
        parameter.u.ld.data = reinterpret_cast<PF_PixelPtr>(mPixels.data());
        return parameter;
    }

    PF_InData inData{};

private:
    static constexpr A_long width = 320;
    static constexpr A_long height = 180;

    PF_UtilCallbacks mUtilities{};
    std::vector<PF_Pixel8> mPixels = std::vector<PF_Pixel8>(std::size_t{width} * height, {255, 200, 100, 50});
};

/// A frame whose slots 1 hold a number, a noise and a layer, and a cell of it.
struct Scene {
    Scene() : snapshot(&host.inData) {
        snapshot.Float[0] = 3.0;
        NoiseSource& noise = snapshot.Noise[0];
        noise.Multiplier = 10.0;
        noise.Scale = 100.0;
        noise.ScaleX = 1.0;
        noise.ScaleY = 1.0;
        noise.MultLayer.Index = 1;
        noise.buildTable();
        snapshot.layers.inData = &host.inData;
        snapshot.layers.checkouts.push_back(host.layer());
        cell.visible = 1;
        cell.radius = 10.0F;
        cell.partsCount = 4;
    }

    SmallHost host;
    ParameterSnapshot snapshot;
    Matrix gridMatrix = Matrix::identity();
    CellScriptInputs inputs{1.0F, 1.0F, 0.25F, 0.5F, 40, 30, 800.0, 600.0, gridMatrix};
    InstanceState cell{};
};

const char* const scripts[] = {"", "x = x + 10 * math.sin(time + i)\ny = y + 10 * math.cos(time + j)",
                               "x = x + 10 * math.sin(time + i)\ny = y + 10 * math.cos(time + j) -- return"};

void runCells(benchmark::State& state, const std::string& script, int itemsPerCell) {
    Scene scene;
    ScriptHost host;
    if (!host.compile(&scene.host.inData, script.c_str(), &scene.snapshot)) {
        state.SkipWithError(host.errorText());
        return;
    }
    for (auto step : state) {
        if (!host.runCell(&scene.host.inData, scene.inputs, scene.cell)) {
            state.SkipWithError(host.errorText());
            break;
        }
        benchmark::DoNotOptimize(scene.cell);
    }
    state.SetItemsProcessed(state.iterations() * itemsPerCell);
}

std::string chunkOf(const std::string& script) {
    std::string chunk(script.size() + ScriptText::chunkOverhead, '\0');
    const int length = std::snprintf(chunk.data(), chunk.size(), ScriptText::chunkTemplate, ScriptText::functionName,
                                     ScriptText::inputs, ScriptText::outputs, script.c_str(), ScriptText::outputs);
    chunk.resize(static_cast<std::size_t>(length));
    return chunk;
}

constexpr int argumentCount = ScriptText::inputCount + ScriptText::outputCount;

using State = std::unique_ptr<lua_State, void (*)(lua_State*)>;

/// All that Lua itself asks for a script: a state, its libraries and the chunk, loaded and not yet run.
State loadedChunk(const std::string& chunk) {
    State lua(luaL_newstate(), lua_close);
    luaL_openlibs(lua.get());
    benchmark::DoNotOptimize(luaL_loadbufferx(lua.get(), chunk.data(), chunk.size(), "script", nullptr));
    return lua;
}

/// One call of the function at the bottom of the stack; the results are on top of it.
int callFunction(lua_State* lua) {
    lua_pushvalue(lua, 1);
    for (int k = 0; k < argumentCount; ++k) {
        lua_pushnumber(lua, k);
    }
    return lua_pcallk(lua, argumentCount, ScriptText::outputCount, 0, 0, nullptr);
}

/// The same with the results dropped unread.
int bareCall(lua_State* lua) {
    const int status = callFunction(lua);
    lua_settop(lua, 1);
    return status;
}

/// A state whose stack holds the script as a function and has room for a call.
State compiledFunction(const std::string& script) {
    State lua = loadedChunk(chunkOf(script));
    lua_pcallk(lua.get(), 0, 0, 0, 0, nullptr);
    lua_getglobal(lua.get(), ScriptText::functionName);
    luaL_checkstack(lua.get(), 1 + argumentCount, nullptr);
    return lua;
}

void ScriptCell(benchmark::State& state) {
    runCells(state, scripts[state.range(0)], 1);
}

void ScriptCellBound(benchmark::State& state) {
    const State lua = compiledFunction(scripts[state.range(0)]);
    for (auto step : state) {
        if (bareCall(lua.get()) != LUA_OK) {
            state.SkipWithError(lua_tostring(lua.get(), -1));
            break;
        }
    }
    state.SetItemsProcessed(state.iterations());
}

/// The least with which a caller knows the results.
void ScriptCellReadBound(benchmark::State& state) {
    const State lua = compiledFunction(scripts[state.range(0)]);
    std::array<double, ScriptText::outputCount> results;
    for (auto step : state) {
        if (callFunction(lua.get()) != LUA_OK) {
            state.SkipWithError(lua_tostring(lua.get(), -1));
            break;
        }
        for (int k = 0; k < ScriptText::outputCount; ++k) {
            results[k] = lua_tonumberx(lua.get(), 2 + k, nullptr);
        }
        lua_settop(lua.get(), 1);
        benchmark::DoNotOptimize(results);
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(ScriptCell)->ArgName("script")->Arg(0)->Arg(1)->Arg(2);
BENCHMARK(ScriptCellBound)->ArgName("script")->Arg(0)->Arg(1);
BENCHMARK(ScriptCellReadBound)->ArgName("script")->Arg(0)->Arg(1);

constexpr int callsPerCell = 1000;

/// A script that calls a function over and over: "GetNoise(1, k * 0.001, 0.5)".
std::string loopOver(const std::string& call) {
    return "for k = 1, " + std::to_string(callsPerCell) + " do local a, b, c, d = " + call + " end";
}

/// A C function that reads nothing and returns as many constants as the API function has results.
template <int results>
int constants(lua_State* lua) {
    for (int k = 0; k < results; ++k) {
        lua_pushnumber(lua, 0.5);
    }
    return results;
}

/// The loop over the constant function in place of `name`, and then as often the work that the API function does.
template <int results, class Work>
void runBound(benchmark::State& state, const char* name, const std::string& call, const Work& work) {
    const State lua = compiledFunction(loopOver(call));
    lua_pushcclosure(lua.get(), constants<results>, 0);
    lua_setglobal(lua.get(), name);
    for (auto step : state) {
        if (bareCall(lua.get()) != LUA_OK) {
            state.SkipWithError(lua_tostring(lua.get(), -1));
            break;
        }
        for (int k = 1; k <= callsPerCell; ++k) {
            benchmark::DoNotOptimize(work(k * 0.001));
        }
    }
    state.SetItemsProcessed(state.iterations() * callsPerCell);
}

const std::string floatCall = "GetFloat(1)";
const std::string noiseCall = "GetNoise(1, k * 0.001, 0.5)";
const std::string layerCall = "GetLayer(1, k * 0.001, 0.5)";

void ScriptGetFloat(benchmark::State& state) {
    runCells(state, loopOver(floatCall), callsPerCell);
}

void ScriptGetFloatBound(benchmark::State& state) {
    const Scene scene;
    runBound<1>(state, "GetFloat", floatCall, [&](double) { return scene.snapshot.Float[0]; });
}

void ScriptGetNoise(benchmark::State& state) {
    runCells(state, loopOver(noiseCall), callsPerCell);
}

void ScriptGetNoiseBound(benchmark::State& state) {
    const Scene scene;
    runBound<1>(state, "GetNoise", noiseCall,
                [&](double u) { return scene.snapshot.Noise[0].sample(static_cast<float>(u), 0.5F); });
}

void ScriptGetLayer(benchmark::State& state) {
    runCells(state, loopOver(layerCall), callsPerCell);
}

void ScriptGetLayerBound(benchmark::State& state) {
    const Scene scene;
    runBound<4>(state, "GetLayer", layerCall,
                [&](double u) { return scene.snapshot.layerColor(1, static_cast<float>(u), 0.5F); });
}

BENCHMARK(ScriptGetFloat);
BENCHMARK(ScriptGetFloatBound);
BENCHMARK(ScriptGetNoise);
BENCHMARK(ScriptGetNoiseBound);
BENCHMARK(ScriptGetLayer);
BENCHMARK(ScriptGetLayerBound);

void ScriptCompile(benchmark::State& state) {
    Scene scene;
    ScriptHost host;
    for (auto step : state) {
        if (!host.compile(&scene.host.inData, scripts[1], &scene.snapshot)) {
            state.SkipWithError(host.errorText());
            break;
        }
        host.release(&scene.host.inData);
    }
    state.SetItemsProcessed(state.iterations());
}

void ScriptCompileBound(benchmark::State& state) {
    const std::string chunk = chunkOf(scripts[1]);
    for (auto step : state) {
        loadedChunk(chunk);
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(ScriptCompile);
BENCHMARK(ScriptCompileBound);

}  // namespace
}  // namespace Tessavoy
