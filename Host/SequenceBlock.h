#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace TessavoyHost {

// The sequence data of a saved project: script text and slot names by disk id, as the module's own flat form has them.
// Little-endian: the byte 1, "GRID", three zero bytes, then four 32-bit numbers (header size 16, version, script size,
// JSON size, each with its closing zero), the script, and the JSON {"paramNames":[[id,"name"],...]}, empty without
// names.
std::vector<std::byte> sequenceBlock(const std::string& script, const std::map<std::int32_t, std::string>& names,
                                     std::uint32_t version);

struct SequenceTexts {
    std::string script;
    std::map<std::int32_t, std::string> names;  // by disk id
};

// The texts of such a block; nothing for bytes that are none.
std::optional<SequenceTexts> readSequenceBlock(std::span<const std::byte> block);

// The script in such a block. Throws HostError(Module) where it is none.
std::string scriptIn(std::span<const std::byte> block);

}  // namespace TessavoyHost
