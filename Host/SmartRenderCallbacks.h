#pragma once

#include "HostInterface/SmartRender.h"

namespace TessavoyHost {

// The callbacks of the two smart render commands. They work on CommandContext::frame.
extern const PF_PreRenderCallbacks preRenderCallbacks;
extern const PF_SmartRenderCallbacks smartRenderCallbacks;

}  // namespace TessavoyHost
