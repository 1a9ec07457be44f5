#pragma once

#include "HostInterface/Effect.h"

namespace Tessavoy {

/// Lets the user edit the script in a dialog that also tells what scripts can read, set and call. Texts are UTF-8,
/// closed by a zero.
///
/// *newScript becomes the edited text in a block that the caller frees with HostFree, or null when nothing changed. The
/// result is the host's error, or 512 or 4 without its memory. There may be both a new text and an error, when the host
/// failed to take its own memory back. Throws as executeScript does.
PF_Err EditScriptDialog(PF_InData* inData, const char* currentScript, char** newScript);

}  // namespace Tessavoy
