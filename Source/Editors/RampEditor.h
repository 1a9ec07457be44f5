#pragma once

#include "Source/Editors/PointEditing.h"
#include "Source/Editors/RampData.h"

#include <cstdint>

namespace Tessavoy {

/// What is kept of a point while it is dragged.
struct RampDrag {
    std::int32_t grabX = 0;  ///< from the pointer to the point, pixels
    std::int32_t grabY = 0;
    std::int32_t rank = 0;  ///< of the point
};

/// What comes of a click on a ramp.
struct RampClick {
    enum class Effect {
        Nothing,
        Changed,      ///< the ramp is another one
        DragStarted,  ///< `drag` says of what
    };

    Effect effect = Effect::Nothing;
    RampDrag drag{};
};

/// Edits a ramp by mouse in the control's frame, whose right and bottom still count as inside. Positions run over the
/// frame's width and values, upwards, over its height, both without the margins; a frame that is no larger than these
/// is dead.
class RampEditor {
public:
    /// The ramp must outlive this.
    RampEditor(RampData& ramp, const PF_Rect& frame);

    /// With the modifier the interpolation goes on to the next that the ramp's mode offers. Otherwise a single click
    /// begins to drag a hit point; a double click takes a hit point away or, where none is hit, adds one. The first
    /// point in ascending order that is near enough in both directions is hit. In the margins points can be added a
    /// little outside of 0..1.
    RampClick click(const ControlClick& click);

    /// Moves the dragged point with the pointer, within 0..1. Whether the ramp changed; `drag` is brought up to date.
    bool drag(RampDrag& drag, PanelPlace pointer);

private:
    using Point = PositionMap<float>::iterator;

    bool isDead() const { return !mX.hasLength() || !mY.hasLength(); }
    bool isInside(PanelPlace place) const;
    Point hitPoint(PanelPlace place);
    RampClick clickPoint(Point hit, const ControlClick& click);

    RampData& mRamp;
    PF_Rect mFrame;
    ControlAxis mX;
    ControlAxis mY;  ///< of 1 - value
};

}  // namespace Tessavoy
