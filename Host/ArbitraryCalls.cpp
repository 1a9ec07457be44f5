#include "Host/ArbitraryCalls.h"

#include "Host/EffectHost.h"
#include "Host/HostCall.h"

namespace TessavoyHost {

ArbitraryCalls::ArbitraryCalls(EffectHost& host, const RegisteredParameter& parameter)
    : mHost(host), mDefinition(parameter.definition.u.arb_d) {}

PF_ArbParamsExtra ArbitraryCalls::request(A_long selector) const {
    PF_ArbParamsExtra extra{};
    extra.which_function = selector;
    extra.id = mDefinition.id;
    // Every record begins with the reference value.
    extra.u.new_func_params.refconPV = mDefinition.refconPV;
    return extra;
}

void ArbitraryCalls::run(PF_ArbParamsExtra& extra, PF_ArbitraryH* made) const {
    CommandContext context(mHost, nullptr, PF_Cmd_ARBITRARY_CALLBACK, {});
    context.run(nullptr, nullptr, &extra);
    if (made != nullptr)
        context.adopt(*made);
    const CommandResult result = context.finish();
    CommandContext* outer = CommandContext::current();
    for (const std::string& text : result.broken)
        outer != nullptr ? outer->breaks(text) : mHost.noteBroken(text);
    if (outer != nullptr)
        context.passFailuresTo(*outer);
    require(result.error == PF_Err_NONE, result.error);
}

PF_ArbitraryH ArbitraryCalls::copy(PF_ArbitraryH value) const {
    PF_ArbitraryH made = nullptr;
    PF_ArbParamsExtra extra = request(PF_Arbitrary_COPY_FUNC);
    extra.u.copy_func_params.src_arbH = value;
    extra.u.copy_func_params.dst_arbPH = &made;
    run(extra, &made);
    return made;
}

void ArbitraryCalls::dispose(PF_ArbitraryH value) const {
    if (value == nullptr)
        return;
    PF_ArbParamsExtra extra = request(PF_Arbitrary_DISPOSE_FUNC);
    extra.u.dispose_func_params.arbH = value;
    run(extra);
}

std::vector<std::byte> ArbitraryCalls::flatten(PF_ArbitraryH value) const {
    A_u_long size = 0;
    PF_ArbParamsExtra sizing = request(PF_Arbitrary_FLAT_SIZE_FUNC);
    sizing.u.flat_size_func_params.arbH = value;
    sizing.u.flat_size_func_params.flat_data_sizePLu = &size;
    run(sizing);
    std::vector<std::byte> flat(size);
    PF_ArbParamsExtra extra = request(PF_Arbitrary_FLATTEN_FUNC);
    extra.u.flatten_func_params.arbH = value;
    extra.u.flatten_func_params.buf_sizeLu = size;
    extra.u.flatten_func_params.flat_dataPV = flat.data();
    run(extra);
    return flat;
}

PF_ArbitraryH ArbitraryCalls::unflatten(const std::vector<std::byte>& flat) const {
    PF_ArbitraryH made = nullptr;
    PF_ArbParamsExtra extra = request(PF_Arbitrary_UNFLATTEN_FUNC);
    extra.u.unflatten_func_params.buf_sizeLu = static_cast<A_u_long>(flat.size());
    extra.u.unflatten_func_params.flat_dataPV = flat.data();
    extra.u.unflatten_func_params.arbPH = &made;
    try {
        run(extra, &made);
    } catch (const HostCallFailure&) {
        dispose(made);
        throw;
    }
    return made;
}

PF_ArbitraryH ArbitraryCalls::interpolate(PF_ArbitraryH left, PF_ArbitraryH right, double share) const {
    PF_ArbitraryH made = nullptr;
    PF_ArbParamsExtra extra = request(PF_Arbitrary_INTERP_FUNC);
    extra.u.interp_func_params.left_arbH = left;
    extra.u.interp_func_params.right_arbH = right;
    extra.u.interp_func_params.tF = share;
    extra.u.interp_func_params.interpPH = &made;
    run(extra, &made);
    return made;
}

}  // namespace TessavoyHost
