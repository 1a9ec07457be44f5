#pragma once

#include <vector>

#include "Host/Drawing/DrawingSurface.h"
#include "Host/EffectInstance.h"
#include "HostInterface/Events.h"

namespace TessavoyHost {

// Looks at the controls that the effect draws itself in the panel of an instance.
class PanelReader {
public:
    // The instance must outlive it. frame: of the composition, at whose moment controls are looked at.
    explicit PanelReader(EffectInstance& instance, int frame = 0);
    PanelReader(const PanelReader&) = delete;
    PanelReader& operator=(const PanelReader&) = delete;

    // Whether the module said that it draws the parameter's control.
    bool drawsControl(int parameter) const;

    // Has a control drawn, by one PF_Event_DRAW. frame, title: its place and that of its label, pixels of the panel.
    // States that the module pushed and didn't pop count as broken promises, and are popped.
    CommandResult draw(int parameter, const PF_Rect& frame, DrawingSurface& surface, const PF_Rect& title = {});

    // An event of the control, as it goes to the module but for what its type holds besides. All have the one context
    // of this panel.
    PF_EventExtra eventOf(PF_EventType type, int parameter, const PF_Rect& frame, const PF_Rect& title = {});

    // The lines of text that a control shows, in the order in which it draws them; none for one that the module
    // doesn't draw. What goes wrong is noted with the host as broken promises.
    std::vector<DrawnText> textsOf(int parameter);

private:
    EffectInstance& mInstance;
    const int mFrame;
    PF_Context mContext{};
    PF_Context* mContextPointer = &mContext;
};

}  // namespace TessavoyHost
