#include "Host/EffectHost.h"

#include <set>
#include <utility>

#include "Host/ArbitraryCalls.h"
#include "Host/CommandContext.h"
#include "Host/ErrorTexts.h"
#include "Host/HostCall.h"
#include "Host/HostError.h"
#include "Host/WineContexts.h"

namespace TessavoyHost {
namespace {

std::string textOf(const A_u_char* text) {
    return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

// The host's answer to what the module tells of itself.
A_Err takeDescription(PF_PluginDataPtr data, const A_u_char* name, const A_u_char* matchName, const A_u_char* category,
                      const A_u_char* entryPoint, A_long kind, A_long apiMajor, A_long apiMinor, A_long) noexcept {
    try {
        auto& description = *reinterpret_cast<ModuleDescription*>(data);
        description.name = textOf(name);
        description.matchName = textOf(matchName);
        description.category = textOf(category);
        description.entryPoint = textOf(entryPoint);
        description.kind = kind;
        description.apiMajor = apiMajor;
        description.apiMinor = apiMinor;
        return PF_Err_NONE;
    } catch (...) {
        return answerToException(nullptr, "PluginDataCallBack");
    }
}

// Out of memory stands for everything that OpenGL refuses.
std::string setUpRemedy(PF_Err error) {
    return error == PF_Err_OUT_OF_MEMORY
               ? "; the effect needs a driver for OpenGL 3.3, on Linux with EGL, such as Mesa's"
               : "";
}

RegisteredParameter inputLayer() {
    RegisteredParameter parameter;
    parameter.definition.param_type = PF_Param_LAYER;
    return parameter;
}

// Texts move with the list of parameters; once it stands still, definitions point to them.
void pointToTexts(RegisteredParameter& parameter) {
    PF_ParamDefUnion& u = parameter.definition.u;
    switch (parameter.definition.param_type) {
        case PF_Param_POPUP:
            u.pd.u.namesptr = parameter.popupTexts.c_str();
            break;
        case PF_Param_CHECKBOX:
            u.bd.u.nameptr = parameter.text.c_str();
            break;
        case PF_Param_BUTTON:
            u.button_d.u.namesptr = parameter.text.c_str();
            break;
        default:
            break;
    }
}

}  // namespace

EffectHost::EffectHost(const std::filesystem::path& module, const HostOptions& options)
    : mServices(options), mLoader(std::make_unique<ModuleLoader>(module)) {
    if (options.contextsForWine)
        shareContextsAtCreation(mLoader->get());
    mModule.describe = mLoader->function<PF_PluginDataEntryFunction>("PluginDataEntryFunction");
    describe();
    mModule.effectMain = mLoader->function<PF_EffectMain>(mDescription.entryPoint.c_str());
    setUp();
}

EffectHost::EffectHost(const ModuleEntryPoints& module, const HostOptions& options)
    : mServices(options), mModule(module) {
    describe();
    setUp();
}

EffectHost::~EffectHost() {
    if (mSetUp)
        setDown();
}

void EffectHost::describe() {
    const auto place = reinterpret_cast<PF_PluginDataPtr>(&mDescription);
    const A_Err error = mModule.describe(place, takeDescription, &mServices.basic, "Tessavoy", TESSAVOY_VERSION);
    if (error != PF_Err_NONE)
        throw HostError(ExitStatus::Module, failureOf("describing the module", error));
    if (mDescription.entryPoint.empty())
        throw HostError(ExitStatus::Module, "the effect module describes no effect");
}

void EffectHost::setUp() {
    CommandContext context(*this, nullptr, PF_Cmd_GLOBAL_SETUP, {});
    mSetUp = context.run() == PF_Err_NONE;
    context.adopt(context.out.global_data);
    const CommandResult result = context.finish();
    mGlobalData = result.out.global_data;
    mDescription.version = result.out.my_version;
    mDescription.outFlags = result.out.out_flags;
    mDescription.outFlags2 = result.out.out_flags2;
    noteAll(result.broken);
    try {
        if (result.error != PF_Err_NONE)
            throw HostError(ExitStatus::Module, failureOf("setting the module up", result.error, result.message) +
                                                    setUpRemedy(result.error));
        registerParameters();
        const CommandResult about = command(PF_Cmd_ABOUT);
        mDescription.about = about.message;
        noteAll(about.broken);
    } catch (...) {
        if (mSetUp)
            setDown();
        throw;
    }
}

void EffectHost::registerParameters() {
    std::vector<RegisteredParameter> registered;
    registered.push_back(inputLayer());
    CommandContext context(*this, nullptr, PF_Cmd_PARAMS_SETUP, {});
    context.registration = &registered;
    context.run();
    mDescription.customEvents = context.customEvents;
    const CommandResult result = context.finish();
    noteAll(result.broken);
    mParameters = std::move(registered);
    for (RegisteredParameter& parameter : mParameters)
        pointToTexts(parameter);
    if (result.error != PF_Err_NONE)
        throw HostError(ExitStatus::Module, failureOf("registering the parameters", result.error, result.message));
    if (result.out.num_params != static_cast<A_long>(mParameters.size()))
        noteBroken("PF_Cmd_PARAMS_SETUP: num_params is " + std::to_string(result.out.num_params) + ", but " +
                   std::to_string(mParameters.size()) + " parameters were added, the input layer included");
    std::set<A_long> ids;
    for (std::size_t index = 1; index < mParameters.size(); ++index) {
        const A_long id = mParameters[index].definition.uu.id;
        if (!ids.insert(id).second)
            noteBroken("PF_Cmd_PARAMS_SETUP: disk id " + std::to_string(id) + " is used twice");
    }
}

std::unique_ptr<EffectInstance> EffectHost::createInstance(const Project& project) {
    return std::make_unique<EffectInstance>(*this, project);
}

CommandResult EffectHost::command(PF_Cmd number, void* extra) {
    CommandContext context(*this, nullptr, number, {});
    context.run(nullptr, nullptr, extra);
    return context.finish();
}

void EffectHost::noteAll(const std::vector<std::string>& texts) {
    for (const std::string& text : texts)
        noteBroken(text);
}

void EffectHost::noteBroken(const std::string& text) {
    const std::lock_guard lock(mBrokenMutex);
    mBroken.push_back(text);
}

void EffectHost::disposeDefaults() {
    for (RegisteredParameter& parameter : mParameters) {
        if (parameter.definition.param_type != PF_Param_ARBITRARY_DATA)
            continue;
        try {
            ArbitraryCalls(*this, parameter).dispose(parameter.definition.u.arb_d.dephault);
        } catch (const HostCallFailure& failure) {
            noteBroken(failureOf("disposing of a default", failure.error));
        }
        parameter.definition.u.arb_d.dephault = nullptr;
    }
}

CommandResult EffectHost::setDown() {
    disposeDefaults();
    mSetUp = false;
    const CommandResult result = command(PF_Cmd_GLOBAL_SETDOWN);
    noteAll(result.broken);
    for (const std::string& left : mServices.ledger.outstanding())
        noteBroken("left after PF_Cmd_GLOBAL_SETDOWN: " + left);
    mGlobalData = nullptr;
    return result;
}

}  // namespace TessavoyHost
