#include "Host/EffectHost.h"
#include "Host/HostCall.h"
#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

// A dark theme, 16 bits a channel.
constexpr PF_App_Color background = {0x2626, 0x2626, 0x2626};
constexpr PF_App_Color foreground = {0xC0C0, 0xC0C0, 0xC0C0};

PF_App_Color themeColor(PF_App_ColorType type) {
    switch (type) {
        case PF_App_Color_TEXT:
        case PF_App_Color_HOT_TEXT:
        case PF_App_Color_HILITE:
        case PF_App_Color_LIGHT_TINGE:
            return foreground;
        case PF_App_Color_WHITE:
        case PF_App_Color_PURE_WHITE:
            return {0xFFFF, 0xFFFF, 0xFFFF};
        case PF_App_Color_BLACK:
        case PF_App_Color_PURE_BLACK:
        case PF_App_Color_FRAME:
        case PF_App_Color_SHADOW:
            return {0, 0, 0};
        default:
            return background;
    }
}

PF_Err backgroundColor(PF_App_Color* color) noexcept {
    return answer("PF_AppGetBgColor", [&](CommandContext&) {
        require(color != nullptr);
        *color = background;
    });
}

PF_Err appColor(PF_App_ColorType type, PF_App_Color* color) noexcept {
    return answer("PF_AppGetColor", [&](CommandContext&) {
        require(color != nullptr);
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
