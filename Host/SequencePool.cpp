#include "Host/SequencePool.h"

#include <cstring>
#include <utility>

#include "Host/EffectHost.h"
#include "Host/ErrorTexts.h"
#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

HostError sequenceError(PF_Cmd command, const CommandResult& result) {
    return {ExitStatus::Module, failureOf(commandName(command), result.error, result.message)};
}

// A block of the host's own, as if it had read it from a project.
PF_Handle blockHandle(HostServices& services, const std::vector<std::byte>& bytes) {
    const PF_Handle handle = services.handles.make(bytes.size());
    services.ledger.lend(Loan::Handle, Ledger::keyOf(handle), "flat sequence data");
    std::memcpy(*handle, bytes.data(), bytes.size());
    return handle;
}

void disposeBlock(HostServices& services, PF_Handle handle) {
    services.ledger.giveBack(Loan::Handle, Ledger::keyOf(handle));
    services.handles.dispose(handle);
}

// One sequence command; handles that the module hands over stay.
struct SequenceCommand {
    SequenceCommand(EffectInstance& instance, PF_Cmd command, PF_Handle data) {
        CommandSetting setting;
        setting.sequenceData = data;
        CommandContext context(instance.host(), &instance, command, setting);
        context.run();
        if (context.out.sequence_data != data)
            context.adopt(context.out.sequence_data);
        result = context.finish();
        for (const std::string& text : result.broken)
            instance.host().noteBroken(text);
    }

    PF_Handle made() const { return result.out.sequence_data; }

    CommandResult result;
};

}  // namespace

SequencePool::~SequencePool() {
    disposeIdle();
    dispose(mOriginal);
}

void SequencePool::setUp() {
    const SequenceCommand setUp(mInstance, PF_Cmd_SEQUENCE_SETUP, nullptr);
    if (setUp.result.error != PF_Err_NONE)
        throw sequenceError(PF_Cmd_SEQUENCE_SETUP, setUp.result);
    mOriginal = setUp.made();
}

void SequencePool::load(const std::vector<std::byte>& flat) {
    const PF_Handle loaded = unflattened(flat);
    dispose(std::exchange(mOriginal, loaded));
    changed();
}

// The flat block stays the host's, so the host disposes of it, unless the module made it its data.
PF_Handle SequencePool::unflattened(const std::vector<std::byte>& flat) {
    HostServices& services = mInstance.host().services();
    const PF_Handle block = blockHandle(services, flat);
    const SequenceCommand resetup(mInstance, PF_Cmd_SEQUENCE_RESETUP, block);
    const PF_Handle made = resetup.made();
    if (made != block || resetup.result.error != PF_Err_NONE)
        disposeBlock(services, block);
    if (resetup.result.error != PF_Err_NONE)
        throw sequenceError(PF_Cmd_SEQUENCE_RESETUP, resetup.result);
    return made;
}

std::vector<std::byte> SequencePool::flattened() {
    HostServices& services = mInstance.host().services();
    const SequenceCommand flatten(mInstance, PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, mOriginal);
    const PF_Handle made = flatten.made();
    if (flatten.result.error != PF_Err_NONE || made == nullptr || made == mOriginal)
        throw sequenceError(PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, flatten.result);
    const auto bytes = static_cast<const std::byte*>(*made);
    std::vector<std::byte> flat(bytes, bytes + services.handles.size(made));
    disposeBlock(services, made);
    return flat;
}

void SequencePool::changed() {
    const std::lock_guard lock(mMutex);
    ++mVersion;
    disposeIdle();
}

bool SequencePool::rendersNeedCopies() const {
    const EffectHost& host = mInstance.host();
    return mOriginal != nullptr && host.hasOutFlag2(PF_OutFlag2_MUTABLE_RENDER_SEQUENCE_DATA_SLOWER) &&
           host.hasOutFlag2(PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA);
}

// Copies are made one after the other, since all are made from the original.
SequencePool::Copy SequencePool::take() {
    if (!rendersNeedCopies())
        return {mOriginal, sharedOriginal};
    const std::lock_guard lock(mMutex);
    if (mIdle.empty())
        return {unflattened(flattened()), mVersion};
    const PF_Handle handle = mIdle.back();
    mIdle.pop_back();
    return {handle, mVersion};
}

void SequencePool::give(const Copy& copy) {
    if (copy.version == sharedOriginal)
        return;
    const std::lock_guard lock(mMutex);
    if (copy.version == mVersion)
        mIdle.push_back(copy.handle);
    else
        dispose(copy.handle);
}

void SequencePool::drop(const Copy& copy) {
    const std::lock_guard lock(mMutex);
    if (copy.version != sharedOriginal)
        dispose(copy.handle);
}

void SequencePool::dispose(PF_Handle handle) {
    if (handle != nullptr)
        SequenceCommand(mInstance, PF_Cmd_SEQUENCE_SETDOWN, handle);
}

void SequencePool::disposeIdle() {
    for (const PF_Handle handle : std::exchange(mIdle, {}))
        dispose(handle);
}

}  // namespace TessavoyHost
