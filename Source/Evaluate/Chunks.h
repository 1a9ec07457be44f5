#pragma once

#include <algorithm>

namespace Tessavoy {

/// The cells that a batch evaluator works on at a time: what it needs between its steps fits the stack and the first
/// cache.
inline constexpr int chunkCells = 64;

/// Calls work(first, length) for consecutive chunks that cover 0..count - 1.
template <class Work>
void forEachChunk(int count, const Work& work) {
    for (int first = 0; first < count; first += chunkCells) {
        work(first, std::min(chunkCells, count - first));
    }
}

}  // namespace Tessavoy
