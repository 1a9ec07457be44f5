#include "Host/Drawing/Drawing.h"

#include <algorithm>
#include <cmath>

namespace TessavoyHost {
namespace {

constexpr DRAWBOT_MatrixF32 identity = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

DRAWBOT_MatrixF32 product(const DRAWBOT_MatrixF32& first, const DRAWBOT_MatrixF32& second) {
    DRAWBOT_MatrixF32 result{};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            for (int i = 0; i < 3; ++i)
                result.mat[row][column] += first.mat[row][i] * second.mat[i][column];
        }
    }
    return result;
}

DRAWBOT_PointF32 transformed(float x, float y, const DRAWBOT_MatrixF32& matrix) {
    const auto& m = matrix.mat;
    return {x * m[0][0] + y * m[1][0] + m[2][0], x * m[0][1] + y * m[1][1] + m[2][1]};
}

// Far from the limits of whole numbers, and farther than any panel reaches.
int wholePixels(float value) {
    constexpr float farthest = 1e6F;
    return std::isfinite(value) ? static_cast<int>(std::clamp(value, -farthest, farthest)) : 0;
}

}  // namespace

Drawing::Drawing(DrawingSurface& surface, const Region& frame, PF_ContextH context)
    : mSurface(surface), mContext(context), mStates{{frame, identity}} {}

void Drawing::push() {
    mStates.push_back(mStates.back());
    mSurface.pushState();
}

bool Drawing::pop() {
    if (depth() == 0)
        return false;
    mStates.pop_back();
    mSurface.popState();
    return true;
}

// The smallest whole pixels around the rectangle's four corners.
Region Drawing::inPanel(const DRAWBOT_Rect32& rectangle) const {
    const auto left = static_cast<float>(rectangle.left), top = static_cast<float>(rectangle.top);
    const float right = left + static_cast<float>(rectangle.width), bottom = top + static_cast<float>(rectangle.height);
    const DRAWBOT_MatrixF32& matrix = mStates.back().transform;
    const DRAWBOT_PointF32 corners[] = {transformed(left, top, matrix), transformed(right, top, matrix),
                                        transformed(left, bottom, matrix), transformed(right, bottom, matrix)};
    const auto [minX, maxX] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
    const auto [minY, maxY] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
    const int x = wholePixels(std::floor(minX)), y = wholePixels(std::floor(minY));
    return {x, y, wholePixels(std::ceil(maxX)) - x, wholePixels(std::ceil(maxY)) - y};
}

void Drawing::clip(const DRAWBOT_Rect32& rectangle) {
    mStates.back().clip = intersection(mStates.back().clip, inPanel(rectangle));
    mSurface.clip(rectangle);
}

void Drawing::transform(const DRAWBOT_MatrixF32& matrix) {
    mStates.back().transform = product(matrix, mStates.back().transform);
    mSurface.transform(matrix);
}

void Drawing::setInterpolation(DRAWBOT_InterpolationPolicy policy) {
    mStates.back().interpolation = policy;
    mSurface.setInterpolation(policy);
}

void Drawing::setAntiAliasing(DRAWBOT_AntiAliasPolicy policy) {
    mStates.back().antiAliasing = policy;
    mSurface.setAntiAliasing(policy);
}

bool Drawing::isWithinClip(const DRAWBOT_Rect32& rectangle) const {
    const Region area = inPanel(rectangle);
    return intersection(clipBounds(), area) == area;
}

}  // namespace TessavoyHost
