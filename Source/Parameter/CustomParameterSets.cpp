#include "Source/Parameter/CustomParameterSets.h"

#include "Source/Parameter/Catalogue.h"
#include "Source/Parameter/ParametersCustom.h"

namespace Tessavoy {

namespace {

constexpr std::size_t initialBucketCount = 8;

/// The indices of the ten slots of one kind.
std::unordered_set<A_long> slotIndices(CustomParameterType kind) {
    std::unordered_set<A_long> indices(initialBucketCount);
    for (A_long slot = 1; slot <= NamedSlots; ++slot) {
        indices.insert(parameterIndex(slotNameId(kind, slot)));
    }
    return indices;
}

std::unordered_set<A_long> gradientIndices() {
    std::unordered_set<A_long> indices = slotIndices(CustomParameterType::Gradient);
    indices.insert(parameterIndex("FogColorGradient"));
    return indices;
}

}  // namespace

const std::unordered_set<A_long>& gradientParamIds() {
    static const std::unordered_set<A_long> indices = gradientIndices();
    return indices;
}

const std::unordered_set<A_long>& rampParamIds() {
    static const std::unordered_set<A_long> indices = slotIndices(CustomParameterType::Ramp);
    return indices;
}

const std::unordered_set<A_long>& scriptParamIds() {
    static const std::unordered_set<A_long> indices({parameterIndex("Script")}, initialBucketCount);
    return indices;
}

}  // namespace Tessavoy
