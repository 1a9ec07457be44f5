#pragma once

#include "HostInterface/Effect.h"
#include "Source/HostAccess/SuiteHandler.h"

namespace Tessavoy {

/// Brings the panel's slots up to date: the rename buttons of each kind show where its switch is on, and each slot
/// shows its label. Whether anything changed. params are the command's. A host error throws Exception with its code.
bool updateSlots(PF_InData* inData, SuiteHandler& suites, PF_ParamDef* params[]);

/// Where the index is that of a rename button, lets the user name its slot; other indices do nothing.
///
/// A name of more than 31 bytes, or one that another slot of the same kind has, is refused with a message in the
/// out-data and changes nothing. A host error throws Exception with its code.
void renameSlotOf(PF_InData* inData, PF_OutData* outData, PF_ParamIndex button);

}  // namespace Tessavoy
