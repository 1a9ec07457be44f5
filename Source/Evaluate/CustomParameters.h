#pragma once

#include "HostInterface/Types.h"

namespace Tessavoy {

/// The section ids of a kind of custom parameters: the begin and the end of its group and 21 between them. Slots are
/// numbered from 1; only the first ten of each kind are filled.
inline constexpr A_long CustomParametersCount = 23;

}  // namespace Tessavoy
