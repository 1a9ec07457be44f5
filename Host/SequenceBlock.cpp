#include "Host/SequenceBlock.h"

#include <nlohmann/json.hpp>

#include "Host/HostError.h"
#include "Host/LittleEndian.h"

namespace TessavoyHost {
namespace {

constexpr std::uint32_t headerSize = 16;
constexpr std::size_t headerPlace = 8;
constexpr std::size_t scriptSizePlace = 16;

void append(std::vector<std::byte>& block, const std::string& text) {
    for (const char c : text)
        block.push_back(static_cast<std::byte>(c));
}

std::string namesText(const std::map<std::int32_t, std::string>& names) {
    if (names.empty())
        return {};
    nlohmann::json object;
    object["paramNames"] = names;
    return object.dump();
}

}  // namespace

std::vector<std::byte> sequenceBlock(const std::string& script, const std::map<std::int32_t, std::string>& names,
                                     std::uint32_t version) {
    // The module reads the script up to its first zero.
    const std::string text = script.substr(0, script.find('\0'));
    const std::string json = namesText(names);
    std::vector<std::byte> block;
    block.push_back(std::byte{1});
    append(block, std::string("GRID") + std::string(3, '\0'));
    appendLittleEndian(block, headerSize);
    appendLittleEndian(block, version);
    appendLittleEndian(block, static_cast<std::uint32_t>(text.size() + 1));
    appendLittleEndian(block, static_cast<std::uint32_t>(json.size() + 1));
    append(block, text + '\0');
    append(block, json + '\0');
    return block;
}

std::string scriptIn(const std::vector<std::byte>& block) {
    if (block.size() >= headerPlace + headerSize) {
        const std::size_t begin = headerPlace + littleEndianAt(block, headerPlace);
        const std::size_t size = littleEndianAt(block, scriptSizePlace);
        if (size > 0 && begin <= block.size() && size <= block.size() - begin) {
            const auto* text = reinterpret_cast<const char*>(block.data()) + begin;
            return {text, size - 1};
        }
    }
    throw HostError(ExitStatus::Module, "the effect's saved data holds no script");
}

}  // namespace TessavoyHost
