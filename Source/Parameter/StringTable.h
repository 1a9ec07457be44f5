#pragma once

#include "HostInterface/Types.h"

namespace Tessavoy {

/// The text of a row of the interface's text table, 1 to 167, at most 255 characters; row 0 is the empty text, for a
/// label that isn't there. The text is the module's and stays. Any other row stops with an assertion.
const A_char* GetStringPtr(A_long index);

}  // namespace Tessavoy
