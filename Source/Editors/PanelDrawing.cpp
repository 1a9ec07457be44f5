#include "Source/Editors/PanelDrawing.h"

#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/SuiteHandler.h"
#include "Source/HostAccess/Utf16.h"

namespace Tessavoy {

namespace {

DRAWBOT_DrawRef drawingReference(const PF_InData* inData, PF_ContextH context) {
    SuiteHandler suites(inData->pica_basicP);
    DRAWBOT_DrawRef reference = nullptr;
    throwOnError(suites.get<PF_EffectCustomUISuite1>().PF_GetDrawingReference(context, &reference));
    return reference;
}

template <class Suite>
void releaseIfHeld(PF_InData* inData, PF_OutData* outData, const Suite* table) {
    using Identity = SuiteIdentity<Suite>;
    if (table != nullptr) {
        releaseSuite(inData, outData, Identity::name, Identity::version, defaultReleaseFailure);
    }
}

}  // namespace

void PanelPath::moveTo(DRAWBOT_PointF32 to) {
    throwOnError(mSuite->MoveTo(mPath.get(), to.x, to.y));
}

void PanelPath::lineTo(DRAWBOT_PointF32 to) {
    throwOnError(mSuite->LineTo(mPath.get(), to.x, to.y));
}

void PanelPath::curveTo(DRAWBOT_PointF32 control1, DRAWBOT_PointF32 control2, DRAWBOT_PointF32 to) {
    throwOnError(mSuite->BezierTo(mPath.get(), &control1, &control2, &to));
}

void PanelPath::close() {
    throwOnError(mSuite->Close(mPath.get()));
}

void PanelPath::addRect(const DRAWBOT_RectF32& area) {
    throwOnError(mSuite->AddRect(mPath.get(), &area));
}

PanelDrawing::Suites::Suites(PF_InData* ofInData, PF_OutData* ofOutData) : inData(ofInData), outData(ofOutData) {
    if (const PF_Err error = AcquireDrawbotSuites(inData, outData, this); error != PF_Err_NONE) {
        releaseIfHeld(inData, outData, drawbot);
        releaseIfHeld(inData, outData, supplier);
        releaseIfHeld(inData, outData, surface);
        throw Exception(error);
    }
}

PanelDrawing::Suites::~Suites() {
    ReleaseDrawbotSuites(inData, outData);
}

PanelDrawing::PanelDrawing(PF_InData* inData, PF_OutData* outData, PF_ContextH context)
    : mInData(inData), mSuites(inData, outData) {
    const DRAWBOT_DrawRef reference = drawingReference(inData, context);
    if (reference != nullptr) {
        throwOnError(mSuites.drawbot->GetSupplier(reference, &mSupplier));
        throwOnError(mSuites.drawbot->GetSurface(reference, &mSurface));
    }
}

bool PanelDrawing::supportsText() const {
    DRAWBOT_Boolean supports = 0;
    throwOnError(mSuites.supplier->SupportsText(mSupplier, &supports));
    return supports != 0;
}

float PanelDrawing::fontSize() const {
    float size = 0;
    throwOnError(mSuites.supplier->GetDefaultFontSize(mSupplier, &size));
    return size;
}

DRAWBOT_ColorRGBA PanelDrawing::themeColor(PF_AppColorValue color) const {
    constexpr float share = 1.5259022e-05f;  // of a component that runs to 65535
    SuiteHandler suites(mInData->pica_basicP);
    PF_App_Color components{};
    throwOnError(suites.get<PFAppSuite4>().PF_AppGetColor(color, &components));
    const auto part = [](A_u_short component) { return static_cast<float>(component) * share; };
    return {part(components.red), part(components.green), part(components.blue), 1.0f};
}

DrawbotObject<DRAWBOT_BrushRef> PanelDrawing::newBrush(const DRAWBOT_ColorRGBA& color) const {
    DRAWBOT_BrushRef brush = nullptr;
    throwOnError(mSuites.supplier->NewBrush(mSupplier, &color, &brush));
    return {*mSuites.supplier, brush};
}

DrawbotObject<DRAWBOT_FontRef> PanelDrawing::newFont(float size) const {
    DRAWBOT_FontRef font = nullptr;
    throwOnError(mSuites.supplier->NewDefaultFont(mSupplier, size, &font));
    return {*mSuites.supplier, font};
}

void PanelDrawing::drawText(const DrawbotObject<DRAWBOT_BrushRef>& brush, const DrawbotObject<DRAWBOT_FontRef>& font,
                            std::string_view text, DRAWBOT_PointF32 place) const {
    constexpr float anyWidth = 0;
    const auto units = utf16FromUtf8(text);
    throwOnError(mSuites.surface->DrawString(mSurface, brush.get(), font.get(), units.data(), &place,
                                             kDRAWBOT_TextAlignment_Left, kDRAWBOT_TextTruncation_None, anyWidth));
}

DrawbotObject<DRAWBOT_PenRef> PanelDrawing::newPen(const DRAWBOT_ColorRGBA& color, float width) const {
    DRAWBOT_PenRef pen = nullptr;
    throwOnError(mSuites.supplier->NewPen(mSupplier, &color, width, &pen));
    return {*mSuites.supplier, pen};
}

PanelPath PanelDrawing::newPath() const {
    DRAWBOT_PathRef path = nullptr;
    throwOnError(mSuites.supplier->NewPath(mSupplier, &path));
    return {*mSuites.path, {*mSuites.supplier, path}};
}

void PanelDrawing::paintRect(const DRAWBOT_RectF32& area, const DRAWBOT_ColorRGBA& color) const {
    throwOnError(mSuites.surface->PaintRect(mSurface, &color, &area));
}

void PanelDrawing::fill(const PanelPath& path, const DrawbotObject<DRAWBOT_BrushRef>& brush) const {
    throwOnError(mSuites.surface->FillPath(mSurface, brush.get(), path.get(), kDRAWBOT_FillType_Default));
}

void PanelDrawing::stroke(const PanelPath& path, const DrawbotObject<DRAWBOT_PenRef>& pen) const {
    throwOnError(mSuites.surface->StrokePath(mSurface, pen.get(), path.get()));
}

DRAWBOT_PixelLayoutValue PanelDrawing::imageLayout() const {
    const auto says = [this](auto question) {
        DRAWBOT_Boolean answer = 0;
        throwOnError(question(mSupplier, &answer));
        return answer != 0;
    };
    const bool takesArgb = says(mSuites.supplier->SupportsPixelLayoutARGB);
    const bool takesBgra = says(mSuites.supplier->SupportsPixelLayoutBGRA);
    if (!takesArgb && !takesBgra) {
        throw Exception(PF_Err_BAD_CALLBACK_PARAM);
    }
    const bool asArgb = takesArgb && (!takesBgra || says(mSuites.supplier->PrefersPixelLayoutARGB));
    return asArgb ? kDRAWBOT_PixelLayout_32ARGB_Straight : kDRAWBOT_PixelLayout_32BGRA_Straight;
}

void PanelDrawing::drawImage(const PanelImage& image, DRAWBOT_PointF32 place) const {
    constexpr float unfaded = 1;
    const DRAWBOT_PixelLayoutValue layout = imageLayout();
    const auto bytes = pixelsInLayout(image, layout);
    DRAWBOT_ImageRef reference = nullptr;
    throwOnError(mSuites.supplier->NewImageFromBuffer(mSupplier, image.width, image.height,
                                                      image.width * panelPixelBytes, layout, bytes.data(), &reference));
    const DrawbotObject<DRAWBOT_ImageRef> drawn(*mSuites.supplier, reference);
    throwOnError(mSuites.surface->DrawImage(mSurface, drawn.get(), &place, unfaded));
}

PanelDrawing::ClipScope::ClipScope(const PanelDrawing& drawing, const PF_Rect& rectangle) : mDrawing(drawing) {
    const auto& surface = *mDrawing.mSuites.surface;
    throwOnError(surface.PushStateStack(mDrawing.mSurface));
    const DRAWBOT_Rect32 area = {rectangle.left, rectangle.top, rectangle.right - rectangle.left,
                                 rectangle.bottom - rectangle.top};
    if (const PF_Err error = surface.Clip(mDrawing.mSurface, mDrawing.mSupplier, &area); error != PF_Err_NONE) {
        surface.PopStateStack(mDrawing.mSurface);
        throw Exception(error);
    }
}

PanelDrawing::ClipScope::~ClipScope() {
    mDrawing.mSuites.surface->PopStateStack(mDrawing.mSurface);
}

}  // namespace Tessavoy
