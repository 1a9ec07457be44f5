#include "Source/Shell/PreRender.h"

#include <algorithm>

namespace Tessavoy {

namespace {

constexpr PF_ParamIndex ownLayerIndex = 0;

bool isEmpty(const PF_LRect& rectangle) {
    return rectangle.left >= rectangle.right || rectangle.top >= rectangle.bottom;
}

}  // namespace

void mergeRectangle(const PF_LRect& source, PF_LRect& target) {
    if (isEmpty(target)) {
        target = source;
    } else if (!isEmpty(source)) {
        target.left = std::min(target.left, source.left);
        target.top = std::min(target.top, source.top);
        target.right = std::max(target.right, source.right);
        target.bottom = std::max(target.bottom, source.bottom);
    }
}

PF_Err SmartPreRender(PF_InData* inData, PF_PreRenderExtra* extra) {
    const PF_RenderRequest request = extra->input->output_request;
    PF_CheckoutResult checkout{};
    const PF_Err error =
        extra->cb->checkout_layer(inData->effect_ref, ownLayerIndex, ownLayerCheckoutId, &request, inData->current_time,
                                  inData->time_step, inData->time_scale, &checkout);
    if (error == PF_Err_NONE) {
        mergeRectangle(checkout.result_rect, extra->output->result_rect);
        mergeRectangle(checkout.max_result_rect, extra->output->max_result_rect);
    }
    return error;
}

}  // namespace Tessavoy
