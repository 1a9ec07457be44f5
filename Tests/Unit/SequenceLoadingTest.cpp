#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Source/Script/ScriptCheck.h"
#include "Source/Sequence.h"
#include "Tests/Support/FakeHandleHost.h"

namespace Tessavoy {
namespace {

constexpr const char* Corrupted = "Failed to load Lua script: data corrupted";

/// A saved form as a test wants it, field by field.
struct SavedForm {
    std::uint8_t flatten = 1;
    std::string magic = "GRID";
    std::uint32_t headerSize = 16;
    std::uint32_t version = 626176;
    std::uint32_t scriptSize = 0;
    std::uint32_t namesSize = 0;
    std::string texts;

    std::vector<std::byte> bytes() const {
        std::string text(1, static_cast<char>(flatten));
        text += magic + std::string(3, '\0');
        for (const std::uint32_t number : {headerSize, version, scriptSize, namesSize}) {
            for (int shift = 0; shift < 32; shift += 8) {
                text += static_cast<char>(number >> shift & 255u);
            }
        }
        text.resize(8 + headerSize % 64);  // a header that isn't of 16 bytes cuts or pads its fields
        text += texts;
        const auto* first = reinterpret_cast<const std::byte*>(text.data());
        return {first, first + text.size()};
    }
};

/// The saved form that this version writes for a script and its names in JSON.
SavedForm savedForm(const std::string& script, const std::string& json) {
    SavedForm form;
    form.scriptSize = static_cast<std::uint32_t>(script.size() + 1);
    form.namesSize = static_cast<std::uint32_t>(json.size() + 1);
    form.texts = script + '\0' + json + '\0';
    return form;
}

/// What loading a block came to.
struct Loaded {
    std::string script, scriptError;
    ParameterNames names;
};

class SequenceLoading : public ::testing::Test {
protected:
    /// Loads the block as the host's saved data. Everything is freed again, also when an exception passes.
    Loaded load(const std::vector<std::byte>& block) {
        host.inData.sequence_data = host.newHandle(block);
        host.outData.sequence_data = nullptr;
        Loaded loaded;
        try {
            EXPECT_EQ(SequenceResetup(&host.inData, &host.outData), PF_Err_NONE);
        } catch (...) {
            EXPECT_EQ(host.outData.sequence_data, nullptr);
            EXPECT_EQ(host.liveHandles(), 1u);
            host.dispose(host.inData.sequence_data);
            throw;
        }
        EXPECT_EQ(host.bytesOf(host.inData.sequence_data), block) << "the host's block was written to";
        host.dispose(host.inData.sequence_data);
        host.inData.sequence_data = host.outData.sequence_data;
        if (const SequenceData* record = sequenceData(&host.inData)) {
            loaded = {record->script, record->scriptError, record->paramNames};
        }
        EXPECT_EQ(SequenceSetdown(&host.inData, &host.outData), PF_Err_NONE);
        EXPECT_EQ(host.liveHandles(), 0u);
        return loaded;
    }

    Loaded load(const SavedForm& form) { return load(form.bytes()); }

    void expectCorrupted(const SavedForm& form, const char* what) {
        const Loaded loaded = load(form);
        EXPECT_EQ(loaded.scriptError, Corrupted) << what;
        EXPECT_EQ(loaded.script, "") << what;
        EXPECT_TRUE(loaded.names.empty()) << what;
    }

    FakeHandleHost host;
};

TEST_F(SequenceLoading, ThisVersionsFormGivesScriptAndNames) {
    const Loaded loaded = load(savedForm("x = 1", R"({"paramNames":[[12,"Speed"],[-3,"Turn"]]})"));
    EXPECT_EQ(loaded.script, "x = 1");
    EXPECT_EQ(loaded.scriptError, compileErrorOf(&host.inData, "x = 1"));
    EXPECT_EQ(loaded.names, (ParameterNames{{12, "Speed"}, {-3, "Turn"}}));
}

TEST_F(SequenceLoading, OrderOfTheNamesDoesNotMatter) {
    const Loaded loaded = load(savedForm("", R"({"paramNames":[[-3,"Turn"],[12,"Speed"]]})"));
    EXPECT_EQ(loaded.names, (ParameterNames{{12, "Speed"}, {-3, "Turn"}}));
}

TEST_F(SequenceLoading, EmptyNamesAreNotParsed) {
    const Loaded loaded = load(savedForm("x = 1", ""));
    EXPECT_EQ(loaded.script, "x = 1");
    EXPECT_TRUE(loaded.names.empty());
}

TEST_F(SequenceLoading, WrongMarksAndNumbersAreCorruption) {
    const SavedForm good = savedForm("x = 1", "");
    SavedForm form = good;
    form.flatten = 0;
    expectCorrupted(form, "first byte 0");
    form.flatten = 2;
    expectCorrupted(form, "first byte 2");
    for (const char* magic : {"grid", "GRIT", "XRID", "\0\0\0\0"}) {
        form = good;
        form.magic = std::string(magic, 4);
        expectCorrupted(form, magic);
    }
    form = good;
    form.headerSize = 11;
    expectCorrupted(form, "header size 11");
    for (const std::uint32_t version : {0u, 524287u, 0x03f80000u & ~(7u << 19)}) {
        form = good;
        form.version = version;
        expectCorrupted(form, "major version 0");
    }
}

TEST_F(SequenceLoading, MajorVersionsCountTheirHighBitsToo) {
    SavedForm form = savedForm("x = 1", R"({"paramNames":[[1,"n"]]})");
    form.version = 1u << 26;  // major version 8
    EXPECT_EQ(load(form).names.size(), 1u);
}

TEST_F(SequenceLoading, OlderFormHasItsScriptRightAfterItsHeader) {
    for (const std::uint32_t version : {524288u, 622592u, 624127u}) {
        SavedForm form;
        form.headerSize = 12;
        form.version = version;
        form.scriptSize = 0xffffffffu;
        form.texts = std::string("z = 3\0{not json", 15);
        const Loaded loaded = load(form);
        EXPECT_EQ(loaded.script, "z = 3") << version;
        EXPECT_TRUE(loaded.names.empty()) << version;
        EXPECT_EQ(loaded.scriptError, compileErrorOf(&host.inData, "z = 3")) << version;
    }
}

TEST_F(SequenceLoading, OlderFormMayBeAsShortAsItsScript) {
    SavedForm form;
    form.headerSize = 12;
    form.version = 622592;
    form.texts = std::string(1, '\0');
    const Loaded loaded = load(form);
    EXPECT_EQ(loaded.script, "");
    EXPECT_EQ(loaded.scriptError, "");
}

TEST_F(SequenceLoading, NamesBeginWithVersion624128) {
    SavedForm form = savedForm("", R"({"paramNames":[[1,"n"]]})");
    form.version = 624128;
    EXPECT_EQ(load(form).names.size(), 1u);
    form.version = 624127;
    EXPECT_TRUE(load(form).names.empty());
}

TEST_F(SequenceLoading, HeaderSizeSaysWhereTheScriptStands) {
    for (const std::uint32_t headerSize : {12u, 17u, 20u, 40u}) {
        SavedForm form = savedForm("x = 1", R"({"paramNames":[[1,"n"]]})");
        form.headerSize = headerSize;
        const Loaded loaded = load(form);
        EXPECT_EQ(loaded.script, "x = 1") << headerSize;
        EXPECT_EQ(loaded.names.size(), 1u) << headerSize;
    }
}

TEST_F(SequenceLoading, SizesBeyondTheBlockAreCorruption) {
    const SavedForm good = savedForm("x = 1", "");
    for (const std::uint32_t size : {8u, 100u, 0x7fffffffu, 0xfffffff0u, 0xffffffffu}) {
        SavedForm form = good;
        form.scriptSize = size;
        expectCorrupted(form, "script size");
    }
    for (const std::uint32_t size : {0xffffffc0u, 0x80000010u}) {
        SavedForm form = good;
        form.headerSize = size;
        expectCorrupted(form, "header size");
    }
}

TEST_F(SequenceLoading, TextsThatDoNotEndInsideTheBlockAreCorruption) {
    SavedForm form = savedForm("x = 1", "");
    form.texts = "x = 1";
    expectCorrupted(form, "script without an end");
    form = savedForm("x = 1", R"({"paramNames":[]})");
    form.texts.pop_back();
    expectCorrupted(form, "names without an end");
}

TEST_F(SequenceLoading, NamesThatAreNoJsonOrOfAnotherShapeThrow) {
    const char* const bad[] = {"x",
                               "[]",
                               "{}",
                               "7",
                               "{\"paramNames\":",
                               "{\"paramNames\":5}",
                               "{\"paramNames\":{\"1\":\"n\"}}",
                               "{\"paramNames\":[1]}",
                               "{\"paramNames\":[[1]]}",
                               "{\"paramNames\":[[\"1\",\"n\"]]}",
                               "{\"paramNames\":[[1,2]]}",
                               "{\"paramNames\":[]} x",
                               "/* n */ {\"paramNames\":[]}",
                               "{\"paramNames\":[[1,\"\xff\"]]}"};
    for (const char* json : bad) {
        EXPECT_THROW(load(savedForm("x = 1", json)), std::exception) << json;
    }
}

TEST_F(SequenceLoading, DeeplyNestedNamesDoNotExhaustTheStack) {
    EXPECT_THROW(load(savedForm("", "{\"paramNames\":" + std::string(1000000, '['))), std::exception);
}

TEST_F(SequenceLoading, EveryTruncationIsCorruption) {
    const auto whole = savedForm("x = 1", R"({"paramNames":[[12,"Speed"]]})").bytes();
    for (std::size_t size = 1; size < whole.size(); ++size) {
        const Loaded loaded = load({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
        EXPECT_EQ(loaded.scriptError, Corrupted) << size;
        EXPECT_EQ(loaded.script, "") << size;
        EXPECT_TRUE(loaded.names.empty()) << size;
    }
}

TEST_F(SequenceLoading, EveryFlippedBitLoadsOrFailsWithinItsBytes) {
    for (const SavedForm& form : {savedForm("x = 1", R"({"paramNames":[[12,"Speed"]]})"), savedForm("", "")}) {
        const auto whole = form.bytes();
        for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
            auto hostile = whole;
            hostile[bit / 8] ^= static_cast<std::byte>(1 << bit % 8);
            try {
                const Loaded loaded = load(hostile);
                EXPECT_LE(loaded.script.size(), whole.size()) << bit;
            } catch (const std::exception&) {
                EXPECT_GE(bit, 8u * 8u) << "only sizes and texts may lead to JSON that isn't good";
            }
        }
    }
}

TEST_F(SequenceLoading, BlocksOfRubbishAreCorruption) {
    std::uint32_t state = 1;
    for (std::size_t size = 1; size < 400; ++size) {
        std::vector<std::byte> block(size);
        for (std::byte& one : block) {
            state = state * 1664525u + 1013904223u;
            one = static_cast<std::byte>(state >> 24);
        }
        EXPECT_EQ(load(block).scriptError, Corrupted) << size;
    }
}

}  // namespace
}  // namespace Tessavoy
