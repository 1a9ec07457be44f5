#include "Source/RenderGrid/ShapeGeometry.h"

#include "Source/Evaluate/Truncation.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace Tessavoy {

OutlineMode outlineMode(const InstanceState& cell) {
    return {cell.stroke != 0, cell.feather > 0.0F};
}

namespace {

std::uint64_t dotCount(float dots) {
    return static_cast<std::uint64_t>(std::max(truncated(dots), 0));
}

std::uint64_t pointCount(const InstancePart& part) {
    std::uint64_t points = part.roundingRadius > 0.0F ? dotCount(part.roundingDots) + 2 : 1;
    if (part.shelfLength > 0.0F) {
        points *= 2;
    }
    if (part.linkMiddleOffset != 0.0F) {
        points += part.linkRoundingRadius > 0.0F ? dotCount(part.linkRoundingDots) + 2 : 1;
    }
    return points;
}

std::uint32_t bounded(std::uint64_t number) {
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(number, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace

std::uint64_t outlinePointCount(const InstancePart* parts, A_long count) {
    std::uint64_t points = 0;
    for (A_long k = 0; k < count; ++k) {
        points += pointCount(parts[k]);
    }
    return points;
}

InstanceCount CountInstance(const EmissionFrame& frame, const InstanceState& cell, std::uint64_t points) {
    if (cell.visible == 0) {
        return {};
    }
    if (frame.atlas != nullptr) {
        return {4, 6};
    }
    const OutlineMode mode = outlineMode(cell);
    return {bounded(points * mode.verticesPerPlace() + mode.centreVertices()),
            bounded(points * mode.indicesPerPlace())};
}

InstanceCount CountInstance(const EmissionFrame& frame, const InstanceState& cell) {
    return CountInstance(frame, cell, outlinePointCount(cell.parts, cell.partsCount));
}

namespace {

/// The corners that one part contributes: each lies between the point before it and the point behind it.
class CornerList {
public:
    CornerList(const OutlineVector& scale, const ShapePoint& before) : mScale(scale) { addPoint(before); }

    void addCorner(const ShapePoint& point, const CornerRounding& rounding) {
        mRoundings[mCorners++] = rounding;
        addPoint(point);
    }

    void close(const ShapePoint& behind) { addPoint(behind); }

    int count() const { return mCorners; }
    OutlineCorner at(int corner) const { return {mPoints[corner], mPoints[corner + 1], mPoints[corner + 2]}; }
    const CornerRounding& rounding(int corner) const { return mRoundings[corner]; }

private:
    void addPoint(const ShapePoint& point) { mPoints[mSize++] = {point.x * mScale.x, point.y * mScale.y, 0.0}; }

    OutlineVector mScale;
    std::array<OutlinePoint, 5> mPoints;
    std::array<CornerRounding, 3> mRoundings;
    int mSize = 0;
    int mCorners = 0;
};

ShapePoint linkPoint(const InstancePart& part, std::uint8_t collapsed) {
    return collapsed != 0 ? ShapePoint{0.0F, 0.0F} : part.linkMiddle;
}

CornerList cornersOf(const InstanceState& cell, A_long k) {
    const InstancePart& part = cell.parts[k];
    const InstancePart& previous = cell.parts[k == 0 ? cell.partsCount - 1 : k - 1];
    const InstancePart& next = cell.parts[k + 1 == cell.partsCount ? 0 : k + 1];
    const CornerRounding rounding{part.roundingRadius, truncated(part.roundingDots)};

    // The collapse of the link before is read from this part, not from the one that the link belongs to.
    CornerList corners({cell.scaleX, cell.scaleY},
                       previous.linkMiddleOffset == 0.0F ? previous.shelfEnd : linkPoint(previous, part.linkCollapsed));
    corners.addCorner(part.shelfStart, rounding);
    if (part.shelfLength > 0.0F) {
        corners.addCorner(part.shelfEnd, rounding);
    }
    if (part.linkMiddleOffset != 0.0F) {
        corners.addCorner(linkPoint(part, part.linkCollapsed),
                          {part.linkRoundingRadius, truncated(part.linkRoundingDots)});
    }
    corners.close(next.shelfStart);
    return corners;
}

OutlineColour colourOf(const InstanceState& cell) {
    return {cell.r, cell.g, cell.b, cell.a};
}

}  // namespace

void OutlineBuilder::build(const InstanceState& cell) {
    const OutlineMode mode = outlineMode(cell);
    mVertices.clear();
    if (!mode.stroke) {
        mVertices.push_back({{0.0, 0.0, 0.0}, colourOf(cell)});
    }
    for (A_long k = 0; k < cell.partsCount; ++k) {
        addPart(cell, k);
    }
    if (mode.feathered && cell.featherScreenSpace == 0) {
        feather(mode.stroke, cell.feather, 1.0, 1.0);
    }
}

void OutlineBuilder::feather(bool stroke, double width, double factorX, double factorY) {
    ApplyFeather(mVertices.data(), static_cast<int>(mVertices.size()), stroke, width, factorX, factorY);
}

void OutlineBuilder::addPart(const InstanceState& cell, A_long k) {
    const OutlineMode mode = outlineMode(cell);
    const OutlinePen pen{colourOf(cell), mode.stroke ? cell.strokeWidth : 0.0, mode.feathered};
    const CornerList corners = cornersOf(cell, k);
    const std::size_t start = mVertices.size();
    mVertices.resize(start + pointCount(cell.parts[k]) * mode.verticesPerPlace());
    OutlineVertex* out = mVertices.data() + start;
    for (int n = 0; n < corners.count(); ++n) {
        out += EmitCorner(corners.at(n), corners.rounding(n), pen, out);
    }
    mVertices.resize(static_cast<std::size_t>(out - mVertices.data()));
}

void OutlineBuilder::turnToView(const EmissionFrame& frame, const InstanceState& cell) {
    const std::array<float, 16>& m = cell.matrix.m;
    for (OutlineVertex& vertex : mVertices) {
        OutlinePoint& p = vertex.position;
        p = {m[0] * p.x + m[4] * p.y, m[1] * p.x + m[5] * p.y, m[2] * p.x + m[6] * p.y};
    }
    const OutlineMode mode = outlineMode(cell);
    if (mode.feathered && cell.featherScreenSpace != 0) {
        feather(mode.stroke, cell.feather, frame.downsampleX, frame.downsampleY);
    }
}

namespace {

InstanceVertex narrowed(const OutlineVertex& vertex, const std::array<float, 16>& m) {
    const OutlinePoint& p = vertex.position;
    const OutlineColour& c = vertex.colour;
    return {static_cast<float>(p.x + m[12]),
            static_cast<float>(p.y + m[13]),
            static_cast<float>(p.z + m[14]),
            c.r,
            c.g,
            c.b,
            c.a};
}

}  // namespace

void EmitInstance(const EmissionFrame& frame, const InstanceState& cell, OutlineBuilder& builder,
                  EmissionCursor& cursor) {
    if (cell.visible == 0) {
        return;
    }
    if (frame.atlas != nullptr) {
        emitTexturedQuad(*frame.atlas, cell, cursor);
        return;
    }
    builder.build(cell);
    builder.turnToView(frame, cell);
    for (const OutlineVertex& vertex : builder.vertices()) {
        const InstanceVertex record = narrowed(vertex, cell.matrix.m);
        std::memcpy(cursor.vertex, &record, sizeof record);
        cursor.vertex += sizeof record;
    }
    const std::uint32_t count = static_cast<std::uint32_t>(builder.vertices().size());
    cursor.index = writeShapeIndices(outlineMode(cell), cursor.nextVertex, count, cursor.index);
    cursor.nextVertex += count;
}

void emitTexturedQuad(const TextureAtlas& atlas, const InstanceState& cell, EmissionCursor& cursor) {
    AtlasFrameRect frame{};
    atlas.GetFrameRect(frame, std::max(cell.spriteIndex, 1) - 1);
    const std::array<float, 16>& m = cell.matrix.m;
    const auto put = [&](float x, float y, float u, float v) {
        const TexturedInstanceVertex record{m[0] * x + m[4] * y + m[12],
                                            m[1] * x + m[5] * y + m[13],
                                            m[2] * x + m[6] * y + m[14],
                                            cell.r,
                                            cell.g,
                                            cell.b,
                                            cell.a,
                                            u,
                                            v,
                                            frame.layer};
        std::memcpy(cursor.vertex, &record, sizeof record);
        cursor.vertex += sizeof record;
    };
    put(-cell.scaleX, -cell.scaleY, frame.left, frame.top);
    put(cell.scaleX, -cell.scaleY, frame.right, frame.top);
    put(cell.scaleX, cell.scaleY, frame.right, frame.bottom);
    put(-cell.scaleX, cell.scaleY, frame.left, frame.bottom);
    for (const std::uint32_t corner : {0U, 1U, 2U, 0U, 2U, 3U}) {
        *cursor.index++ = cursor.nextVertex + corner;
    }
    cursor.nextVertex += 4;
}

}  // namespace Tessavoy
