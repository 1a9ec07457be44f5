#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <variant>
#include <vector>

namespace Tessavoy {

/// One number of a flat form: four bytes, written here by shifts, lowest byte first.
using FlatNumber = std::variant<std::int32_t, float>;

inline void appendNumber(std::vector<std::byte>& bytes, const FlatNumber& number) {
    std::uint32_t bits = 0;
    std::visit([&bits](auto value) { std::memcpy(&bits, &value, sizeof bits); }, number);
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<std::byte>(bits >> shift & 255u));
    }
}

inline std::vector<std::byte> flatBytes(std::initializer_list<FlatNumber> numbers) {
    std::vector<std::byte> bytes;
    for (const FlatNumber& number : numbers) {
        appendNumber(bytes, number);
    }
    return bytes;
}

}  // namespace Tessavoy
