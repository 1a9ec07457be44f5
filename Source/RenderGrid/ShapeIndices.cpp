#include "Source/RenderGrid/ShapeIndices.h"

namespace Tessavoy {

namespace {

/// Writes indices one triangle after the other.
class TriangleWriter {
public:
    explicit TriangleWriter(std::uint32_t* out) : mNext(out) {}

    void add(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
        mNext[0] = a;
        mNext[1] = b;
        mNext[2] = c;
        mNext += 3;
    }

    std::uint32_t* end() const { return mNext; }

private:
    std::uint32_t* mNext;
};

/// The fan from the centre over a ring whose vertices lie a step apart.
void addFan(TriangleWriter& triangles, std::uint32_t base, std::uint32_t places, std::uint32_t step) {
    const std::uint32_t ring = base + 1;
    for (std::uint32_t m = 0; m + 1 < places; ++m) {
        triangles.add(ring + step * m, ring + step * (m + 1), base);
    }
    triangles.add(ring + step * (places - 1), ring, base);
}

/// The feather of a filled shape: a band between the ring and the slots behind its vertices.
void addFillFeather(TriangleWriter& triangles, std::uint32_t base, std::uint32_t places) {
    for (std::uint32_t m = 0; m + 1 < places; ++m) {
        const std::uint32_t slot = base + 2 + 2 * m;
        triangles.add(slot, slot - 1, slot + 1);
        triangles.add(slot, slot + 1, slot + 2);
    }
    triangles.add(base + 2, base + 1, base + 2 * places - 1);
    triangles.add(base + 2, base + 2 * places - 1, base + 2 * places);
}

/// The band of a stroke, between its two sides; both sides of a place lie `across` apart, the places 2 * `across`.
void addStrokeBand(TriangleWriter& triangles, std::uint32_t base, std::uint32_t places, std::uint32_t across) {
    const std::uint32_t step = 2 * across;
    for (std::uint32_t m = 0; m + 1 < places; ++m) {
        const std::uint32_t plus = base + step * m;
        const std::uint32_t minus = plus + across;
        triangles.add(minus, plus, plus + step);
        triangles.add(minus, plus + step, minus + step);
    }
    const std::uint32_t last = base + step * (places - 1);
    triangles.add(last, last + across, base);
    triangles.add(last + across, base, base + across);
}

/// The feather of one side of a stroke: `slot` is the slot of the first place on that side.
void addStrokeFeather(TriangleWriter& triangles, std::uint32_t slot, std::uint32_t places) {
    for (std::uint32_t m = 0; m + 1 < places; ++m) {
        const std::uint32_t here = slot + 4 * m;
        triangles.add(here, here - 1, here + 3);
        triangles.add(here, here + 3, here + 4);
    }
    const std::uint32_t last = slot + 4 * places - 5;
    triangles.add(slot, slot - 1, last);
    triangles.add(slot, last, last + 1);
}

}  // namespace

std::uint32_t* writeShapeIndices(OutlineMode mode, std::uint32_t base, std::uint32_t vertexCount, std::uint32_t* out) {
    const std::uint32_t onRing = vertexCount - static_cast<std::uint32_t>(mode.centreVertices());
    const std::uint32_t places = onRing / static_cast<std::uint32_t>(mode.verticesPerPlace());
    if (places == 0) {
        return out;
    }
    TriangleWriter triangles(out);
    if (!mode.stroke) {
        addFan(triangles, base, places, mode.feathered ? 2 : 1);
    } else {
        addStrokeBand(triangles, base, places, mode.feathered ? 2 : 1);
    }
    if (mode.feathered && !mode.stroke) {
        addFillFeather(triangles, base, places);
    } else if (mode.feathered) {
        addStrokeFeather(triangles, base + 1, places);
        addStrokeFeather(triangles, base + 3, places);
    }
    return triangles.end();
}

}  // namespace Tessavoy
