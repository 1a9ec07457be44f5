#include <memory>

#include "Host/EffectHost.h"
#include "Host/HostCall.h"
#include "Host/ParameterRecord.h"

namespace TessavoyHost {
namespace {

std::string textOf(const A_char* text) {
    return text == nullptr ? "" : text;
}

// Each checked-out record carries its number in the field that the interface leaves unused, since modules copy and move
// records.
PF_Err checkoutParam(PF_ProgPtr reference, PF_ParamIndex index, A_long whatTime, A_long, A_u_long timeScale,
                     PF_ParamDef* param) noexcept {
    return answer("checkout_param", reference, [&](CommandContext& context) {
        require(param != nullptr && timeScale != 0);
        require(index >= 0 && index < context.instance().values().count(), PF_Err_INVALID_INDEX);
        ParameterRecord record = parameterRecord(context, index, context.compositionSeconds(whatTime, timeScale));
        record.definition.unused = context.nextTicket();
        context.ledger.lend(Loan::Parameter, static_cast<Ledger::Key>(record.definition.unused),
                            context.host.parameters()[static_cast<std::size_t>(index)].definition.name, index,
                            std::move(record.keep));
        *param = record.definition;
    });
}

// A zeroed record was never checked out; modules give such ones back after a checkout that failed.
PF_Err checkinParam(PF_ProgPtr reference, PF_ParamDef* param) noexcept {
    return takeBack("checkin_param", reference, [&](CommandContext& context) {
        require(param != nullptr);
        if (param->unused == 0)
            return;
        if (!context.ledger.giveBack(Loan::Parameter, static_cast<Ledger::Key>(param->unused))) {
            context.breaks("a parameter was checked in that was not checked out");
            throw HostCallFailure(PF_Err_BAD_CALLBACK_PARAM);
        }
    });
}

void keepTexts(RegisteredParameter& parameter) {
    const PF_ParamDefUnion& u = parameter.definition.u;
    switch (parameter.definition.param_type) {
        case PF_Param_POPUP:
            parameter.popupTexts = textOf(u.pd.u.namesptr);
            break;
        case PF_Param_CHECKBOX:
            parameter.text = textOf(u.bd.u.nameptr);
            break;
        case PF_Param_BUTTON:
            parameter.text = textOf(u.button_d.u.namesptr);
            break;
        default:
            break;
    }
}

PF_Err addParam(PF_ProgPtr reference, PF_ParamIndex index, PF_ParamDefPtr definition) noexcept {
    return answer("add_param", reference, [&](CommandContext& context) {
        require(context.registration != nullptr, PF_Err_INVALID_CALLBACK);
        require(definition != nullptr && index == -1);
        RegisteredParameter parameter;
        parameter.definition = *definition;
        keepTexts(parameter);
        if (definition->param_type == PF_Param_ARBITRARY_DATA)
            context.adopt(definition->u.arb_d.dephault);
        context.registration->push_back(std::move(parameter));
    });
}

PF_Err registerUi(PF_ProgPtr reference, PF_CustomUIInfo* info) noexcept {
    return answer("register_ui", reference, [&](CommandContext& context) {
        require(info != nullptr);
        context.customEvents = info->events;
    });
}

PF_Err abortCommand(PF_ProgPtr reference) noexcept {
    return answer("abort", reference,
                  [](CommandContext& context) { require(!context.cancelled(), PF_Interrupt_CANCEL); });
}

PF_Err progress(PF_ProgPtr reference, A_long, A_long) noexcept {
    return answer("progress", reference,
                  [](CommandContext& context) { require(!context.cancelled(), PF_Interrupt_CANCEL); });
}

}  // namespace

PF_InteractCallbacks interactCallbacks() {
    PF_InteractCallbacks callbacks{};
    callbacks.checkout_param = checkoutParam;
    callbacks.checkin_param = checkinParam;
    callbacks.add_param = addParam;
    callbacks.abort = abortCommand;
    callbacks.progress = progress;
    callbacks.register_ui = registerUi;
    return callbacks;
}

}  // namespace TessavoyHost
