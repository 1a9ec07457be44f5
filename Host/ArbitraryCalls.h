#pragma once

#include <cstddef>
#include <vector>

#include "Host/RegisteredParameter.h"

namespace TessavoyHost {

class EffectHost;

// The module's callbacks for one arbitrary parameter (PF_Cmd_ARBITRARY_CALLBACK). Handles that come out belong to the
// host's long ledger and end with dispose. The module's errors are thrown as HostCallFailure; promises that it breaks
// are told to the command during which the call was made, or else to EffectHost::broken. Thread safe as far as the
// module is.
class ArbitraryCalls {
public:
    ArbitraryCalls(EffectHost& host, const RegisteredParameter& parameter);

    PF_ArbitraryH copy(PF_ArbitraryH value) const;
    void dispose(PF_ArbitraryH value) const;
    std::vector<std::byte> flatten(PF_ArbitraryH value) const;
    PF_ArbitraryH unflatten(const std::vector<std::byte>& flat) const;
    PF_ArbitraryH interpolate(PF_ArbitraryH left, PF_ArbitraryH right, double share) const;

private:
    PF_ArbParamsExtra request(A_long selector) const;
    // Runs the callback; a handle that comes out at made is kept by the host.
    void run(PF_ArbParamsExtra& extra, PF_ArbitraryH* made = nullptr) const;

    EffectHost& mHost;
    const PF_ArbitraryDef& mDefinition;
};

}  // namespace TessavoyHost
