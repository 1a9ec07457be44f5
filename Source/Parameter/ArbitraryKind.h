#pragma once

#include <cstdint>

namespace Tessavoy {

/// The reference values by which an arbitrary-data callback tells the kinds apart: eight bytes of text as one
/// little-endian number, kept in the parameter's refcon pointer.
inline constexpr std::uint64_t ScriptRefcon = 0x0000534352495054;    // "TPIRCS", two zero bytes
inline constexpr std::uint64_t GradientRefcon = 0x544E454944415247;  // "GRADIENT"
inline constexpr std::uint64_t RampRefcon = 0x0052414D50000000;      // three zero bytes, "PMAR", one zero byte

}  // namespace Tessavoy
