#pragma once

#include <string>

#include "HostInterface/Parameters.h"

namespace TessavoyHost {

// A parameter as the module registered it.
struct RegisteredParameter {
    // As registered. Text pointers point to the texts below; the default of arbitrary data is a handle of the module's
    // making that the host keeps.
    PF_ParamDef definition{};
    std::string popupTexts;  // the entries of a popup, joined by '|'
    std::string text;        // of a checkbox or a button
};

}  // namespace TessavoyHost
