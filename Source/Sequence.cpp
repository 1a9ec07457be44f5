#include "Source/Sequence.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <sstream>
#include <string_view>
#include <utility>

#include "HostInterface/Constants.h"
#include "HostInterface/SuiteIdentity.h"
#include "HostInterface/Suites.h"
#include "Source/Assert.h"
#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/NewHandle.h"
#include "Source/HostAccess/SuiteHandler.h"
#include "Source/Script/ScriptCheck.h"

namespace Tessavoy {

namespace {

static_assert(std::endian::native == std::endian::little, "the saved form is little-endian and copied as it stands");

/// What stands before the texts of the saved form.
struct FlatHeader {
    std::uint8_t flatten = 1;
    std::array<char, 4> magic = {'G', 'R', 'I', 'D'};
    std::array<std::uint8_t, 3> zeroes = {};
    std::uint32_t headerSize = 16;
    std::uint32_t version = 626176;
    std::uint32_t scriptSize = 0;
    std::uint32_t jsonSize = 0;
};
static_assert(sizeof(FlatHeader) == 24 && offsetof(FlatHeader, headerSize) == 8 &&
              offsetof(FlatHeader, jsonSize) == 20);

/// The header size counts from its own field.
constexpr std::size_t HeaderSizeOffset = offsetof(FlatHeader, headerSize);
constexpr std::size_t OldestHeaderBytes = offsetof(FlatHeader, scriptSize);
constexpr std::uint32_t SmallestHeaderSize = 12;
constexpr std::uint32_t FirstVersionWithNames = 624128;
constexpr const char* NamesKey = "paramNames";
constexpr const char* CorruptedText = "Failed to load Lua script: data corrupted";

using Bytes = std::span<const std::byte>;

std::mutex& scriptErrorMutex() {
    static std::mutex mutex;
    return mutex;
}

/// A block of the host's locked for as long as this lives; empty for a handle without a block.
class LockedBlock {
public:
    LockedBlock(const PF_HandleSuite1& handles, PF_Handle handle)
        : mHandles(handles), mHandle(handle), mBlock(handles.host_lock_handle(handle)) {}

    ~LockedBlock() {
        if (mBlock != nullptr) {
            mHandles.host_unlock_handle(mHandle);
        }
    }

    LockedBlock(const LockedBlock&) = delete;
    LockedBlock& operator=(const LockedBlock&) = delete;

    void* address() const { return mBlock; }

    Bytes bytes() const {
        return mBlock == nullptr ? Bytes()
                                 : Bytes(static_cast<std::byte*>(mBlock), mHandles.host_get_handle_size(mHandle));
    }

private:
    const PF_HandleSuite1& mHandles;
    PF_Handle mHandle;
    void* mBlock;
};

/// A new, empty record in a handle of its own; destroyed unless it is handed on.
class NewRecord {
public:
    explicit NewRecord(const PF_HandleSuite1& handles) : mBlock(handles, sizeof(SequenceData)) {
        if (mBlock.address() != nullptr) {
            mRecord = new (mBlock.address()) SequenceData();
        }
    }

    ~NewRecord() {
        if (mRecord != nullptr) {
            std::destroy_at(mRecord);
        }
    }

    NewRecord(const NewRecord&) = delete;
    NewRecord& operator=(const NewRecord&) = delete;

    /// Null when the host had no memory.
    SequenceData* record() const { return mRecord; }

    PF_Handle handOn() {
        mRecord = nullptr;
        return mBlock.handOn();
    }

private:
    NewHandle mBlock;
    SequenceData* mRecord = nullptr;
};

/// Whether a block is a record for use, which has to be destroyed.
bool holdsRecord(Bytes block) {
    return block.size() >= sizeof(SequenceData) && block[0] == std::byte{0};
}

/// A line that shows a record to whoever follows the effect in a debugger.
std::string traceText(const SequenceData& record) {
    std::ostringstream line;
    line << "[" << record.paramNames.size() << ": " << (record.flatten ? "flat, \"" : "unflat, \"") << record.script
         << "\"";
    return line.str();
}

/// The part of the host's version number that counts major versions.
std::uint32_t majorVersion(std::uint32_t version) {
    return (version >> 23 & 120) + (version >> 19 & 7);
}

/// The header of a saved form, its last fields zero where the block is too short for them; nothing for other blocks.
std::optional<FlatHeader> readHeader(Bytes block) {
    if (block.size() < OldestHeaderBytes) {
        return std::nullopt;
    }
    FlatHeader header;
    std::memcpy(&header, block.data(), std::min(block.size(), sizeof header));
    const bool good = header.flatten == 1 && header.magic == FlatHeader().magic &&
                      header.headerSize >= SmallestHeaderSize && majorVersion(header.version) != 0;
    return good ? std::optional(header) : std::nullopt;
}

/// The text from `offset` to its closing zero; nothing when it doesn't end inside the block.
std::optional<std::string> readText(Bytes block, std::size_t offset) {
    if (offset >= block.size()) {
        return std::nullopt;
    }
    const auto rest = block.subspan(offset);
    const std::string_view text(reinterpret_cast<const char*>(rest.data()), rest.size());
    const std::size_t length = text.find('\0');
    return length == std::string_view::npos ? std::nullopt : std::optional(std::string(text.substr(0, length)));
}

/// The two texts of a saved form, as they stand in it.
struct SavedTexts {
    std::string script;
    std::string names;  ///< JSON, or empty
};

std::optional<SavedTexts> readTexts(Bytes block) {
    const auto header = readHeader(block);
    if (!header) {
        return std::nullopt;
    }
    const std::size_t scriptOffset = HeaderSizeOffset + header->headerSize;
    const bool hasNames = header->version >= FirstVersionWithNames;
    auto script = readText(block, scriptOffset);
    auto names = hasNames ? readText(block, scriptOffset + header->scriptSize) : std::string();
    if (!script || !names) {
        return std::nullopt;
    }
    return SavedTexts{std::move(*script), std::move(*names)};
}

void setScriptError(SequenceData& record, std::string text) {
    const std::lock_guard lock(scriptErrorMutex());
    record.scriptError = std::move(text);
}

void loadScript(PF_InData* inData, std::string script, SequenceData& record) {
    record.script = std::move(script);
    setScriptError(record, {});
    if (!record.script.empty()) {
        setScriptError(record, compileErrorOf(inData, record.script));
    }
}

ParameterNames parseNames(const std::string& text) {
    constexpr bool throwing = true;
    constexpr bool withComments = false;
    auto saved = nlohmann::json::parse(text, nullptr, throwing, withComments);
    return saved[NamesKey].get<ParameterNames>();
}

std::string dumpNames(const ParameterNames& names) {
    if (names.empty()) {
        return {};
    }
    nlohmann::json saved;
    saved[NamesKey] = names;
    return saved.dump(-1, ' ', false, nlohmann::json::error_handler_t::strict);
}

void loadRecord(PF_InData* inData, Bytes block, SequenceData& record) {
    auto texts = readTexts(block);
    if (!texts) {
        record.scriptError = CorruptedText;
        return;
    }
    loadScript(inData, std::move(texts->script), record);
    if (!texts->names.empty()) {
        record.paramNames = parseNames(texts->names);
    }
}

/// Writes the saved form of `record` into a new handle; 512 without memory or a lock.
PF_Err makeFlatHandle(SuiteHandler& suites, const SequenceData& record, PF_Handle* out) {
    const auto& handles = suites.get<PF_HandleSuite1>();
    const auto& ansi = suites.get<PF_ANSICallbacksSuite1>();
    const std::string names = dumpNames(record.paramNames);

    FlatHeader header;
    header.scriptSize = static_cast<std::uint32_t>(record.script.size() + 1);
    header.jsonSize = static_cast<std::uint32_t>(names.size() + 1);
    NewHandle block(handles, sizeof header + header.scriptSize + header.jsonSize);
    if (block.address() == nullptr) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    std::memcpy(block.address(), &header, sizeof header);
    char* text = static_cast<char*>(block.address()) + sizeof header;
    ansi.strcpy(text, record.script.c_str());
    ansi.strcpy(text + header.scriptSize, names.c_str());
    *out = block.handOn();
    return PF_Err_NONE;
}

}  // namespace

std::size_t DiskIdHash::operator()(A_long diskId) const noexcept {
    std::uint64_t hash = 14695981039346656037u;
    for (const std::uint8_t byte : std::bit_cast<std::array<std::uint8_t, sizeof diskId>>(diskId)) {
        hash = (hash ^ byte) * 1099511628211u;
    }
    return hash;
}

SequenceData* sequenceData(const PF_InData* inData) {
    if (inData->sequence_data == nullptr) {
        return nullptr;
    }
    auto* result = static_cast<SequenceData*>(*inData->sequence_data);
    TESSAVOY_ASSERT(result == nullptr || !result->flatten, "!result->flatten");
    return result;
}

SequenceAccess::SequenceAccess(const PF_InData* inData) : mInData(inData) {
    using Identity = SuiteIdentity<PF_EffectSequenceDataSuite1>;
    const SPBasicSuite* basic = inData->pica_basicP;
    if (basic == nullptr || basic->AcquireSuite(Identity::name, Identity::version, &mSuite) != 0 || mSuite == nullptr) {
        mSuite = nullptr;
        mRecord = sequenceData(inData);
        return;
    }

    PF_ConstHandle handle = nullptr;
    const auto* suite = static_cast<const PF_EffectSequenceDataSuite1*>(mSuite);
    if (const PF_Err error = suite->PF_GetConstSequenceData(inData->effect_ref, &handle); error != PF_Err_NONE) {
        release();
        throw Exception(error);
    }
    mRecord = handle == nullptr ? nullptr : static_cast<SequenceData*>(const_cast<void*>(*handle));
}

SequenceAccess::~SequenceAccess() {
    release();
}

void SequenceAccess::release() {
    using Identity = SuiteIdentity<PF_EffectSequenceDataSuite1>;
    if (mSuite != nullptr) {
        mInData->pica_basicP->ReleaseSuite(Identity::name, Identity::version);
        mSuite = nullptr;
    }
}

bool hasScriptError(const SequenceData& record) {
    const std::lock_guard lock(scriptErrorMutex());
    return !record.scriptError.empty();
}

std::string scriptErrorOf(const SequenceData& record) {
    const std::lock_guard lock(scriptErrorMutex());
    return record.scriptError;
}

bool recordScriptError(SequenceData& record, std::string text) {
    const std::lock_guard lock(scriptErrorMutex());
    if (!record.scriptError.empty()) {
        return false;
    }
    record.scriptError = std::move(text);
    return true;
}

PF_Err validateScript(SequenceData* sequence, PF_InData* inData, const char* text) {
    if (sequence == nullptr || sequence->flatten) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    loadScript(inData, text == nullptr ? std::string() : std::string(text), *sequence);
    return PF_Err_NONE;
}

PF_Err SequenceSetup(PF_InData* inData, PF_OutData* outData) {
    SuiteHandler suites(inData->pica_basicP);
    NewRecord made(suites.get<PF_HandleSuite1>());
    if (made.record() == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    traceText(*made.record());
    outData->sequence_data = made.handOn();
    return PF_Err_NONE;
}

PF_Err SequenceResetup(PF_InData* inData, PF_OutData* outData) {
    if (inData->sequence_data == nullptr) {
        return PF_Err_NONE;
    }
    SuiteHandler suites(inData->pica_basicP);
    const auto& handles = suites.get<PF_HandleSuite1>();
    const LockedBlock saved(handles, inData->sequence_data);
    if (saved.bytes().empty()) {
        return PF_Err_NONE;
    }

    NewRecord made(handles);
    if (made.record() == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    loadRecord(inData, saved.bytes(), *made.record());
    outData->sequence_data = made.handOn();
    return PF_Err_NONE;
}

PF_Err SequenceGetFlattened(PF_InData* inData, PF_OutData* outData) {
    const SequenceData* record = sequenceData(inData);
    if (record == nullptr) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    SuiteHandler suites(inData->pica_basicP);
    return makeFlatHandle(suites, *record, &outData->sequence_data);
}

PF_Err SequenceFlatten(PF_InData* inData, PF_OutData* outData) {
    SequenceData* record = sequenceData(inData);
    if (record == nullptr) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    SuiteHandler suites(inData->pica_basicP);
    if (const PF_Err error = makeFlatHandle(suites, *record, &outData->sequence_data); error != PF_Err_NONE) {
        return error;
    }
    std::destroy_at(record);
    suites.get<PF_HandleSuite1>().host_dispose_handle(inData->sequence_data);
    return PF_Err_NONE;
}

PF_Err SequenceSetdown(PF_InData* inData, PF_OutData* outData) {
    if (inData->sequence_data == nullptr) {
        return PF_Err_NONE;
    }
    SuiteHandler suites(inData->pica_basicP);
    const auto& handles = suites.get<PF_HandleSuite1>();
    // Read without a lock, which might be refused: the texts must be freed before their block goes.
    auto* block = static_cast<std::byte*>(*inData->sequence_data);
    const std::size_t size = block == nullptr ? 0 : handles.host_get_handle_size(inData->sequence_data);
    if (holdsRecord(Bytes(block, size))) {
        std::destroy_at(reinterpret_cast<SequenceData*>(block));
    }
    handles.host_dispose_handle(inData->sequence_data);
    outData->sequence_data = nullptr;
    return PF_Err_NONE;
}

}  // namespace Tessavoy
