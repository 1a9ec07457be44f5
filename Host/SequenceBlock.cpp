#include "Host/SequenceBlock.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "Host/HostError.h"
#include "Host/LittleEndian.h"

namespace TessavoyHost {
namespace {

constexpr std::uint32_t headerSize = 16;
constexpr const char* namesKey = "paramNames";

void append(std::vector<std::byte>& block, const std::string& text) {
    for (const char c : text)
        block.push_back(static_cast<std::byte>(c));
}

std::string namesText(const std::map<std::int32_t, std::string>& names) {
    if (names.empty())
        return {};
    nlohmann::json object;
    object[namesKey] = names;
    return object.dump();
}

std::string blockStart() {
    return std::string("\1GRID") + std::string(3, '\0');
}

// Reads from the front; nothing where the block ends early.
class BlockReader {
public:
    explicit BlockReader(std::span<const std::byte> block) : mRest(block) {}

    bool begins(const std::string& start) {
        const auto bytes = take(start.size());
        return bytes && std::equal(start.begin(), start.end(), bytes->begin(),
                                   [](char c, std::byte byte) { return static_cast<std::byte>(c) == byte; });
    }

    std::optional<std::uint32_t> number() {
        const auto bytes = take(sizeof(std::uint32_t));
        return bytes ? std::optional(littleEndianAt(*bytes, 0)) : std::nullopt;
    }

    // size: with the closing zero, which must be there.
    std::optional<std::string> text(std::optional<std::uint32_t> size) {
        const auto bytes = size ? take(*size) : std::nullopt;
        if (!bytes || bytes->empty() || bytes->back() != std::byte{0})
            return std::nullopt;
        return std::string(reinterpret_cast<const char*>(bytes->data()));
    }

    bool skip(std::size_t count) { return take(count).has_value(); }

private:
    std::optional<std::span<const std::byte>> take(std::size_t count) {
        if (count > mRest.size())
            return std::nullopt;
        const auto front = mRest.first(count);
        mRest = mRest.subspan(count);
        return front;
    }

    std::span<const std::byte> mRest;
};

std::optional<std::map<std::int32_t, std::string>> namesOf(const std::string& json) {
    if (json.empty())
        return std::map<std::int32_t, std::string>();
    try {
        return nlohmann::json::parse(json).at(namesKey).get<std::map<std::int32_t, std::string>>();
    } catch (const nlohmann::json::exception&) {
        return std::nullopt;
    }
}

}  // namespace

std::vector<std::byte> sequenceBlock(const std::string& script, const std::map<std::int32_t, std::string>& names,
                                     std::uint32_t version) {
    // The module reads the script up to its first zero.
    const std::string text = script.substr(0, script.find('\0'));
    const std::string json = namesText(names);
    std::vector<std::byte> block;
    append(block, blockStart());
    appendLittleEndian(block, headerSize);
    appendLittleEndian(block, version);
    appendLittleEndian(block, static_cast<std::uint32_t>(text.size() + 1));
    appendLittleEndian(block, static_cast<std::uint32_t>(json.size() + 1));
    append(block, text + '\0');
    append(block, json + '\0');
    return block;
}

std::optional<SequenceTexts> readSequenceBlock(std::span<const std::byte> block) {
    BlockReader reader(block);
    if (!reader.begins(blockStart()))
        return std::nullopt;
    const std::uint32_t header = reader.number().value_or(0);
    reader.number();  // the version, which the module looks at
    const std::optional<std::uint32_t> scriptSize = reader.number();
    const std::optional<std::uint32_t> namesSize = reader.number();
    if (header < headerSize || !reader.skip(header - headerSize))
        return std::nullopt;
    const auto script = reader.text(scriptSize);
    const auto json = reader.text(namesSize);
    const auto names = json ? namesOf(*json) : std::nullopt;
    if (!script || !names)
        return std::nullopt;
    return SequenceTexts{*script, *names};
}

std::string scriptIn(std::span<const std::byte> block) {
    auto texts = readSequenceBlock(block);
    if (!texts)
        throw HostError(ExitStatus::Module, "the effect's saved data holds no script");
    return std::move(texts->script);
}

}  // namespace TessavoyHost
