#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Host/Drawing/PanelReader.h"

namespace TessavoyHost {

// Keeps what is drawn, in its order within each kind.
class DrawingRecorder : public DrawingSurface {
public:
    struct Rectangle {
        DRAWBOT_RectF32 area;
        DRAWBOT_ColorRGBA color;
    };
    struct Shape {
        DrawnPath path;
        DRAWBOT_ColorRGBA color;
        float width = 0;  // of the pen; 0 for what is filled
    };
    struct Picture {
        DrawnImage image;
        DRAWBOT_PointF32 origin;
        float alpha;
    };

    void clip(const DRAWBOT_Rect32& rectangle) override { clips.push_back(rectangle); }
    void paintRect(const DRAWBOT_RectF32& area, const DRAWBOT_ColorRGBA& color) override {
        rectangles.push_back({area, color});
    }
    void fillPath(const DrawnPath& path, const DRAWBOT_ColorRGBA& color, DRAWBOT_FillType) override {
        fills.push_back({path, color});
    }
    void strokePath(const DrawnPath& path, const DRAWBOT_ColorRGBA& color, float width) override {
        strokes.push_back({path, color, width});
    }
    void drawImage(const DrawnImage& image, const DRAWBOT_PointF32& origin, float alpha) override {
        pictures.push_back({image, origin, alpha});
    }

    std::vector<DRAWBOT_Rect32> clips;
    std::vector<Rectangle> rectangles;
    std::vector<Shape> fills, strokes;
    std::vector<Picture> pictures;
};

// The ends of a path's pieces, in order; closing has none, and a rectangle its corners.
std::vector<DRAWBOT_PointF32> cornersOf(const DrawnPath& path);

// The smallest rectangle around these.
DRAWBOT_RectF32 boundsOf(const DrawnPath& path);

// A colour of the host's theme as modules take it: opaque, components of 65535 brought to 0 to 1.
DRAWBOT_ColorRGBA themeColorOf(EffectHost& host, PF_AppColorValue color);

bool sameColor(const DRAWBOT_ColorRGBA& first, const DRAWBOT_ColorRGBA& second);

// The drawing fills a frame with the panel's background and stays in it.
void expectFilled(EffectHost& host, const DrawingRecorder& recorder, const PF_Rect& frame);

// A control of arbitrary data in an instance's panel, and the mouse upon it, event by event; what a user does as a
// whole is PanelUser's. The control stands where the test wants it, and the instance's own value is edited.
class PanelControl {
public:
    // The instance must outlive it. id: of the parameter. frame: of the control, pixels of the panel.
    PanelControl(EffectInstance& instance, std::string_view id, const PF_Rect& frame);

    // The mouse is pressed, or is moved while pressed. What the module keeps of a press goes with its moves.
    CommandResult click(int x, int y, int count = 1, PF_Modifiers modifiers = PF_Mod_NONE);
    CommandResult drag(int x, int y);
    CommandResult draw(DrawingSurface& surface);

    // What the module said at the last click or move.
    bool sendsDrags() const { return mEvent.u.do_click.send_drag != 0; }
    bool handled() const { return mEvent.evt_out_flags == PF_EO_HANDLED_EVENT; }
    bool changed() const { return mDefinitions[parameter()].uu.change_flags == PF_ChangeFlag_CHANGED_VALUE; }
    // Neither; and it didn't ask for drags.
    bool untouched() const;

    // The instance's value in its saved form.
    std::vector<std::byte> flat() const;
    // The value's handle, which has no locks between events.
    PF_Handle handle() const { return mDefinitions[parameter()].u.arb_d.value; }

    // Makes each host call of an event fail in turn, until it goes through without: an event that fails has an error of
    // the host's and has changed nothing, and all that was lent came back. Returns how many calls failed the event.
    int failEachCallOf(const std::function<CommandResult()>& event);

    // The event record, for what the calls above don't say: the area, what is kept.
    PF_EventExtra& event() { return mEvent; }

private:
    std::size_t parameter() const { return static_cast<std::size_t>(mEvent.effect_win.index); }
    CommandResult send(PF_EventType type, int x, int y);

    EffectInstance& mInstance;
    PanelReader mReader;
    std::vector<PF_ParamDef> mDefinitions;  // of all parameters, by index
    std::vector<PF_ParamDef*> mPointers;
    PF_EventExtra mEvent;
};

// An instance with a saved value in one of its parameters, and that parameter's control.
struct InstanceWithControl {
    InstanceWithControl(EffectHost& host, const std::string& id, const std::vector<std::byte>& flat,
                        const PF_Rect& frame);

    std::unique_ptr<EffectInstance> instance;
    PanelControl control;
};

}  // namespace TessavoyHost
