#include "Tests/Pictures/SceneWriter.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <variant>

#include "Host/ImageFiles/ImageFiles.h"
#include "Host/ParameterIds.h"
#include "Host/WorldFromImage.h"

namespace Tessavoy {

namespace {

using nlohmann::json;
using namespace TessavoyHost;

template <class Number>
Number numberAt(const std::vector<std::byte>& bytes, std::size_t offset) {
    std::array<std::byte, sizeof(Number)> raw;
    std::memcpy(raw.data(), &bytes.at(offset + sizeof(Number) - 1) - (sizeof(Number) - 1), sizeof(Number));
    return std::bit_cast<Number>(raw);
}

json gradientJson(const std::vector<std::byte>& flat) {
    constexpr std::array<const char*, 3> kinds = {"linear", "sin", "edge"};
    json points = json::array();
    for (std::size_t at = sizeof(std::int32_t); at < flat.size(); at += 6 * sizeof(float)) {
        const auto kind = static_cast<std::size_t>(numberAt<std::int32_t>(flat, at + 4));
        const auto channel = [&](std::size_t n) { return numberAt<float>(flat, at + 8 + 4 * n); };
        points.push_back({{"t", numberAt<float>(flat, at)},
                          {"kind", kinds.at(kind)},
                          {"color", {channel(0), channel(1), channel(2), channel(3)}}});
    }
    return {{"points", points}};
}

/// A value in the words of a scene file.
class ValueWriter {
public:
    ValueWriter(const Project& project, const PF_ParamDef& definition) : mProject(project), mDefinition(definition) {}

    json operator()(double number) const {
        return mDefinition.param_type == PF_Param_CHECKBOX ? json(number != 0.0) : json(number);
    }
    json operator()(const ColorValue& value) const { return {value.red, value.green, value.blue, value.alpha}; }
    json operator()(const Point2& point) const { return {point.x, point.y}; }
    json operator()(const Point3& point) const { return {point.x, point.y, point.z}; }
    json operator()(const LayerReference& layer) const {
        return layer.layer < 0 ? json() : json(mProject.layers.at(static_cast<std::size_t>(layer.layer))->name());
    }
    json operator()(const ArbitraryValue& value) const { return gradientJson(value.flat); }
    json operator()(const MaskReference&) const { throw std::invalid_argument("masks aren't written"); }

private:
    const Project& mProject;
    const PF_ParamDef& mDefinition;
};

const ParameterValue& constantOf(const ParameterTrack& track) {
    if (track.keys.size() != 1) {
        throw std::invalid_argument("values that change over time aren't written");
    }
    return track.keys.front().value;
}

void writePicture(const std::filesystem::path& file, const Image& image, int frame) {
    const World world = makeWorld(image, 8, {1, 1}, {1, 1});
    writeImage(file, FileFormat::Png, world.view(), {frame, "Tessavoy tests"}, 1);
}

/// Writes a layer's pictures, one for each frame where they change.
json layerJson(const std::filesystem::path& folder, FrameSource& layer, const Rational& frameRate, std::size_t number) {
    const std::string stem = "layer" + std::to_string(number);
    const auto first = layer.frameAt(0.0);
    const double frameTime = 1.0 / frameRate.value();
    if (layer.frameAt(frameTime) == first) {
        writePicture(folder / (stem + ".png"), *first, 0);
        return {{"name", layer.name()}, {"image", stem + ".png"}};
    }
    const int count = static_cast<int>(layer.duration() / frameTime);
    for (int frame = 0; frame < count; ++frame) {
        const auto image = layer.frameAt(frame * frameTime);
        writePicture(folder / (stem + "." + std::to_string(1000 + frame) + ".png"), *image, frame);
    }
    return {{"name", layer.name()}, {"image", stem + ".####.png"},    {"first", 1000},
            {"count", count},       {"frameRate", frameRate.value()}, {"start", layer.start()}};
}

json cameraJson(const Camera& camera) {
    const auto point = [](const ParameterTrack& track) {
        const auto& p = std::get<Point3>(constantOf(track));
        return json{p.x, p.y, p.z};
    };
    return {{"position", point(camera.position)},
            {"pointOfInterest", point(camera.pointOfInterest)},
            {"rotation", point(camera.rotation)},
            {"zoom", std::get<double>(constantOf(camera.zoom))}};
}

}  // namespace

void writeScene(const std::filesystem::path& folder, const Project& project,
                const std::vector<RegisteredParameter>& parameters) {
    json scene = {{"tessavoy", 1}};
    const Composition& composition = project.composition;
    scene["composition"] = {{"width", composition.width},
                            {"height", composition.height},
                            {"frameRate", composition.frameRate.value()},
                            {"duration", composition.duration}};
    scene["layers"] = json::array();
    for (std::size_t n = 0; n < project.layers.size(); ++n) {
        scene["layers"].push_back(layerJson(folder, *project.layers[n], composition.frameRate, n));
    }
    if (project.camera) {
        scene["camera"] = cameraJson(*project.camera);
    }
    json& effect = scene["effect"];
    effect["layer"] = project.layers.at(static_cast<std::size_t>(project.effectLayer))->name();
    for (const auto& [index, track] : project.parameters) {
        const auto place = static_cast<std::size_t>(index);
        effect["parameters"][parameterIds().at(place - 1)] =
            std::visit(ValueWriter(project, parameters.at(place).definition), constantOf(track));
    }
    std::ofstream(folder / "scene.json") << scene.dump(1) << "\n";
}

}  // namespace Tessavoy
