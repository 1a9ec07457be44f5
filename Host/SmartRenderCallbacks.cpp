#include "Host/SmartRenderCallbacks.h"

#include "Host/EffectHost.h"
#include "Host/HostCall.h"

namespace TessavoyHost {
namespace {

// The layer that a checkout of this parameter reads, or -1.
int layerOf(CommandContext& context, int parameter, double time) {
    const EffectInstance& instance = context.instance();
    if (parameter == 0)
        return instance.project().effectLayer;
    const ParameterValue value = context.instance().values().at(parameter, time);
    const auto reference = std::get_if<LayerReference>(&value);
    return reference == nullptr ? -1 : reference->layer;
}

Region boundsOf(CommandContext& context, int layer) {
    return layer < 0 ? Region{}
                     : context.instance().layerWorlds().bounds(layer, context.setting.downsampleX,
                                                               context.setting.downsampleY);
}

void fillResult(CommandContext& context, int layer, const Region& region, PF_CheckoutResult& result) {
    const Region bounds = boundsOf(context, layer);
    result = {};
    result.result_rect = toRect(region);
    result.max_result_rect = toRect(bounds);
    result.par = {1, 1};
    result.ref_width = bounds.width;
    result.ref_height = bounds.height;
}

PF_Err checkoutLayer(PF_ProgPtr reference, PF_ParamIndex index, A_long checkoutId, const PF_RenderRequest* request,
                     A_long whatTime, A_long, A_u_long timeScale, PF_CheckoutResult* result) noexcept {
    return answer("checkout_layer", reference, [&](CommandContext& context) {
        require(context.frame != nullptr, PF_Err_INVALID_CALLBACK);
        require(request != nullptr && result != nullptr && timeScale != 0);
        require(index >= 0 && index < context.instance().values().count(), PF_Err_INVALID_INDEX);
        require(!context.frame->checkouts.contains(checkoutId));
        const double time = context.compositionSeconds(whatTime, timeScale);
        const int layer = layerOf(context, index, time);
        FrameWorlds::Checkout checkout;
        checkout.parameter = index;
        checkout.region = intersection(boundsOf(context, layer), toRegion(request->rect));
        checkout.time = time;
        fillResult(context, layer, checkout.region, *result);
        context.frame->checkouts.emplace(checkoutId, std::move(checkout));
    });
}

PF_Err guidMixIn(PF_ProgPtr reference, A_u_long size, const void* bytes) noexcept {
    return answer("GuidMixInPtr", reference, [&](CommandContext&) { require(size == 0 || bytes != nullptr); });
}

// The effect's own layer counts as transparent where it has no picture: the effect draws all the same.
void loadPixels(CommandContext& context, FrameWorlds::Checkout& checkout) {
    const CommandSetting& setting = context.setting;
    LayerWorlds& layers = context.instance().layerWorlds();
    const int layer = layerOf(context, checkout.parameter, checkout.time);
    if (layer >= 0)
        checkout.world =
            layers.worldAt(layer, checkout.time, setting.bitsPerChannel, setting.downsampleX, setting.downsampleY);
    if (checkout.world == nullptr && checkout.parameter == 0) {
        const Region bounds = layers.bounds(layer, setting.downsampleX, setting.downsampleY);
        checkout.world = std::make_shared<const World>(bounds.width, bounds.height, setting.bitsPerChannel);
    }
    if (checkout.world != nullptr)
        checkout.record = checkout.world->partRecord(checkout.region);
}

PF_Err checkoutLayerPixels(PF_ProgPtr reference, A_long checkoutId, PF_EffectWorld** pixels) noexcept {
    return answer("checkout_layer_pixels", reference, [&](CommandContext& context) {
        require(context.frame != nullptr, PF_Err_INVALID_CALLBACK);
        require(pixels != nullptr);
        const auto found = context.frame->checkouts.find(checkoutId);
        require(found != context.frame->checkouts.end());
        FrameWorlds::Checkout& checkout = found->second;
        if (checkout.world == nullptr)
            loadPixels(context, checkout);
        *pixels = checkout.world == nullptr || checkout.region.empty() ? nullptr : &checkout.record;
        checkout.everLent = true;
        context.ledger.lend(Loan::LayerPixels, static_cast<Ledger::Key>(checkoutId), "checkout id", checkoutId);
    });
}

// Modules close without asking what they took, so pixels that were never lent may come back without harm.
PF_Err checkinLayerPixels(PF_ProgPtr reference, A_long checkoutId) noexcept {
    return takeBack("checkin_layer_pixels", reference, [&](CommandContext& context) {
        require(context.frame != nullptr, PF_Err_INVALID_CALLBACK);
        const auto found = context.frame->checkouts.find(checkoutId);
        require(found != context.frame->checkouts.end());
        if (!found->second.everLent)
            return;
        if (!context.ledger.giveBack(Loan::LayerPixels, static_cast<Ledger::Key>(checkoutId))) {
            context.breaks("layer pixels were checked in twice");
            throw HostCallFailure(PF_Err_BAD_CALLBACK_PARAM);
        }
    });
}

PF_Err checkoutOutput(PF_ProgPtr reference, PF_EffectWorld** output) noexcept {
    return answer("checkout_output", reference, [&](CommandContext& context) {
        require(context.frame != nullptr, PF_Err_INVALID_CALLBACK);
        require(output != nullptr);
        *output = &context.frame->output.record();
    });
}

}  // namespace

const PF_PreRenderCallbacks preRenderCallbacks = {.checkout_layer = checkoutLayer, .GuidMixInPtr = guidMixIn};

const PF_SmartRenderCallbacks smartRenderCallbacks = {.checkout_layer_pixels = checkoutLayerPixels,
                                                      .checkin_layer_pixels = checkinLayerPixels,
                                                      .checkout_output = checkoutOutput};

}  // namespace TessavoyHost
