#pragma once

#include <bit>
#include <cstddef>
#include <cstring>
#include <span>
#include <vector>

namespace Tessavoy {

static_assert(std::endian::native == std::endian::little, "flat data are little-endian and copied as they stand");

/// Whether `size` bytes from `offset` lie wholly inside `bytes`.
inline bool holdsBytes(std::span<const std::byte> bytes, std::size_t offset, std::size_t size) {
    return offset <= bytes.size() && size <= bytes.size() - offset;
}

/// The number stored at byte `offset`, of any alignment; zero where it isn't wholly inside `bytes`.
template <class Number>
Number readFlat(std::span<const std::byte> bytes, std::size_t offset) {
    Number number{};
    if (holdsBytes(bytes, offset, sizeof(Number))) {
        std::memcpy(&number, bytes.data() + offset, sizeof(Number));
    }
    return number;
}

/// Appends the bytes of `number`.
template <class Number>
void appendFlat(std::vector<std::byte>& bytes, Number number) {
    const auto* first = reinterpret_cast<const std::byte*>(&number);
    bytes.insert(bytes.end(), first, first + sizeof(Number));
}

}  // namespace Tessavoy
