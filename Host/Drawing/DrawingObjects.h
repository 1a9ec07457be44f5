#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include "Host/CommandContext.h"
#include "Host/Drawing/Drawing.h"
#include "Host/HostCall.h"

// The objects that modules draw with. A reference is the object's address; each is a loan of the command, counted by
// retaining and releasing.

namespace TessavoyHost {

struct DrawingObject {
    virtual ~DrawingObject() = default;
    std::string_view madeBy;  // the host call, for reports
};

struct DrawingPen : DrawingObject {
    DRAWBOT_ColorRGBA color{};
    float width = 0;  // pixels
};
struct DrawingBrush : DrawingObject {
    DRAWBOT_ColorRGBA color{};
};
struct DrawingFont : DrawingObject {
    float size = 0;  // pixels
};
struct DrawingPath : DrawingObject {
    DrawnPath path;
};
struct DrawingImage : DrawingObject {
    DrawnImage image;
};

// Lends an object of the host call's making.
template <class Reference, class Object>
Reference lendDrawingObject(CommandContext& context, std::string_view call, std::shared_ptr<Object> object) {
    const std::shared_ptr<DrawingObject> base = std::move(object);
    base->madeBy = call;
    context.ledger.lend(Loan::DrawingObject, Ledger::keyOf(base.get()), call, 0, base);
    return reinterpret_cast<Reference>(base.get());
}

// The object behind a reference; null when it is not lent.
inline std::shared_ptr<DrawingObject> findDrawingObject(CommandContext& context, const void* reference) {
    return std::static_pointer_cast<DrawingObject>(context.ledger.find(Loan::DrawingObject, Ledger::keyOf(reference)));
}

// Throws HostCallFailure when it is not lent, or is of another kind.
template <class Object>
std::shared_ptr<Object> drawingObject(CommandContext& context, const void* reference) {
    auto object = std::dynamic_pointer_cast<Object>(findDrawingObject(context, reference));
    require(object != nullptr);
    return object;
}

// The command's drawing. Throws HostCallFailure outside of draw events.
inline Drawing& drawingOf(const CommandContext& context) {
    require(context.drawing != nullptr, PF_Err_INVALID_CALLBACK);
    return *context.drawing;
}

}  // namespace TessavoyHost
