#include "Source/Evaluate/RandomSource.h"

#include "Source/Evaluate/SeededRandom.h"

namespace Tessavoy {

double RandomSource::sample(A_long a, A_long b) const {
    if (Min >= Max) {
        return Min;
    }
    const double fraction =
        seededRandom(static_cast<std::uint32_t>(Seed), static_cast<std::uint32_t>(a), static_cast<std::uint32_t>(b));
    return (Max - Min) * fraction + Min;
}

}  // namespace Tessavoy
