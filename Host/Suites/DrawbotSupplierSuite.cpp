#include "Host/Drawing/DrawingObjects.h"
#include "Host/Drawing/PixelLayout.h"
#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

constexpr float defaultFontSize = 12;  // pixels

// A call on the supplier of the present drawing.
template <class Body>
SPErr answerSupplier(const char* name, DRAWBOT_SupplierRef supplier, Body&& body) noexcept {
    return answer(name, [&](CommandContext& context) {
        require(supplier == drawingOf(context).supplier());
        body(context);
    });
}

SPErr tell(const char* name, DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* place, bool value) noexcept {
    return answerSupplier(name, supplier, [&](CommandContext&) {
        require(place != nullptr);
        *place = value ? 1 : 0;
    });
}

SPErr newPen(DRAWBOT_SupplierRef supplier, const DRAWBOT_ColorRGBA* color, float size, DRAWBOT_PenRef* pen) noexcept {
    return answerSupplier("NewPen", supplier, [&](CommandContext& context) {
        require(color != nullptr && pen != nullptr && size >= 0);
        const auto made = std::make_shared<DrawingPen>();
        made->color = *color;
        made->width = size;
        *pen = lendDrawingObject<DRAWBOT_PenRef>(context, "NewPen", made);
    });
}

SPErr newBrush(DRAWBOT_SupplierRef supplier, const DRAWBOT_ColorRGBA* color, DRAWBOT_BrushRef* brush) noexcept {
    return answerSupplier("NewBrush", supplier, [&](CommandContext& context) {
        require(color != nullptr && brush != nullptr);
        const auto made = std::make_shared<DrawingBrush>();
        made->color = *color;
        *brush = lendDrawingObject<DRAWBOT_BrushRef>(context, "NewBrush", made);
    });
}

SPErr supportsText(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* supports) noexcept {
    return tell("SupportsText", supplier, supports, true);
}

SPErr fontSize(DRAWBOT_SupplierRef supplier, float* size) noexcept {
    return answerSupplier("GetDefaultFontSize", supplier, [&](CommandContext&) {
        require(size != nullptr);
        *size = defaultFontSize;
    });
}

SPErr newFont(DRAWBOT_SupplierRef supplier, float size, DRAWBOT_FontRef* font) noexcept {
    return answerSupplier("NewDefaultFont", supplier, [&](CommandContext& context) {
        require(size > 0 && font != nullptr);
        const auto made = std::make_shared<DrawingFont>();
        made->size = size;
        *font = lendDrawingObject<DRAWBOT_FontRef>(context, "NewDefaultFont", made);
    });
}

SPErr newImage(DRAWBOT_SupplierRef supplier, std::int32_t width, std::int32_t height, std::int32_t rowBytes,
               DRAWBOT_PixelLayout layout, const void* pixels, DRAWBOT_ImageRef* image) noexcept {
    return answerSupplier("NewImageFromBuffer", supplier, [&](CommandContext& context) {
        require(pixels != nullptr && image != nullptr);
        const auto made = std::make_shared<DrawingImage>();
        made->image = imageFromPixels(width, height, rowBytes, layout, static_cast<const std::byte*>(pixels));
        *image = lendDrawingObject<DRAWBOT_ImageRef>(context, "NewImageFromBuffer", made);
    });
}

SPErr newPath(DRAWBOT_SupplierRef supplier, DRAWBOT_PathRef* path) noexcept {
    return answerSupplier("NewPath", supplier, [&](CommandContext& context) {
        require(path != nullptr);
        *path = lendDrawingObject<DRAWBOT_PathRef>(context, "NewPath", std::make_shared<DrawingPath>());
    });
}

SPErr supportsBgra(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* supports) noexcept {
    return tell("SupportsPixelLayoutBGRA", supplier, supports, true);
}

SPErr prefersBgra(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* prefers) noexcept {
    return tell("PrefersPixelLayoutBGRA", supplier, prefers, true);
}

SPErr supportsArgb(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* supports) noexcept {
    return tell("SupportsPixelLayoutARGB", supplier, supports, true);
}

SPErr prefersArgb(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* prefers) noexcept {
    return tell("PrefersPixelLayoutARGB", supplier, prefers, false);
}

SPErr retainObject(DRAWBOT_ObjectRef reference) noexcept {
    return answer("RetainObject", [&](CommandContext& context) {
        const auto object = findDrawingObject(context, reference);
        require(object != nullptr);
        context.ledger.lend(Loan::DrawingObject, Ledger::keyOf(reference), object->madeBy);
    });
}

SPErr releaseObject(DRAWBOT_ObjectRef reference) noexcept {
    return takeBack("ReleaseObject", [&](CommandContext& context) {
        require(context.ledger.giveBack(Loan::DrawingObject, Ledger::keyOf(reference)));
    });
}

}  // namespace

const DRAWBOT_SupplierSuite1 supplierSuite = {
    .NewPen = newPen,
    .NewBrush = newBrush,
    .SupportsText = supportsText,
    .GetDefaultFontSize = fontSize,
    .NewDefaultFont = newFont,
    .NewImageFromBuffer = newImage,
    .NewPath = newPath,
    .SupportsPixelLayoutBGRA = supportsBgra,
    .PrefersPixelLayoutBGRA = prefersBgra,
    .SupportsPixelLayoutARGB = supportsArgb,
    .PrefersPixelLayoutARGB = prefersArgb,
    .RetainObject = retainObject,
    .ReleaseObject = releaseObject,
};

}  // namespace TessavoyHost
