#include "Host/EffectInstance.h"

#include <new>
#include <utility>

#include "Host/EffectHost.h"
#include "Host/ErrorTexts.h"
#include "Host/FrameRender.h"
#include "Host/HostCall.h"
#include "Host/HostError.h"
#include "Host/ParameterRecord.h"
#include "Host/SequenceBlock.h"

namespace TessavoyHost {
namespace {

const Project& checked(const Project& project) {
    const int layers = static_cast<int>(project.layers.size());
    if (project.effectLayer < 0 || project.effectLayer >= layers)
        throw HostError(ExitStatus::Scene, "the effect's layer is none of the project's layers");
    return project;
}

}  // namespace

EffectInstance::EffectInstance(EffectHost& host, const Project& project)
    : mHost(host),
      mProject(checked(project)),
      mTimeBase(mProject.composition, effectLayer().start()),
      mObjects(static_cast<int>(mProject.layers.size())),
      mLayerWorlds(mProject),
      mValues(host, mProject, effectLayer().width(), effectLayer().height()),
      mPanel(host.parameters()),
      mSequence(*this) {
    mSequence.setUp();
    if (!mProject.script.empty() || !mProject.slotNames.empty())
        mSequence.load(sequenceBlock(mProject.script, mProject.slotNames, host.description().version));
}

EffectInstance::~EffectInstance() = default;

std::vector<std::byte> EffectInstance::flattenedSequenceData() {
    return mSequence.flattened();
}

void EffectInstance::resetup(const std::vector<std::byte>& flat) {
    mSequence.load(flat);
}

Region EffectInstance::wholeLayer(const FrameRequest& request) const {
    return mLayerWorlds.bounds(mProject.effectLayer, request.downsampleX, request.downsampleY);
}

// Errors of the host's own end the frame as the module's do.
FrameResult EffectInstance::renderFrame(const FrameRequest& request) {
    FrameResult failed;
    try {
        SequencePool::Lease sequence(mSequence);
        FrameResult result = FrameRender(*this, request, wholeLayer(request), sequence.handle()).run();
        if (request.renewAfterMessage && !result.message.empty())
            sequence.discard();
        return result;
    } catch (const std::bad_alloc&) {
        failed.error = PF_Err_OUT_OF_MEMORY;
        failed.failure = "the frame does not fit into memory; " + std::string(memoryRemedy);
    } catch (const HostError& error) {
        failed.error = PF_Err_INTERNAL_STRUCT_DAMAGED;
        failed.failure = error.what();
    }
    failed.message = failed.failure;
    return failed;
}

CommandSetting EffectInstance::settingOfPanel(int frame) const {
    CommandSetting setting;
    setting.frame = frame;
    setting.sequenceData = mSequence.original();
    return setting;
}

namespace {

// To be called while what was thrown in making, copying or taking over parameters' values is handled.
void tellFailedValue(CommandContext& context) {
    context.fails("a parameter's value can't be made, copied or taken over",
                  answerToException(&context, "PF_Cmd_ARBITRARY_CALLBACK"));
}

}  // namespace

CommandResult EffectInstance::command(PF_Cmd command, int frame, void* extra, PF_ParamDef** params) {
    CommandContext context(mHost, this, command, settingOfPanel(frame));
    try {
        ParameterArray values(context);
        context.run(params == nullptr ? values.data() : params, nullptr, extra);
    } catch (const HostCallFailure&) {
        tellFailedValue(context);
    }
    mSequence.changed();
    return context.finish();
}

struct EffectInstance::PanelCall {
    PF_Cmd command;
    int frame;
    void* extra = nullptr;
    int parameter = 0;  // whose value the module may well change; 0: none
};

// A module that ends with an error has changed nothing.
CommandResult EffectInstance::run(const PanelCall& call) {
    CommandContext context(mHost, this, call.command, settingOfPanel(call.frame));
    std::vector<int> changed;
    try {
        ParameterArray values(context, LayerPixels::Absent);
        values.detach(context, call.parameter);
        if (context.run(values.data(), nullptr, call.extra) == PF_Err_NONE) {
            const CommandContext::Scope scope(&context);
            values.takeOver(context);
            changed = values.changed();
        }
    } catch (...) {
        tellFailedValue(context);
    }
    mSequence.changed();
    CommandResult result = context.finish();
    result.changed = std::move(changed);
    return result;
}

CommandResult EffectInstance::panelCommand(PF_Cmd command, int frame, void* extra) {
    return run({command, frame, extra});
}

CommandResult EffectInstance::panelEvent(PF_EventExtra& extra, int frame) {
    return run({PF_Cmd_EVENT, frame, &extra, extra.effect_win.index});
}

CommandResult EffectInstance::drawEvent(PF_EventExtra& extra, int frame, Drawing& drawing) {
    CommandContext context(mHost, this, PF_Cmd_EVENT, settingOfPanel(frame));
    context.drawing = &drawing;
    try {
        ParameterArray values(context, LayerPixels::Absent);
        context.run(values.data(), nullptr, &extra);
    } catch (const HostCallFailure&) {
        tellFailedValue(context);
    }
    return context.finish();
}

}  // namespace TessavoyHost
