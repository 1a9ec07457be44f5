#include "Source/Evaluate/VisibleEvaluator.h"

#include "Source/Evaluate/Chunks.h"
#include "Source/Evaluate/SeededRandom.h"

#include <array>
#include <cstdint>
#include <optional>

namespace Tessavoy {

namespace {

double shareOf(double percents) {
    return percents * 0.01;
}

/// The answer that is the same for every cell, if there is one: no draw is above 1 or below 0.
std::optional<bool> answerForAll(double share) {
    if (share >= 1.0) {
        return true;
    }
    return share >= 0.0 ? std::nullopt : std::optional(false);
}

}  // namespace

bool VisibleEvaluator::isConstant() const {
    return answerForAll(shareOf(Probability)).has_value();
}

bool VisibleEvaluator::test(A_long column, A_long row) const {
    A_u_char shown = 0;
    test(&column, &row, 1, &shown);
    return shown != 0;
}

void VisibleEvaluator::test(const A_long* columns, const A_long* rows, int count, A_u_char* shown) const {
    const double share = shareOf(Probability);
    if (const std::optional<bool> answer = answerForAll(share)) {
        std::fill_n(shown, count, A_u_char{*answer});
        return;
    }
    forEachChunk(count, [&](int first, int length) {
        std::array<std::uint32_t, chunkCells> columnWords;
        std::array<std::uint32_t, chunkCells> rowWords;
        std::array<double, chunkCells> draws;
        std::copy_n(columns + first, length, columnWords.begin());
        std::copy_n(rows + first, length, rowWords.begin());
        seededRandomCells(static_cast<std::uint32_t>(Seed), columnWords.data(), rowWords.data(), length, draws.data());
        std::transform(draws.begin(), draws.begin() + length, shown + first,
                       [share](double draw) { return A_u_char{share >= draw}; });
    });
}

}  // namespace Tessavoy
