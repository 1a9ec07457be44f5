#include "Source/Parameter/CustomParameterSets.h"

#include "Source/Parameter/Catalogue.h"

#include <gtest/gtest.h>

namespace Tessavoy {
namespace {

std::unordered_set<A_long> slotsOf(const std::string& kind) {
    std::unordered_set<A_long> indices;
    for (int slot = 1; slot <= 10; ++slot) {
        indices.insert(parameterIndex(kind + ".Custom" + std::to_string(slot)));
    }
    return indices;
}

TEST(CustomParameterSets, GradientsAreTheFogsAndTheTenSlots) {
    auto expected = slotsOf("Gradient");
    expected.insert(parameterIndex("FogColorGradient"));
    EXPECT_EQ(gradientParamIds(), expected);
    EXPECT_EQ(gradientParamIds().size(), 11u);
}

TEST(CustomParameterSets, RampsAreTheTenSlots) {
    EXPECT_EQ(rampParamIds(), slotsOf("Ramp"));
    EXPECT_EQ(rampParamIds().size(), 10u);
}

TEST(CustomParameterSets, TheScriptIsAlone) {
    EXPECT_EQ(scriptParamIds(), std::unordered_set<A_long>{551});
}

TEST(CustomParameterSets, RenameButtonsAreInNone) {
    for (const char* id : {"Gradient.Rename1", "Ramp.Rename10"}) {
        EXPECT_FALSE(gradientParamIds().contains(parameterIndex(id)));
        EXPECT_FALSE(rampParamIds().contains(parameterIndex(id)));
    }
}

}  // namespace
}  // namespace Tessavoy
