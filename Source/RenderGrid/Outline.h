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

/// Which side of a path gets a vertex. The plus side is the outside of a path that runs clockwise on the screen.
enum class MitreSide { Minus = 0, Plus = 1, Both = 2 };

/// How far the mitre of corner b, between a and c, lies from b when both edges are shifted by one unit along their
/// normals (B.y - A.y, A.x - B.x) / |A - B|: the two shifted lines meet at b plus this vector, and it grows with the
/// shift.
///
/// Parallel edges have no meeting point and give infinities or NaN. Neighbours that differ by rounding alone (as where
/// two rounded corners meet in the middle of an edge) give no direction either; the corner then takes the other edge's
/// normal, which is what the mitre tends to. When neither edge has a length the result is NaN.
OutlineVector mitreOffset(const OutlinePoint& a, const OutlinePoint& b, const OutlinePoint& c);

/// Writes the mitred vertices of corner b of a path of this width: first the plus side, then the minus side, as asked
/// for, at the z of b. A width of 0 writes b itself, once. When feathered, each vertex is followed by one slot that
/// ApplyFeather fills; it holds the vertex with alpha 0 until then. Returns how many vertices and slots were written, 4
/// at most.
int EmitMitredVertex(const OutlinePoint& a, const OutlinePoint& b, const OutlinePoint& c, const OutlineColour& colour,
                     double width, MitreSide side, bool feathered, OutlineVertex* out);

/// Writes corner b of an outline that comes from a and goes on to c. With a rounding radius above 0 the corner is an
/// arc between two tangent points with so many dots between them, and reaches no further than the middle of its shorter
/// side; otherwise it is one mitred vertex. Each point becomes what EmitMitredVertex makes of it, on both sides.
/// Returns how many vertices and slots were written.
///
/// The arc's steps are interpolated spherically between the normals of the two sides (Shoemake's slerp).
int EmitCorner(const OutlinePoint& a, const OutlinePoint& b, const OutlinePoint& c, const OutlineColour& colour,
               double roundingRadius, int dots, double strokeWidth, bool feathered, OutlineVertex* out);

/// Fills the slots of a feathered outline with transparent vertices outside the ring: the mitre at a distance of half
/// of (factorX + factorY) * feather. A filled shape has its centre first, then a vertex and a slot in turn; a stroked
/// one has fours of plus side, slot, minus side, slot.
void ApplyFeather(OutlineVertex* first, int count, bool stroke, double feather, double factorX, double factorY);

}  // namespace Tessavoy
