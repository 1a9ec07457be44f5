#include "Host/Theme.h"

#include <array>

#include "HostInterface/Constants.h"

namespace TessavoyHost {
namespace {

// Of 8 bits a channel, red highest.
constexpr PF_App_Color rgb(A_u_long color) {
    const auto spread = [](A_u_long byte) { return static_cast<A_u_short>((byte & 0xFF) * 0x101); };
    return {spread(color >> 16), spread(color >> 8), spread(color)};
}

// In the interface's order: those of panels, of buttons and of pressed buttons, each as frame, fill, text, light tinge,
// dark tinge, highlight and shadow.
constexpr std::array<PF_App_Color, 21> enabledColors = {{
    rgb(0x4A4A4A), rgb(0x262626), rgb(0xC0C0C0), rgb(0x5A5A5A), rgb(0x1C1C1C), rgb(0xE6E6E6), rgb(0x101010),  //
    rgb(0x5E5E5E), rgb(0x3A3A3A), rgb(0xD0D0D0), rgb(0x4E4E4E), rgb(0x2C2C2C), rgb(0xE6E6E6), rgb(0x101010),  //
    rgb(0x6E6E6E), rgb(0x1E1E1E), rgb(0xE6E6E6), rgb(0x343434), rgb(0x161616), rgb(0xF2F2F2), rgb(0x080808),
}};

// From black on: plain colours, marks of the timeline, the light fill, hot text.
constexpr std::array<PF_App_Color, 15> plainColors = {{
    rgb(0x000000),
    rgb(0xFFFFFF),
    rgb(0x808080),
    rgb(0xD84343),
    rgb(0xDCC04A),
    rgb(0x54B45A),
    rgb(0x4AB6C8),  //
    rgb(0x3C96E8),
    rgb(0xB0B0B0),
    rgb(0x4CA64C),
    rgb(0x3C78D8),
    rgb(0x3CA0A0),
    rgb(0x343434),
    rgb(0x5AA9F5),
    {},
}};

// None and the sixteen labels of layers.
constexpr std::array<PF_App_Color, 17> labelColors = {{
    rgb(0x6A6A6A),
    rgb(0xC04848),
    rgb(0xD8C85A),
    rgb(0x9CC8C4),
    rgb(0xD8A4C4),
    rgb(0xA8A8D8),
    rgb(0xE0B890),
    rgb(0xA8C8B0),
    rgb(0x5878D0),
    rgb(0x48A448),
    rgb(0x8C50A8),
    rgb(0xD88830),
    rgb(0x946040),
    rgb(0xE070C0),
    rgb(0x50B8D0),
    rgb(0xB0A484),
    rgb(0x2C6040),
}};

constexpr std::array<PF_App_Color, 7> lateColors = {{
    rgb(0x8CA64C),
    rgb(0x7878D8),
    rgb(0x78A0A0),
    rgb(0x8CC8FF),
    rgb(0xF0A050),
    rgb(0x000000),
    rgb(0xFFFFFF),
}};

constexpr std::array<PF_App_Color, 5> panelColors = {{
    rgb(0x262626),
    rgb(0x1A1A1A),
    rgb(0x333333),
    rgb(0xD0D0D0),
    rgb(0xE6E6E6),
}};

constexpr PF_App_Color disabled(const PF_App_Color& color) {
    const PF_App_Color& fill = enabledColors[PF_App_Color_FILL];
    const auto middle = [](A_u_short a, A_u_short b) { return static_cast<A_u_short>((a + b) / 2); };
    return {middle(color.red, fill.red), middle(color.green, fill.green), middle(color.blue, fill.blue)};
}

constexpr int countOf(const auto& colors) {
    return static_cast<int>(colors.size());
}

static_assert(PF_App_Color_FRAME_DISABLED == countOf(enabledColors));
static_assert(PF_App_Color_BLACK == 2 * countOf(enabledColors));
static_assert(PF_App_Color_LABEL_0 == PF_App_Color_BLACK + countOf(plainColors));
static_assert(PF_App_Color_TLW_CACHE_MARK_MEM_DUBIOUS == PF_App_Color_LABEL_0 + countOf(labelColors));
static_assert(PF_App_Color_PURE_WHITE + 1 == PF_App_Color_TLW_CACHE_MARK_MEM_DUBIOUS + countOf(lateColors));
static_assert(PF_App_Color_NUMTYPES == PF_App_Color_PANEL_BACKGROUND + countOf(panelColors));

const PF_App_Color& at(const auto& colors, int place) {
    return colors[static_cast<std::size_t>(place)];
}

}  // namespace

bool hasThemeColor(PF_App_ColorType type) {
    return (type >= PF_App_Color_FRAME && type <= PF_App_Color_PURE_WHITE) ||
           (type >= PF_App_Color_PANEL_BACKGROUND && type < PF_App_Color_NUMTYPES);
}

PF_App_Color themeColor(PF_App_ColorType type) {
    if (type >= PF_App_Color_PANEL_BACKGROUND)
        return at(panelColors, type - PF_App_Color_PANEL_BACKGROUND);
    if (type >= PF_App_Color_TLW_CACHE_MARK_MEM_DUBIOUS)
        return at(lateColors, type - PF_App_Color_TLW_CACHE_MARK_MEM_DUBIOUS);
    if (type >= PF_App_Color_LABEL_0)
        return at(labelColors, type - PF_App_Color_LABEL_0);
    if (type == PF_App_Color_HOT_TEXT_DISABLED)
        return disabled(themeColor(PF_App_Color_HOT_TEXT));
    if (type >= PF_App_Color_BLACK)
        return at(plainColors, type - PF_App_Color_BLACK);
    if (type >= PF_App_Color_FRAME_DISABLED)
        return disabled(at(enabledColors, type - PF_App_Color_FRAME_DISABLED));
    return at(enabledColors, type);
}

DRAWBOT_ColorRGBA drawnThemeColor(PF_App_ColorType type) {
    constexpr float full = 0xFFFF;
    const PF_App_Color color = themeColor(type);
    return {color.red / full, color.green / full, color.blue / full, 1};
}

}  // namespace TessavoyHost
