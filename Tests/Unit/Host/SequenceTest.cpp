#include "Host/HostError.h"
#include "Host/SequenceBlock.h"
#include "Host/Utf16.h"
#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

using FakeEffect::Acquired;

using HostSequence = HostFixture;

std::string textOf(const std::vector<std::byte>& bytes) {
    std::string text;
    for (const std::byte byte : bytes)
        text.push_back(static_cast<char>(byte));
    return text;
}

// Sizes count the closing zeros: "x=1" takes 4 bytes, the names 30.
TEST(HostSequenceBlock, HasHeaderScriptAndNames) {
    const std::string block = textOf(sequenceBlock("x=1", {{300, "a\"b"}}, 626176));
    const std::string expected = std::string("\x01GRID\0\0\0", 8) + std::string("\x10\0\0\0", 4) +
                                 std::string("\0\x8E\x09\0", 4) + std::string("\x04\0\0\0", 4) +
                                 std::string("\x1E\0\0\0", 4) + std::string("x=1\0", 4) +
                                 std::string("{\"paramNames\":[[300,\"a\\\"b\"]]}\0", 30);
    EXPECT_EQ(block, expected);
}

TEST(HostSequenceBlock, HasAnEmptyTextWithoutNames) {
    const std::string block = textOf(sequenceBlock("", {}, 626176));
    EXPECT_EQ(block.size(), 26u);
    EXPECT_EQ(block[16], 1);
    EXPECT_EQ(block[20], 1);
    EXPECT_EQ(block.substr(24), std::string(2, '\0'));
}

TEST_F(HostSequence, IsSetUpEmptyWithoutScriptAndNames) {
    renderWith(FakeProject::project(), [](PF_InData* in) {
        EXPECT_EQ(in->utils->host_get_handle_size(in->sequence_data), 1u);
        const Acquired<PF_EffectSequenceDataSuite1> suite(in);
        PF_ConstHandle data = nullptr;
        EXPECT_EQ(suite->PF_GetConstSequenceData(in->effect_ref, &data), 0);
        EXPECT_EQ(static_cast<const void*>(data), static_cast<const void*>(in->sequence_data));
    });
}

TEST_F(HostSequence, TakesTheProjectsScriptAndNamesAsAProjectLoadDoes) {
    Project project = FakeProject::project();
    project.script = "x=1";
    project.slotNames[300] = "amount";
    std::string expected = textOf(sequenceBlock("x=1", {{300, "amount"}}, FakeEffect::version));
    expected[0] = 0;  // the fake effect's data is the flat form with this byte cleared
    EffectHost host(FakeEffect::entryPoints());
    {
        const auto instance = host.createInstance(project);
        std::string seen;
        duringRender([&](PF_InData* in) {
            seen = FakeEffect::sequenceBytes(in->sequence_data, in->utils->host_get_handle_size(in->sequence_data));
        });
        EXPECT_THAT(instance->renderFrame({}).broken, testing::IsEmpty());
        EXPECT_EQ(seen, expected);
        EXPECT_EQ(textOf(instance->flattenedSequenceData()).substr(1), expected.substr(1));
        EXPECT_EQ(host.ledger().count(Loan::Handle), 4);  // with the sequence data and the value of the data parameter
    }
    EXPECT_EQ(host.ledger().count(Loan::Handle), 2);
    EXPECT_THAT(host.broken(), testing::IsEmpty());
}

TEST_F(HostSequence, IsReplacedByASavedForm) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    const auto flat = sequenceBlock("y=2", {}, FakeEffect::version);
    instance->resetup(flat);
    EXPECT_EQ(instance->flattenedSequenceData(), flat);
    EXPECT_THAT(host.broken(), testing::IsEmpty());
}

TEST_F(HostSequence, IsCopiedForRendersOnlyWhenTheModuleChangesIt) {
    for (const bool changes : {false, true}) {
        FakeEffect::hooks() = {};
        if (changes)
            FakeEffect::hooks().outFlags2 |= PF_OutFlag2_MUTABLE_RENDER_SEQUENCE_DATA_SLOWER;
        EffectHost host(FakeEffect::entryPoints());
        const auto instance = host.createInstance(FakeProject::project());
        PF_Handle inPanel = nullptr, first = nullptr, second = nullptr;
        FakeEffect::hooks().userChangedParam = [&](PF_InData* in, PF_OutData*, PF_ParamDef**, void*) {
            inPanel = in->sequence_data;
            return PF_Err{0};
        };
        duringRender([&](PF_InData* in) { second = std::exchange(first, in->sequence_data); });
        instance->renderFrame({});
        instance->renderFrame({});
        EXPECT_EQ(first, second);
        instance->command(PF_Cmd_USER_CHANGED_PARAM, 0);
        EXPECT_EQ(inPanel == first, !changes);
    }
}

// What a module notes in a copy concerns later frames only as long as the copy is used.
TEST_F(HostSequence, IsMadeAfreshAfterAMessageWhereThatIsWanted) {
    FakeEffect::hooks().outFlags2 |= PF_OutFlag2_MUTABLE_RENDER_SEQUENCE_DATA_SLOWER;
    Project project = FakeProject::project();
    project.script = "x=1";
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(project);
    std::vector<char> seen;
    FakeEffect::hooks().render = [&](PF_InData* in, PF_OutData* out, PF_SmartRenderExtra* extra) {
        char& mark = static_cast<char*>(*in->sequence_data)[1];
        seen.push_back(mark);
        mark = 'm';
        out->return_msg[0] = 'm';
        return FakeEffect::usualRender(in, extra);
    };
    FrameRequest request;
    request.renewAfterMessage = true;
    instance->renderFrame(request);
    instance->renderFrame(request);
    EXPECT_THAT(seen, testing::ElementsAre('G', 'G')) << "the first letter of the saved form";
    instance->renderFrame({});
    instance->renderFrame({});
    EXPECT_THAT(seen, testing::ElementsAre('G', 'G', 'G', 'm'));
    EXPECT_THAT(host.broken(), testing::IsEmpty());
}

TEST_F(HostSequence, FailureAtLoadKeepsNothing) {
    EffectHost host(FakeEffect::entryPoints());
    Project project = FakeProject::project();
    project.script = "x=1";
    host.faults().failNth("host_new_handle", 3, 4);  // the copy of the data default, the set-up, then the load
    EXPECT_THROW(host.createInstance(project), HostError);
    EXPECT_EQ(host.ledger().count(Loan::Handle), 2);
}

TEST(HostUtf16, GoesThereAndBack) {
    const std::string text = "T\xC3\xBCr \xE2\x82\xAC \xF0\x9F\x8E\xA8";
    const auto units = toUtf16(text);
    const std::basic_string<A_UTF16Char> expected = {'T', 0xFC, 'r', ' ', 0x20AC, ' ', 0xD83C, 0xDFA8};
    EXPECT_EQ(units, expected);
    EXPECT_EQ(fromUtf16(units.c_str()), text);
}

TEST(HostUtf16, ReplacesWhatIsNotWellFormed) {
    const std::basic_string<A_UTF16Char> replaced = {0xFFFD, 'a'};
    for (const char* text : {"\xFF"
                             "a",
                             "\xC0"
                             "a",
                             "\xE2\x82"
                             "a",
                             "\xED\xA0\x80"
                             "a"})
        EXPECT_EQ(toUtf16(text), replaced) << text;
    const A_UTF16Char half[] = {0xD83C, 'a', 0};
    EXPECT_EQ(fromUtf16(half),
              "\xEF\xBF\xBD"
              "a");
}

}  // namespace
}  // namespace TessavoyHost
