#pragma once

#include "HostInterface/Effect.h"
#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/RenderGrid/CellScript.h"
#include "Source/Script/ScriptHost.h"

namespace Tessavoy {

/// The instance's script for one frame, and what becomes of its failures: the first is stored in the sequence data,
/// which keeps the script switched off from the next frame on, and shown to the user.
class GridScript final : public CellScript {
public:
    /// Compiles the script of the instance's sequence data, an empty one too. Without sequence data, while a failure is
    /// on record there, or when the text doesn't compile, the frame has no script and nothing is reported.
    ///
    /// It is an assertion that the sequence data is in its form for use. Throws 4 (as PF_ErrorValue) without host
    /// memory, and what SequenceAccess throws. The snapshot must outlive the script.
    GridScript(PF_InData* inData, const ParameterSnapshot& snapshot);
    ~GridScript() override;

    /// The script to run, or null if the frame has none.
    CellScript* usable() { return mHost == nullptr ? nullptr : this; }

    bool changesNothing() const override { return mEmptyText; }
    bool runCell(PF_InData* inData, const CellScriptInputs& inputs, InstanceState& cell) override;
    void reportFailure(PF_InData* inData, PF_OutData* outData, const InstanceState& cell) override;

private:
    PF_InData* mInData;
    ScriptHost* mHost = nullptr;  ///< owned, in host memory
    bool mEmptyText = false;
};

}  // namespace Tessavoy
