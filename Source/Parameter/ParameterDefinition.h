#pragma once

#include "HostInterface/Parameters.h"
#include "Source/Parameter/Declaration.h"

namespace Tessavoy {

/// Writes what the declaration says into a zeroed definition: type, flags, numbers and texts. Values equal the
/// defaults. The texts of popups, checkboxes and buttons stay the module's. The name, the disk id and an arbitrary
/// parameter's default handle are left to the caller.
void writeDefinition(const Declaration& declaration, PF_ParamDef& definition);

/// The StringTable row of the parameter's label, or of its format; 0 for a parameter without label.
A_long labelRow(const Declaration& declaration);

}  // namespace Tessavoy
