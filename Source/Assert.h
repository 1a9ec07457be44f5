#pragma once

namespace Tessavoy {

/// Prints the expression and its place to standard error and stops the process.
[[noreturn]] void failAssertion(const char* expression, const char* file, int line);

}  // namespace Tessavoy

/// An assertion that stays in the built product. The text is what the report names as the expression; it is given apart
/// from the condition because the report's wording is fixed while the code may say the same in other words.
#define TESSAVOY_ASSERT(condition, text)                           \
    do {                                                           \
        if (!(condition)) [[unlikely]] {                           \
            ::Tessavoy::failAssertion((text), __FILE__, __LINE__); \
        }                                                          \
    } while (false)
