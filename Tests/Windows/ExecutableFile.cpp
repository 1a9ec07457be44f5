#include "Tests/Windows/ExecutableFile.h"

#include <windows.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace Tessavoy {

namespace {

template <class Record>
Record read(std::span<const char> bytes, std::size_t offset) {
    if (offset + sizeof(Record) > bytes.size()) {
        throw std::runtime_error("the file ends early");
    }
    Record record;
    std::memcpy(&record, bytes.data() + offset, sizeof record);
    return record;
}

}  // namespace

ExecutableFile::ExecutableFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    mBytes.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    const auto start = read<IMAGE_DOS_HEADER>(mBytes, 0);
    const auto headersOffset = static_cast<std::size_t>(start.e_lfanew);
    const auto headers = read<IMAGE_NT_HEADERS64>(mBytes, headersOffset);
    if (start.e_magic != IMAGE_DOS_SIGNATURE || headers.Signature != IMAGE_NT_SIGNATURE ||
        headers.OptionalHeader.Magic != IMAGE_NT_OPTIONAL_HDR64_MAGIC) {
        throw std::runtime_error("no 64-bit Windows program");
    }
    const auto& directories = headers.OptionalHeader.DataDirectory;
    mImports = directories[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    mExports = directories[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress;
    mResources = directories[IMAGE_DIRECTORY_ENTRY_RESOURCE].VirtualAddress;
    const std::size_t first =
        headersOffset + offsetof(IMAGE_NT_HEADERS64, OptionalHeader) + headers.FileHeader.SizeOfOptionalHeader;
    for (std::size_t i = 0; i < headers.FileHeader.NumberOfSections; ++i) {
        const auto section = read<IMAGE_SECTION_HEADER>(mBytes, first + i * sizeof(IMAGE_SECTION_HEADER));
        mSections.push_back({section.VirtualAddress, section.SizeOfRawData, section.PointerToRawData});
    }
}

std::span<const char> ExecutableFile::at(std::uint32_t address) const {
    for (const Section& section : mSections) {
        if (address >= section.address && address - section.address < section.size) {
            return std::span(mBytes).subspan(section.offset + (address - section.address));
        }
    }
    throw std::runtime_error("an address outside of the file");
}

template <class Record>
Record ExecutableFile::recordAt(std::uint32_t address) const {
    return read<Record>(at(address), 0);
}

std::string ExecutableFile::textAt(std::uint32_t address) const {
    const auto bytes = at(address);
    return {bytes.data(), strnlen(bytes.data(), bytes.size())};
}

std::vector<std::string> ExecutableFile::importedLibraries() const {
    std::vector<std::string> names;
    constexpr std::uint32_t size = sizeof(IMAGE_IMPORT_DESCRIPTOR);
    for (std::uint32_t address = mImports;; address += size) {
        const auto library = recordAt<IMAGE_IMPORT_DESCRIPTOR>(address);
        if (library.Name == 0) {
            return names;
        }
        names.push_back(textAt(library.Name));
    }
}

std::vector<std::string> ExecutableFile::exportedFunctions() const {
    const auto directory = recordAt<IMAGE_EXPORT_DIRECTORY>(mExports);
    std::vector<std::string> names;
    std::uint32_t address = directory.AddressOfNames;
    for (std::uint32_t left = directory.NumberOfNames; left > 0; --left, address += 4) {
        names.push_back(textAt(recordAt<DWORD>(address)));
    }
    return names;
}

std::optional<std::uint32_t> ExecutableFile::findResource(std::uint32_t directory, std::string_view name,
                                                          std::uint16_t id) const {
    const auto header = recordAt<IMAGE_RESOURCE_DIRECTORY>(directory);
    const std::uint32_t count = header.NumberOfNamedEntries + header.NumberOfIdEntries;
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto entry = recordAt<IMAGE_RESOURCE_DIRECTORY_ENTRY>(
            directory + static_cast<std::uint32_t>(sizeof header + i * sizeof(IMAGE_RESOURCE_DIRECTORY_ENTRY)));
        if (entry.NameIsString == 0) {
            if (name.empty() && entry.Id == id) {
                return entry.OffsetToDirectory;
            }
            continue;
        }
        const std::uint32_t text = mResources + entry.NameOffset;
        std::string found;
        for (std::uint32_t unit = 0; unit < recordAt<WORD>(text); ++unit) {
            found += static_cast<char>(recordAt<WORD>(text + 2 + 2 * unit));
        }
        if (found == name) {
            return entry.OffsetToDirectory;
        }
    }
    return std::nullopt;
}

std::optional<std::string> ExecutableFile::resource(std::string_view type, std::uint16_t id) const {
    const auto ofType = findResource(mResources, type, 0);
    const auto ofId = ofType ? findResource(mResources + *ofType, "", id) : std::nullopt;
    if (!ofId) {
        return std::nullopt;
    }
    const auto language = recordAt<IMAGE_RESOURCE_DIRECTORY_ENTRY>(
        mResources + *ofId + static_cast<std::uint32_t>(sizeof(IMAGE_RESOURCE_DIRECTORY)));
    const auto data = recordAt<IMAGE_RESOURCE_DATA_ENTRY>(mResources + language.OffsetToData);
    const auto bytes = at(data.OffsetToData).first(data.Size);
    return std::string(bytes.begin(), bytes.end());
}

}  // namespace Tessavoy
