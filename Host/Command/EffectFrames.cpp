#include "Host/Command/EffectFrames.h"

#include "Host/Command/AboutCommand.h"
#include "Host/Command/RawFrames.h"
#include "Host/EffectHost.h"
#include "Host/HostError.h"
#include "Host/ImageFiles/ImageFiles.h"
#include "Host/Scene/Files.h"

namespace TessavoyHost {
namespace {

const char* errorInWords(PF_Err error) {
    switch (error) {
        case PF_Err_OUT_OF_MEMORY:
            return "out of memory, or OpenGL failed";
        case PF_Err_INTERNAL_STRUCT_DAMAGED:
            return "the host's or the module's data is damaged";
        case PF_Err_INVALID_INDEX:
            return "an index is invalid";
        case PF_Err_UNRECOGNIZED_PARAM_TYPE:
            return "a parameter's type is not recognised";
        case PF_Err_INVALID_CALLBACK:
            return "a call to the host is not valid now";
        case PF_Err_BAD_CALLBACK_PARAM:
            return "a call or suite of the host is not available";
        case PF_Interrupt_CANCEL:
            return "interrupted";
        default:
            return "the module gives no reason";
    }
}

}  // namespace

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
        rendered.failure = failureInWords(result.error, result.message);
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

std::string failureInWords(PF_Err error, const std::string& message) {
    return (message.empty() ? errorInWords(error) : message) + " (error " + std::to_string(error) + ')';
}

}  // namespace TessavoyHost
