#include "Host/Scene/Tracks.h"

#include "Host/Scene/Values.h"

namespace TessavoyHost {
namespace {

// In the order of Ease.
const std::vector<std::string> easeWords{"linear", "hold", "smooth"};

std::optional<Key> readKey(const JsonNode& node, const ValueReader& readValue) {
    const JsonObject object(node, {"time", "value", "ease"});
    const auto timeNode = object.require("time");
    const auto valueNode = object.require("value");
    const auto easeNode = object.find("ease");
    const auto time = timeNode ? timeNode->number(anyNumber) : std::nullopt;
    const auto value = valueNode ? readValue(*valueNode) : std::nullopt;
    const auto ease = easeNode ? easeNode->word(easeWords) : std::optional<int>(0);
    if (!time || !value || !ease) {
        return std::nullopt;
    }
    return Key{*time, *value, static_cast<Ease>(*ease)};
}

void checkRising(const JsonNode& keyNode, const ParameterTrack& track, double time) {
    if (!track.keys.empty() && !(time > track.keys.back().time)) {
        keyNode.child("time").problem("times must rise: " + numberInWords(time) + " comes after " +
                                      numberInWords(track.keys.back().time));
    }
}

std::optional<ParameterTrack> readKeys(const JsonNode& node, const ValueReader& readValue) {
    const JsonObject object(node, {"keys"});
    const auto elements = object.require("keys")->elements();
    if (!elements) {
        return std::nullopt;
    }
    if (elements->empty()) {
        node.child("keys").problem("must hold at least one key");
        return std::nullopt;
    }
    ParameterTrack track;
    for (const auto& element : *elements) {
        if (auto key = readKey(element, readValue)) {
            checkRising(element, track, key->time);
            track.keys.push_back(std::move(*key));
        }
    }
    return track;
}

}  // namespace

const std::string& easeWord(Ease ease) {
    return easeWords.at(static_cast<std::size_t>(ease));
}

std::optional<ParameterTrack> readTrack(const JsonNode& node, OverTime overTime, const ValueReader& readValue) {
    if (node.json().is_object() && node.json().contains("keys")) {
        if (overTime == OverTime::MayVary) {
            return readKeys(node, readValue);
        }
        node.problem("can't vary over time; give one value");
        return std::nullopt;
    }
    auto value = readValue(node);
    if (!value) {
        return std::nullopt;
    }
    ParameterTrack track;
    track.keys.push_back({0.0, std::move(*value), Ease::Linear});
    return track;
}

}  // namespace TessavoyHost
