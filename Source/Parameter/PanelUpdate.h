#pragma once

#include "HostInterface/Effect.h"

#include <span>
#include <string_view>

namespace Tessavoy {

/// What must hold for a parameter to be shown.
enum class ShownWhen {
    Always,
    Camera,            ///< the composition's camera is in use
    Textured,          ///< the shape is a textured quad
    TexturedGrid,      ///< and the texture is a grid of items
    TexturedFrames,    ///< and the texture is not the image split over the cells
    TexturedSequence,  ///< and these frames play as a sequence
    Polygon,           ///< the shape is a polygon
    ZBuffer,           ///< the output is the Z buffer
};

/// A parameter's place in the panel under the present settings.
struct PanelRow {
    std::string_view id;  ///< of a group the parameter that starts it
    ShownWhen shown;
    A_long label = 0;        ///< row of the text table: the label without a camera; 0: it never changes
    A_long cameraLabel = 0;  ///< the label with one
};

/// In the order in which the panel is brought up to date.
std::span<const PanelRow> panelRows();

/// PF_Cmd_UPDATE_PARAMS_UI: shows what matters under the present settings and hides the rest, labels what changes its
/// name, and asks for new frames when anything changed. Nothing is done where the host has no streams. A host error
/// throws Exception with its code.
PF_Err UpdateParamsUi(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[]);

}  // namespace Tessavoy
