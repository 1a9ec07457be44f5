#include "Tests/Unit/Script/BankScene.h"

#include <cstring>

namespace Tessavoy {

using Type = CustomParameterType;

const std::array<BankFunction, CustomParameterKinds> bankFunctions = {{
    {Type::Float, "GetFloat", "", 304, 1},
    {Type::Color, "GetColor", "", 316, 1},
    {Type::Layer, "GetLayer", ", 0, 0", 328, 1},
    {Type::Noise, "GetNoise", ", 0, 0", 404, 14},
    {Type::Random, "GetRandom", ", 0, 0", 546, 5},
    {Type::Ramp, "GetRamp", ", 0.5", 846, 1},
    {Type::Gradient, "GetGradient", ", 0.5", 858, 1},
    {Type::Path, "GetPath", ", 0", 870, 1},
    {Type::Point2D, "GetPoint2D", "", 882, 1},
    {Type::Point3D, "GetPoint3D", "", 894, 1},
}};

namespace {

constexpr A_long filledSlots = 10;

/// An address that no handle has.
PF_Handle strayHandle() {
    return reinterpret_cast<PF_Handle>(std::uintptr_t{8});
}

template <class Value>
PF_Handle handleTo(FakeHandleHost& host, Value& value) {
    const Value* address = &value;
    return host.newHandle(std::as_bytes(std::span(&address, 1)));
}

/// Noise that is half of its multiplier at the lattice point 0, 0, 0.
void fillNoise(NoiseSource& noise, double value) {
    noise.Multiplier = 2.0 * value;
    noise.Scale = 100.0;
    noise.ScaleX = 1.0;
    noise.ScaleY = 1.0;
    noise.MultLayer.Index = 1;
    noise.buildTable();
}

}  // namespace

BankScene::BankScene() {
    layers.addSlider();
    for (A_long slot = 1; slot <= filledSlots; ++slot) {
        const auto entry = static_cast<std::size_t>(slot - 1);
        const double value = slot / 32.0;
        const float single = static_cast<float>(value);
        snapshot.Float[entry] = value;
        snapshot.Color[entry] = {single, 0.25F, 0.5F, 0.75F};
        layers.addFloat(1, 1, {FakeLayers::Pixel{single, 0.25F, 0.5F, 0.75F}});
        fillNoise(snapshot.Noise[entry], value);
        snapshot.Random[entry] = {0, value, value};
        snapshot.Ramp[entry] = handleOf(constantRamp(single));
        snapshot.Gradient[entry] = slot % 2 == 1 ? handleOf(constantGradient(single)) : strayHandle();
        snapshot.Path[entry] = static_cast<A_u_long>(100 + slot);
        paths.paths[snapshot.Path[entry]].addLines({{value, 2.0}, {value, 12.0}});
        snapshot.Point2D.X[entry] = value;
        snapshot.Point3D.X[entry] = value;
    }
    layers.addSlider();
    snapshot.layers.inData = layers.slots.inData;
    snapshot.layers.checkouts = layers.slots.checkouts;
    snapshot.layers.firstLayerCheckout = 1;
}

double BankScene::valueOf(CustomParameterType kind, A_long slot) {
    const bool hasValue = kind == Type::Gradient ? slot % 2 == 1 && slot < filledSlots : slot <= filledSlots;
    return hasValue ? slot / 32.0 : 0.0;
}

PF_Handle BankScene::handleOf(RampData ramp) {
    return handleTo(host, mRamps.emplace_back(std::move(ramp)));
}

PF_Handle BankScene::handleOf(GradientData gradient) {
    return handleTo(host, mGradients.emplace_back(std::move(gradient)));
}

bool BankScene::nothingIsLent() const {
    return host.liveSuites() == 0 && host.liveLocks() == 0 && paths.livePaths() == 0 && paths.livePreparations() == 0 &&
           layers.suitesOut == 0;
}

RampData constantRamp(float value) {
    return {RampModeAll, RampInterpolationLine, {{0.0F, value}, {1.0F, value}}};
}

GradientData constantGradient(float value) {
    const GradientPoint point{GradientKindLinear, value, 0.25F, 0.5F, 1.0F};
    return {{{0.0F, point}, {1.0F, point}}};
}

}  // namespace Tessavoy
