#include <atomic>
#include <cstring>

#include "Host/HostCall.h"
#include "Host/Suites/HostText.h"
#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

A_Err registerPlugin(AEGP_GlobalRefcon, const A_char* name, AEGP_PluginID* id) noexcept {
    static std::atomic<AEGP_PluginID> latest = 0;
    return answer("AEGP_RegisterWithAEGP", [&](CommandContext&) {
        require(name != nullptr && id != nullptr);
        *id = ++latest;
    });
}

// What a module reports goes with the command's answer.
A_Err reportInfo(AEGP_PluginID, const A_char* text) noexcept {
    return answer("AEGP_ReportInfo", [&](CommandContext& context) {
        require(text != nullptr);
        context.reports(text);
    });
}

A_Err isScriptingAvailable(A_Boolean* available) noexcept {
    return answer("AEGP_IsScriptingAvailable", [&](CommandContext& context) {
        require(available != nullptr);
        *available = context.services.hooks.runScript != nullptr;
    });
}

// The command that failed by it has no better message than the interpreter's, so the user is told that.
void tellScriptError(CommandContext& context, const std::string& reason, AEGP_MemHandle* errorText) {
    if (errorText != nullptr)
        *errorText = lendText(context, reason);
    context.reports("the dialog's script failed: " + reason);
    throw HostCallFailure(PF_Err_BAD_CALLBACK_PARAM);
}

// Texts are UTF-8 whether or not the module asks for the platform's encoding, which is the same.
A_Err executeScript(AEGP_PluginID, const A_char* script, A_Boolean, AEGP_MemHandle* result,
                    AEGP_MemHandle* errorText) noexcept {
    return answer("AEGP_ExecuteScript", [&](CommandContext& context) {
        for (AEGP_MemHandle* given : {result, errorText}) {
            if (given != nullptr)
                *given = nullptr;
        }
        require(script != nullptr);
        require(context.services.hooks.runScript != nullptr, PF_Err_INVALID_CALLBACK);
        const ScriptAnswer answer = context.services.hooks.runScript(script);
        if (answer.failed)
            tellScriptError(context, answer.text, errorText);
        if (result != nullptr)
            *result = lendText(context, answer.text);
    });
}

}  // namespace

const AEGP_UtilitySuite3 utilitySuite7 = {
    .AEGP_ReportInfo = reportInfo, .reserved0 = {}, .AEGP_RegisterWithAEGP = registerPlugin, .reserved1 = {}};

const AEGP_UtilitySuite5 utilitySuite11 = {
    .AEGP_ReportInfo = reportInfo,
    .reserved0 = {},
    .AEGP_RegisterWithAEGP = registerPlugin,
    .reserved1 = {},
    .AEGP_IsScriptingAvailable = isScriptingAvailable,
    .AEGP_ExecuteScript = executeScript,
    .reserved2 = {},
};

}  // namespace TessavoyHost
