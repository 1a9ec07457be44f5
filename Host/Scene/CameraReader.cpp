#include "Host/Scene/CameraReader.h"

#include "Host/Scene/Tracks.h"
#include "Host/Scene/Values.h"

namespace TessavoyHost {
namespace {

std::optional<ParameterValue> readVector(const JsonNode& node) {
    const auto point = readPoint3(node, anyNumber);
    return point ? std::optional<ParameterValue>(*point) : std::nullopt;
}

std::optional<ParameterValue> readZoom(const JsonNode& node) {
    const auto zoom = node.number(anyNumber);
    if (zoom && *zoom <= 0) {
        node.problem("must be above 0, not " + numberInWords(*zoom));
        return std::nullopt;
    }
    return zoom ? std::optional<ParameterValue>(*zoom) : std::nullopt;
}

ParameterTrack readCameraTrack(const std::optional<JsonNode>& node, const ValueReader& readValue) {
    return node ? readTrack(*node, OverTime::MayVary, readValue).value_or(ParameterTrack{}) : ParameterTrack{};
}

}  // namespace

Camera readCamera(const JsonNode& node) {
    const JsonObject object(node, {"position", "pointOfInterest", "orientation", "rotation", "zoom"});
    Camera camera;
    camera.position = readCameraTrack(object.find("position"), readVector);
    camera.pointOfInterest = readCameraTrack(object.find("pointOfInterest"), readVector);
    camera.orientation = readCameraTrack(object.find("orientation"), readVector);
    camera.rotation = readCameraTrack(object.find("rotation"), readVector);
    camera.zoom = readCameraTrack(object.require("zoom"), readZoom);
    return camera;
}

}  // namespace TessavoyHost
