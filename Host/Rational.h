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

}  // namespace TessavoyHost
