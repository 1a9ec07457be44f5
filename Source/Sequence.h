#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "HostInterface/Effect.h"

namespace Tessavoy {

/// FNV-1a, 64 bits, over the four bytes of a disk id in memory order (Fowler, Noll and Vo).
struct DiskIdHash {
    std::size_t operator()(A_long diskId) const noexcept;
};

/// Names of custom slots by disk id.
using ParameterNames = std::unordered_map<A_long, std::string, DiskIdHash>;

/// What an effect instance keeps beside its parameters, in the form for use. It is constructed in the block of a host
/// handle, which then doesn't move.
///
/// The saved form is one block, little-endian:
///
///     0   u8    flatten, 1 (the form for use has 0 in this byte)
///     1   4     "GRID"
///     5   3     0
///     8   u32   header size, 16: from here to the script
///     12  u32   version, 626176 (1.3.1 release); below 624128 (1.3.0 release) the script alone follows the header
///     16  u32   script size, with its closing zero
///     20  u32   names size, with its closing zero
///     24        script, then the names as JSON: {"paramNames":[[disk id,"name"],...]}, or empty without names
struct SequenceData {
    bool flatten = false;
    std::string script;       ///< Lua text, any bytes; saved up to its first zero
    std::string scriptError;  ///< the last failure of the script; empty if none is on record
    ParameterNames paramNames;
};

/// The record of the running command's instance, or null when it has none. It is an assertion that it has the form for
/// use. The record stays the host handle's.
SequenceData* sequenceData(const PF_InData* inData);

/// The record for a render thread: through "PF Effect Sequence Data Suite" 1 where the host has it, else as
/// `sequenceData`. Holds the suite while it lives.
class SequenceAccess {
public:
    /// Throws Exception with the host's code if the suite refuses.
    explicit SequenceAccess(const PF_InData* inData);
    ~SequenceAccess();

    SequenceAccess(const SequenceAccess&) = delete;
    SequenceAccess& operator=(const SequenceAccess&) = delete;

    /// The record, or null when the instance has none. A render writes only `scriptError`, by `recordScriptError`.
    SequenceData* get() const { return mRecord; }
    SequenceData* operator->() const { return mRecord; }

private:
    void release();

    const PF_InData* mInData;
    const void* mSuite = nullptr;
    SequenceData* mRecord = nullptr;
};

/// Whether a script failure is on record. Safe against `recordScriptError` on another render thread.
bool hasScriptError(const SequenceData& record);

/// The script failure on record, empty for none. Safe as hasScriptError.
std::string scriptErrorOf(const SequenceData& record);

/// Keeps `text` as the script's failure unless one is on record already; whether it was kept. Safe on render threads
/// that share the record.
bool recordScriptError(SequenceData& record, std::string text);

/// Stores a new script, which switches a failed one on again: its text, up to the closing zero, and as `scriptError`
/// the message that compiling it gives. Null clears the script. 512 without a record or with one in its saved form; 4
/// (thrown as PF_ErrorValue) without host memory. Called by the script's editor, never while a frame is rendered.
PF_Err validateScript(SequenceData* sequence, PF_InData* inData, const char* text);

/// PF_Cmd_SEQUENCE_SETUP: gives the host a handle with an empty record. 4 when the host has no memory.
PF_Err SequenceSetup(PF_InData* inData, PF_OutData* outData);

/// PF_Cmd_SEQUENCE_RESETUP: gives the host a new handle with a record loaded from the saved form in the instance's
/// handle, which stays the host's. Without a handle, or with an empty block, nothing is done.
///
/// A block that isn't a saved form, or whose texts don't end inside it, gives an empty record with a `scriptError`
/// that says so. 4 when the host has no memory; names that are no JSON throw the parser's exception.
PF_Err SequenceResetup(PF_InData* inData, PF_OutData* outData);

/// PF_Cmd_SEQUENCE_FLATTEN: replaces the record by its saved form. 512 without a record or without memory for the
/// block; the record then stays, as it does when a name is not UTF-8, which throws the JSON library's exception.
PF_Err SequenceFlatten(PF_InData* inData, PF_OutData* outData);

/// PF_Cmd_GET_FLATTENED_SEQUENCE_DATA: gives the host the saved form as a copy; the record stays. Errors as flattening.
PF_Err SequenceGetFlattened(PF_InData* inData, PF_OutData* outData);

/// PF_Cmd_SEQUENCE_SETDOWN: destroys the record, or drops the saved form, and frees the handle.
PF_Err SequenceSetdown(PF_InData* inData, PF_OutData* outData);

}  // namespace Tessavoy
