#include "Host/EffectHost.h"
#include "HostInterface/Effect.h"
#include "Tests/Module/ModuleFixture.h"
#include "Tests/Windows/ExecutableFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <string>
#include <vector>

namespace Tessavoy {

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

// What a Windows has by itself. Everything else would have to be installed beside the module.
TEST(ModuleFile, ImportsWindowsOwnLibrariesAlone) {
    const std::vector<std::string> own = {"gdi32.dll", "kernel32.dll", "msvcrt.dll", "opengl32.dll", "user32.dll"};
    for (std::string name : ExecutableFile(TESSAVOY_MODULE).importedLibraries()) {
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
        EXPECT_THAT(own, testing::Contains(name));
    }
}

TEST(ModuleFile, ExportsTheTwoEntryPoints) {
    EXPECT_THAT(ExecutableFile(TESSAVOY_MODULE).exportedFunctions(),
                UnorderedElementsAre("EffectMain", "PluginDataEntryFunction"));
}

/// One property of the resource, as its bytes stand there.
struct Property {
    std::string vendor, key;
    std::uint32_t index = 0;
    std::string data;
};

std::uint32_t numberIn(const std::string& bytes, std::size_t offset, int size = 4) {
    std::uint32_t number = 0;
    for (int i = 0; i < size; ++i) {
        number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes.at(offset + i))) << 8 * i;
    }
    return number;
}

std::string codeIn(const std::string& bytes, std::size_t offset) {
    const std::string code = bytes.substr(offset, 4);
    return {code.rbegin(), code.rend()};  // a number in little-endian order, so its letters stand reversed
}

class PluginResource : public testing::Test {
protected:
    PluginResource() {
        const auto found = ExecutableFile(TESSAVOY_MODULE).resource("PIPL", 16000);
        if (!found) {
            ADD_FAILURE() << "there is no such resource";
            return;
        }
        const std::string& bytes = *found;
        EXPECT_EQ(numberIn(bytes, 0, 2), 1U);
        EXPECT_EQ(numberIn(bytes, 2), 0U);
        std::size_t offset = 10;
        for (std::uint32_t left = numberIn(bytes, 6); left > 0; --left) {
            const std::uint32_t length = numberIn(bytes, offset + 12);
            properties.push_back({codeIn(bytes, offset), codeIn(bytes, offset + 4), numberIn(bytes, offset + 8),
                                  bytes.substr(offset + 16, length)});
            offset += 16 + (length + 3) / 4 * 4;
        }
        EXPECT_EQ(offset, bytes.size()) << "the properties fill the resource";
    }

    std::string dataOf(const std::string& key) const {
        const auto found =
            std::find_if(properties.begin(), properties.end(), [&](const Property& one) { return one.key == key; });
        return found == properties.end() ? std::string() : found->data;
    }

    std::uint32_t numberOf(const std::string& key) const {
        const std::string data = dataOf(key);
        return data.size() == 4 ? numberIn(data, 0) : 0xFFFFFFFF;
    }

    std::vector<Property> properties;
};

TEST_F(PluginResource, HasTwelvePropertiesOfOneVendor) {
    std::vector<std::string> keys;
    for (const Property& property : properties) {
        EXPECT_EQ(property.vendor, "8BIM");
        EXPECT_EQ(property.index, 0U);
        keys.push_back(property.key);
    }
    EXPECT_THAT(keys, ElementsAre("kind", "name", "catg", "8664", "ePVR", "eSVR", "eVER", "eINF", "eGLO", "eGL2",
                                  "eMNA", "aeFL"));
}

TEST_F(PluginResource, NamesTheModule) {
    EXPECT_EQ(dataOf("kind"), "TKFe");  // 'eFKT' as a number
    EXPECT_EQ(dataOf("name"), "\x08Tessavoy");
    EXPECT_EQ(dataOf("catg"), "\x08Quelvane");
    EXPECT_EQ(dataOf("eMNA"), "\x11Quelvane Tessavoy");
    EXPECT_STREQ(dataOf("8664").c_str(), "EffectMain");
}

TEST_F(PluginResource, TellsItsVersions) {
    EXPECT_EQ(dataOf("ePVR"), std::string("\x02\x00\x00\x00", 4));
    EXPECT_EQ(dataOf("eSVR"), std::string("\x0D\x00\x1B\x00", 4));  // 13 and 27
    EXPECT_EQ(numberOf("eVER"), 626176U);
    EXPECT_EQ(dataOf("eINF"), std::string("\x00\x00", 2));
    EXPECT_EQ(numberOf("aeFL"), 8U);
}

// The application compares them when it loads the module, and complains of a difference.
TEST_F(PluginResource, AgreesWithWhatTheModuleAnswers) {
    const TessavoyHost::EffectHost host(std::filesystem::path(TESSAVOY_MODULE), TessavoyHost::forThisSystem());
    const auto& description = host.description();
    EXPECT_EQ(numberOf("eVER"), description.version);
    EXPECT_EQ(numberOf("eGLO"), static_cast<std::uint32_t>(description.outFlags));
    EXPECT_EQ(numberOf("eGL2"), static_cast<std::uint32_t>(description.outFlags2));
    EXPECT_EQ(numberOf("kind"), static_cast<std::uint32_t>(description.kind));
    EXPECT_EQ(dataOf("name").substr(1), description.name);
    EXPECT_EQ(dataOf("catg").substr(1), description.category);
    EXPECT_EQ(dataOf("eMNA").substr(1), description.matchName);
    EXPECT_EQ(dataOf("8664").c_str(), description.entryPoint);
    EXPECT_EQ(numberIn(dataOf("eSVR"), 0, 2), static_cast<std::uint32_t>(description.apiMajor));
    EXPECT_EQ(numberIn(dataOf("eSVR"), 2, 2), static_cast<std::uint32_t>(description.apiMinor));
}

// The system looks for the name in capitals, whatever the caller writes.
TEST(ModuleFile, ItsResourceIsFoundAsTheApplicationAsksForIt) {
    const HMODULE module = LoadLibraryExA(TESSAVOY_MODULE, nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(module, nullptr);
    EXPECT_NE(FindResourceA(module, MAKEINTRESOURCEA(16000), "PiPL"), nullptr);
    FreeLibrary(module);
}

}  // namespace

}  // namespace Tessavoy
