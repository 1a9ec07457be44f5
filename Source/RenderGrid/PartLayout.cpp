#include "Source/RenderGrid/PartLayout.h"

#include "Source/Parameter/PopupValues.h"
#include "Source/RenderGrid/ShapeGeometry.h"

#include <algorithm>
#include <bit>

namespace Tessavoy {

namespace {

constexpr A_long ownRuns = 64;  // numbers of parts up to this one keep their run for the frame

constexpr float smallestAngle = 0.01F;
constexpr float smallestShelf = 0.0001F;
constexpr float smallestRounding = 0.001F;
constexpr float smallestDots = 0.01F;
constexpr float smallestLink = 0.0001F;

/// The value as a fraction, or 0 when it is not above the smallest one that counts.
float fractionAbove(float smallest, double percents) {
    const float value = static_cast<float>(percents * 0.01);
    return value > smallest ? value : 0.0F;
}

/// The same for a value of either sign.
float fractionBeyond(float smallest, double percents) {
    const float value = static_cast<float>(percents * 0.01);
    return value >= -smallest && value <= smallest ? 0.0F : value;
}

/// Whether two numbers have the same bits.
bool sameBits(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

void setRadius(InstancePart* parts, A_long count, float radius) {
    std::for_each_n(parts, count, [radius](InstancePart& part) { part.radius = radius; });
}

}  // namespace

PartLayout::PartLayout(const ParameterSnapshot& snapshot)
    : mSnapshot(snapshot),
      mTextured(snapshot.ShapeType == PopupValues::TexturedQuad),
      mConstant(mTextured || (snapshot.ShapeShelfLength.isConstant() && snapshot.ShapeRoundingRadius.isConstant() &&
                              snapshot.ShapeLinkMiddleOffset.isConstant())),
      mAngleOffset(static_cast<float>(snapshot.ShapeAngleOffset)),
      mDots(static_cast<float>(snapshot.ShapeRoundingDots)),
      mRuns(ownRuns + 1) {
    mDots = mDots > smallestDots ? mDots : 0.0F;
    if (mConstant && !mTextured) {
        mShelfLengths.fill(snapshot.ShapeShelfLength.evaluate(0.5F, 0.5F));
        mRoundingRadii.fill(snapshot.ShapeRoundingRadius.evaluate(0.5F, 0.5F));
        mLinkOffsets.fill(snapshot.ShapeLinkMiddleOffset.evaluate(0.5F, 0.5F));
    }
}

void PartLayout::evaluate(const CellBlock& block) {
    if (!mConstant) {
        mSnapshot.ShapeShelfLength.evaluate(block.u.data(), block.v.data(), mShelfLengths.data(), block.count);
        mSnapshot.ShapeRoundingRadius.evaluate(block.u.data(), block.v.data(), mRoundingRadii.data(), block.count);
        mSnapshot.ShapeLinkMiddleOffset.evaluate(block.u.data(), block.v.data(), mLinkOffsets.data(), block.count);
    }
}

float PartLayout::angleOf(A_long k, A_long count) const {
    float angle = static_cast<float>(k) * 360.0F / static_cast<float>(count) + mAngleOffset;
    if (count == 4) {
        angle += 45.0F;
    }
    return angle >= -smallestAngle && angle <= smallestAngle ? 0.0F : angle;
}

/// A part of cell k of the block, without radius, angle and points.
InstancePart PartLayout::partOf(int k) const {
    InstancePart part{};
    part.shelfLength = fractionAbove(smallestShelf, mShelfLengths[k]);
    part.roundingRadius = fractionAbove(smallestRounding, mRoundingRadii[k]);
    part.roundingDots = mDots;
    part.linkMiddleOffset = fractionBeyond(smallestLink, mLinkOffsets[k]);
    part.linkRoundingRadius = part.roundingRadius;
    part.linkRoundingDots = mDots;
    return part;
}

/// While the properties are constant, those of cell 0 are those of all cells, and the run is complete.
void PartLayout::makeRun(Run& run, A_long count) const {
    run.count = count;
    run.directions.resize(static_cast<std::size_t>(count));
    run.parts.assign(static_cast<std::size_t>(count), mConstant ? partOf(0) : InstancePart{});
    for (A_long k = 0; k < count; ++k) {
        run.parts[k].angle = angleOf(k, count);
        run.directions[k] = partDirection(run.parts[k].angle);
    }
    if (mConstant) {
        placePartPoints(run.parts.data(), count, run.directions.data());
        run.points = outlinePointCount(run.parts.data(), count);
    }
}

PartLayout::Run* PartLayout::runOf(A_long count) {
    if (count > longestRun) {
        return nullptr;
    }
    Run& run = mRuns[count <= ownRuns ? count : 0];
    if (run.count != count) {
        makeRun(run, count);
    }
    return &run;
}

std::uint64_t PartLayout::layOut(int k, const InstanceState& cell, InstancePart* parts) {
    const A_long count = cell.partsCount;
    const Run* const run = runOf(count);
    if (run != nullptr && mConstant) {
        std::copy_n(run->parts.data(), count, parts);
        setRadius(parts, count, cell.radius);
        return run->points;
    }
    InstancePart part = partOf(k);
    part.radius = cell.radius;
    for (A_long n = 0; n < count; ++n) {
        part.angle = run != nullptr ? run->parts[n].angle : angleOf(n, count);
        parts[n] = part;
    }
    if (run != nullptr) {
        placePartPoints(parts, count, run->directions.data());
    } else {
        InstanceState placed = cell;
        placed.parts = parts;
        BuildPartPoints(placed);
    }
    return outlinePointCount(parts, count);
}

/// A run that is changed and read again at once makes the reading wait. Where memory is waited for anyway that is
/// hidden, and the parts leave complete; in the caches it isn't, so the run keeps the first cell's radius, and others
/// change their copies.
std::uint64_t PartLayout::layOutAlike(const InstanceState* cells, int count, Extent extent) {
    Run& run = *runOf(cells[0].partsCount);
    float radius = cells[0].radius;
    setRadius(run.parts.data(), cells[0].partsCount, radius);
    const std::size_t bytes = run.parts.size() * sizeof(InstancePart);
    for (int k = 0; k < count; ++k) {
        const bool differs = !sameBits(cells[k].radius, radius);
        if (differs && extent == Extent::BeyondCaches) {
            radius = cells[k].radius;
            setRadius(run.parts.data(), cells[k].partsCount, radius);
        }
        writeForward(cells[k].parts, run.parts.data(), bytes, extent);
        if (differs && extent == Extent::InCaches) {
            setRadius(cells[k].parts, cells[k].partsCount, cells[k].radius);
        }
    }
    return run.points;
}

}  // namespace Tessavoy
