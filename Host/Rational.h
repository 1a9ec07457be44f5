#pragma once

#include <cstdint>

namespace TessavoyHost {

// A fraction: a frame rate in frames per second, or a downsample factor (1/2 is half resolution). den is never 0.
struct Rational {
    std::int32_t num = 1;
    std::uint32_t den = 1;

    double value() const { return static_cast<double>(num) / static_cast<double>(den); }
    friend bool operator==(const Rational&, const Rational&) = default;
};

// The nearest fraction to a number from 0 to 2^31 - 1: the first convergent of its continued fraction within a part in
// 10^9, or else the last with a numerator below 2^31 and a denominator up to the greatest, which may be 2^31 - 1.
Rational nearestFraction(double value, std::int32_t greatestDen);

}  // namespace TessavoyHost
