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

A_Err executeScript(AEGP_PluginID, const A_char* script, A_Boolean, AEGP_MemHandle* result,
                    AEGP_MemHandle* errorText) noexcept {
    return answer("AEGP_ExecuteScript", [&](CommandContext& context) {
        require(script != nullptr);
        require(context.services.hooks.runScript != nullptr, PF_Err_INVALID_CALLBACK);
        if (errorText != nullptr)
            *errorText = nullptr;
        const std::string text = context.services.hooks.runScript(script);
        if (result != nullptr)
            *result = lendText(context, text);
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
