#pragma once

#include <string>

#include "Tests/Module/ModuleFixture.h"
#include "Tests/Module/PanelControl.h"
#include "Tests/Support/ReferenceGradient.h"

// A gradient's control in a panel.

namespace TessavoyHost::GradientPanel {

using Stop = Tessavoy::GradientStop;
using Stops = std::vector<Stop>;

// The track runs from x = 106 to 306, 200 pixels. The bar has 206 pixels from 103 on and stands from y = 56 to 79.
inline constexpr PF_Rect frame = {100, 50, 312, 100};
inline constexpr int inside = 75, below = 101;  // y

inline constexpr Stop red{0.25, Tessavoy::StopKind::Straight, {1, 0, 0, 0.5}};
inline constexpr Stop green{0.5, Tessavoy::StopKind::Soft, {0, 1, 0, 1}};
inline constexpr Stop blue{0.75, Tessavoy::StopKind::Edge, {0, 0, 1, 0.25}};

inline Stop at(double position, Stop stop) {
    stop.position = position;
    return stop;
}

struct GradientInPanel : InstanceWithControl {
    GradientInPanel(EffectHost& host, const Stops& stops, const std::string& id = "Gradient.Custom1")
        : InstanceWithControl(host, id, Tessavoy::flatGradient(stops), frame) {}
};

}  // namespace TessavoyHost::GradientPanel
