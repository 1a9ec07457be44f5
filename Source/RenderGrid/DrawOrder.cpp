#include "Source/RenderGrid/DrawOrder.h"

#include "Source/Assert.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
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

/// Of a negative number all bits are turned over, of any other the sign.
std::uint32_t rankOf(float key) {
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(key + 0.0F);
    const std::uint32_t rank = bits ^ (0x80000000U | (0U - (bits >> 31)));
    return key == key ? rank : 0xFFFFFFFFU;
}

namespace {

constexpr auto ranksBefore = [](const OrderEntry& a, const OrderEntry& b) { return a.rank < b.rank; };

/// The digits of a radix sort: three of eleven bits hold a rank.
constexpr std::size_t digitCount = 3;
constexpr unsigned digitBits = 11;
constexpr std::size_t digitValues = std::size_t{1} << digitBits;

std::size_t digitOf(std::uint32_t rank, std::size_t digit) {
    return (rank >> (digit * digitBits)) & (digitValues - 1);
}

/// How often each value of each digit occurs.
using ValueCounts = std::array<std::uint32_t, digitValues>;
using DigitCounts = std::array<ValueCounts, digitCount>;

DigitCounts countDigits(const OrderMap& order) {
    DigitCounts counts{};
    for (const OrderEntry& entry : order) {
        ++counts[0][digitOf(entry.rank, 0)];
        ++counts[1][digitOf(entry.rank, 1)];
        ++counts[2][digitOf(entry.rank, 2)];
    }
    return counts;
}

/// One pass of the sort: `to` gets the entries of `from` by this digit, equal ones in their order.
void distribute(const OrderEntry* from, std::size_t size, OrderEntry* to, std::size_t digit, ValueCounts& counts) {
    std::uint32_t start = 0;
    for (std::uint32_t& count : counts) {
        start += std::exchange(count, start);
    }
    for (std::size_t k = 0; k < size; ++k) {
        to[counts[digitOf(from[k].rank, digit)]++] = from[k];
    }
}

/// Radix sort from the least digit. A digit in which all ranks agree needs no pass.
void sortByDigits(OrderMap& order) {
    const std::size_t size = order.size();
    DigitCounts counts = countDigits(order);
    const auto other = std::make_unique_for_overwrite<OrderEntry[]>(size);
    OrderEntry* from = order.data();
    OrderEntry* to = other.get();
    for (std::size_t digit = 0; digit < digitCount; ++digit) {
        if (counts[digit][digitOf(from->rank, digit)] != size) {
            distribute(from, size, to, digit, counts[digit]);
            std::swap(from, to);
        }
    }
    if (from != order.data()) {
        std::copy_n(from, size, order.data());
    }
}

/// Every entry ranks before the one in front of it.
bool fallsThroughout(const OrderMap& order) {
    return std::adjacent_find(order.begin(), order.end(),
                              [](const OrderEntry& a, const OrderEntry& b) { return a.rank <= b.rank; }) == order.end();
}

}  // namespace

/// The usual frames come in order, or in the reverse one; neither test looks far in others.
void sortByRank(OrderMap& order) {
    constexpr std::size_t worthCounting = 4096;  // below, the counts cost more than the comparisons
    if (std::is_sorted(order.begin(), order.end(), ranksBefore)) {
        return;
    }
    if (fallsThroughout(order)) {
        std::reverse(order.begin(), order.end());
    } else if (order.size() < worthCounting) {
        std::stable_sort(order.begin(), order.end(), ranksBefore);
    } else {
        sortByDigits(order);
    }
}

OrderMap buildOrder(const InstanceState* cells, A_long count) {
    OrderMap order(static_cast<std::size_t>(count));
    for (A_long index = 0; index < count; ++index) {
        order[index] = {rankOf(-cells[index].matrix.m[14]), index};
    }
    sortByRank(order);
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
