#include "Host/CommandContext.h"

#include <algorithm>
#include <array>
#include <exception>
#include <string_view>
#include <utility>

#include "Host/EffectHost.h"
#include "Host/ErrorTexts.h"
#include "Host/HostCall.h"

namespace TessavoyHost {
namespace {

thread_local CommandContext* currentCommand = nullptr;

// At the front of every live context, so that a stray effect_ref is told from a good one.
constexpr A_u_longlong liveMark = 0x5465737361766F79;

struct NamedCommand {
    PF_Cmd command;
    std::string_view name;
};

constexpr std::array<NamedCommand, 18> commandNames = {{
    {PF_Cmd_ABOUT, "PF_Cmd_ABOUT"},
    {PF_Cmd_GLOBAL_SETUP, "PF_Cmd_GLOBAL_SETUP"},
    {PF_Cmd_GLOBAL_SETDOWN, "PF_Cmd_GLOBAL_SETDOWN"},
    {PF_Cmd_PARAMS_SETUP, "PF_Cmd_PARAMS_SETUP"},
    {PF_Cmd_SEQUENCE_SETUP, "PF_Cmd_SEQUENCE_SETUP"},
    {PF_Cmd_SEQUENCE_RESETUP, "PF_Cmd_SEQUENCE_RESETUP"},
    {PF_Cmd_SEQUENCE_FLATTEN, "PF_Cmd_SEQUENCE_FLATTEN"},
    {PF_Cmd_SEQUENCE_SETDOWN, "PF_Cmd_SEQUENCE_SETDOWN"},
    {PF_Cmd_DO_DIALOG, "PF_Cmd_DO_DIALOG"},
    {PF_Cmd_USER_CHANGED_PARAM, "PF_Cmd_USER_CHANGED_PARAM"},
    {PF_Cmd_UPDATE_PARAMS_UI, "PF_Cmd_UPDATE_PARAMS_UI"},
    {PF_Cmd_EVENT, "PF_Cmd_EVENT"},
    {PF_Cmd_QUERY_DYNAMIC_FLAGS, "PF_Cmd_QUERY_DYNAMIC_FLAGS"},
    {PF_Cmd_ARBITRARY_CALLBACK, "PF_Cmd_ARBITRARY_CALLBACK"},
    {PF_Cmd_SMART_PRE_RENDER, "PF_Cmd_SMART_PRE_RENDER"},
    {PF_Cmd_SMART_RENDER, "PF_Cmd_SMART_RENDER"},
    {PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, "PF_Cmd_GET_FLATTENED_SEQUENCE_DATA"},
    {PF_Cmd_RENDER, "PF_Cmd_RENDER"},
}};

PF_RationalScale toScale(const Rational& factor) {
    return {factor.num, factor.den};
}

}  // namespace

std::string commandName(PF_Cmd command) {
    for (const NamedCommand& named : commandNames) {
        if (named.command == command)
            return std::string(named.name);
    }
    return "command " + std::to_string(command);
}

CommandContext::Scope::Scope(CommandContext* context) : mBefore(std::exchange(currentCommand, context)) {}
CommandContext::Scope::~Scope() {
    currentCommand = mBefore;
}

CommandContext* CommandContext::current() {
    return currentCommand;
}

CommandContext* CommandContext::of(PF_ProgPtr reference) {
    if (reference == nullptr)
        return current();
    const auto context = reinterpret_cast<CommandContext*>(reference);
    return context->mMark == liveMark ? context : nullptr;
}

CommandContext::CommandContext(EffectHost& effectHost, EffectInstance* effectInstance, PF_Cmd effectCommand,
                               const CommandSetting& commandSetting)
    : host(effectHost),
      services(effectHost.services()),
      instanceOrNull(effectInstance),
      command(effectCommand),
      setting(commandSetting),
      mMark(liveMark) {
    in.inter = interactCallbacks();
    in.utils = &services.utilities;
    in.pica_basicP = &services.basic;
    in.effect_ref = reference();
    in.quality = PF_Quality_HI;
    in.version = {13, 27};
    in.appl_id = services.options.applId;
    in.num_params = static_cast<A_long>(host.parameters().size());
    in.pixel_aspect_ratio = {1, 1};
    in.time_scale = 1;
    in.downsample_x = toScale(setting.downsampleX);
    in.downsample_y = toScale(setting.downsampleY);
    in.global_data = out.global_data = host.mGlobalData;
    in.sequence_data = out.sequence_data = setting.sequenceData;
    if (instanceOrNull != nullptr)
        describeMoment();
}

CommandContext::~CommandContext() {
    mMark = 0;
}

void CommandContext::describeMoment() {
    const EffectInstance& owner = *instanceOrNull;
    const TimeBase& time = owner.timeBase();
    in.time_scale = time.scale;
    in.time_step = time.step;
    in.local_time_step = time.step;
    in.current_time = time.layerTimeOf(setting.frame);
    in.total_time = clockUnits(owner.effectLayer().duration(), time.scale);
    in.width = owner.effectLayer().width();
    in.height = owner.effectLayer().height();
    in.extent_hint = {0, 0, downsampled(in.width, setting.downsampleX), downsampled(in.height, setting.downsampleY)};
}

double CommandContext::compositionSeconds(A_long layerTime, A_u_long timeScale) const {
    return instance().timeBase().compositionSeconds(layerTime, timeScale);
}

PF_Err CommandContext::run(PF_ParamDef** params, PF_LayerDef* output, void* extra) {
    const Scope scope(this);
    try {
        mError = host.mModule.effectMain(command, &in, &out, params, output, extra);
    } catch (PF_ErrorValue error) {
        mError = error;
        breaks("an error value left the module as an exception: " + std::to_string(error));
    } catch (const std::exception& error) {
        mError = PF_Err_INTERNAL_STRUCT_DAMAGED;
        breaks(std::string("an exception left the module: ") + error.what());
    } catch (...) {
        mError = PF_Err_INTERNAL_STRUCT_DAMAGED;
        breaks("an exception of an unknown kind left the module");
    }
    return mError;
}

void CommandContext::adopt(PF_Handle handle) {
    if (handle != nullptr)
        ledger.moveTo(services.ledger, Loan::Handle, Ledger::keyOf(handle));
}

CommandResult CommandContext::finish() {
    for (const std::string& left : ledger.close(services.ledger))
        breaks("not given back: " + left);
    CommandResult result;
    result.error = mError;
    result.message.assign(std::begin(out.return_msg),
                          std::find(std::begin(out.return_msg), std::end(out.return_msg), '\0'));
    result.displayError = (out.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE) != 0;
    const Failure hostFailure = failure();
    result.failure = hostFailure.text;
    if (result.message.empty())
        result.message = mReport.empty() ? result.failure : mReport;
    if (result.error == PF_Err_NONE && hostFailure.error != PF_Err_NONE) {
        result.error = hostFailure.error;
        result.message = result.failure;
    }
    result.projectDirty = projectDirty;
    result.out = out;
    result.broken = mBroken;
    return result;
}

void CommandContext::breaks(const std::string& text) {
    const std::lock_guard lock(mMutex);
    mBroken.push_back(commandName(command) + ": " + text);
}

void CommandContext::fails(std::string_view text, PF_Err error) noexcept {
    try {
        const std::lock_guard lock(mMutex);
        if (mFailure.error == PF_Err_NONE)
            mFailure = {std::string(text), error};
    } catch (...) {  // there is not even room for the text
        runsOutOfMemory("noting a failure");
    }
}

void CommandContext::runsOutOfMemory(const char* call) noexcept {
    const char* none = nullptr;
    mExhaustedCall.compare_exchange_strong(none, call);
}

void CommandContext::passFailuresTo(CommandContext& outer) const noexcept {
    if (mFailure.error != PF_Err_NONE)
        outer.fails(mFailure.text, mFailure.error);
    if (const char* call = mExhaustedCall)
        outer.runsOutOfMemory(call);
}

// A module that passes the want of memory on has told the same, and knows better what for.
CommandContext::Failure CommandContext::failure() const {
    if (mFailure.error != PF_Err_NONE || mExhaustedCall == nullptr || mError != PF_Err_NONE)
        return mFailure;
    return {"the host ran out of memory in " + std::string(mExhaustedCall) + "; " + std::string(memoryRemedy),
            PF_Err_OUT_OF_MEMORY};
}

void CommandContext::reports(const std::string& text) {
    const std::lock_guard lock(mMutex);
    if (mReport.empty())
        mReport = text;
}

EffectInstance& CommandContext::instance() const {
    if (instanceOrNull == nullptr)
        throw HostCallFailure(PF_Err_INVALID_CALLBACK);
    return *instanceOrNull;
}

}  // namespace TessavoyHost
