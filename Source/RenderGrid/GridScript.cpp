#include "Source/RenderGrid/GridScript.h"

#include "HostInterface/Constants.h"
#include "Source/Assert.h"
#include "Source/HostAccess/HostBlock.h"
#include "Source/Script/CellExchange.h"
#include "Source/Sequence.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <string_view>

namespace Tessavoy {

namespace {

constexpr const char* failureFormat = "Failed to execute the script (i=%d, j=%d, frame=%d)\n%s";
constexpr std::size_t failureOverhead = 85;

void show(PF_OutData* outData, std::string_view text) {
    const std::size_t length = std::min(text.size(), std::size(outData->return_msg) - 1);
    text.copy(outData->return_msg, length);
    outData->return_msg[length] = '\0';
    outData->out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
}

/// A script compiled in host memory; null when it doesn't compile.
ScriptHost* newScriptHost(PF_InData* inData, const char* text, const ParameterSnapshot& snapshot) {
    HostBlock block(inData, sizeof(ScriptHost));
    std::memset(block.address(), 0, sizeof(ScriptHost));
    std::unique_ptr<ScriptHost, void (*)(ScriptHost*)> host(new (block.address()) ScriptHost, std::destroy_at);
    if (!host->compile(inData, text, &snapshot)) {
        return nullptr;
    }
    block.handOn();
    return host.release();
}

}  // namespace

GridScript::GridScript(PF_InData* inData, const ParameterSnapshot& snapshot) : mInData(inData) {
    const SequenceAccess sequenceDataPtr(inData);
    TESSAVOY_ASSERT(sequenceDataPtr.get() == nullptr || !sequenceDataPtr->flatten, "!sequenceDataPtr->flatten");
    if (sequenceDataPtr.get() != nullptr && !hasScriptError(*sequenceDataPtr.get())) {
        mEmptyText = *sequenceDataPtr->script.c_str() == '\0';
        mHost = newScriptHost(inData, sequenceDataPtr->script.c_str(), snapshot);
    }
}

GridScript::~GridScript() {
    if (mHost != nullptr) {
        std::destroy_at(mHost);
        HostFree(mInData, mHost);
    }
}

bool GridScript::runCell(PF_InData* inData, const CellScriptInputs& inputs, InstanceState& cell) {
    return mHost->runCell(inData, inputs, cell);
}

void GridScript::reportFailure(PF_InData* inData, PF_OutData* outData, const InstanceState& cell) {
    const SequenceAccess sequence(inData);
    if (sequence.get() == nullptr || hasScriptError(*sequence.get())) {
        return;
    }
    const char* error = mHost->errorText();
    const HostBlock text(inData, std::strlen(error) + failureOverhead);
    inData->utils->ansi.sprintf(text.characters(), failureFormat, cell.i, cell.j, frameNumber(*inData), error);
    if (recordScriptError(*sequence.get(), text.characters())) {
        show(outData, text.characters());
    }
}

}  // namespace Tessavoy
