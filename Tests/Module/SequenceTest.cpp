#include <nlohmann/json.hpp>

#include <cstring>

#include "Host/CommandContext.h"
#include "Host/HostError.h"
#include "Host/SequenceBlock.h"
#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

using testing::IsEmpty;

using Bytes = std::vector<std::byte>;

constexpr std::uint32_t currentVersion = 626176;  // 1.3.1
constexpr std::uint32_t firstWithNames = 624128;  // 1.3.0

// The parts of a saved form. Texts stand with their closing zeros.
struct Saved {
    std::uint32_t headerSize, version;
    std::string script, names;
};

std::uint32_t numberAt(const Bytes& flat, std::size_t offset) {
    std::uint32_t number = 0;
    for (int byte = 0; byte < 4; ++byte)
        number |= static_cast<std::uint32_t>(flat.at(offset + byte)) << 8 * byte;
    return number;
}

std::string textAt(const Bytes& flat, std::size_t offset, std::size_t size) {
    return {reinterpret_cast<const char*>(flat.data()) + offset, size};
}

Saved read(const Bytes& flat) {
    EXPECT_EQ(textAt(flat, 0, 8), std::string("\1GRID\0\0\0", 8));
    const std::uint32_t scriptSize = numberAt(flat, 16), namesSize = numberAt(flat, 20);
    EXPECT_EQ(flat.size(), 24 + scriptSize + namesSize);
    return {numberAt(flat, 8), numberAt(flat, 12), textAt(flat, 24, scriptSize),
            textAt(flat, 24 + scriptSize, namesSize)};
}

std::string withZero(std::string text) {
    return text + '\0';
}

// Sequence data handles pass between host and module as in the application.
class ModuleSequence : public ModuleFixture {
protected:
    ModuleSequence() { host(); }

    // One command on sequence data; what the module hands over stays with the host. The data is null when the module
    // gave it up.
    CommandResult run(PF_Cmd command, PF_Handle data) {
        CommandSetting setting;
        setting.sequenceData = data;
        CommandContext context(host(), nullptr, command, setting);
        context.run();
        if (context.out.sequence_data != data)
            context.adopt(context.out.sequence_data);
        CommandResult result = context.finish();
        EXPECT_THAT(result.broken, IsEmpty());
        return result;
    }

    PF_Handle setUp() {
        const CommandResult result = run(PF_Cmd_SEQUENCE_SETUP, nullptr);
        EXPECT_EQ(result.error, PF_Err_NONE);
        return result.out.sequence_data;
    }

    void setDown(PF_Handle data) {
        const CommandResult result = run(PF_Cmd_SEQUENCE_SETDOWN, data);
        EXPECT_EQ(result.error, PF_Err_NONE);
        EXPECT_EQ(result.out.sequence_data, nullptr);
        EXPECT_FALSE(host().services().handles.alive(data));
    }

    // A block of the host's, as if read from a project.
    PF_Handle block(const Bytes& bytes) {
        const PF_Handle handle = host().services().handles.make(bytes.size());
        host().ledger().lend(Loan::Handle, Ledger::keyOf(handle), "saved");
        if (!bytes.empty())
            std::memcpy(*handle, bytes.data(), bytes.size());
        return handle;
    }

    void dispose(PF_Handle handle) {
        host().ledger().giveBack(Loan::Handle, Ledger::keyOf(handle));
        EXPECT_TRUE(host().services().handles.dispose(handle));
    }

    Bytes bytesIn(PF_Handle handle) {
        const auto first = static_cast<const std::byte*>(*handle);
        return {first, first + host().services().handles.size(handle)};
    }

    // The saved form of the data, through the command that leaves it as it is.
    Bytes copyOf(PF_Handle data) {
        const CommandResult result = run(PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, data);
        EXPECT_EQ(result.error, PF_Err_NONE);
        const PF_Handle copy = result.out.sequence_data;
        EXPECT_NE(copy, data);
        const Bytes flat = bytesIn(copy);
        dispose(copy);
        return flat;
    }

    // What the module makes of a saved form, in the saved form again.
    Saved reload(const Bytes& flat) {
        const PF_Handle saved = block(flat);
        const CommandResult resetup = run(PF_Cmd_SEQUENCE_RESETUP, saved);
        EXPECT_EQ(resetup.error, PF_Err_NONE);
        const PF_Handle data = resetup.out.sequence_data;
        EXPECT_NE(data, saved);
        EXPECT_EQ(bytesIn(saved), flat) << "the host's block was changed";
        dispose(saved);
        const Saved result = read(copyOf(data));
        setDown(data);
        return result;
    }

    PF_Err errorOfReload(const Bytes& flat) {
        const PF_Handle saved = block(flat);
        const CommandResult resetup = run(PF_Cmd_SEQUENCE_RESETUP, saved);
        EXPECT_EQ(resetup.out.sequence_data, saved);
        dispose(saved);
        return resetup.error;
    }
};

// A saved form with any JSON text, also such as no host writes.
Bytes formWithNames(const std::string& json) {
    Bytes flat = sequenceBlock("", {}, currentVersion);
    flat.pop_back();
    for (const char c : json + '\0')
        flat.push_back(static_cast<std::byte>(c));
    const auto size = static_cast<std::uint32_t>(json.size() + 1);
    std::memcpy(flat.data() + 20, &size, sizeof size);
    return flat;
}

TEST_F(ModuleSequence, BeginsEmpty) {
    const PF_Handle data = setUp();
    EXPECT_EQ(*static_cast<const char*>(*data), 0) << "the form for use begins with 0";
    EXPECT_EQ(host().services().handles.locks(data), 0);
    const Saved saved = read(copyOf(data));
    EXPECT_EQ(saved.headerSize, 16u);
    EXPECT_EQ(saved.version, currentVersion);
    EXPECT_EQ(saved.script, withZero(""));
    EXPECT_EQ(saved.names, withZero(""));
    setDown(data);
}

TEST_F(ModuleSequence, FlatteningReplacesTheRecordBySavedBytes) {
    const PF_Handle data = setUp();
    const Bytes copy = copyOf(data);
    const CommandResult flatten = run(PF_Cmd_SEQUENCE_FLATTEN, data);
    EXPECT_EQ(flatten.error, PF_Err_NONE);
    const PF_Handle flat = flatten.out.sequence_data;
    ASSERT_NE(flat, data);
    EXPECT_FALSE(host().services().handles.alive(data));
    EXPECT_EQ(bytesIn(flat), copy);
    setDown(flat);
}

TEST_F(ModuleSequence, FlattenedAndReloadedIsTheSameRecord) {
    const std::map<std::int32_t, std::string> names = {
        {12, "Speed"}, {4711, "say \"when\" \\ \n"}, {-5, "Größe"}, {0, ""}};
    const Bytes flat = sequenceBlock("x = x + 1\ny = 2 -- é", names, currentVersion);
    const Saved saved = reload(flat);
    EXPECT_EQ(saved.script, withZero("x = x + 1\ny = 2 -- é"));
    const auto json = nlohmann::json::parse(saved.names.substr(0, saved.names.size() - 1));
    EXPECT_EQ(json.size(), 1u);
    EXPECT_EQ((json.at("paramNames").get<std::map<std::int32_t, std::string>>()), names);
}

TEST_F(ModuleSequence, WritesNamesWithoutSpacesAndNotInAscii) {
    const Saved saved = reload(sequenceBlock("", {{12, "Größ\"e\""}}, currentVersion));
    EXPECT_EQ(saved.names, withZero("{\"paramNames\":[[12,\"Größ\\\"e\\\"\"]]}"));
}

TEST_F(ModuleSequence, LoadsNamesInAnyOrderAndWithOtherKeys) {
    const Saved saved =
        reload(formWithNames("{ \"other\": 1, \"paramNames\" : [ [7, \"b\"], [3, \"a\"], [7, \"c\"] ] }"));
    const auto json = nlohmann::json::parse(saved.names.substr(0, saved.names.size() - 1));
    const auto names = json.at("paramNames").get<std::map<std::int32_t, std::string>>();
    EXPECT_EQ(names.size(), 2u);
    EXPECT_EQ(names.at(3), "a");
}

TEST_F(ModuleSequence, LoadsTheScriptAloneFromTheOlderForm) {
    // Header, then the script, where today's form has its sizes.
    Bytes flat = sequenceBlock("", {}, firstWithNames - 1);
    flat.resize(24);
    for (const char c : withZero("z = 3"))
        flat.push_back(static_cast<std::byte>(c));
    const Saved saved = reload(flat);
    EXPECT_EQ(saved.version, currentVersion);
    EXPECT_EQ(saved.script, withZero("z = 3"));
    EXPECT_EQ(saved.names, withZero(""));
}

TEST_F(ModuleSequence, LoadsNamesFromTheFirstVersionThatHasThem) {
    EXPECT_NE(reload(sequenceBlock("z = 3", {{1, "a"}}, firstWithNames)).names, withZero(""));
    EXPECT_EQ(reload(sequenceBlock("z = 3", {{1, "a"}}, firstWithNames - 1)).names, withZero(""));
}

TEST_F(ModuleSequence, EndsAScriptAtItsFirstZero) {
    Bytes flat = sequenceBlock("a = 1 b = 2", {}, currentVersion);
    flat[24 + 5] = std::byte{0};
    EXPECT_EQ(reload(flat).script, withZero("a = 1"));
}

TEST_F(ModuleSequence, FollowsALargerHeader) {
    Bytes flat = sequenceBlock("z = 3", {{1, "a"}}, currentVersion);
    flat[8] = std::byte{20};
    flat.insert(flat.begin() + 24, 4, std::byte{0xEE});
    const Saved saved = reload(flat);
    EXPECT_EQ(saved.script, withZero("z = 3"));
    EXPECT_NE(saved.names, withZero(""));
    EXPECT_EQ(saved.headerSize, 16u);
}

TEST_F(ModuleSequence, OfADamagedBlockIsEmptyAndNoError) {
    const Bytes good = sequenceBlock("z = 3", {{1, "a"}}, currentVersion);
    const auto with = [&](std::size_t offset, int byte) {
        Bytes bytes = good;
        bytes.at(offset) = static_cast<std::byte>(byte);
        return bytes;
    };
    Bytes versionless = good;
    std::fill_n(versionless.begin() + 12, 4, std::byte{0});
    Bytes rubbish(100, std::byte{0xDB});
    const std::vector<Bytes> damaged = {with(1, 'g'),
                                        with(4, 'd'),
                                        with(0, 0),
                                        with(0, 2),
                                        with(8, 11),
                                        with(8, 255),
                                        with(16, 255),
                                        with(19, 255),
                                        versionless,
                                        rubbish,
                                        Bytes(1, std::byte{1}),
                                        Bytes(good.begin(), good.begin() + 15),
                                        Bytes(good.begin(), good.begin() + 24),
                                        Bytes(good.begin(), good.end() - 1)};
    for (std::size_t index = 0; index < damaged.size(); ++index) {
        SCOPED_TRACE(index);
        const Saved saved = reload(damaged[index]);
        EXPECT_EQ(saved.script, withZero(""));
        EXPECT_EQ(saved.names, withZero(""));
    }
}

TEST_F(ModuleSequence, OfADamagedBlockRendersAllTheSame) {
    const auto instance = instanceOf(fourSquaresScene());
    instance->resetup(Bytes(40, std::byte{0xDB}));
    const FrameResult result = instance->renderFrame({});
    expectGood(result);
    expectPicture(result.output, fourSquares());
}

TEST_F(ModuleSequence, WithNamesThatAreNoJsonIsAnError) {
    for (const char* json : {"{", "[1,2]", "{}", "{\"paramNames\":7}", "{\"paramNames\":[[1,2]]}", "// none\n{}",
                             "{\"paramNames\":[[1,\"\xFF\"]]}"}) {
        SCOPED_TRACE(json);
        EXPECT_EQ(errorOfReload(formWithNames(json)), PF_Err_OUT_OF_MEMORY);
    }
}

TEST_F(ModuleSequence, WithoutAHandleDoesNothingOrSaysSo) {
    EXPECT_EQ(run(PF_Cmd_SEQUENCE_RESETUP, nullptr).error, PF_Err_NONE);
    EXPECT_EQ(run(PF_Cmd_SEQUENCE_SETDOWN, nullptr).error, PF_Err_NONE);
    EXPECT_EQ(run(PF_Cmd_SEQUENCE_FLATTEN, nullptr).error, PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(run(PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, nullptr).error, PF_Err_INTERNAL_STRUCT_DAMAGED);
    const PF_Handle empty = block({});
    const CommandResult resetup = run(PF_Cmd_SEQUENCE_RESETUP, empty);
    EXPECT_EQ(resetup.error, PF_Err_NONE);
    EXPECT_EQ(resetup.out.sequence_data, empty);
    dispose(empty);
}

TEST_F(ModuleSequence, WithoutMemorySaysSoAndKeepsItsRecord) {
    Faults& faults = host().faults();
    for (const char* call : {"host_new_handle", "host_lock_handle"}) {
        faults.failNth(call, 1, PF_Err_OUT_OF_MEMORY);
        const CommandResult failed = run(PF_Cmd_SEQUENCE_SETUP, nullptr);
        EXPECT_EQ(failed.error, PF_Err_OUT_OF_MEMORY) << call;
        EXPECT_EQ(failed.out.sequence_data, nullptr);
        faults.clear();
    }
    const PF_Handle saved = block(sequenceBlock("z = 3", {{1, "a"}}, currentVersion));
    faults.failNth("host_new_handle", 1, PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(run(PF_Cmd_SEQUENCE_RESETUP, saved).error, PF_Err_OUT_OF_MEMORY);
    faults.clear();
    const PF_Handle data = run(PF_Cmd_SEQUENCE_RESETUP, saved).out.sequence_data;
    dispose(saved);
    for (const PF_Cmd command : {PF_Cmd_SEQUENCE_FLATTEN, PF_Cmd_GET_FLATTENED_SEQUENCE_DATA}) {
        faults.failNth("host_new_handle", 1, PF_Err_OUT_OF_MEMORY);
        const CommandResult failed = run(command, data);
        EXPECT_EQ(failed.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
        EXPECT_EQ(failed.out.sequence_data, data);
        faults.clear();
        EXPECT_EQ(read(copyOf(data)).script, withZero("z = 3"));
    }
    setDown(data);
}

TEST_F(ModuleSequence, WithoutSuitesSaysSo) {
    const PF_Handle data = setUp();
    const PF_Handle saved = block(sequenceBlock("", {}, currentVersion));
    host().faults().removeSuite("PF Handle Suite", 2);
    EXPECT_EQ(run(PF_Cmd_SEQUENCE_SETUP, nullptr).error, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(run(PF_Cmd_SEQUENCE_RESETUP, saved).error, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(run(PF_Cmd_SEQUENCE_FLATTEN, data).error, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(run(PF_Cmd_SEQUENCE_SETDOWN, data).error, PF_Err_BAD_CALLBACK_PARAM);
    host().faults().clear();
    host().faults().removeSuite("PF ANSI Suite", 1);
    EXPECT_EQ(run(PF_Cmd_SEQUENCE_FLATTEN, data).error, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(run(PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, data).error, PF_Err_BAD_CALLBACK_PARAM);
    host().faults().clear();
    dispose(saved);
    setDown(data);
}

TEST_F(ModuleSequence, OfAnInstanceIsWhatTheProjectHolds) {
    ModuleScene scene = fourSquaresScene();
    scene.project.slotNames = {{77, "Amount"}};
    const auto instance = instanceOf(scene);
    EXPECT_EQ(instance->flattenedSequenceData(), sequenceBlock("", {{77, "Amount"}}, currentVersion));
    expectPicture(instance->renderFrame({}).output, fourSquares());
    EXPECT_EQ(instance->flattenedSequenceData(), sequenceBlock("", {{77, "Amount"}}, currentVersion));
}

TEST_F(ModuleSequence, MayBeSavedAndLoadedBetweenFrames) {
    const auto instance = instanceOf(fourSquaresScene());
    for (int round = 0; round < 3; ++round) {
        instance->resetup(instance->flattenedSequenceData());
        expectPicture(instance->renderFrame({}).output, fourSquares());
    }
}

TEST(ModuleSequenceOldHost, IsReadWithoutTheSequenceDataSuite) {
    const QuietOutput quiet;
    HostOptions options;
    options.withSequenceDataSuite = false;
    EffectHost host(std::filesystem::path(TESSAVOY_MODULE), forThisSystem(options));
    const FrameResult result = host.createInstance(fourSquaresScene().project)->renderFrame({});
    expectGood(result);
    expectPicture(result.output, fourSquares());
}

}  // namespace
}  // namespace TessavoyHost
