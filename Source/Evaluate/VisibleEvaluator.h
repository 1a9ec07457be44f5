#pragma once

#include "HostInterface/Types.h"

namespace Tessavoy {

/// Which cells are shown: each by its own draw from the seed, its column and its row, so that equal seeds show the same
/// cells in grids of any size.
struct VisibleEvaluator {
    double Probability = 0;  ///< percent
    A_long Seed = 0;         ///< taken as a 32-bit word

    /// Whether the answer is the same for all cells.
    bool isConstant() const;

    /// column, row: from 0.
    bool test(A_long column, A_long row) const;

    /// test(columns[k], rows[k]) into shown[k] as 0 or 1, for k in 0..count - 1.
    void test(const A_long* columns, const A_long* rows, int count, A_u_char* shown) const;
};

}  // namespace Tessavoy
