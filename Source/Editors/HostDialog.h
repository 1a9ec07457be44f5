#pragma once

#include "HostInterface/Constants.h"
#include "HostInterface/Effect.h"
#include "Source/HostAccess/MemoryHandle.h"
#include "Source/HostAccess/NewHandle.h"
#include "Source/HostAccess/SuiteHandler.h"

#include <cstddef>
#include <string>

/// Dialogs are scripts: the effect fills a template, the host runs it in its own script language, and the script's last
/// value comes back as text.
namespace Tessavoy {

/// Escapes a text (UTF-8, closed by a zero) on the pattern of a JSON string. With a null buffer only the size needed is
/// returned, the closing zero included; with a buffer of that size the text is written there as well.
///
/// The single quote stays as it is, so that a text with one ends the single-quoted string into which dialogs put it.
std::size_t EscapeForScript(const char* text, char* buffer);

/// The same as a copy.
std::string escapeForScript(const char* text);

/// What the user made of a text in a dialog whose value is the number of the button pressed (1 for OK, 2 for Cancel)
/// followed by the text: the new text, which lies in the value, or null when the dialog was cancelled, gave no value,
/// or left the text as it was. Both texts are closed by a zero; the value may be null.
const char* editedText(const char* value, const char* current);

/// Runs a script, as UTF-8, under the effect's plug-in id; the host's error. The result is the script's last value as
/// text, closed by a zero. Throws Exception with 512 when there is no plug-in id, and the plain integer 516 for a
/// missing suite.
PF_Err executeScript(const PF_InData* inData, SuiteHandler& suites, const char* script, MemoryHandle& result);

/// Fills a template in a host block of exactly `blockSize` bytes, its closing zero included, with the host's sprintf,
/// runs it as `executeScript` does and frees the block. 512 when the host has no memory for the block, 4 when it can't
/// be locked.
template <class... Values>
PF_Err runDialog(const PF_InData* inData, SuiteHandler& suites, std::size_t blockSize, MemoryHandle& result,
                 const char* dialogTemplate, Values... values) {
    const NewHandle block(suites.get<PF_HandleSuite1>(), blockSize);
    if (!block.exists()) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    auto* script = static_cast<char*>(block.address());
    if (script == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    suites.get<PF_ANSICallbacksSuite1>().sprintf(script, dialogTemplate, values...);
    return executeScript(inData, suites, script, result);
}

}  // namespace Tessavoy
