#include "Source/RenderGrid/OutlinePattern.h"

#include "Source/FloatQuad.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cmath>

namespace Tessavoy {

OutlineKey::OutlineKey(const InstanceState& cell)
    : mPartsCount(cell.partsCount),
      mScaleX(cell.scaleX),
      mScaleY(cell.scaleY),
      mFeather(cell.feather),
      mStrokeWidth(cell.strokeWidth),
      mStroke(cell.stroke),
      mFeatherScreenSpace(cell.featherScreenSpace) {}

namespace {

/// The scale of a turn that keeps all angles and does not mirror, so that a feather looks the same before and after it;
/// 0 for any other turn.
float evenScale(const Matrix& matrix) {
    const std::array<float, 16>& m = matrix.m;
    const bool even = m[0] == m[5] && m[1] == -m[4] && m[2] == 0.0F && m[6] == 0.0F;
    return even ? std::sqrt(m[0] * m[0] + m[1] * m[1]) : 0.0F;
}

/// What a matrix makes of flat points, as seen from its origin.
class FlatTurn {
public:
    explicit FlatTurn(const Matrix& matrix)
        : mAcross(FloatQuad::of(matrix.m[0], matrix.m[1], matrix.m[2], 0.0F)),
          mDown(FloatQuad::of(matrix.m[4], matrix.m[5], matrix.m[6], 0.0F)) {}

    /// The point is given by the first two numbers.
    FloatQuad of(FloatQuad point) const { return mAcross * point.first() + mDown * point.second(); }

private:
    FloatQuad mAcross;
    FloatQuad mDown;
};

/// Writes the vertices of one cell. Positions are given as x, y, z and 0, from the instance's origin.
class VertexWriter {
public:
    VertexWriter(const InstanceState& cell, std::byte* out)
        : mOut(reinterpret_cast<float*>(out)),
          mOrigin(FloatQuad::of(cell.matrix.m[12], cell.matrix.m[13], cell.matrix.m[14], cell.r)),
          mColour(FloatQuad::load(&cell.r)),
          mTransparent(FloatQuad::of(cell.r, cell.g, cell.b, 0.0F)) {}

    void put(FloatQuad fromOrigin) { put(fromOrigin, mColour); }
    void putTransparent(FloatQuad fromOrigin) { put(fromOrigin, mTransparent); }

    std::byte* end() const { return reinterpret_cast<std::byte*>(mOut); }

private:
    /// The first store's last number is the second one's first: red.
    void put(FloatQuad fromOrigin, FloatQuad colour) {
        (fromOrigin + mOrigin).store(mOut);
        colour.store(mOut + 3);
        mOut += sizeof(InstanceVertex) / sizeof(float);
    }

    float* mOut;
    FloatQuad mOrigin;
    FloatQuad mColour;
    FloatQuad mTransparent;
};

}  // namespace

void OutlinePattern::make(const InstanceState& cell, OutlineBuilder& builder) {
    mKey = OutlineKey(cell);
    mMode = outlineMode(cell);
    mFeatherInPixels = mMode.feathered && cell.featherScreenSpace != 0;
    mOffsets.clear();
    mOffsetsFit = false;
    mLastTurn = {};
    builder.build(cell);
    if (mFeatherInPixels) {
        builder.feather(mMode.stroke, 1.0, 1.0, 1.0);
    }
    makePlaces(builder.vertices());
    mVertexCount = static_cast<std::uint32_t>(builder.vertices().size());
    mIndices.resize(builder.vertices().size() / mMode.verticesPerPlace() * mMode.indicesPerPlace());
    std::uint32_t* const end = writeShapeIndices(mMode, 0, mVertexCount, mIndices.data());
    mIndices.resize(static_cast<std::size_t>(end - mIndices.data()));
}

/// With a feather in pixels a ring vertex and its slot share a place.
void OutlinePattern::makePlaces(const std::vector<OutlineVertex>& outline) {
    mPlaces.clear();
    mFinite = true;
    const std::size_t centres = static_cast<std::size_t>(mMode.centreVertices());
    for (std::size_t k = 0; k < outline.size(); ++k) {
        const OutlinePoint& point = outline[k].position;
        const bool hasSlot = mFeatherInPixels && k >= centres;
        const OutlinePoint& slot = outline[hasSlot ? k + 1 : k].position;
        mPlaces.push_back({static_cast<float>(point.x), static_cast<float>(point.y),
                           static_cast<float>(slot.x - point.x), static_cast<float>(slot.y - point.y)});
        mFinite = mFinite && std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(slot.x) &&
                  std::isfinite(slot.y);
        k += hasSlot;
    }
}

bool OutlinePattern::emit(const EmissionFrame& frame, const InstanceState& cell, OutlineBuilder& builder,
                          EmissionCursor& cursor) {
    const float* const turn = cell.matrix.m.data();
    const bool turnedAsBefore = sameBits(turn, mLastTurn.data());
    if (!turnedAsBefore) {
        std::copy_n(turn, mLastTurn.size(), mLastTurn.begin());
        mOffsetsFit = !mOffsets.empty() && sameBits(turn, mOffsetTurn.data());
    }
    if (turnedAsBefore) {
        if (!mOffsetsFit) {
            makeOffsets(frame, cell, builder);
        }
        writeOffsets(cell, cursor);
    } else if (mFinite && !mFeatherInPixels) {
        writePlaces(cell, cursor);
    } else if (const float scale = evenScale(cell.matrix); mFinite && scale > 0.0F) {
        writeFeathered(cell, 0.5F * (frame.downsampleX + frame.downsampleY) * cell.feather / scale, cursor);
    } else {
        return false;
    }
    writeIndices(cursor);
    cursor.nextVertex += mVertexCount;
    return true;
}

void OutlinePattern::makeOffsets(const EmissionFrame& frame, const InstanceState& cell, OutlineBuilder& builder) {
    builder.build(cell);
    builder.turnToView(frame, cell);
    mOffsets.clear();
    for (const OutlineVertex& vertex : builder.vertices()) {
        const OutlinePoint& p = vertex.position;
        mOffsets.push_back({static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z), 0.0F});
    }
    std::copy_n(cell.matrix.m.data(), mOffsetTurn.size(), mOffsetTurn.begin());
    mOffsetsFit = true;
}

namespace {

/// Writes vertices one after the other: the centre, then the ring, in which every second one is a slot when feathered.
template <class PositionOf>
std::byte* writeVertices(VertexWriter writer, OutlineMode mode, std::size_t count, const PositionOf& positionOf) {
    std::size_t k = 0;
    if (!mode.stroke) {
        writer.put(positionOf(k++));
    }
    if (mode.feathered) {
        for (; k < count; k += 2) {
            writer.put(positionOf(k));
            writer.putTransparent(positionOf(k + 1));
        }
    }
    for (; k < count; ++k) {
        writer.put(positionOf(k));
    }
    return writer.end();
}

}  // namespace

void OutlinePattern::writeOffsets(const InstanceState& cell, EmissionCursor& cursor) const {
    const Offset* const offsets = mOffsets.data();
    cursor.vertex = writeVertices(VertexWriter(cell, cursor.vertex), mMode, mOffsets.size(),
                                  [offsets](std::size_t k) { return FloatQuad::load(offsets[k].data()); });
}

void OutlinePattern::writePlaces(const InstanceState& cell, EmissionCursor& cursor) const {
    const FlatTurn turn(cell.matrix);
    const Place* const places = mPlaces.data();
    cursor.vertex = writeVertices(VertexWriter(cell, cursor.vertex), mMode, mPlaces.size(),
                                  [=](std::size_t k) { return turn.of(FloatQuad::load(&places[k].x)); });
}

/// reach: how far slots move, in shape units.
void OutlinePattern::writeFeathered(const InstanceState& cell, float reach, EmissionCursor& cursor) const {
    const FlatTurn turn(cell.matrix);
    const FloatQuad reaches = FloatQuad::all(reach);
    VertexWriter writer(cell, cursor.vertex);
    const Place* place = mPlaces.data();
    if (!mMode.stroke) {
        writer.put(turn.of(FloatQuad::load(&place->x)));
        ++place;
    }
    for (; place != mPlaces.data() + mPlaces.size(); ++place) {
        const FloatQuad both = FloatQuad::load(&place->x);
        const FloatQuad point = turn.of(both);
        writer.put(point);
        writer.putTransparent(point + turn.of(both.upperHalf()) * reaches);
    }
    cursor.vertex = writer.end();
}

void OutlinePattern::writeIndices(EmissionCursor& cursor) const {
    const std::size_t count = mIndices.size();
    const __m128i base = _mm_set1_epi32(static_cast<int>(cursor.nextVertex));
    const auto writeFour = [&](std::size_t k) {
        const __m128i four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(&mIndices[k]));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(cursor.index + k), _mm_add_epi32(four, base));
    };
    std::size_t k = 0;
    for (; k + 12 <= count; k += 12) {
        writeFour(k);
        writeFour(k + 4);
        writeFour(k + 8);
    }
    for (; k + 4 <= count; k += 4) {
        writeFour(k);
    }
    for (; k < count; ++k) {
        cursor.index[k] = mIndices[k] + cursor.nextVertex;
    }
    cursor.index += count;
}

/// A pattern is made for an outline that two cells running have had; one that never comes again is not worth it.
OutlinePattern* InstanceEmitter::patternFor(const InstanceState& cell) {
    if (!mSharedOutlines || mFrame.atlas != nullptr || cell.partsCount < 1) {
        return nullptr;
    }
    Slot& slot = mSlots[static_cast<std::size_t>(cell.partsCount) % mSlots.size()];
    if (slot.pattern.matches(cell)) {
        return &slot.pattern;
    }
    if (!slot.lastMissed.matches(cell)) {
        slot.lastMissed = OutlineKey(cell);
        return nullptr;
    }
    slot.pattern.make(cell, mBuilder);
    return &slot.pattern;
}

void InstanceEmitter::emit(const InstanceState& cell, EmissionCursor& cursor) {
    if (cell.visible == 0) {
        return;
    }
    if (mPattern == nullptr || !mPattern->matches(cell)) {
        mPattern = patternFor(cell);
    }
    if (mPattern == nullptr || !mPattern->emit(mFrame, cell, mBuilder, cursor)) {
        EmitInstance(mFrame, cell, mBuilder, cursor);
    }
}

}  // namespace Tessavoy
