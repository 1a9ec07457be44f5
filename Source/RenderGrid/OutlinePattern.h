#pragma once

#include "Source/RenderGrid/ShapeGeometry.h"

#include <array>
#include <bit>
#include <cstdint>
#include <vector>

namespace Tessavoy {

/// What decides a cell's outline in shape units, where the parts depend on their number alone.
class OutlineKey {
public:
    /// The key of no cell that has parts.
    OutlineKey() = default;
    explicit OutlineKey(const InstanceState& cell);

    /// Whether the cell has this key, to the bit.
    bool matches(const InstanceState& cell) const {
        const auto difference = [](float a, float b) {
            return std::bit_cast<std::uint32_t>(a) ^ std::bit_cast<std::uint32_t>(b);
        };
        const std::uint32_t differences =
            static_cast<std::uint32_t>(mPartsCount ^ cell.partsCount) | difference(mScaleX, cell.scaleX) |
            difference(mScaleY, cell.scaleY) | difference(mFeather, cell.feather) |
            difference(mStrokeWidth, cell.strokeWidth) | static_cast<std::uint32_t>(mStroke ^ cell.stroke) |
            static_cast<std::uint32_t>(mFeatherScreenSpace ^ cell.featherScreenSpace);
        return differences == 0;
    }

private:
    A_long mPartsCount = 0;
    float mScaleX = 0.0F;
    float mScaleY = 0.0F;
    float mFeather = 0.0F;
    float mStrokeWidth = 0.0F;
    std::uint8_t mStroke = 0;
    std::uint8_t mFeatherScreenSpace = 0;
};

/// An outline that many cells share, worked out once and then carried to each of them. It writes what EmitInstance
/// writes, but for the last bits of single precision.
class OutlinePattern {
public:
    /// Works out the outline of this cell.
    void make(const InstanceState& cell, OutlineBuilder& builder);

    /// Writes a visible cell with this pattern's key and moves the cursor behind it. False if the pattern can't: the
    /// cell is then to be emitted the plain way.
    bool emit(const EmissionFrame& frame, const InstanceState& cell, OutlineBuilder& builder, EmissionCursor& cursor);

    /// Whether the cell has this outline; no cell has it before make().
    bool matches(const InstanceState& cell) const { return mKey.matches(cell); }

private:
    /// A vertex in shape units, and how far its slot lies from it for each unit of a feather that is in pixels.
    struct Place {
        float x;
        float y;
        float featherX;
        float featherY;
    };

    /// The part of a matrix that turns a flat shape: its first two columns.
    using Turn = std::array<float, 8>;

    /// A vertex as seen from the instance's origin, in view space; the fourth number is 0.
    using Offset = std::array<float, 4>;

    void makePlaces(const std::vector<OutlineVertex>& outline);
    void makeOffsets(const EmissionFrame& frame, const InstanceState& cell, OutlineBuilder& builder);
    void writeOffsets(const InstanceState& cell, EmissionCursor& cursor) const;
    void writePlaces(const InstanceState& cell, EmissionCursor& cursor) const;
    void writeFeathered(const InstanceState& cell, float reach, EmissionCursor& cursor) const;
    void writeIndices(EmissionCursor& cursor) const;

    OutlineKey mKey;
    OutlineMode mMode;
    bool mFeatherInPixels = false;
    bool mFinite = false;
    std::uint32_t mVertexCount = 0;
    std::vector<Place> mPlaces;
    std::vector<std::uint32_t> mIndices;  ///< from the cell's first vertex
    std::vector<Offset> mOffsets;         ///< for cells that are turned as mOffsetTurn says
    Turn mOffsetTurn{};
    Turn mLastTurn{};          ///< of the cell before
    bool mOffsetsFit = false;  ///< mOffsets are there, and for cells that are turned as the one before
};

/// Writes the cells of a batch one after the other, the same as EmitInstance but sooner: outlines that come again and
/// again are kept as patterns.
class InstanceEmitter {
public:
    /// sharedOutlines: cells with the same number of parts have the same outline before scaling.
    InstanceEmitter(const EmissionFrame& frame, bool sharedOutlines) : mFrame(frame), mSharedOutlines(sharedOutlines) {}

    InstanceEmitter(const InstanceEmitter&) = delete;
    InstanceEmitter& operator=(const InstanceEmitter&) = delete;

    /// Writes the cell and moves the cursor behind it; see EmitInstance.
    void emit(const InstanceState& cell, EmissionCursor& cursor);

private:
    /// Patterns for numbers of parts that differ in their last digits.
    struct Slot {
        OutlinePattern pattern;
        OutlineKey lastMissed;
    };

    OutlinePattern* patternFor(const InstanceState& cell);

    EmissionFrame mFrame;
    bool mSharedOutlines;
    OutlineBuilder mBuilder;
    std::array<Slot, 16> mSlots;
    OutlinePattern* mPattern = nullptr;  ///< of the cell before, or null
};

}  // namespace Tessavoy
