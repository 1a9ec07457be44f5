#include "Host/FrameRender.h"

#include <cstring>
#include <utility>

#include "Host/EffectHost.h"
#include "Host/SmartRenderCallbacks.h"

namespace TessavoyHost {
namespace {

constexpr PF_ChannelMask allChannels = 15;

CommandSetting settingOf(const FrameRequest& request, PF_Handle sequenceData) {
    return {request.frame,       request.bitsPerChannel, request.downsampleX,
            request.downsampleY, request.cancel,         sequenceData};
}

bool contains(const Region& outer, const Region& inner) {
    return inner.empty() || intersection(outer, inner) == inner;
}

}  // namespace

FrameRender::FrameRender(EffectInstance& instance, const FrameRequest& request, const Region& whole,
                         PF_Handle sequenceData)
    : mInstance(instance),
      mRequest(request),
      mRegion(request.region.value_or(whole)),
      mSetting(settingOf(request, sequenceData)) {
    mOutputRequest.rect = toRect(mRegion);
    mOutputRequest.channel_mask = allChannels;
}

FrameRender::~FrameRender() {
    if (mPromise.delete_pre_render_data_func != nullptr && mPromise.pre_render_data != nullptr)
        mPromise.delete_pre_render_data_func(mPromise.pre_render_data);
}

FrameResult FrameRender::run() {
    queryFlags();
    if (good())
        preRender();
    if (good())
        render();
    if (good())
        placeOutput();
    return std::move(mResult);
}

void FrameRender::queryFlags() {
    CommandContext context(mInstance.host(), &mInstance, PF_Cmd_QUERY_DYNAMIC_FLAGS, mSetting);
    context.out.out_flags = mInstance.host().description().outFlags;
    context.out.out_flags2 = mInstance.host().description().outFlags2;
    context.run();
    collect(context.finish());
}

void FrameRender::preRender() {
    CommandContext context(mInstance.host(), &mInstance, PF_Cmd_SMART_PRE_RENDER, mSetting);
    context.frame = &mWorlds;
    PF_PreRenderInput input{};
    input.output_request = mOutputRequest;
    input.bitdepth = static_cast<std::int16_t>(mRequest.bitsPerChannel);
    PF_PreRenderCallbacks callbacks = preRenderCallbacks;
    PF_PreRenderExtra extra{&input, &mPromise, &callbacks};
    context.run(nullptr, nullptr, &extra);
    collect(context.finish());
    if (good())
        checkPromise(mPromise);
}

void FrameRender::checkPromise(const PF_PreRenderOutput& output) {
    const Region result = toRegion(output.result_rect);
    if (!contains(toRegion(output.max_result_rect), result))
        mResult.broken.push_back("PF_Cmd_SMART_PRE_RENDER: result_rect lies outside max_result_rect");
    if ((output.flags & PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS) == 0 && !contains(mRegion, result))
        mResult.broken.push_back("PF_Cmd_SMART_PRE_RENDER: result_rect lies outside the request");
}

void FrameRender::render() {
    const Region region = toRegion(mPromise.result_rect);
    if (region.empty())
        return;
    mWorlds.output =
        World(region.width, region.height, mRequest.bitsPerChannel, mInstance.host().services().freshFill());
    mWorlds.output.record().origin_x = region.x;
    mWorlds.output.record().origin_y = region.y;
    CommandContext context(mInstance.host(), &mInstance, PF_Cmd_SMART_RENDER, mSetting);
    context.frame = &mWorlds;
    PF_SmartRenderInput input{};
    input.output_request = mOutputRequest;
    input.bitdepth = static_cast<std::int16_t>(mRequest.bitsPerChannel);
    input.pre_render_data = mPromise.pre_render_data;
    PF_SmartRenderCallbacks callbacks = smartRenderCallbacks;
    PF_SmartRenderExtra extra{&input, &callbacks};
    context.run(nullptr, nullptr, &extra);
    collect(context.finish());
}

// The module may have given less than was asked for; the rest is transparent.
void FrameRender::placeOutput() {
    const Region given = toRegion(mPromise.result_rect);
    if (given == mRegion) {
        mResult.output = std::move(mWorlds.output);
        return;
    }
    mResult.output = World(mRegion.width, mRegion.height, mRequest.bitsPerChannel);
    mResult.output.record().origin_x = mRegion.x;
    mResult.output.record().origin_y = mRegion.y;
    const Region shared = intersection(given, mRegion);
    if (shared.width == 0) {
        return;
    }
    const int pixelBytes = bytesPerPixel(mRequest.bitsPerChannel);
    for (int y = shared.y; y < shared.y + shared.height; ++y) {
        std::memcpy(mResult.output.row(y - mRegion.y) + (shared.x - mRegion.x) * pixelBytes,
                    mWorlds.output.row(y - given.y) + (shared.x - given.x) * pixelBytes,
                    static_cast<std::size_t>(shared.width * pixelBytes));
    }
}

// The first error, failure and message count.
void FrameRender::collect(const CommandResult& command) {
    if (good())
        mResult.error = command.error;
    if (mResult.failure.empty())
        mResult.failure = command.failure;
    if (mResult.message.empty())
        mResult.message = command.message;
    mResult.displayError = mResult.displayError || command.displayError;
    mResult.broken.insert(mResult.broken.end(), command.broken.begin(), command.broken.end());
}

}  // namespace TessavoyHost
