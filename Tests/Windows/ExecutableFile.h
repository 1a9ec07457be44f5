#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Tessavoy {

/// A Windows program or library as its file holds it (Microsoft's "PE Format"), read without loading it. Throws
/// std::runtime_error when the file is none.
class ExecutableFile {
public:
    explicit ExecutableFile(const std::filesystem::path& file);

    /// Names of the libraries whose functions it imports, as they are written there.
    std::vector<std::string> importedLibraries() const;

    /// Names of the functions that it exports.
    std::vector<std::string> exportedFunctions() const;

    /// The bytes of a resource in its only language. Type names are kept in capitals.
    std::optional<std::string> resource(std::string_view type, std::uint16_t id) const;

private:
    struct Section {
        std::uint32_t address;
        std::uint32_t size;
        std::uint32_t offset;
    };

    /// The file's bytes from an address in memory on.
    std::span<const char> at(std::uint32_t address) const;

    template <class Record>
    Record recordAt(std::uint32_t address) const;

    std::string textAt(std::uint32_t address) const;

    /// The offset that a directory of resources has for a name or a number.
    std::optional<std::uint32_t> findResource(std::uint32_t directory, std::string_view name, std::uint16_t id) const;

    std::vector<char> mBytes;
    std::vector<Section> mSections;
    std::uint32_t mImports = 0;
    std::uint32_t mExports = 0;
    std::uint32_t mResources = 0;
};

}  // namespace Tessavoy
