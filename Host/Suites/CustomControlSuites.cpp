#include "Host/Drawing/DrawingObjects.h"
#include "Host/Suites/Tables.h"

// How a control that draws itself comes by the drawing of its event.

namespace TessavoyHost {
namespace {

// Outside of draw events there is nothing to draw on, which is no error.
PF_Err drawingReference(PF_ContextH effectContext, DRAWBOT_DrawRef* reference) noexcept {
    return answer("PF_GetDrawingReference", [&](CommandContext& context) {
        require(reference != nullptr);
        *reference = nullptr;
        if (context.drawing == nullptr)
            return;
        require(effectContext == context.drawing->context());
        *reference = context.drawing->reference();
    });
}

Drawing& drawingBehind(const CommandContext& context, DRAWBOT_DrawRef reference) {
    Drawing& drawing = drawingOf(context);
    require(reference == drawing.reference());
    return drawing;
}

SPErr supplierOf(DRAWBOT_DrawRef reference, DRAWBOT_SupplierRef* supplier) noexcept {
    return answer("GetSupplier", [&](CommandContext& context) {
        require(supplier != nullptr);
        *supplier = drawingBehind(context, reference).supplier();
    });
}

SPErr surfaceOf(DRAWBOT_DrawRef reference, DRAWBOT_SurfaceRef* surface) noexcept {
    return answer("GetSurface", [&](CommandContext& context) {
        require(surface != nullptr);
        *surface = drawingBehind(context, reference).surfaceReference();
    });
}

}  // namespace

const PF_EffectCustomUISuite1 customUiSuite = {.PF_GetDrawingReference = drawingReference};

const DRAWBOT_DrawbotSuite1 drawbotSuite = {.GetSupplier = supplierOf, .GetSurface = surfaceOf};

}  // namespace TessavoyHost
