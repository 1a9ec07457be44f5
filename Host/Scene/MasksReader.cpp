#include "Host/Scene/MasksReader.h"

#include <algorithm>

#include "Host/Scene/Values.h"

namespace TessavoyHost {
namespace {

Point2 readTangent(const JsonObject& vertex, const char* key) {
    const auto node = vertex.find(key);
    const auto tangent = node ? readPoint2(*node, fixedPointRange) : std::nullopt;
    return tangent.value_or(Point2{});
}

MaskVertex readVertex(const JsonNode& node) {
    const JsonObject object(node, {"point", "in", "out"});
    const auto pointNode = object.require("point");
    const auto point = pointNode ? readPoint2(*pointNode, fixedPointRange) : std::nullopt;
    return {point.value_or(Point2{}), readTangent(object, "in"), readTangent(object, "out")};
}

std::vector<MaskVertex> readVertices(const JsonNode& node) {
    std::vector<MaskVertex> vertices;
    const auto elements = node.elements();
    if (!elements) {
        return vertices;
    }
    if (elements->empty()) {
        node.problem("must hold at least one vertex");
    }
    for (const auto& element : *elements) {
        vertices.push_back(readVertex(element));
    }
    return vertices;
}

bool hasName(const std::vector<Mask>& masks, const std::string& name) {
    return std::any_of(masks.begin(), masks.end(), [&name](const Mask& mask) { return mask.name == name; });
}

Mask readMask(const JsonNode& node, const std::vector<Mask>& before) {
    const JsonObject object(node, {"name", "closed", "vertices"});
    const auto nameNode = object.require("name");
    const auto closedNode = object.find("closed");
    const auto verticesNode = object.require("vertices");
    const auto name = nameNode ? nameNode->name() : std::nullopt;
    const auto closed = closedNode ? closedNode->truth() : std::optional(true);
    if (name && hasName(before, *name)) {
        nameNode->problem("there is a mask \"" + *name + "\" already");
    }
    Mask mask;
    mask.name = name.value_or("");
    mask.closed = closed.value_or(true);
    mask.vertices = verticesNode ? readVertices(*verticesNode) : std::vector<MaskVertex>();
    return mask;
}

}  // namespace

std::vector<Mask> readMasks(const JsonNode& node) {
    std::vector<Mask> masks;
    const auto elements = node.elements();
    if (!elements) {
        return masks;
    }
    for (const auto& element : *elements) {
        masks.push_back(readMask(element, masks));
    }
    return masks;
}

}  // namespace TessavoyHost
