#pragma once

#include "HostInterface/Effect.h"

namespace Tessavoy {

/// Shows the depth range of a frame to the user, who can only close the dialog. The host's error, or 512 or 4 without
/// its memory; throws as executeScript does.
PF_Err ShowZBoundsDialog(const PF_InData* inData, float minimum, float maximum);

}  // namespace Tessavoy
