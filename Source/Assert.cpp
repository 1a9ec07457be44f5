#include "Source/Assert.h"

#include <cstdio>
#include <cstdlib>

namespace Tessavoy {

void failAssertion(const char* expression, const char* file, int line) {
    std::fprintf(stderr, "Assertion failed: %s, file %s, line %d\n", expression, file, line);
    std::fflush(stderr);
    std::abort();
}

}  // namespace Tessavoy
