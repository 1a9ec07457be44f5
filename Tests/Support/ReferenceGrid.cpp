#include "Tests/Support/ReferenceGrid.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "Tests/Support/ReferenceOutline.h"

namespace Tessavoy {

namespace {

using Plane = ReferencePlane;

constexpr double SquareRadius = std::numbers::sqrt2;

/// Turns two of a point's coordinates, the first towards the second.
void turnPair(double& first, double& second, double degrees) {
    const Plane turned = Plane(first, second) * turnBy(degrees);
    first = turned.real();
    second = turned.imag();
}

/// About z, x goes to y; about y, z goes to x; about x, y goes to z.
ReferencePoint turned(ReferencePoint p, double aboutX, double aboutY, double aboutZ) {
    turnPair(p[1], p[2], aboutX);
    turnPair(p[2], p[0], aboutY);
    turnPair(p[0], p[1], aboutZ);
    return p;
}

/// A closed line of a shape in view space, with the factor of the cell's alpha on it.
struct Ring {
    std::vector<ReferencePoint> points;
    double alpha = 1.0;
};

/// The ring moved outwards in the picture's plane; every point keeps its depth.
Ring grownInView(const Ring& ring, double distance, double alpha) {
    ReferenceOutline seen;
    for (const ReferencePoint& point : ring.points) {
        seen.emplace_back(point[0], point[1]);
    }
    seen = grown(seen, distance);
    Ring result = ring;
    result.alpha = alpha;
    for (std::size_t n = 0; n < seen.size(); ++n) {
        result.points[n][0] = seen[n].real();
        result.points[n][1] = seen[n].imag();
    }
    return result;
}

/// Collects a cell's triangles.
class CellDrawing {
public:
    CellDrawing(const ReferenceColour& colour, int shape, std::vector<ReferenceTriangle>& triangles)
        : mColour(colour), mShape(shape), mTriangles(triangles) {}

    void fan(const ReferencePoint& middle, const Ring& ring) {
        const ReferenceVertex centre = vertex(middle, 1.0);
        for (std::size_t n = 0; n < ring.points.size(); ++n) {
            add(centre, vertex(ring.points[n], ring.alpha),
                vertex(ring.points[(n + 1) % ring.points.size()], ring.alpha));
        }
    }

    /// A stroke between its two edges. Sides are split from the inner to the next outer corner, which shows where a
    /// stroke is folded by a bend that is tighter than its width.
    void stroke(const Ring& inner, const Ring& outer) {
        for (std::size_t n = 0; n < inner.points.size(); ++n) {
            side(inner, outer, n, true);
        }
    }

    /// A feather from the shape's edge. Sides are split from the feather's to the edge's next corner, but for the last
    /// one, which shows where a side isn't flat.
    void feather(const Ring& edge, const Ring& end) {
        for (std::size_t n = 0; n < edge.points.size(); ++n) {
            side(edge, end, n, n + 1 == edge.points.size());
        }
    }

    /// Corners clockwise from the upper left; the frame as left, right, top and bottom.
    void quad(const std::array<ReferencePoint, 4>& corners, const std::array<double, 4>& frame) {
        std::array<ReferenceVertex, 4> vertices;
        for (std::size_t n = 0; n < 4; ++n) {
            vertices[n] = vertex(corners[n], 1.0);
            vertices[n].u = n == 0 || n == 3 ? frame[0] : frame[1];
            vertices[n].v = n < 2 ? frame[2] : frame[3];
        }
        add(vertices[0], vertices[1], vertices[2]);
        add(vertices[0], vertices[2], vertices[3]);
    }

private:
    void side(const Ring& first, const Ring& second, std::size_t n, bool fromFirst) {
        const std::size_t next = (n + 1) % first.points.size();
        const ReferenceVertex a = vertex(first.points[n], first.alpha);
        const ReferenceVertex b = vertex(first.points[next], first.alpha);
        const ReferenceVertex c = vertex(second.points[next], second.alpha);
        const ReferenceVertex d = vertex(second.points[n], second.alpha);
        add(a, b, fromFirst ? c : d);
        add(fromFirst ? a : b, c, d);
    }

    void add(const ReferenceVertex& a, const ReferenceVertex& b, const ReferenceVertex& c) {
        mTriangles.push_back({{a, b, c}, mShape});
    }

    ReferenceVertex vertex(const ReferencePoint& p, double alpha) const {
        return {p[0], p[1], p[2], mColour[0], mColour[1], mColour[2], mColour[3] * alpha};
    }

    ReferenceColour mColour;
    int mShape;
    std::vector<ReferenceTriangle>& mTriangles;
};

/// Right, down and forward of a camera, as directions in the composition.
std::array<ReferencePoint, 3> axesOf(const ReferenceCamera& camera) {
    if (!camera.target) {
        return {{turned({1.0, 0.0, 0.0}, 0.0, 0.0, camera.roll),
                 turned({0.0, 1.0, 0.0}, 0.0, 0.0, camera.roll),
                 {0.0, 0.0, 1.0}}};
    }
    ReferencePoint forward{};
    for (std::size_t n = 0; n < 3; ++n) {
        forward[n] = (*camera.target)[n] - camera.position[n];
    }
    const double level = std::hypot(forward[0], forward[2]);
    const double length = std::hypot(level, forward[1]);
    for (double& coordinate : forward) {
        coordinate /= length;
    }
    const ReferencePoint right = {forward[2] * length / level, 0.0, -forward[0] * length / level};
    const ReferencePoint down = {forward[1] * right[2] - forward[2] * right[1],
                                 forward[2] * right[0] - forward[0] * right[2],
                                 forward[0] * right[1] - forward[1] * right[0]};
    const Plane roll = turnBy(camera.roll);
    ReferencePoint rolledRight{};
    ReferencePoint rolledDown{};
    for (std::size_t n = 0; n < 3; ++n) {
        rolledRight[n] = right[n] * roll.real() + down[n] * roll.imag();
        rolledDown[n] = down[n] * roll.real() - right[n] * roll.imag();
    }
    return {rolledRight, rolledDown, forward};
}

/// Makes the triangles of one grid's cells.
class GridDrawing {
public:
    explicit GridDrawing(const ReferenceGrid& grid)
        : mGrid(grid),
          mEye(grid.camera ? grid.camera->position : ReferencePoint{}),
          mAxes(axesOf(grid.camera.value_or(ReferenceCamera{}))) {}

    std::vector<int> farToNear() const {
        std::vector<int> order(static_cast<std::size_t>(mGrid.columns * mGrid.rows));
        std::iota(order.begin(), order.end(), 0);
        const auto depth = [&](int number) { return placed(cellAt(number), Plane())[2]; };
        std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return depth(a) > depth(b); });
        return order;
    }

    std::vector<ReferenceTriangle> draw() {
        std::vector<int> order = mGrid.order;
        if (order.empty()) {
            order.resize(static_cast<std::size_t>(mGrid.columns * mGrid.rows));
            std::iota(order.begin(), order.end(), 0);
        }
        for (const int number : order) {
            const ReferenceCell cell = cellAt(number);
            if (cell.visible) {
                drawCell(cell, number);
            }
        }
        return std::move(mTriangles);
    }

private:
    /// Where a cell stands along one side of the grid, from -0.5 to 0.5.
    static double part(double place, int count) { return count < 2 ? 0.0 : place / (count - 1) - 0.5; }

    ReferenceCell cellAt(int number) const {
        const int column = number % mGrid.columns;
        const int row = number / mGrid.columns;
        ReferenceCell cell = mGrid.cell;
        const double shift = mGrid.hexagonal && row % 2 == 1 ? 0.5 : 0.0;
        cell.position[0] += part(column + shift, mGrid.columns) * mGrid.gridWidth;
        cell.position[1] += part(row, mGrid.rows) * mGrid.gridHeight;
        if (mGrid.change) {
            mGrid.change(column, row, cell);
        }
        return cell;
    }

    /// The radius on which the corners lie, before the cell's own scale.
    double radius(const ReferenceCell& cell) const {
        return mGrid.sheet || cell.corners == 4 ? cell.size * SquareRadius : cell.size;
    }

    /// From a point of the grid, at full resolution, to view space.
    ReferencePoint toView(ReferencePoint p) const {
        const bool deep = mGrid.threeDimensional;
        const double scale = mGrid.globalScale / 100.0;
        for (double& coordinate : p) {
            coordinate *= scale;
        }
        p = turned(p, 0.0, 0.0, mGrid.rotation);
        if (deep) {
            p = turned(p, 0.0, mGrid.rotationY, 0.0);
            p = turned(p, mGrid.rotationX, 0.0, 0.0);
        }
        const double originX = mGrid.camera ? 0.0 : mGrid.originX;
        const double originY = mGrid.camera ? 0.0 : mGrid.originY;
        return seen({mGrid.centreX - originX + mGrid.downsampleX * (p[0] - mEye[0]),
                     mGrid.centreY - originY + mGrid.downsampleY * (p[1] - mEye[1]),
                     mGrid.downsampleX * (p[2] + (deep ? mGrid.centreZ : 0.0) - mEye[2])});
    }

    ReferencePoint seen(const ReferencePoint& p) const {
        ReferencePoint result{};
        for (std::size_t n = 0; n < 3; ++n) {
            result[n] = mAxes[n][0] * p[0] + mAxes[n][1] * p[1] + mAxes[n][2] * p[2];
        }
        return result;
    }

    /// From a point of a cell's shape, in units of its radius, to view space.
    ReferencePoint placed(const ReferenceCell& cell, Plane point) const {
        const Plane anchor(cell.anchorX / 100.0, cell.anchorY / 100.0);
        if (!(mGrid.threeDimensional && mGrid.billboard)) {
            return toView(inGrid(cell, anchor + point));
        }
        ReferencePoint place = toView(inGrid(cell, anchor));
        const Plane facing = point * turnBy(cell.angle) * (radius(cell) * mGrid.globalScale / 100.0);
        place[0] += facing.real() * mGrid.downsampleX;
        place[1] += facing.imag() * mGrid.downsampleY;
        return place;
    }

    ReferencePoint inGrid(const ReferenceCell& cell, Plane point) const {
        point *= radius(cell);
        const bool deep = mGrid.threeDimensional;
        ReferencePoint p = {point.real(), point.imag(), 0.0};
        p = turned(p, deep ? cell.angleX : 0.0, deep ? cell.angleY : 0.0, cell.angle);
        return {p[0] + cell.position[0], p[1] + cell.position[1], deep ? p[2] + cell.position[2] : 0.0};
    }

    ReferenceOutline shapeOf(const ReferenceCell& cell) const {
        const double extra = cell.corners == 4 ? 45.0 : 0.0;
        return outlineOf({cell.corners, mGrid.shapeAngle + extra, cell.shelf / 100.0, cell.link / 100.0,
                          cell.scaleX / 100.0, cell.scaleY / 100.0, cell.rounding / 100.0, cell.roundingDots});
    }

    static void check(const ReferenceCell& cell) {
        if (cell.corners < 3) {
            throw std::invalid_argument("the model knows shapes of three corners and more");
        }
        if (cell.size <= 0.0 || cell.scaleX <= 0.0 || cell.scaleY <= 0.0) {
            throw std::invalid_argument("the model knows shapes that aren't turned inside out");
        }
    }

    void drawCell(const ReferenceCell& cell, int number) {
        check(cell);
        CellDrawing drawing(cell.colour, number, mTriangles);
        if (mGrid.sheet) {
            const Plane half(cell.scaleX / 100.0, cell.scaleY / 100.0);
            const auto corners = ringOf(cell, {-half, std::conj(half), half, -std::conj(half)}, 1.0).points;
            drawing.quad({corners[0], corners[1], corners[2], corners[3]}, frameOf(cell));
        } else if (cell.strokeWidth) {
            drawStroke(drawing, cell, *cell.strokeWidth / 100.0);
        } else {
            drawFill(drawing, cell);
        }
    }

    void drawFill(CellDrawing& drawing, const ReferenceCell& cell) const {
        const ReferenceOutline outline = shapeOf(cell);
        drawing.fan(placed(cell, Plane()), ringOf(cell, outline, 1.0));
        drawFeather(drawing, cell, outline, 1.0);
    }

    void drawStroke(CellDrawing& drawing, const ReferenceCell& cell, double width) const {
        const ReferenceOutline outline = shapeOf(cell);
        const ReferenceOutline inner = grown(outline, -width / 2.0);
        const ReferenceOutline outer = grown(outline, width / 2.0);
        drawing.stroke(ringOf(cell, inner, 1.0), ringOf(cell, outer, 1.0));
        drawFeather(drawing, cell, outer, 1.0);
        drawFeather(drawing, cell, inner, -1.0);
    }

    /// The band in which alpha falls to nothing, outwards for a side of 1 and inwards for -1.
    void drawFeather(CellDrawing& drawing, const ReferenceCell& cell, const ReferenceOutline& edge, double side) const {
        const Ring full = ringOf(cell, edge, 1.0);
        if (cell.featherPercents > 0.0) {
            drawing.feather(full, ringOf(cell, grown(edge, side * cell.featherPercents / 100.0), 0.0));
        } else if (cell.featherPixels > 0.0) {
            const double factor = (mGrid.downsampleX + mGrid.downsampleY) / 2.0;
            drawing.feather(full, grownInView(full, side * cell.featherPixels * factor, 0.0));
        }
    }

    Ring ringOf(const ReferenceCell& cell, const ReferenceOutline& outline, double alpha) const {
        Ring ring{{}, alpha};
        for (const Plane point : outline) {
            ring.points.push_back(placed(cell, point));
        }
        return ring;
    }

    /// Left, right, top and bottom of the cell's frame in the sheet.
    std::array<double, 4> frameOf(const ReferenceCell& cell) const {
        const ReferenceSheet& sheet = *mGrid.sheet;
        const int count = sheet.limit > 0 ? sheet.limit : sheet.columns * sheet.rows;
        const int frame = std::clamp(cell.frame, 1, count) - 1;
        const double column = frame % sheet.columns;
        const double row = std::floor(static_cast<double>(frame) / sheet.columns);
        return {column / sheet.columns, (column + 1.0) / sheet.columns, row / sheet.rows, (row + 1.0) / sheet.rows};
    }

    const ReferenceGrid& mGrid;
    ReferencePoint mEye;
    std::array<ReferencePoint, 3> mAxes;
    std::vector<ReferenceTriangle> mTriangles;
};

}  // namespace

std::vector<int> ReferenceGrid::farToNear() const {
    return GridDrawing(*this).farToNear();
}

ReferenceScene ReferenceGrid::scene() const {
    ReferenceScene scene;
    scene.width = width;
    scene.height = height;
    scene.blend = blend;
    scene.multisampled = multisampled;
    scene.projection =
        camera ? cameraProjection(width, height, camera->frameWidth * downsampleX, camera->frameHeight * downsampleY,
                                  originX, originY, camera->zoom * downsampleX, camera->zoom * downsampleY)
               : pixelProjection(width, height);
    if (sheet) {
        scene.texture = sheet->texture;
    }
    if (fog) {
        scene.fog = fog;
        scene.fog->end = std::max(fog->start, fog->end) * downsampleX;
        scene.fog->start *= downsampleX;
    }
    if (depth) {
        scene.depth = depth;
        scene.depth->start *= downsampleX;
        scene.depth->end *= downsampleX;
    }
    scene.triangles = GridDrawing(*this).draw();
    return scene;
}

}  // namespace Tessavoy
