#include "Source/RenderGrid/DrawOrder.h"

#include "Source/Assert.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace Tessavoy {

GridToSequence::GridToSequence(A_long countX, A_long countY)
    : mCountX(countX), mCountY(countY), mCount(countX * countY) {}

void GridToSequence::Reset() {
    mInd = 0;
}

bool GridToSequence::IsEnd() const {
    return mInd == mCount;
}

void GridToSequence::Next() {
    ++mInd;
    TESSAVOY_ASSERT(mInd <= mCount, "mInd <= mCount");
}

void GridToSequence::Prev() {
    --mInd;
    TESSAVOY_ASSERT(mInd >= 0, "mInd >= 0");
}

GridToSequenceByZ::GridToSequenceByZ(const OrderMap& order, A_long countX, A_long countY)
    : GridToSequence(countX, countY), mOrder(order) {
    TESSAVOY_ASSERT(mOrder.size() == static_cast<std::size_t>(GetCount()), "mOrder.size() == GetCount()");
    GridToSequenceByZ::Reset();
}

void GridToSequenceByZ::Reset() {
    mCurIt = mOrder.begin();
    takeIndex();
}

bool GridToSequenceByZ::IsEnd() const {
    return mCurIt == mOrder.end();
}

void GridToSequenceByZ::Next() {
    TESSAVOY_ASSERT(mCurIt != mOrder.end(), "mCurIt != mOrder.end()");
    ++mCurIt;
    takeIndex();
}

void GridToSequenceByZ::Prev() {
    TESSAVOY_ASSERT(mCurIt != mOrder.begin(), "mCurIt != mOrder.begin()");
    --mCurIt;
    takeIndex();
}

A_long GridToSequenceByZ::indexAhead(std::ptrdiff_t steps) const {
    return (mCurIt + std::min(steps, mOrder.end() - mCurIt - 1))->index;
}

void GridToSequenceByZ::takeIndex() {
    if (mCurIt != mOrder.end()) {
        mInd = mCurIt->index;
    }
}

bool samePlace(const GridToSequence& left, const GridToSequence& right) {
    const auto* leftByZ = dynamic_cast<const GridToSequenceByZ*>(&left);
    if (leftByZ == nullptr) {
        return left.GetInd() == right.GetInd();
    }
    const auto* rightByZ = dynamic_cast<const GridToSequenceByZ*>(&right);
    TESSAVOY_ASSERT(rightByZ != nullptr, "rightByZ != nullptr");
    return leftByZ->position() == rightByZ->position();
}

namespace {

/// The key as an unsigned number that sorts the same way: 0 and -0 alike, and every NaN behind the infinities.
std::uint32_t sortableKey(float key) {
    constexpr std::uint32_t sign = 0x80000000U;
    if (key != key) {
        return 0xFFFFFFFFU;
    }
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(key + 0.0F);
    return (bits & sign) != 0 ? ~bits : bits | sign;
}

bool sortsBefore(const OrderEntry& a, const OrderEntry& b) {
    return sortableKey(a.key) < sortableKey(b.key);
}

/// The digits of a radix sort: three of eleven bits hold a key.
constexpr std::size_t digitCount = 3;
constexpr unsigned digitBits = 11;
constexpr std::size_t digitValues = std::size_t{1} << digitBits;

std::size_t digitOf(float key, std::size_t digit) {
    return (sortableKey(key) >> (digit * digitBits)) & (digitValues - 1);
}

/// How often each value of each digit occurs.
using DigitCounts = std::array<std::array<std::uint32_t, digitValues>, digitCount>;

DigitCounts countDigits(const OrderMap& order) {
    DigitCounts counts{};
    for (const OrderEntry& entry : order) {
        for (std::size_t digit = 0; digit < digitCount; ++digit) {
            ++counts[digit][digitOf(entry.key, digit)];
        }
    }
    return counts;
}

/// One pass of the sort: to has the entries of from, by this digit, equal ones in their order.
void distribute(const OrderMap& from, OrderMap& to, std::size_t digit, std::array<std::uint32_t, digitValues>& counts) {
    std::uint32_t start = 0;
    for (std::uint32_t& count : counts) {
        start += std::exchange(count, start);
    }
    for (const OrderEntry& entry : from) {
        to[counts[digitOf(entry.key, digit)]++] = entry;
    }
}

/// Radix sort from the least digit. A digit in which all keys agree needs no pass.
void sortByDigits(OrderMap& order) {
    DigitCounts counts = countDigits(order);
    OrderMap other(order.size());
    for (std::size_t digit = 0; digit < digitCount; ++digit) {
        if (counts[digit][digitOf(order.front().key, digit)] != order.size()) {
            distribute(order, other, digit, counts[digit]);
            order.swap(other);
        }
    }
}

}  // namespace

void sortByKey(OrderMap& order) {
    constexpr std::size_t worthCounting = 1024;  // below, the counts cost more than the comparisons
    if (std::is_sorted(order.begin(), order.end(), sortsBefore)) {
        return;
    }
    if (order.size() < worthCounting) {
        std::stable_sort(order.begin(), order.end(), sortsBefore);
    } else {
        sortByDigits(order);
    }
}

OrderMap buildOrder(const InstanceState* cells, A_long count) {
    OrderMap order(static_cast<std::size_t>(count));
    for (A_long index = 0; index < count; ++index) {
        order[index] = {-cells[index].matrix.m[14], index};
    }
    sortByKey(order);
    return order;
}

DrawOrder::DrawOrder(bool byZ, A_long countX, A_long countY, const InstanceState* cells) {
    if (byZ) {
        mOrder = buildOrder(cells, countX * countY);
        mLeft = std::make_unique<GridToSequenceByZ>(mOrder, countX, countY);
        mRight = std::make_unique<GridToSequenceByZ>(mOrder, countX, countY);
    } else {
        mLeft = std::make_unique<GridToSequence>(countX, countY);
        mRight = std::make_unique<GridToSequence>(countX, countY);
    }
}

}  // namespace Tessavoy
