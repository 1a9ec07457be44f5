#pragma once

#include "HostInterface/Types.h"

#include <exception>
#include <string>
#include <utility>

namespace Tessavoy {

/// A failure that carries the host's error value. The text is for the user and may be empty.
///
/// Three kinds of thing are thrown in the effect, and they are caught apart: this class; a plain integer, which is a
/// host error value as it stands (a missing suite); and an enumerator of PF_ErrorValue (failed host memory), which only
/// the catch-alls of the render and sequence commands take.
class Exception : public std::exception {
public:
    explicit Exception(PF_Err code, std::string text = {}) : mText(std::move(text)), mCode(code) {}

    const char* what() const noexcept override { return mText.c_str(); }

    PF_Err code() const noexcept { return mCode; }

private:
    std::string mText;
    PF_Err mCode;
};

/// Throws an Exception with the code when a host call has failed.
inline void throwOnError(PF_Err error) {
    if (error != 0) {
        throw Exception(error);
    }
}

/// Of two results, of which the second came later, the one that counts.
inline PF_Err firstError(PF_Err first, PF_Err second) {
    return first != 0 ? first : second;
}

}  // namespace Tessavoy
