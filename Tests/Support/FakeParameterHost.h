#pragma once

#include "HostInterface/Effect.h"
#include "Tests/Support/FakeHandleHost.h"

#include <map>
#include <vector>

namespace Tessavoy {

/// A host that takes and gives parameters: it records what is registered, and answers checkouts from a table of values.
/// Handles and the other suites are FakeHandleHost's; "PF ANSI Suite" 1 has its sprintf here. One host exists at a
/// time.
class FakeParameterHost {
public:
    FakeParameterHost();
    ~FakeParameterHost();

    FakeParameterHost(const FakeParameterHost&) = delete;
    FakeParameterHost& operator=(const FakeParameterHost&) = delete;

    PF_InData& inData() { return handles.inData; }
    PF_OutData& outData() { return handles.outData; }

    /// The n-th call of one kind, counted from 1, fails with the error; 0 for none.
    struct Failure {
        int call = 0;
        PF_Err error = 0;

        PF_Err of(std::size_t calls) const { return call > 0 && calls == static_cast<std::size_t>(call) ? error : 0; }
    };

    struct Checkout {
        PF_ParamIndex index;
        A_long time;
        A_long step;
        A_u_long scale;
        PF_ParamDef* record;
    };

    FakeHandleHost handles;

    // What was asked of the host, in call order. A call that fails is recorded too.
    std::vector<PF_ParamDef> added;
    std::vector<PF_ParamIndex> addedAt;
    std::vector<PF_CustomUIInfo> controls;
    std::size_t addedBeforeControl = 0;
    std::vector<Checkout> checkouts;
    std::vector<PF_ParamDef*> checkins;

    /// What a checkout of an index hands out; zeros for one that isn't here.
    std::map<PF_ParamIndex, PF_ParamDef> values;

    /// What the n-th checkout hands out instead, counted from 1.
    std::map<std::size_t, PF_ParamDef> valuesOfCall;

    Failure addFailure;
    Failure controlFailure;
    Failure checkoutFailure;
    Failure checkinFailure;

    const SPBasicSuite* handleBasic;

private:
    SPBasicSuite mBasic{};
};

}  // namespace Tessavoy
