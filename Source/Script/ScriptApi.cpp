#include "Source/Script/ScriptApi.h"

#include "Source/Editors/GradientParameter.h"
#include "Source/Editors/RampParameter.h"
#include "Source/Evaluate/Truncation.h"
#include "Source/Script/ApiCall.h"

#include <lua.hpp>

#include <array>
#include <cmath>
#include <cstddef>
#include <exception>

namespace Tessavoy {

namespace {

using Type = CustomParameterType;

std::size_t entryOf(A_long slot) {
    return static_cast<std::size_t>(slot - 1);
}

void getFloat(const ApiCall& call) {
    call.push(call.snapshot().Float[entryOf(call.slot(Type::Float))]);
}

void getColor(const ApiCall& call) {
    const auto [r, g, b, a] = call.snapshot().Color[entryOf(call.slot(Type::Color))];
    call.push(r, g, b, a);
}

void getLayer(const ApiCall& call) {
    const auto [r, g, b, a] = call.snapshot().layerColor(call.slot(Type::Layer), call.single(2), call.single(3));
    call.push(r, g, b, a);
}

void getNoise(const ApiCall& call) {
    call.push(call.snapshot().Noise[entryOf(call.slot(Type::Noise))].sample(call.single(2), call.single(3)));
}

void getRandom(const ApiCall& call) {
    const auto& random = call.snapshot().Random[entryOf(call.slot(Type::Random))];
    call.push(random.sample(truncated(call.finite(2)), truncated(call.finite(3))));
}

void getRamp(const ApiCall& call) {
    const PF_Handle handle = call.snapshot().Ramp[entryOf(call.slot(Type::Ramp))];
    if (handle == nullptr) {
        call.push(0.0F);
        return;
    }
    const CheckOutRamp ramp(call.host().inData(), handle);
    call.push(EvaluateRamp(*ramp, call.single(2)));
}

/// Only the odd slots up to 9 hold gradients; what the host left in the others is not to be touched.
PF_Handle gradientHandle(const ParameterSnapshot& snapshot, A_long slot) {
    constexpr A_long lastGradient = 9;
    return slot % 2 == 1 && slot <= lastGradient ? snapshot.Gradient[entryOf(slot)] : nullptr;
}

void getGradient(const ApiCall& call) {
    const PF_Handle handle = gradientHandle(call.snapshot(), call.slot(Type::Gradient));
    if (handle == nullptr) {
        call.push(0.0F, 0.0F, 0.0F);
        return;
    }
    const CheckOutGradient gradient(call.host().inData(), handle);
    float color[4];
    EvaluateGradient(*gradient, call.single(2), color);
    call.push(color[0], color[1], color[2]);
}

/// A host coordinate, of the downsampled layer, as a full-resolution one.
float fullResolution(double coordinate, float downsample) {
    return static_cast<float>(coordinate / downsample);
}

void getPath(const ApiCall& call) {
    const A_u_long pathId = call.snapshot().Path[entryOf(call.slot(Type::Path))];
    if (pathId == 0) {
        call.push(0.0F, 0.0F);
        return;
    }
    ScriptHost& host = call.host();
    const PathPoint point = host.pathTable(pathId).sample(call.number(2));
    call.push(fullResolution(point.x, host.downsampleX()), fullResolution(point.y, host.downsampleY()));
}

void getPoint2D(const ApiCall& call) {
    const std::size_t entry = entryOf(call.slot(Type::Point2D));
    const auto& points = call.snapshot().Point2D;
    const ScriptHost& host = call.host();
    call.push(fullResolution(points.X[entry], host.downsampleX()), fullResolution(points.Y[entry], host.downsampleY()));
}

/// Depth goes by the horizontal factor.
void getPoint3D(const ApiCall& call) {
    const std::size_t entry = entryOf(call.slot(Type::Point3D));
    const auto& points = call.snapshot().Point3D;
    const ScriptHost& host = call.host();
    call.push(fullResolution(points.X[entry], host.downsampleX()), fullResolution(points.Y[entry], host.downsampleY()),
              fullResolution(points.Z[entry], host.downsampleX()));
}

/// The distance from the viewer of a point of the grid. The matrix holds the view, whose origin the viewer is.
void getDistToCam(const ApiCall& call) {
    const auto& m = call.host().gridMatrix()->m;
    const float x = call.single(1);
    const float y = call.single(2);
    const float z = call.single(3);
    const auto row = [&](int k) { return m[k] * x + m[k + 4] * y + m[k + 8] * z + m[k + 12]; };
    const float viewX = row(0);
    const float viewY = row(1);
    const float viewZ = row(2);
    call.push(std::sqrt(viewX * viewX + viewY * viewY + viewZ * viewZ));
}

void lerp(const ApiCall& call) {
    const double a = call.number(1);
    call.push((call.number(2) - a) * call.number(3) + a);
}

double square(double number) {
    return number * number;
}

void dist2D(const ApiCall& call) {
    call.push(std::sqrt(square(call.number(3) - call.number(1)) + square(call.number(4) - call.number(2))));
}

void dist3D(const ApiCall& call) {
    call.push(std::sqrt(square(call.number(4) - call.number(1)) + square(call.number(5) - call.number(2)) +
                        square(call.number(6) - call.number(3))));
}

using Body = void (*)(const ApiCall&);

/// Runs the body and keeps what it throws; whether it came to its end.
template <Body body>
bool attempt(const ApiCall& call) noexcept {
    try {
        body(call);
        return true;
    } catch (...) {
        call.host().keepFailure(std::current_exception());
        return false;
    }
}

/// A function of the frame. A Lua error is a jump over C++ frames, so it is raised only after the handler has been
/// left and nothing with a destructor is alive.
template <Body body, int results>
int frameFunction(lua_State* lua) {
    const ApiCall call(lua);
    if (!call.hasFrame()) {
        for (int k = 0; k < results; ++k) {
            call.push(0.0);
        }
        return results;
    }
    if (!attempt<body>(call)) {
        lua_pushliteral(lua, "the host failed");
        return lua_error(lua);
    }
    return results;
}

template <Body body>
int plainFunction(lua_State* lua) {
    body(ApiCall(lua));
    return 1;
}

struct ApiFunction {
    const char* name;
    lua_CFunction function;
};

/// In the order of registration.
constexpr std::array<ApiFunction, 15> functions = {{
    {"GetFloat", frameFunction<getFloat, 1>},
    {"GetSlider", frameFunction<getFloat, 1>},
    {"GetColor", frameFunction<getColor, 4>},
    {"GetLayer", frameFunction<getLayer, 4>},
    {"GetNoise", frameFunction<getNoise, 1>},
    {"GetRandom", frameFunction<getRandom, 1>},
    {"GetRamp", frameFunction<getRamp, 1>},
    {"GetGradient", frameFunction<getGradient, 3>},
    {"GetPath", frameFunction<getPath, 2>},
    {"GetPoint2D", frameFunction<getPoint2D, 2>},
    {"GetPoint3D", frameFunction<getPoint3D, 3>},
    {"GetDistToCam", frameFunction<getDistToCam, 1>},
    {"Lerp", plainFunction<lerp>},
    {"Dist2D", plainFunction<dist2D>},
    {"Dist3D", plainFunction<dist3D>},
}};

}  // namespace

void registerScriptApi(lua_State* lua, const ParameterSnapshot* snapshot, ScriptHost* host) {
    for (const auto& [name, function] : functions) {
        // Lua holds plain pointers; the functions only read the snapshot.
        lua_pushlightuserdata(lua, const_cast<ParameterSnapshot*>(snapshot));
        lua_pushlightuserdata(lua, host);
        lua_pushcclosure(lua, function, 2);
        lua_setglobal(lua, name);
    }
}

}  // namespace Tessavoy
