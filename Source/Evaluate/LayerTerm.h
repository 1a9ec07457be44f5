#pragma once

#include "HostInterface/Types.h"

namespace Tessavoy {

/// What a layer adds to a property.
struct LayerTerm {
    double Multiplier = 0;
    A_long Index = 0;   ///< popup value: 1 is no layer, n reads custom layer slot n - 1
    A_long Source = 0;  ///< popup value: a LayerSource, for a colour 1 or 2

    bool active() const { return Index != 1 && Multiplier != 0.0; }

    A_long slot() const { return Index - 1; }
};

}  // namespace Tessavoy
