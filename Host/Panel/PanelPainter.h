#pragma once

#include <string>

#include "Host/Drawing/PanelReader.h"
#include "Host/Panel/PanelLayout.h"

namespace TessavoyHost {

// Paints the panel of an instance in the application's theme, as it shows at a frame of the composition. Controls that
// the module draws it draws itself.
class PanelPainter {
public:
    // Both must outlive it.
    PanelPainter(EffectInstance& instance, int frame, DrawingSurface& surface);

    // Throws HostError(FrameFailed) where the module fails to draw a control. Promises that it breaks on the way are
    // noted with the host.
    void paint(const PanelLayout& layout);

private:
    void paintCaption(const PF_Rect& place);
    void paintRow(const PanelRow& row);
    void paintTwirl(const PF_Rect& place, bool isOpen);
    void paintValue(const PanelRow& row);
    void paintCheckbox(const PanelRow& row);
    void paintColor(const PanelRow& row);
    void paintDial(const PanelRow& row);
    void paintChoice(const PanelRow& row);
    void paintButton(const PanelRow& row);
    void paintControl(const PanelRow& row);

    void paintBox(const PF_Rect& place, PF_App_ColorType frame, PF_App_ColorType fill);
    // A line of text in the middle of the place's height, cut off at its right end.
    void paintText(const std::string& text, const PF_Rect& place, PF_App_ColorType color,
                   DRAWBOT_TextAlignment alignment = kDRAWBOT_TextAlignment_Left);

    EffectInstance& mInstance;
    PanelReader mReader;
    DrawingSurface& mSurface;
    const double mTime;  // composition seconds
};

}  // namespace TessavoyHost
