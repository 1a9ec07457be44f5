#pragma once

#include <memory>
#include <vector>

#include "Host/Drawing/DrawingSurface.h"
#include "Host/Image.h"

struct _cairo;
struct _cairo_surface;

namespace TessavoyHost {

// Draws into a picture with cairo, text with the sans-serif face that fontconfig finds.
class CairoSurface : public DrawingSurface {
public:
    // The picture at first is of the background's colour; pixels from 1 to maximumPictureSide. Throws HostError.
    CairoSurface(int width, int height, const DRAWBOT_ColorRGBA& background);

    // What has been drawn so far, 8 bits a channel. Throws HostError when cairo gave up on the way.
    Image image() const;

    void pushState() override;
    void popState() override;
    void clip(const DRAWBOT_Rect32& rectangle) override;
    void transform(const DRAWBOT_MatrixF32& matrix) override;
    void setInterpolation(DRAWBOT_InterpolationPolicy policy) override;
    void setAntiAliasing(DRAWBOT_AntiAliasPolicy policy) override;

    void paintRect(const DRAWBOT_RectF32& rectangle, const DRAWBOT_ColorRGBA& color) override;
    void fillPath(const DrawnPath& path, const DRAWBOT_ColorRGBA& color, DRAWBOT_FillType fillType) override;
    void strokePath(const DrawnPath& path, const DRAWBOT_ColorRGBA& color, float width) override;
    // Anti-aliased whatever the policy.
    void drawText(const DrawnText& text) override;
    void drawImage(const DrawnImage& image, const DRAWBOT_PointF32& origin, float alpha) override;

private:
    struct Releaser {
        void operator()(_cairo* context) const;
        void operator()(_cairo_surface* surface) const;
    };

    void requireGood() const;
    void hideEverything();
    void trace(const DrawnPath& path);

    std::unique_ptr<_cairo_surface, Releaser> mSurface;
    std::unique_ptr<_cairo, Releaser> mContext;
    // Of each state: cairo keeps the rest itself.
    std::vector<DRAWBOT_InterpolationPolicy> mInterpolations = {kDRAWBOT_InterpolationPolicy_Default};
};

}  // namespace TessavoyHost
