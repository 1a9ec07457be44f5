#pragma once

#include "HostInterface/Constants.h"
#include "HostInterface/Effect.h"
#include "HostInterface/Events.h"
#include "Source/Editors/PanelImage.h"
#include "Source/HostAccess/DrawbotAccess.h"

#include <string_view>
#include <utility>

namespace Tessavoy {

/// A drawing object of the host's, released at the end of its scope.
template <class Reference>
class DrawbotObject {
public:
    /// Takes over one reference. The suite must stay acquired while this lives.
    DrawbotObject(const DRAWBOT_SupplierSuite1& supplier, Reference reference)
        : mSupplier(&supplier), mReference(reference) {}
    DrawbotObject(DrawbotObject&& other) noexcept
        : mSupplier(other.mSupplier), mReference(std::exchange(other.mReference, nullptr)) {}
    DrawbotObject& operator=(DrawbotObject&&) = delete;

    ~DrawbotObject() {
        if (mReference != nullptr) {
            mSupplier->ReleaseObject(reinterpret_cast<DRAWBOT_ObjectRef>(mReference));
        }
    }

    Reference get() const { return mReference; }

private:
    const DRAWBOT_SupplierSuite1* mSupplier;
    Reference mReference;
};

/// An outline in the making, to be filled and stroked. Coordinates are pixels of the panel. A host error in any call
/// throws Exception with its code.
class PanelPath {
public:
    /// Both suites must stay acquired while this lives.
    PanelPath(const DRAWBOT_PathSuite1& suite, DrawbotObject<DRAWBOT_PathRef> path)
        : mSuite(&suite), mPath(std::move(path)) {}

    void moveTo(DRAWBOT_PointF32 to);
    void lineTo(DRAWBOT_PointF32 to);
    /// A cubic Bezier curve.
    void curveTo(DRAWBOT_PointF32 control1, DRAWBOT_PointF32 control2, DRAWBOT_PointF32 to);
    void close();
    /// A closed piece of its own.
    void addRect(const DRAWBOT_RectF32& area);

    DRAWBOT_PathRef get() const { return mPath.get(); }

private:
    const DRAWBOT_PathSuite1* mSuite;
    DrawbotObject<DRAWBOT_PathRef> mPath;
};

/// The means by which a control of the panel draws itself, for the span of one PF_Event_DRAW. Coordinates are the
/// event's: pixels, y downwards.
///
/// A host error in any call throws Exception with its code; a missing suite throws Exception with 516 and a message for
/// the user in the out-data, or the plain integer 516.
class PanelDrawing {
public:
    PanelDrawing(PF_InData* inData, PF_OutData* outData, PF_ContextH context);
    PanelDrawing(const PanelDrawing&) = delete;
    PanelDrawing& operator=(const PanelDrawing&) = delete;

    /// Whether the host has something to draw to now; all the rest needs it.
    bool hasSurface() const { return mSurface != nullptr; }

    bool supportsText() const;

    /// Size of the host's own font, in pixels.
    float fontSize() const;

    /// A colour of the host's theme, opaque, 0 to 1.
    DRAWBOT_ColorRGBA themeColor(PF_AppColorValue color) const;

    DrawbotObject<DRAWBOT_BrushRef> newBrush(const DRAWBOT_ColorRGBA& color) const;
    DrawbotObject<DRAWBOT_FontRef> newFont(float size) const;

    /// One line of UTF-8, with its baseline's left end at the place.
    void drawText(const DrawbotObject<DRAWBOT_BrushRef>& brush, const DrawbotObject<DRAWBOT_FontRef>& font,
                  std::string_view text, DRAWBOT_PointF32 place) const;

    /// width: of the line, pixels.
    DrawbotObject<DRAWBOT_PenRef> newPen(const DRAWBOT_ColorRGBA& color, float width) const;
    PanelPath newPath() const;

    void paintRect(const DRAWBOT_RectF32& area, const DRAWBOT_ColorRGBA& color) const;
    void fill(const PanelPath& path, const DrawbotObject<DRAWBOT_BrushRef>& brush) const;
    void stroke(const PanelPath& path, const DrawbotObject<DRAWBOT_PenRef>& pen) const;

    /// A picture that isn't empty, with its top left corner at the place. Besides host errors, throws Exception with
    /// 516 when the host takes none of the layouts that `pixelsInLayout` knows.
    void drawImage(const PanelImage& image, DRAWBOT_PointF32 place) const;

    /// While it lives, nothing is drawn outside a rectangle.
    class ClipScope {
    public:
        ClipScope(const PanelDrawing& drawing, const PF_Rect& rectangle);
        ~ClipScope();
        ClipScope(const ClipScope&) = delete;
        ClipScope& operator=(const ClipScope&) = delete;

    private:
        const PanelDrawing& mDrawing;
    };

private:
    /// The four suites, released whatever comes of the acquisition.
    struct Suites : DrawbotSuites {
        Suites(PF_InData* inData, PF_OutData* outData);
        ~Suites();
        Suites(const Suites&) = delete;
        Suites& operator=(const Suites&) = delete;

        PF_InData* inData;
        PF_OutData* outData;
    };

    DRAWBOT_PixelLayoutValue imageLayout() const;

    PF_InData* mInData;
    Suites mSuites;
    DRAWBOT_SupplierRef mSupplier = nullptr;
    DRAWBOT_SurfaceRef mSurface = nullptr;
};

}  // namespace Tessavoy
