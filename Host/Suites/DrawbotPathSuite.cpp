#include "Host/Drawing/DrawingObjects.h"
#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

// A call that adds a piece to a path; body gives the piece.
template <class Body>
SPErr addPiece(const char* name, DRAWBOT_PathRef path, Body&& body) noexcept {
    return answer(name, [&](CommandContext& context) {
        const auto object = drawingObject<DrawingPath>(context, path);
        object->path.push_back(body());
    });
}

SPErr moveTo(DRAWBOT_PathRef path, float x, float y) noexcept {
    return addPiece("MoveTo", path, [&] { return PathPiece::Move{{x, y}}; });
}

SPErr lineTo(DRAWBOT_PathRef path, float x, float y) noexcept {
    return addPiece("LineTo", path, [&] { return PathPiece::Line{{x, y}}; });
}

SPErr bezierTo(DRAWBOT_PathRef path, const DRAWBOT_PointF32* control1, const DRAWBOT_PointF32* control2,
               const DRAWBOT_PointF32* to) noexcept {
    return addPiece("BezierTo", path, [&] {
        require(control1 != nullptr && control2 != nullptr && to != nullptr);
        return PathPiece::Curve{*control1, *control2, *to};
    });
}

SPErr addRect(DRAWBOT_PathRef path, const DRAWBOT_RectF32* rectangle) noexcept {
    return addPiece("AddRect", path, [&] {
        require(rectangle != nullptr);
        return PathPiece::Rectangle{*rectangle};
    });
}

SPErr addArc(DRAWBOT_PathRef path, const DRAWBOT_PointF32* centre, float radius, float start, float sweep) noexcept {
    return addPiece("AddArc", path, [&] {
        require(centre != nullptr && radius >= 0);
        return PathPiece::Arc{*centre, radius, start, sweep};
    });
}

SPErr closePath(DRAWBOT_PathRef path) noexcept {
    return addPiece("Close", path, [] { return PathPiece::Close{}; });
}

}  // namespace

const DRAWBOT_PathSuite1 drawbotPathSuite = {
    .MoveTo = moveTo,
    .LineTo = lineTo,
    .BezierTo = bezierTo,
    .AddRect = addRect,
    .AddArc = addArc,
    .Close = closePath,
};

}  // namespace TessavoyHost
