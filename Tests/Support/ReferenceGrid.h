#pragma once

#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "Tests/Support/ReferenceRasteriser.h"

namespace Tessavoy {

using ReferencePoint = std::array<double, 3>;

/// One cell of a grid as a user thinks of it. Lengths are full-resolution pixels, angles degrees.
struct ReferenceCell {
    bool visible = true;
    ReferencePoint position{};  ///< from the grid's centre
    double size = 10.0;         ///< half the side of a square; the radius of any other shape's corners
    ReferenceColour colour = {1.0, 1.0, 1.0, 1.0};
    double angle = 0.0, angleX = 0.0, angleY = 0.0;
    double anchorX = 0.0, anchorY = 0.0;    ///< percent of the size, of the corner radius for squares
    double scaleX = 100.0, scaleY = 100.0;  ///< percent
    int corners = 4;                        ///< 3 and more
    double shelf = 0.0;                     ///< length of the corners' flats, percent of the corner radius
    double link = 0.0;                      ///< percent of the corner radius that the sides' middles move inwards
    double rounding = 0.0;                  ///< radius of the corners' arcs, percent of the corner radius
    int roundingDots = 3;                   ///< points of an arc between its ends
    std::optional<double> strokeWidth;      ///< percent of the corner radius; none fills
    double featherPercents = 0.0;           ///< percent of the corner radius
    double featherPixels = 0.0;             ///< of the full-resolution picture; counts where percents are 0
    int frame = 1;                          ///< of a texture sheet, from 1
};

/// A sheet of frames on one texture layer, row by row.
struct ReferenceSheet {
    ReferenceTexture texture;
    int columns = 1, rows = 1;
    int limit = 0;  ///< how many frames there are; 0: all
};

/// A camera in full-resolution pixels of a composition, with its zoom.
struct ReferenceCamera {
    ReferencePoint position{};
    double zoom = 1000.0;
    double frameWidth = 0.0, frameHeight = 0.0;  ///< the composition's size at full resolution
    std::optional<ReferencePoint> target = {};   ///< what it looks at, not straight above or below; without: along z
    double roll = 0.0;                           ///< turns it about its line of sight, x towards y
};

/// A grid of equal cells, with what a test wants to differ told cell by cell. Predicts the triangles of a frame from
/// plain geometry, apart from the effect's own way of making them.
struct ReferenceGrid {
    int width = 0, height = 0;  ///< render size
    int columns = 1, rows = 1;
    double gridWidth = 0.0, gridHeight = 0.0;
    bool hexagonal = false;
    double centreX = 0.0, centreY = 0.0;  ///< in pixels of the downsampled layer
    double centreZ = 0.0;                 ///< at full resolution; in three dimensions only
    double rotation = 0.0, rotationX = 0.0, rotationY = 0.0;
    double globalScale = 100.0;  ///< percent
    double downsampleX = 1.0, downsampleY = 1.0;
    double originX = 0.0, originY = 0.0;  ///< of the output world in the downsampled layer
    double shapeAngle = 0.0;              ///< turns the corners of every shape

    bool threeDimensional = false;  ///< the grid lies in the composition's space
    bool billboard = false;         ///< in three dimensions: shapes face the picture
    std::optional<ReferenceCamera> camera;
    std::optional<ReferenceSheet> sheet;  ///< shows its frames on quads instead of shapes

    ReferenceBlend blend = ReferenceBlend::Normal;
    bool multisampled = false;
    std::optional<ReferenceFog> fog;      ///< distances at full resolution
    std::optional<ReferenceDepth> depth;  ///< distances at full resolution

    ReferenceCell cell;  ///< what all cells have in common; its position is the offset from the cell's place

    /// Changes one cell, which comes with its place in the grid; column and row count from 0.
    std::function<void(int column, int row, ReferenceCell& cell)> change;

    /// Cell numbers (row * columns + column) in drawing order; empty for row by row.
    std::vector<int> order;

    /// Cell numbers from the farthest to the nearest by view-space depth of the cells' places; equal ones row by row.
    std::vector<int> farToNear() const;

    /// The frame to draw. Throws std::invalid_argument for what the model doesn't know: fewer than three corners, and
    /// shapes turned inside out.
    ReferenceScene scene() const;
};

}  // namespace Tessavoy
