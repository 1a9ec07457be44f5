#include "Source/Editors/RampEditor.h"

#include <algorithm>
#include <cmath>

namespace Tessavoy {

namespace {

/// The order in which clicks choose interpolations, where all are offered. A stored number that is none of them stays.
std::int32_t nextOfAll(std::int32_t interpolation) {
    switch (interpolation) {
        case RampInterpolationSin:
            return RampInterpolationBezier;
        case RampInterpolationBezier:
            return RampInterpolationLine;
        case RampInterpolationLine:
            return RampInterpolationStep;
        case RampInterpolationStep:
            return RampInterpolationSin;
        default:
            return interpolation;
    }
}

/// The same where only line and step are. A stored curve stays, a stored sin leads to them.
std::int32_t nextWithoutSin(std::int32_t interpolation) {
    switch (interpolation) {
        case RampInterpolationSin:
        case RampInterpolationStep:
            return RampInterpolationLine;
        case RampInterpolationLine:
            return RampInterpolationStep;
        default:
            return interpolation;
    }
}

}  // namespace

RampEditor::RampEditor(RampData& ramp, const PF_Rect& frame)
    : mRamp(ramp), mFrame(frame), mX(frame.left, frame.right), mY(frame.top, frame.bottom) {}

// A click with the modifier counts as a change also where the interpolation stays.
RampClick RampEditor::click(const ControlClick& click) {
    if (!isInside(click.place)) {
        return {};
    }
    if (click.withModifier) {
        const auto next = mRamp.mode == RampModeWithoutSin ? nextWithoutSin : nextOfAll;
        mRamp.interpolation = next(mRamp.interpolation);
        return {.effect = RampClick::Effect::Changed};
    }
    if (isDead()) {
        return {};
    }
    const Point hit = hitPoint(click.place);
    if (hit != mRamp.points.end()) {
        return clickPoint(hit, click);
    }
    if (click.count != 2) {
        return {};
    }
    mRamp.points.insert_or_assign(mX.positionAt(click.place.x), 1.0f - mY.positionAt(click.place.y));
    return {.effect = RampClick::Effect::Changed};
}

bool RampEditor::isInside(PanelPlace place) const {
    return place.x >= mFrame.left && place.x <= mFrame.right && place.y >= mFrame.top && place.y <= mFrame.bottom;
}

RampEditor::Point RampEditor::hitPoint(PanelPlace place) {
    const float x = mX.positionAt(place.x);
    const float y = mY.positionAt(place.y);
    return std::find_if(mRamp.points.begin(), mRamp.points.end(), [&](const auto& point) {
        return std::abs(point.first - x) < mX.hitRadius() && std::abs(1.0f - point.second - y) < mY.hitRadius();
    });
}

RampClick RampEditor::clickPoint(Point hit, const ControlClick& click) {
    if (click.count == 1) {
        const RampDrag drag{mX.grabOffset(hit->first, click.place.x), mY.grabOffset(1.0f - hit->second, click.place.y),
                            rankOf<float>(mRamp.points, hit)};
        return {.effect = RampClick::Effect::DragStarted, .drag = drag};
    }
    if (click.count == 2) {
        mRamp.points.erase(hit);
        return {.effect = RampClick::Effect::Changed};
    }
    return {};
}

// A rank below 0 stands for a point that is not in the ramp and is put there.
bool RampEditor::drag(RampDrag& drag, PanelPlace pointer) {
    if (isDead()) {
        return false;
    }
    if (drag.rank >= 0) {
        const Point dragged = pointOfRank(mRamp.points, drag.rank);
        if (dragged == mRamp.points.end()) {
            return false;
        }
        mRamp.points.erase(dragged);
    }
    const float position = mX.clampedPositionAt(pointer.x, drag.grabX);
    const float value = 1.0f - mY.clampedPositionAt(pointer.y, drag.grabY);
    drag.rank = placePoint(mRamp.points, position, value);
    return true;
}

}  // namespace Tessavoy
