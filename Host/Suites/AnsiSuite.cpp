#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

std::int32_t formatText(A_char* target, const A_char* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsprintf(target, format, arguments);
    va_end(arguments);
    return length;
}

A_char* copyText(A_char* target, const A_char* source) noexcept {
    return std::strcpy(target, source);
}

}  // namespace

const PF_ANSICallbacksSuite1 ansiSuite = {.reserved0 = {}, .sprintf = formatText, .strcpy = copyText, .reserved1 = {}};

}  // namespace TessavoyHost
