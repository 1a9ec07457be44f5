#include "Host/EffectHost.h"
#include "Host/HostCall.h"
#include "Host/Suites/Tables.h"
#include "Host/Theme.h"

namespace TessavoyHost {
namespace {

PF_Err backgroundColor(PF_App_Color* color) noexcept {
    return answer("PF_AppGetBgColor", [&](CommandContext&) {
        require(color != nullptr);
        *color = themeColor(PF_App_Color_PANEL_BACKGROUND);
    });
}

PF_Err appColor(PF_App_ColorType type, PF_App_Color* color) noexcept {
    return answer("PF_AppGetColor", [&](CommandContext&) {
        require(color != nullptr && hasThemeColor(type));
        *color = themeColor(type);
    });
}

// There is no window, so this host counts as a render engine.
PF_Err isRenderEngine(PF_Boolean* engine) noexcept {
    return answer("PF_IsRenderEngine", [&](CommandContext&) {
        require(engine != nullptr);
        *engine = 1;
    });
}

PF_Err pickColor(const A_char* title, const PF_PixelFloat* sample, PF_Boolean, PF_PixelFloat* color) noexcept {
    return answer("PF_AppColorPickerDialog", [&](CommandContext& context) {
        require(sample != nullptr && color != nullptr);
        require(context.services.hooks.pickColor != nullptr, PF_Interrupt_CANCEL);
        const auto picked = context.services.hooks.pickColor(title == nullptr ? "" : title, *sample);
        require(picked.has_value(), PF_Interrupt_CANCEL);
        *color = *picked;
    });
}

PF_Err invalidateRect(PF_ContextH, const PF_Rect*) noexcept {
    return answer("PF_InvalidateRect", [](CommandContext&) {});
}

PF_Err setProjectDirty() noexcept {
    return answer("PF_SetProjectDirty", [](CommandContext& context) { context.projectDirty = true; });
}

PF_Err refreshAllWindows() noexcept {
    return answer("PF_RefreshAllWindows", [](CommandContext&) {});
}

PF_Err infoDrawText(const A_char*, const A_char*) noexcept {
    return answer("PF_InfoDrawText", [](CommandContext&) {});
}

}  // namespace

const PFAppSuite4 appSuite = {
    .PF_AppGetBgColor = backgroundColor,
    .PF_AppGetColor = appColor,
    .reserved0 = {},
    .PF_IsRenderEngine = isRenderEngine,
    .PF_AppColorPickerDialog = pickColor,
    .reserved1 = nullptr,
    .PF_InvalidateRect = invalidateRect,
    .reserved2 = {},
};

const PF_AdvAppSuite2 advAppSuite = {
    .PF_SetProjectDirty = setProjectDirty,
    .reserved0 = {},
    .PF_RefreshAllWindows = refreshAllWindows,
    .PF_InfoDrawText = infoDrawText,
    .reserved1 = {},
};

}  // namespace TessavoyHost
