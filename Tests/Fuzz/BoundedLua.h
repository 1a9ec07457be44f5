#pragma once

#include <cstdint>

namespace TessavoyFuzz {

/// What the scripts of one fuzzing input may use, all states together. Beyond it every further instruction is an error
/// in Lua, in coroutines too, and memory is refused.
inline constexpr std::int64_t instructionBudget = 200000;
inline constexpr std::int64_t byteBudget = 64 << 20;

/// Begins the next input with a full budget.
void refillBudget();

}  // namespace TessavoyFuzz
