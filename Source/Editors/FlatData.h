#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
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

/// Walks `count` records of `recordBytes` each, the first at byte `offset`, calling add(offset of the record); false if
/// the bytes end before the last record does. A record that is cut off after its first number, a float, still counts.
template <class Add>
bool readRecords(std::span<const std::byte> bytes, std::size_t offset, std::int32_t count, std::size_t recordBytes,
                 Add add) {
    for (std::int32_t n = 0; n < count; ++n, offset += recordBytes) {
        if (!holdsBytes(bytes, offset, sizeof(float))) {
            return false;
        }
        add(offset);
        if (!holdsBytes(bytes, offset, recordBytes)) {
            return false;
        }
    }
    return true;
}

/// Appends the bytes of `number`.
template <class Number>
void appendFlat(std::vector<std::byte>& bytes, Number number) {
    const auto* first = reinterpret_cast<const std::byte*>(&number);
    bytes.insert(bytes.end(), first, first + sizeof(Number));
}

}  // namespace Tessavoy
