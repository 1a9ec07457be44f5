#pragma once

#include <string>

#include "Host/Command/OutputChannel.h"
#include "Host/Command/RenderOptions.h"
#include "Host/HostError.h"
#include "Host/Panel/PanelLayout.h"

namespace TessavoyHost {

// What `tessavoy panel` is asked to do besides what it shares with rendering.
struct PanelOptions {
    std::string output;  // a file
    int frame = 0;
    PanelView view;
};

// What `tessavoy panel` does: draws the effect's panel as its user would see it at a frame, and writes the picture. Of
// the render options the scene, the overrides, the module and what happens to an existing file count. Throws HostError
// where the scene's file or the module can't be had; everything else is told on standard error.
ExitStatus drawPanel(const RenderOptions& options, const PanelOptions& panel, OutputChannel& output);

}  // namespace TessavoyHost
