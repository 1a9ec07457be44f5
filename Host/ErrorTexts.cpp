#include "Host/ErrorTexts.h"

#include <algorithm>
#include <array>

namespace TessavoyHost {
namespace {

constexpr std::string_view otherModule = "use the module that was built with this command (--module)";

constexpr std::array<ErrorText, 8> errorTexts = {{
    {PF_Err_OUT_OF_MEMORY, "out of memory, or OpenGL refused",
     "the picture or a layer may be larger than the driver's textures, or the grid larger than memory: try a lower "
     "--resolution, a smaller CountX and CountY, or --set MSAA=None"},
    {PF_Err_INTERNAL_STRUCT_DAMAGED,
     "data is damaged, or a shape is larger than the driver's buffers, or the grid larger than memory",
     "try a smaller CountX and CountY, shapes with fewer corners, and fewer parts in the script"},
    {PF_Err_INVALID_INDEX, "a parameter, layer or path was asked for that is not there", otherModule},
    {PF_Err_UNRECOGNIZED_PARAM_TYPE, "a parameter is of a kind that is not known", otherModule},
    {PF_Err_INVALID_CALLBACK, "the host was called when it could not answer", otherModule},
    {PF_Err_BAD_CALLBACK_PARAM, "the host has no such call or suite, or can't use what it was given", otherModule},
    {PF_Interrupt_CANCEL, "interrupted", ""},
    {PF_Err_CANNOT_PARSE_KEYFRAME_TEXT, "the text of a key can't be read", ""},
}};

constexpr ErrorText unknownError = {PF_Err_NONE, "the module gives no reason", otherModule};

std::string meaningOf(PF_Err error, const std::string& message) {
    return message.empty() ? std::string(errorText(error).meaning) : message;
}

}  // namespace

const ErrorText& errorText(PF_Err error) {
    const auto found = std::find_if(errorTexts.begin(), errorTexts.end(),
                                    [error](const ErrorText& known) { return known.error == error; });
    return found == errorTexts.end() ? unknownError : *found;
}

std::string failureOf(const std::string& what, PF_Err error, const std::string& message) {
    return what + " failed with error " + std::to_string(error) + ": " + meaningOf(error, message);
}

std::string frameFailure(PF_Err error, const std::string& message) {
    const std::string_view remedy = errorText(error).remedy;
    const std::string words = meaningOf(error, message) + " (error " + std::to_string(error) + ')';
    return remedy.empty() ? words : words + "; " + std::string(remedy);
}

}  // namespace TessavoyHost
