#include "Source/Parameter/ParametersCustom.h"

#include "Source/Assert.h"
#include "Source/Parameter/Sections.h"

#include <array>

namespace Tessavoy {

namespace {

constexpr std::array<CustomKind, CustomParameterKinds> kinds = {{
    {"", 127, 128},             // Float
    {"", 130, 131},             // Color
    {"", 133, 134},             // Layer
    {".GroupBegin", 136, 137},  // Noise
    {".GroupBegin", 139, 140},  // Random
    {"", 142, 143},             // Ramp
    {"", 145, 146},             // Gradient
    {"", 148, 149},             // Path
    {"", 151, 152},             // Point2D
    {"", 154, 155},             // Point3D
}};

/// The kinds' sections follow each other in the top section.
constexpr A_long firstKindItem = 54;

// Every kind's section names its items alike.
constexpr A_long switchItem = 1;

constexpr A_long customItem(A_long slot) {
    return 2 * slot;
}

constexpr A_long renameItem(A_long slot) {
    return 2 * slot + 1;
}

std::string itemId(CustomParameterType type, A_long item) {
    return composeId(Section::CustomParameters, kindPrefix(type), item);
}

}  // namespace

const CustomKind& customKind(CustomParameterType type) {
    TESSAVOY_ASSERT(type < CustomParameterType::Size, "type != CustomParameterType::Size");
    return kinds[static_cast<std::size_t>(type)];
}

std::string_view kindPrefix(CustomParameterType type) {
    return parameterName(Section::MainParams, firstKindItem + static_cast<A_long>(type));
}

std::string slotNameId(CustomParameterType type, A_long slot) {
    return itemId(type, customItem(slot)).append(customKind(type).customSuffix);
}

std::string slotRenameId(CustomParameterType type, A_long slot) {
    return itemId(type, renameItem(slot));
}

std::string renameSwitchId(CustomParameterType type) {
    return itemId(type, switchItem);
}

}  // namespace Tessavoy
