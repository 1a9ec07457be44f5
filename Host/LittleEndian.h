#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace TessavoyHost {

// A number as saved data of modules has it: lowest byte first.
inline void appendLittleEndian(std::vector<std::byte>& bytes, std::uint32_t number) {
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<std::byte>(number >> shift & 0xff));
}

// The number at an offset, which must have four bytes there.
inline std::uint32_t littleEndianAt(std::span<const std::byte> bytes, std::size_t offset) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i)
        number |= std::to_integer<std::uint32_t>(bytes[offset + i]) << (8 * i);
    return number;
}

}  // namespace TessavoyHost
