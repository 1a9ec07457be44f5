#pragma once

#include "Source/Parameter/Sections.h"

#include <span>

namespace Tessavoy {

/// The top section in the order of the panel.
std::span<const SectionItem> mainParams();

}  // namespace Tessavoy
