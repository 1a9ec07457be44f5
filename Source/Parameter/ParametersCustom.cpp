#include "Source/Parameter/ParametersCustom.h"

#include "Source/Assert.h"
#include "Source/Parameter/Sections.h"

#include <array>
#include <string_view>

namespace Tessavoy {

namespace {

struct Kind {
    std::string_view prefix;
    std::string_view customSuffix;  ///< of the parameter that carries the name
};

constexpr std::array<Kind, CustomParameterKinds> kinds = {{
    {"Float", ""},
    {"Color", ""},
    {"Layer", ""},
    {"Noise", ".GroupBegin"},
    {"Random", ".GroupBegin"},
    {"Ramp", ""},
    {"Gradient", ""},
    {"Path", ""},
    {"Point2D", ""},
    {"Point3D", ""},
}};

/// Every kind's section names its slots alike.
constexpr A_long customItem(A_long slot) {
    return 2 * slot;
}

}  // namespace

std::string slotNameId(CustomParameterType type, A_long slot) {
    TESSAVOY_ASSERT(type < CustomParameterType::Size, "type != CustomParameterType::Size");
    const Kind& kind = kinds[static_cast<std::size_t>(type)];
    return composeId(Section::CustomParameters, kind.prefix, customItem(slot)).append(kind.customSuffix);
}

}  // namespace Tessavoy
