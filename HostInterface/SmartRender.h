#pragma once

#include "HostInterface/Constants.h"
#include "HostInterface/Parameters.h"

// Smart rendering. Rectangles are in pixels of the downsampled layer.
struct PF_RenderRequest {
    PF_LRect rect;
    PF_Field field;
    PF_ChannelMask channel_mask;
    PF_Boolean preserve_rgb_of_zero_alpha;
    char unused[3];
    A_long reserved[4];
};
HOST_RECORD(PF_RenderRequest, 44);
HOST_FIELD(PF_RenderRequest, rect, 0);
HOST_FIELD(PF_RenderRequest, field, 16);
HOST_FIELD(PF_RenderRequest, channel_mask, 20);
HOST_FIELD(PF_RenderRequest, preserve_rgb_of_zero_alpha, 24);
HOST_FIELD(PF_RenderRequest, unused, 25);
HOST_FIELD(PF_RenderRequest, reserved, 28);

struct PF_CheckoutResult {
    PF_LRect result_rect;
    PF_LRect max_result_rect;
    PF_RationalScale par;
    PF_Boolean solid;
    PF_Boolean reservedB[3];
    A_long ref_width;
    A_long ref_height;
    A_long reserved[6];
};
HOST_RECORD(PF_CheckoutResult, 76);
HOST_FIELD(PF_CheckoutResult, result_rect, 0);
HOST_FIELD(PF_CheckoutResult, max_result_rect, 16);
HOST_FIELD(PF_CheckoutResult, par, 32);
HOST_FIELD(PF_CheckoutResult, solid, 40);
HOST_FIELD(PF_CheckoutResult, reservedB, 41);
HOST_FIELD(PF_CheckoutResult, ref_width, 44);
HOST_FIELD(PF_CheckoutResult, ref_height, 48);
HOST_FIELD(PF_CheckoutResult, reserved, 52);

struct PF_PreRenderInput {
    PF_RenderRequest output_request;
    std::int16_t bitdepth;  // 8, 16 or 32 per channel
    const void* gpu_data;
    PF_GPU_Framework what_gpu;
    A_u_long device_index;
};
HOST_RECORD(PF_PreRenderInput, 64);
HOST_FIELD(PF_PreRenderInput, output_request, 0);
HOST_FIELD(PF_PreRenderInput, bitdepth, 44);
HOST_FIELD(PF_PreRenderInput, gpu_data, 48);
HOST_FIELD(PF_PreRenderInput, what_gpu, 56);
HOST_FIELD(PF_PreRenderInput, device_index, 60);

using PF_DeletePreRenderDataFunc = void(void* preRenderData);

struct PF_PreRenderOutput {
    PF_LRect result_rect;
    PF_LRect max_result_rect;
    PF_Boolean solid;
    PF_Boolean reserved;
    PF_RenderOutputFlags flags;
    void* pre_render_data;
    PF_DeletePreRenderDataFunc* delete_pre_render_data_func;
};
HOST_RECORD(PF_PreRenderOutput, 56);
HOST_FIELD(PF_PreRenderOutput, result_rect, 0);
HOST_FIELD(PF_PreRenderOutput, max_result_rect, 16);
HOST_FIELD(PF_PreRenderOutput, solid, 32);
HOST_FIELD(PF_PreRenderOutput, reserved, 33);
HOST_FIELD(PF_PreRenderOutput, flags, 34);
HOST_FIELD(PF_PreRenderOutput, pre_render_data, 40);
HOST_FIELD(PF_PreRenderOutput, delete_pre_render_data_func, 48);

struct PF_PreRenderCallbacks {
    PF_Err (*checkout_layer)(PF_ProgPtr effectRef, PF_ParamIndex index, A_long checkoutId,
                             const PF_RenderRequest* request, A_long whatTime, A_long timeStep, A_u_long timeScale,
                             PF_CheckoutResult* checkoutResult);
    PF_Err (*GuidMixInPtr)(PF_ProgPtr effectRef, A_u_long bufSize, const void* bytes);
};
HOST_RECORD(PF_PreRenderCallbacks, 16);
HOST_FIELD(PF_PreRenderCallbacks, checkout_layer, 0);
HOST_FIELD(PF_PreRenderCallbacks, GuidMixInPtr, 8);

struct PF_PreRenderExtra {
    PF_PreRenderInput* input;
    PF_PreRenderOutput* output;
    PF_PreRenderCallbacks* cb;
};
HOST_RECORD(PF_PreRenderExtra, 24);
HOST_FIELD(PF_PreRenderExtra, input, 0);
HOST_FIELD(PF_PreRenderExtra, output, 8);
HOST_FIELD(PF_PreRenderExtra, cb, 16);

struct PF_SmartRenderInput {
    PF_RenderRequest output_request;
    std::int16_t bitdepth;  // 8, 16 or 32 per channel
    void* pre_render_data;
    const void* gpu_data;
    PF_GPU_Framework what_gpu;
    A_u_long device_index;
};
HOST_RECORD(PF_SmartRenderInput, 72);
HOST_FIELD(PF_SmartRenderInput, output_request, 0);
HOST_FIELD(PF_SmartRenderInput, bitdepth, 44);
HOST_FIELD(PF_SmartRenderInput, pre_render_data, 48);
HOST_FIELD(PF_SmartRenderInput, gpu_data, 56);
HOST_FIELD(PF_SmartRenderInput, what_gpu, 64);
HOST_FIELD(PF_SmartRenderInput, device_index, 68);

// The worlds stay the host's. checkout_layer_pixels gives null where the layer has no pixels.
struct PF_SmartRenderCallbacks {
    PF_Err (*checkout_layer_pixels)(PF_ProgPtr effectRef, A_long checkoutId, PF_EffectWorld** pixels);
    PF_Err (*checkin_layer_pixels)(PF_ProgPtr effectRef, A_long checkoutId);
    PF_Err (*checkout_output)(PF_ProgPtr effectRef, PF_EffectWorld** output);
};
HOST_RECORD(PF_SmartRenderCallbacks, 24);
HOST_FIELD(PF_SmartRenderCallbacks, checkout_layer_pixels, 0);
HOST_FIELD(PF_SmartRenderCallbacks, checkin_layer_pixels, 8);
HOST_FIELD(PF_SmartRenderCallbacks, checkout_output, 16);

struct PF_SmartRenderExtra {
    PF_SmartRenderInput* input;
    PF_SmartRenderCallbacks* cb;
};
HOST_RECORD(PF_SmartRenderExtra, 16);
HOST_FIELD(PF_SmartRenderExtra, input, 0);
HOST_FIELD(PF_SmartRenderExtra, cb, 8);

struct PF_UserChangedParamExtra {
    PF_ParamIndex param_index;
};
HOST_RECORD(PF_UserChangedParamExtra, 4);
HOST_FIELD(PF_UserChangedParamExtra, param_index, 0);
