#pragma once

#include "HostInterface/Types.h"
#include "Source/RenderGrid/InstanceState.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Tessavoy {

/// One cell's place in the order from far to near.
struct OrderEntry {
    std::uint32_t rank;  ///< the key as a number that sorts as the keys do; see rankOf
    A_long index;
};

/// A key as an unsigned number: smaller keys have smaller ranks, 0 and -0 the same, and what is not a number the
/// largest.
std::uint32_t rankOf(float key);

/// All cells of a frame by ascending key, equal keys (0 and -0 are equal) by ascending index. A key that is not a
/// number stands behind all others.
using OrderMap = std::vector<OrderEntry>;

/// A cursor that walks the cells in cell order.
class GridToSequence {
public:
    GridToSequence(A_long countX, A_long countY);
    virtual ~GridToSequence() = default;
    virtual void Reset();
    virtual bool IsEnd() const;
    virtual void Next();
    virtual void Prev();

    /// Goes to the end, as so many calls of Next would.
    void skipToEnd() { mInd = mCount; }

    /// The index of the current cell.
    A_long GetInd() const { return mInd; }
    A_long GetCount() const { return mCount; }

protected:
    A_long mInd = 0;
    A_long mCountX;
    A_long mCountY;
    A_long mCount;
};

/// A cursor that walks the cells from far to near. The map is not owned, and has an entry for every cell.
class GridToSequenceByZ final : public GridToSequence {
public:
    GridToSequenceByZ(const OrderMap& order, A_long countX, A_long countY);
    void Reset() override;
    bool IsEnd() const override;
    void Next() override;
    void Prev() override;

    void skipToEnd() { mCurIt = mOrder.end(); }

    OrderMap::const_iterator position() const { return mCurIt; }

    /// The index of the cell so many steps ahead, or of the last one.
    A_long indexAhead(std::ptrdiff_t steps) const;

private:
    void takeIndex();

    const OrderMap& mOrder;
    OrderMap::const_iterator mCurIt;
};

/// Whether two cursors stand at the same place. Both are of the class that the call names.
inline bool samePlace(const GridToSequence& left, const GridToSequence& right) {
    return left.GetInd() == right.GetInd();
}

inline bool samePlace(const GridToSequenceByZ& left, const GridToSequenceByZ& right) {
    return left.position() == right.position();
}

/// Sorts by rank, in place. Equal ranks keep their order. Takes as much memory again while it works.
void sortByRank(OrderMap& order);

/// The map of these cells: cells[0..count - 1], with the matrices built, visible or not.
OrderMap buildOrder(const InstanceState* cells, A_long count);

/// The two cursors of a frame. The left one is where cells are written, the right one runs ahead and measures.
class DrawOrder {
public:
    /// byZ: from far to near, otherwise in cell order. countX and countY are 0 or more. The cells are read where the
    /// order is by depth, and may otherwise be null.
    DrawOrder(bool byZ, A_long countX, A_long countY, const InstanceState* cells);

    // The cursors refer to the map, which stays where it is.
    DrawOrder(const DrawOrder&) = delete;
    DrawOrder& operator=(const DrawOrder&) = delete;

    GridToSequence& left() { return *mLeft; }
    GridToSequence& right() { return *mRight; }

private:
    OrderMap mOrder;
    std::unique_ptr<GridToSequence> mLeft;
    std::unique_ptr<GridToSequence> mRight;
};

}  // namespace Tessavoy
