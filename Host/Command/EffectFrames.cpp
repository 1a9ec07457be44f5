#include "Host/Command/EffectFrames.h"

#include "Host/Command/RawFrames.h"
#include "Host/Command/Version.h"
#include "Host/EffectHost.h"
#include "Host/ErrorTexts.h"
#include "Host/ImageFiles/ImageFiles.h"
#include "Host/Scene/Files.h"

namespace TessavoyHost {
EffectFrames::EffectFrames(EffectInstance& instance, const RenderOptions& options, int depth, ImageSize size,
                           OutputChannel& output)
    : mInstance(instance),
      mOptions(options),
      mDepth(depth),
      mSize(size),
      mOutput(output),
      mSoftware(instance.host().description().name + ' ' + versionInWords(instance.host().description().version)),
      mScript(scriptSourceOf(instance.project(), options.scene)) {}

bool EffectFrames::isThere(int frame) {
    if (mOptions.existing != ExistingFiles::Skip || mOptions.output->isStandardOutput()) {
        return false;
    }
    const auto file = mOptions.output->file(frame);
    std::error_code ignored;
    if (!std::filesystem::exists(file, ignored)) {
        return false;
    }
    try {
        verifyImage(file, mSize.width, mSize.height);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

std::string EffectFrames::fileOf(int frame) const {
    return mOptions.output->isStandardOutput() ? std::string() : utf8(mOptions.output->file(frame));
}

RenderedFrame EffectFrames::render(int frame, const std::atomic<bool>& cancel) {
    FrameRequest request;
    request.frame = frame;
    request.bitsPerChannel = mDepth;
    request.downsampleX = mOptions.downsampleX;
    request.downsampleY = mOptions.downsampleY;
    request.region = mOptions.region;
    request.cancel = &cancel;
    request.renewAfterMessage = mOptions.strict;
    FrameResult result = mInstance.renderFrame(request);

    RenderedFrame rendered;
    rendered.remarks = std::move(result.broken);
    if (result.error != PF_Err_NONE) {
        rendered.failure = result.failure.empty() ? frameFailure(result.error, result.message) : result.failure;
        return rendered;
    }
    if (!result.message.empty()) {
        rendered.messages.push_back(inUsersLines(result.message, mScript));
    }
    rendered.write = [this, frame, world = std::make_shared<World>(std::move(result.output))] { write(frame, *world); };
    return rendered;
}

void EffectFrames::write(int frame, const World& world) const {
    if (mOptions.output->isStandardOutput()) {
        mOutput.write(rawFrame(world.view()));
    } else {
        writeImage(mOptions.output->file(frame), mOptions.output->format(), world.view(), {frame, mSoftware},
                   mOptions.pngLevel);
    }
}

}  // namespace TessavoyHost
