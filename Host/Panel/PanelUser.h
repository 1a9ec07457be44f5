#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Host/Drawing/PanelReader.h"
#include "Host/Panel/PanelLayout.h"

namespace TessavoyHost {

// What came of something that the user did: of all the commands that it led to together.
struct UserAction {
    PF_Err error = PF_Err_NONE;       // the first
    std::string message;              // of the first that has one
    bool displayError = false;        // the module asks that it be shown as an error
    bool handled = false;             // the module handled a mouse event
    bool projectDirty = false;        // the module says that it changed the project
    bool rerender = false;            // the picture has to be rendered again
    int mouseEvents = 0;              // clicks and drags that were sent
    int redraws = 0;                  // draw events that followed
    std::vector<int> changed;         // parameters with new values, each once
    std::vector<std::string> broken;  // promises that the module broke
};

// Does to an instance's panel what its user does, as the application tells the module of it. All groups are open to
// this user, but what is hidden can't be reached: such a call throws HostError(FrameFailed). Not during a render.
class PanelUser {
public:
    // The instance must outlive it, and so must the surface on which controls are redrawn; null draws them nowhere.
    // frame: of the composition, at whose moment the user works.
    explicit PanelUser(EffectInstance& instance, int frame = 0, DrawingSurface* surface = nullptr);

    // Has the module bring labels and visibility up to date, as when the panel opens or the time changes.
    UserAction look();

    // Where a control that the module draws stands, pixels of the panel.
    PF_Rect placeOf(int parameter) const;

    // Clicks a control at a point of the panel. Of several clicks each is told with its number. Where the module wants
    // to be told of the mouse's moves, it learns of the release.
    UserAction click(int parameter, const PF_Point& point, int clicks = 1, PF_Modifiers modifiers = PF_Mod_NONE);

    // Presses the button at the first point and lets it go at the last one. Moves are told as long as the module wants
    // them.
    UserAction drag(int parameter, const std::vector<PF_Point>& points, PF_Modifiers modifiers = PF_Mod_NONE);

    // Gives an ordinary parameter a value of its kind.
    UserAction change(int parameter, const ParameterValue& value);

    // Presses a button of the panel.
    UserAction press(int button);

private:
    const PanelRow& rowOf(const PanelLayout& layout, int parameter) const;
    void mouse(PF_EventExtra& event, const PF_Point& point, UserAction& action);
    void pressAndMove(int parameter, const std::vector<PF_Point>& points, int clicks, PF_Modifiers modifiers,
                      UserAction& action);
    void tellOfChange(int parameter, UserAction& action);
    void updatePanel(UserAction& action);
    void redraw(const PF_EventExtra& event, UserAction& action);

    EffectInstance& mInstance;
    const int mFrame;
    PanelReader mReader;
    DrawingSurface mNoSurface;
    DrawingSurface& mSurface;
    A_u_long mTicks = 0;  // counts mouse events
};

}  // namespace TessavoyHost
