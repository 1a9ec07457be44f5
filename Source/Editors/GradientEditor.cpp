#include "Source/Editors/GradientEditor.h"

#include <algorithm>
#include <cmath>

namespace Tessavoy {

namespace {

/// The order in which clicks choose kinds. A stored kind that is none of them blends, and counts, as linear.
std::int32_t nextKind(std::int32_t kind) {
    switch (kind) {
        case GradientKindSin:
            return GradientKindEdge;
        case GradientKindEdge:
            return GradientKindLinear;
        default:
            return GradientKindSin;
    }
}

}  // namespace

GradientEditor::GradientEditor(GradientData& gradient, const PF_Rect& frame)
    : mGradient(gradient), mFrame(frame), mAxis(frame.left, frame.right) {}

GradientClick GradientEditor::click(const ControlClick& click) {
    if (!mAxis.hasLength() || click.place.x < mFrame.left || click.place.x > mFrame.right) {
        return {};
    }
    const float position = mAxis.positionAt(click.place.x);
    const Point hit = hitPoint(position);
    if (hit != mGradient.points.end()) {
        return clickPoint(hit, click);
    }
    if (click.withModifier || click.count != 2) {
        return {};
    }
    addPoint(position);
    return {.effect = GradientClick::Effect::Changed};
}

GradientEditor::Point GradientEditor::hitPoint(float position) {
    const float radius = mAxis.hitRadius();
    return std::find_if(mGradient.points.begin(), mGradient.points.end(),
                        [&](const auto& point) { return std::abs(point.first - position) < radius; });
}

GradientClick GradientEditor::clickPoint(Point hit, const ControlClick& click) {
    auto& [position, point] = *hit;
    if (click.withModifier) {
        point.kind = nextKind(point.kind);
        return {.effect = GradientClick::Effect::Changed};
    }
    if (click.count == 1) {
        const GradientDrag drag{mAxis.grabOffset(position, click.place.x), rankOf<GradientPoint>(mGradient.points, hit),
                                point};
        return {.effect = GradientClick::Effect::DragStarted, .drag = drag};
    }
    if (click.count == 2) {
        return {.effect = GradientClick::Effect::ColorWanted, .position = position};
    }
    return {};
}

void GradientEditor::addPoint(float position) {
    float color[4];
    std::int32_t kind = GradientKindSin;
    EvaluateGradient(mGradient, position, color, &kind);
    InsertPoint(mGradient, position, {kind, color[0], color[1], color[2], color[3]});
}

bool GradientEditor::recolor(float position, float r, float g, float b) {
    const auto found = mGradient.points.find(position);
    if (found == mGradient.points.end()) {
        return false;
    }
    GradientPoint& point = found->second;
    point = {point.kind, r, g, b, point.a};
    return true;
}

bool GradientEditor::drag(GradientDrag& drag, PanelPlace pointer) {
    if (!mAxis.hasLength()) {
        return false;
    }
    auto& points = mGradient.points;
    const bool isOff = drag.rank == GradientDrag::draggedOff;
    const bool isBelow = pointer.y > mFrame.bottom;
    const float position = mAxis.clampedPositionAt(pointer.x, drag.grab);
    const Point dragged = pointOfRank(points, drag.rank);
    if (isOff ? isBelow : dragged == points.end() || dragged->first == position) {
        return false;
    }

    if (!isOff) {
        points.erase(dragged);
    }
    drag.rank = isBelow ? GradientDrag::draggedOff : placePoint(points, position, drag.point);
    return true;
}

}  // namespace Tessavoy
