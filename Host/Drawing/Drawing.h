#pragma once

#include <vector>

#include "Host/Drawing/DrawingSurface.h"
#include "Host/World.h"
#include "HostInterface/Events.h"

namespace TessavoyHost {

// The drawing of one draw event: the references under which the module knows it, and the state that the module can ask
// for. What is drawn goes on to the surface.
class Drawing {
public:
    // surface must outlive this. frame: what may be drawn on, pixels of the panel. context: the event's.
    Drawing(DrawingSurface& surface, const Region& frame, PF_ContextH context);
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    DRAWBOT_DrawRef reference() { return reinterpret_cast<DRAWBOT_DrawRef>(&mDrawing); }
    DRAWBOT_SupplierRef supplier() { return reinterpret_cast<DRAWBOT_SupplierRef>(&mSupplier); }
    DRAWBOT_SurfaceRef surfaceReference() { return reinterpret_cast<DRAWBOT_SurfaceRef>(&mSurfaceMark); }
    PF_ContextH context() const { return mContext; }

    DrawingSurface& surface() { return mSurface; }

    void push();
    // False when nothing is pushed.
    bool pop();
    // States that are pushed and not popped.
    int depth() const { return static_cast<int>(mStates.size()) - 1; }

    void clip(const DRAWBOT_Rect32& rectangle);
    void transform(const DRAWBOT_MatrixF32& matrix);
    void setInterpolation(DRAWBOT_InterpolationPolicy policy);
    void setAntiAliasing(DRAWBOT_AntiAliasPolicy policy);

    // In pixels of the panel, whatever the transform; the frame at first.
    const Region& clipBounds() const { return mStates.back().clip; }
    bool isWithinClip(const DRAWBOT_Rect32& rectangle) const;
    DRAWBOT_InterpolationPolicy interpolation() const { return mStates.back().interpolation; }
    DRAWBOT_AntiAliasPolicy antiAliasing() const { return mStates.back().antiAliasing; }

private:
    struct State {
        Region clip;
        DRAWBOT_MatrixF32 transform;
        DRAWBOT_InterpolationPolicy interpolation = kDRAWBOT_InterpolationPolicy_Default;
        DRAWBOT_AntiAliasPolicy antiAliasing = kDRAWBOT_AntiAliasPolicy_Default;
    };

    Region inPanel(const DRAWBOT_Rect32& rectangle) const;

    DrawingSurface& mSurface;
    const PF_ContextH mContext;
    std::vector<State> mStates;
    // Only their addresses count.
    char mDrawing = 0, mSupplier = 0, mSurfaceMark = 0;
};

}  // namespace TessavoyHost
