#pragma once

#include "Host/CommandContext.h"
#include "Host/HostError.h"
#include "Host/HostServices.h"

namespace TessavoyHost {

// Thrown inside a host call: the call answers with the error. Never leaves the host.
struct HostCallFailure {
    explicit HostCallFailure(PF_Err value) : error(value) {}
    PF_Err error;
};

// Throws unless a condition of the published interface holds.
inline void require(bool condition, PF_Err error = PF_Err_BAD_CALLBACK_PARAM) {
    if (!condition)
        throw HostCallFailure(error);
}

// To be called while an exception of the host call of that name is handled: what the call answers. Only HostCallFailure
// is an answer by the published interface. Anything else is a failure of the host's own, which the command (null: there
// is none) keeps in mind, since the module may take the answer for an ordinary one.
PF_Err answerToException(CommandContext* context, const char* name) noexcept;

// One host call that belongs to the command behind an effect_ref: name is the slot's published name, body is called
// with the command's context and throws HostCallFailure to answer with an error.
template <class Body>
PF_Err answer(const char* name, PF_ProgPtr reference, Body&& body) noexcept {
    CommandContext* context = CommandContext::of(reference);
    if (context == nullptr)
        return PF_Err_BAD_CALLBACK_PARAM;
    try {
        if (const PF_Err fault = context->services.faults.answerOf(name))
            return fault;
        body(*context);
        return PF_Err_NONE;
    } catch (...) {
        return answerToException(context, name);
    }
}

// The same for calls that name no command: they belong to the one that runs on this thread.
template <class Body>
PF_Err answer(const char* name, Body&& body) noexcept {
    return answer(name, nullptr, body);
}

// Calls that give something back do so even when a fault makes them answer with an error: the module has done its part.
template <class Body>
PF_Err takeBack(const char* name, PF_ProgPtr reference, Body&& body) noexcept {
    CommandContext* context = CommandContext::of(reference);
    if (context == nullptr)
        return PF_Err_BAD_CALLBACK_PARAM;
    PF_Err error = PF_Err_NONE;
    try {
        body(*context);
    } catch (...) {
        error = answerToException(context, name);
    }
    try {
        const PF_Err fault = context->services.faults.answerOf(name);
        return fault != PF_Err_NONE ? fault : error;
    } catch (...) {
        return answerToException(context, name);
    }
}

template <class Body>
PF_Err takeBack(const char* name, Body&& body) noexcept {
    return takeBack(name, nullptr, body);
}

// Calls that give a value instead of an error, and that may come while no command runs: body is called with the
// services of the host, and where it throws, or where there is no host, the call gives the value that stands for
// failure.
template <class Value, class Body>
Value valueOr(const char* name, Value failed, Body&& body) noexcept {
    try {
        HostServices* services = HostServices::current();
        return services == nullptr ? failed : body(*services);
    } catch (...) {
        answerToException(CommandContext::current(), name);
        return failed;
    }
}

// The ledger of the command on this thread, or the host's own.
inline Ledger& ledgerOfCaller(HostServices& services) {
    CommandContext* context = CommandContext::current();
    return context == nullptr ? services.ledger : context->ledger;
}

// The callbacks of the in-data.
PF_InteractCallbacks interactCallbacks();

}  // namespace TessavoyHost
