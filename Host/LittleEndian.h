#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TessavoyHost {

// A number as saved data of modules has it: lowest byte first.
inline void appendLittleEndian(std::vector<std::byte>& bytes, std::uint32_t number) {
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<std::byte>(number >> shift & 0xff));
}

}  // namespace TessavoyHost
