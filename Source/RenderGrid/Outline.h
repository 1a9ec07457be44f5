#pragma once

namespace Tessavoy {

/// A working point of an outline: y downward; z is 0 until the cell's matrix has been applied.
struct OutlinePoint {
    double x;
    double y;
    double z;
};

/// A vector in the plane of the outline.
struct OutlineVector {
    double x;
    double y;
};

/// Straight colour and alpha.
struct OutlineColour {
    float r;
    float g;
    float b;
    float a;
};

/// A vertex while its cell is being built, before it is narrowed to what the buffers hold.
struct OutlineVertex {
    OutlinePoint position;
    OutlineColour colour;
};

/// A corner of a path, with the points that the path comes from and goes on to.
struct OutlineCorner {
    OutlinePoint before;
    OutlinePoint at;
    OutlinePoint behind;
};

/// How a corner is rounded.
struct CornerRounding {
    double radius;  ///< 0 or less for a pointed corner
    int dots;       ///< points between the two ends of the arc; none below 1
};

/// What a path is drawn with.
struct OutlinePen {
    OutlineColour colour;
    double width;    ///< 0 for a path without sides, the edge of a filled shape
    bool feathered;  ///< every vertex is followed by a slot that ApplyFeather fills
};

/// Which side of a path gets a vertex. The plus side is the outside of a path that runs clockwise on the screen.
enum class MitreSide { Minus = 0, Plus = 1, Both = 2 };

/// How far the mitre lies from the corner when both edges are shifted by one unit along their normals
/// (B.y - A.y, A.x - B.x) / |A - B|, for an edge from A to B: the two shifted lines meet at the corner plus this
/// vector, and it grows with the shift.
///
/// Parallel edges have no meeting point and give infinities or NaN. Neighbours that differ by rounding alone (as where
/// two rounded corners meet in the middle of an edge) give no direction either; the corner then takes the other edge's
/// normal, which is what the mitre tends to. When neither edge has a length the result is NaN.
OutlineVector mitreOffset(const OutlineCorner& corner);

/// Writes the mitred vertices of a corner: first the plus side, then the minus side, as asked for, at the z of the
/// corner. A pen of width 0 writes the corner itself, once. When feathered, each vertex is followed by its slot, which
/// holds the vertex with alpha 0 until it is filled. Returns how many vertices and slots were written, 4 at most.
int EmitMitredVertex(const OutlineCorner& corner, const OutlinePen& pen, MitreSide side, OutlineVertex* out);

/// Writes a corner of an outline. With a rounding radius above 0 it is an arc between two tangent points with so many
/// dots between them, and reaches no further than the middle of its shorter side; otherwise it is one mitred vertex.
/// Each point becomes what EmitMitredVertex makes of it, on both sides. Returns how many vertices and slots were
/// written.
///
/// The arc's steps are interpolated spherically between the normals of the two sides (Shoemake's slerp).
int EmitCorner(const OutlineCorner& corner, const CornerRounding& rounding, const OutlinePen& pen, OutlineVertex* out);

/// Fills the slots of a feathered outline with transparent vertices outside the ring: the mitre at a distance of half
/// of (factorX + factorY) * feather. A filled shape has its centre first, then a vertex and a slot in turn; a stroked
/// one has fours of plus side, slot, minus side, slot.
void ApplyFeather(OutlineVertex* first, int count, bool stroke, double feather, double factorX, double factorY);

}  // namespace Tessavoy
