#pragma once

#include "HostInterface/Types.h"
#include "Source/Matrix.h"

#include <cstddef>
#include <cstdint>

namespace Tessavoy {

/// A point of a shape's outline: x to the right, y downward, in units of the instance's radius before scaling.
struct ShapePoint {
    float x;
    float y;
};

/// One fan step, ray or segment of a shape. The parts of a cell are contiguous and the runs lie in cell order.
struct InstancePart {
    float radius;                ///< copy of the cell's radius; written and never read
    float angle;                 ///< direction of this corner in degrees, 0 upward, clockwise on the screen
    float shelfLength;           ///< length of the corner's flat top, a fraction of the radius; 0 is a pointed corner
    float roundingRadius;        ///< rounding radius of the corner, a fraction of the radius; 0 is not rounded
    float roundingDots;          ///< points added in a rounded corner; a whole number is made of it by truncation
    float linkMiddleOffset;      ///< how far the middle of the link to the next part moves to the centre; 0 is no link
    float linkRoundingRadius;    ///< rounding radius of the link's middle point
    float linkRoundingDots;      ///< points added at the link's middle point
    ShapePoint shelfStart;       ///< the corner's first point; on the unit circle when there is no shelf
    ShapePoint shelfEnd;         ///< the corner's last point; the same as the first when there is no shelf
    ShapePoint linkMiddle;       ///< the link's middle point; set only when the link is live and not collapsed
    std::uint8_t linkCollapsed;  ///< 1 when the middle of the link reached the centre; set only when the link is live
};
static_assert(sizeof(InstancePart) == 60);

/// One cell of the grid. Cells lie in row-major order: the index of a cell is j * CountX + i.
///
/// Fields marked (percent) are in percent until the final scaling, which comes after the script, and fractions after
/// it.
struct InstanceState {
    A_long i;                         ///< column, from 0
    A_long j;                         ///< row, from 0
    std::uint8_t visible;             ///< 1 when the instance is drawn
    float x, y, z;                    ///< position in full-resolution pixels from the grid's centre
    float radius;                     ///< size in full-resolution pixels
    float r, g, b, a;                 ///< straight colour and alpha, 0 to 1 in the usual case
    A_long spriteIndex;               ///< frame of the atlas, from 1; 0 for shapes without a texture
    Matrix matrix;                    ///< from the shape to view space
    std::uint8_t featherScreenSpace;  ///< 1 when feather is in pixels of the view
    float feather;                    ///< feather width in pixels, or a fraction of the shape (percent)
    std::uint8_t stroke;              ///< 1 for an outline, 0 for a filled shape
    float strokeWidth;                ///< width of the outline, a fraction of the radius (percent)
    A_long partsCount;                ///< number of parts; a script may leave any number here
    float anchorX, anchorY;           ///< anchor, a fraction of the radius (percent)
    float angleX, angleY, angle;      ///< rotations about x, y and z in degrees
    float scaleX, scaleY;             ///< scale of the shape (percent)
    float angleOffset;                ///< carried for the script alone; evaluation leaves it 0
    InstancePart* parts;              ///< first part of this cell, not owned; null when partsCount is below 1
};
static_assert(sizeof(InstanceState) == 176 && offsetof(InstanceState, matrix) == 48);

}  // namespace Tessavoy
