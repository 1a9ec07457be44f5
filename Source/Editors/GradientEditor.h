#pragma once

#include "Source/Editors/GradientData.h"
#include "Source/Editors/PointEditing.h"

#include <cstdint>

namespace Tessavoy {

/// What is kept of a point while it is dragged.
struct GradientDrag {
    std::int32_t grab = 0;  ///< from the pointer to the point, pixels
    std::int32_t rank = 0;  ///< of the point, or `draggedOff`
    GradientPoint point;

    /// The rank of a point that was dragged off the control and is gone.
    static constexpr std::int32_t draggedOff = -1;
};

/// What comes of a click on a gradient.
struct GradientClick {
    enum class Effect {
        Nothing,
        Changed,      ///< the gradient is another one
        DragStarted,  ///< `drag` says of what
        ColorWanted,  ///< the user is to be asked for the colour of the point at `position`
    };

    Effect effect = Effect::Nothing;
    GradientDrag drag{};
    float position = 0.0f;
};

/// Edits a gradient by mouse in the control's frame, whose right and bottom still count as inside. Positions run over
/// the frame's width without its margins; a frame that is no wider than these is dead.
class GradientEditor {
public:
    /// The gradient must outlive this.
    GradientEditor(GradientData& gradient, const PF_Rect& frame);

    /// With the modifier a hit point's kind goes on to the next. Otherwise a single click begins to drag a hit point;
    /// a double click asks for its colour or, where no point is hit, adds one of the gradient's colour there. The
    /// first point in ascending order that is near enough is hit, which need not be the nearest. In the margins points
    /// can be added a little outside of 0..1.
    GradientClick click(const ControlClick& click);

    /// Gives the point at a position other red, green and blue; its alpha stays. False when there is none.
    bool recolor(float position, float r, float g, float b);

    /// Moves the dragged point with the pointer, or takes it off while the pointer is below the frame. A point that
    /// stays where it is, is left there, also when the pointer is below. Whether the gradient changed; `drag` is
    /// brought up to date.
    bool drag(GradientDrag& drag, PanelPlace pointer);

private:
    using Point = PositionMap<GradientPoint>::iterator;

    Point hitPoint(float position);
    GradientClick clickPoint(Point hit, const ControlClick& click);
    void addPoint(float position);

    GradientData& mGradient;
    PF_Rect mFrame;
    ControlAxis mAxis;
};

}  // namespace Tessavoy
