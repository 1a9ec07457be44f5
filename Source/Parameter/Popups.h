#pragma once

#include "Source/Parameter/Declaration.h"

/// The popups. Two declared counts are larger than the list of choices on purpose: the layers' and the blend mode's.
namespace Tessavoy::Popups {

/// A choice of one of the custom layers; value 1 is none, value n the custom layer n - 1.
constexpr Controls::Popup customLayer(A_long label) {
    return {.label = label, .choices = 24, .declaredCount = 24, .flags = FixedChoice};
}

inline constexpr Controls::Popup channel = {
    .label = 25, .choices = 26, .declaredCount = 6, .dephault = 5, .flags = FixedChoice};
inline constexpr Controls::Popup layerColor = {.label = 25, .choices = 27, .declaredCount = 2, .flags = FixedChoice};
inline constexpr Controls::Popup shapeType = {.label = 84, .choices = 85, .declaredCount = 2, .flags = PanelSwitch};
inline constexpr Controls::Popup framesSplitting = {
    .label = 86, .choices = 87, .declaredCount = 3, .flags = PanelSwitch};
inline constexpr Controls::Popup drawMode = {.label = 96, .choices = 97, .declaredCount = 2, .flags = PanelSwitch};
inline constexpr Controls::Popup blendMode = {.label = 43, .choices = 44, .declaredCount = 3, .flags = FixedChoice};
inline constexpr Controls::Popup multisampling = {
    .label = 45, .choices = 46, .declaredCount = 2, .dephault = 2, .flags = FixedChoice};
inline constexpr Controls::Popup outputType = {.label = 157, .choices = 158, .declaredCount = 2, .flags = PanelSwitch};

}  // namespace Tessavoy::Popups
