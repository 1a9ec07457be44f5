#pragma once

#include "Source/MemoryWrites.h"
#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/RenderGrid/CellBlock.h"
#include "Source/RenderGrid/InstanceState.h"
#include "Source/RenderGrid/PartPoints.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Tessavoy {

/// Makes the parts of cells. All parts of a cell share its properties and differ only in direction, and directions
/// depend on nothing but the number of parts; so both are kept for the numbers that occur.
class PartLayout {
public:
    /// The snapshot must outlive this object.
    explicit PartLayout(const ParameterSnapshot& snapshot);

    /// Whether cells with the same number of parts have the same outline.
    bool dependsOnCountOnly() const { return mConstant; }

    /// Evaluates the part properties of a block of cells, for layOut().
    void evaluate(const CellBlock& block);

    /// Writes the parts of cell k of the evaluated block, which has one at least, to `parts`, where there is room for
    /// them. Returns the number of points in their outline.
    std::uint64_t layOut(int k, const InstanceState& cell, InstancePart* parts);

    /// layOut for cells[0..count - 1], where outlines depend on the number of parts alone and all cells have the same,
    /// at most longestRun: their parts follow each other from the first one's on, in a run of this extent. Returns the
    /// number of points in each outline.
    std::uint64_t layOutAlike(const InstanceState* cells, int count, Extent extent);

    static constexpr A_long longestRun = 4096;  ///< a run beyond is made in place: it would count beside the parts

private:
    /// The parts of cells with one number of parts.
    struct Run {
        A_long count = 0;  ///< 0 while it is not made
        std::vector<PartDirection> directions;
        std::vector<InstancePart> parts;  ///< complete when all properties are constant, else only the angles are
        std::uint64_t points = 0;         ///< of the outline, when all properties are constant
    };

    Run* runOf(A_long count);
    void makeRun(Run& run, A_long count) const;
    float angleOf(A_long k, A_long count) const;
    InstancePart partOf(int k) const;

    const ParameterSnapshot& mSnapshot;
    bool mTextured;
    bool mConstant;
    float mAngleOffset;
    float mDots;
    std::array<double, blockCells> mShelfLengths{};
    std::array<double, blockCells> mRoundingRadii{};
    std::array<double, blockCells> mLinkOffsets{};
    std::vector<Run> mRuns;  ///< by number of parts; entry 0 is for the last number that has no entry of its own
};

}  // namespace Tessavoy
