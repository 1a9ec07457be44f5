#include "Source/Parameter/CustomParameterSets.h"

#include "Source/Parameter/Catalogue.h"

namespace Tessavoy {

namespace {

/// The indices of Custom1 to Custom10 of one kind.
std::unordered_set<A_long> slotIndices(std::string_view kind) {
    constexpr A_long firstSlot = 2;
    constexpr A_long lastSlot = 20;
    std::unordered_set<A_long> indices;
    for (A_long item = firstSlot; item <= lastSlot; item += 2) {
        indices.insert(parameterIndex(composeId(Section::CustomParameters, kind, item)));
    }
    return indices;
}

std::unordered_set<A_long> gradientIndices() {
    std::unordered_set<A_long> indices = slotIndices("Gradient");
    indices.insert(parameterIndex("FogColorGradient"));
    return indices;
}

}  // namespace

const std::unordered_set<A_long>& gradientParamIds() {
    static const std::unordered_set<A_long> indices = gradientIndices();
    return indices;
}

const std::unordered_set<A_long>& rampParamIds() {
    static const std::unordered_set<A_long> indices = slotIndices("Ramp");
    return indices;
}

const std::unordered_set<A_long>& scriptParamIds() {
    static const std::unordered_set<A_long> indices = {parameterIndex("Script")};
    return indices;
}

}  // namespace Tessavoy
