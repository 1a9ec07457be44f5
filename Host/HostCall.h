#pragma once

#include <new>
#include <type_traits>

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

// Runs a piece of the host on behalf of a command; exceptions become errors.
template <class Body>
PF_Err guarded(CommandContext& context, Body&& body) noexcept {
    try {
        body(context);
        return PF_Err_NONE;
    } catch (const HostCallFailure& failure) {
        return failure.error;
    } catch (const std::bad_alloc&) {
        return PF_Err_OUT_OF_MEMORY;
    } catch (const std::exception& error) {
        context.fails(error.what());
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
}

// One host call that belongs to the command behind an effect_ref: name is the slot's published name, body is called
// with the command's context and throws HostCallFailure to answer with an error.
template <class Body>
PF_Err answer(const char* name, PF_ProgPtr reference, Body&& body) noexcept {
    CommandContext* context = CommandContext::of(reference);
    if (context == nullptr)
        return PF_Err_BAD_CALLBACK_PARAM;
    if (const PF_Err fault = context->services.faults.answerOf(name))
        return fault;
    return guarded(*context, body);
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
    const PF_Err error = guarded(*context, body);
    const PF_Err fault = context->services.faults.answerOf(name);
    return fault != PF_Err_NONE ? fault : error;
}

template <class Body>
PF_Err takeBack(const char* name, Body&& body) noexcept {
    return takeBack(name, nullptr, body);
}

// The ledger of the command on this thread, or the host's own.
inline Ledger& ledgerOfCaller(HostServices& services) {
    CommandContext* context = CommandContext::current();
    return context == nullptr ? services.ledger : context->ledger;
}

// The callbacks of the in-data.
PF_InteractCallbacks interactCallbacks();

}  // namespace TessavoyHost
