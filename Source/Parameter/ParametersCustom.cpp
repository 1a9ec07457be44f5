#include "Source/Parameter/ParametersCustom.h"

#include "Source/Assert.h"
#include "Source/Parameter/Sections.h"

#include <array>

namespace Tessavoy {

namespace {

constexpr std::array<CustomKind, CustomParameterKinds> kinds = {{
    {"Float", "", 127, 128},
    {"Color", "", 130, 131},
    {"Layer", "", 133, 134},
    {"Noise", ".GroupBegin", 136, 137},
    {"Random", ".GroupBegin", 139, 140},
    {"Ramp", "", 142, 143},
    {"Gradient", "", 145, 146},
    {"Path", "", 148, 149},
    {"Point2D", "", 151, 152},
    {"Point3D", "", 154, 155},
}};

// Every kind's section names its items alike.
constexpr A_long switchItem = 1;

constexpr A_long customItem(A_long slot) {
    return 2 * slot;
}

constexpr A_long renameItem(A_long slot) {
    return 2 * slot + 1;
}

std::string itemId(CustomParameterType type, A_long item) {
    return composeId(Section::CustomParameters, customKind(type).prefix, item);
}

}  // namespace

const CustomKind& customKind(CustomParameterType type) {
    TESSAVOY_ASSERT(type < CustomParameterType::Size, "type != CustomParameterType::Size");
    return kinds[static_cast<std::size_t>(type)];
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
