#pragma once

#include <string>
#include <string_view>

#include "HostInterface/Constants.h"

namespace TessavoyHost {

// What an error of the host's interface stands for when a module ends a command with it, and what its user can do about
// it in a frame. Both are parts of a sentence without a full stop.
struct ErrorText {
    PF_Err error;
    std::string_view meaning;
    std::string_view remedy;  // empty: there is none
};

// Of any number; those that the interface does not know share one text.
const ErrorText& errorText(PF_Err error);

// "setting the module up failed with error 4: out of memory, or OpenGL refused". A message of the module stands in
// place of the meaning.
std::string failureOf(const std::string& what, PF_Err error, const std::string& message = {});

// Of a frame, with the remedy: "out of memory, or OpenGL refused (error 4); the picture or a layer may ...".
std::string frameFailure(PF_Err error, const std::string& message);

// What helps where the host itself has no memory left for a frame.
inline constexpr std::string_view memoryRemedy =
    "render fewer frames side by side (--threads), or at a lower --resolution";

}  // namespace TessavoyHost
