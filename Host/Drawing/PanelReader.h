#pragma once

#include <vector>

#include "Host/Drawing/DrawingSurface.h"
#include "Host/EffectInstance.h"
#include "HostInterface/Events.h"

namespace TessavoyHost {

// Looks at the controls that the effect draws itself in the panel of an instance.
class PanelReader {
public:
    // The instance must outlive it.
    explicit PanelReader(EffectInstance& instance);
    PanelReader(const PanelReader&) = delete;
    PanelReader& operator=(const PanelReader&) = delete;

    // Whether the module said that it draws the parameter's control.
    bool drawsControl(int parameter) const;

    // Has a control drawn, by one PF_Event_DRAW at the first frame's time. frame: its place, pixels of the panel.
    // States that the module pushed and didn't pop count as broken promises.
    CommandResult draw(int parameter, const PF_Rect& frame, DrawingSurface& surface);

    // The lines of text that a control shows, in the order in which it draws them; none for one that the module
    // doesn't draw. What goes wrong is noted with the host as broken promises.
    std::vector<DrawnText> textsOf(int parameter);

private:
    EffectInstance& mInstance;
    PF_Context mContext{};
    PF_Context* mContextPointer = &mContext;
};

}  // namespace TessavoyHost
