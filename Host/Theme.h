#pragma once

#include "HostInterface/Suites.h"

namespace TessavoyHost {

// The colours of the application's dark theme, with which the panel is painted and which modules get, 16 bits a
// channel. Disabled ones lie halfway between their own colour and the fill.

// Whether the interface has such a colour.
bool hasThemeColor(PF_App_ColorType type);
// The colour must be there.
PF_App_Color themeColor(PF_App_ColorType type);
// The same from 0 to 1, opaque.
DRAWBOT_ColorRGBA drawnThemeColor(PF_App_ColorType type);

}  // namespace TessavoyHost
