#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>

#include "Host/SequenceBlock.h"
#include "Tests/Unit/Host/SceneFixture.h"

// What a scene takes from a saved project, and what it says of files that are none. The files are made here, value by
// value, as the format is told.

namespace TessavoyHost {
namespace {

using namespace SceneFixture;
using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

json asBytes(const std::vector<std::byte>& bytes) {
    const auto* first = reinterpret_cast<const std::uint8_t*>(bytes.data());
    return json::binary(std::vector<std::uint8_t>(first, first + bytes.size()));
}

json savedForm() {
    return {
        {"format", "tessavoy project"},  {"version", 1},
        {"effect", "Quelvane Tessavoy"}, {"effectVersion", 626176},
        {"parameters", json::array()},   {"sequenceData", asBytes(sequenceBlock("x = 1", {{112, "amount"}}, 626176))}};
}

// The fake parameters have 100 plus their index as disk id.
json withValue(int index, const json& value) {
    json saved = savedForm();
    saved["parameters"].push_back({{"diskId", 100 + index}, {"value", value}});
    return saved;
}

class SavedProject : public ::testing::Test {
protected:
    SavedProject() {
        std::string name = (std::filesystem::temp_directory_path() / "tessavoy-saved-XXXXXX").string();
        folder = ::mkdtemp(name.data());
        scene = rightScene();
        scene["effect"]["project"] = "saved.bin";
        write(savedForm());
    }
    ~SavedProject() override { std::filesystem::remove_all(folder); }

    void writeBytes(const std::string& bytes) const { std::ofstream(folder / "saved.bin", std::ios::binary) << bytes; }
    void write(const json& saved) const {
        const auto bytes = json::to_cbor(saved);
        writeBytes({bytes.begin(), bytes.end()});
    }

    Project read() const { return readText(scene.dump(), {}, folder / "scene.json"); }

    // The problems, without the part of their place that is the same for all.
    std::vector<std::string> problems() const {
        const std::string file = (folder / "saved.bin").string();
        const std::string common = (folder / "scene.json").string() + ": effect.project";
        std::vector<std::string> lines;
        try {
            read();
        } catch (const HostError& error) {
            EXPECT_EQ(error.status(), ExitStatus::Scene);
            for (const std::string& line : SceneFixture::linesOf(error.what())) {
                EXPECT_TRUE(line.starts_with(common)) << line;
                const std::string rest = line.substr(std::min(common.size(), line.size()));
                const std::string named = " (" + file + ")";
                lines.push_back(rest.starts_with(named) ? rest.substr(named.size()) : rest);
            }
        }
        return lines;
    }

    std::filesystem::path folder;
    json scene;
};

TEST_F(SavedProject, GivesTheScriptAndTheNamesOfSlots) {
    const Project project = read();
    EXPECT_EQ(project.script, "x = 1");
    EXPECT_TRUE(project.scriptFile.empty());
    ASSERT_EQ(project.slotNames.size(), 1U);
    EXPECT_EQ(project.slotNames.at(112), "amount");
    EXPECT_TRUE(project.parameters.empty());
}

TEST_F(SavedProject, GivesValuesOfEveryKind) {
    json saved = savedForm();
    const std::vector<std::pair<int, json>> values = {{1, 12.0},
                                                      {4, -0.1},
                                                      {6, 30.5},
                                                      {7, true},
                                                      {8, 2},
                                                      {10, {1, 2, 3, 4}},
                                                      {11, {5.5, 6.5}},
                                                      {14, "Red"},
                                                      {15, "Orbit"},
                                                      {16, {1.5, 2.5, 3.5}},
                                                      {17, json::binary({1, 2, 3})}};
    for (const auto& [index, value] : values) {
        saved["parameters"].push_back({{"diskId", 100 + index}, {"value", value}});
    }
    write(saved);

    const Project project = read();
    ASSERT_EQ(project.parameters.size(), values.size());
    const auto at = [&](int index) { return project.parameters.at(index).keys.at(0).value; };
    EXPECT_EQ(std::get<double>(at(1)), 12);
    EXPECT_EQ(std::get<double>(at(4)), -0.1);
    EXPECT_EQ(std::get<double>(at(6)), 30.5);
    EXPECT_EQ(std::get<double>(at(7)), 1);
    EXPECT_EQ(std::get<double>(at(8)), 2);
    EXPECT_EQ(std::get<ColorValue>(at(10)).alpha, 4);
    EXPECT_EQ(std::get<Point2>(at(11)).y, 6.5);
    EXPECT_EQ(std::get<LayerReference>(at(14)).layer, 1);
    EXPECT_EQ(std::get<MaskReference>(at(15)).id, 1U);
    EXPECT_EQ(std::get<Point3>(at(16)).z, 3.5);
    EXPECT_EQ(std::get<ArbitraryValue>(at(17)).flat,
              (std::vector<std::byte>{std::byte{1}, std::byte{2}, std::byte{3}}));
}

TEST_F(SavedProject, GivesKeys) {
    write(withValue(4, {{"keys",
                         {{{"time", 0.5}, {"value", 1.0}, {"ease", "hold"}},
                          {{"time", 1.5}, {"value", 2.0}, {"ease", "smooth"}}}}}));
    const ParameterTrack track = read().parameters.at(4);
    ASSERT_EQ(track.keys.size(), 2U);
    EXPECT_EQ(track.keys[0].time, 0.5);
    EXPECT_EQ(track.keys[0].ease, Ease::Hold);
    EXPECT_EQ(std::get<double>(track.keys[1].value), 2);
    EXPECT_EQ(track.keys[1].ease, Ease::Smooth);
}

// FramesLimit goes from 1 to 10000 and starts at 0.
TEST_F(SavedProject, TakesARegisteredDefaultThatLiesOutsideOfItsRange) {
    write(withValue(2, 0));
    EXPECT_EQ(std::get<double>(read().parameters.at(2).keys[0].value), 0);
    write(withValue(2, -1));
    EXPECT_THAT(problems(), ElementsAre(".parameters[0].value: -1 is out of range; it goes from 1 to 10000"));
}

TEST_F(SavedProject, GivesWayToWhatTheSceneSays) {
    write(withValue(4, 1.0));
    scene["effect"]["parameters"] = {{"InstanceSize.Value", 7}};
    scene["effect"]["names"] = {{"Float.Custom1", "other"}, {"Float.Custom2", "amount"}};
    scene["effect"]["scriptText"] = "y = 2";
    const Project project = read();
    EXPECT_EQ(std::get<double>(project.parameters.at(4).keys[0].value), 7);
    EXPECT_EQ(project.slotNames.at(112), "other");
    EXPECT_EQ(project.slotNames.at(113), "amount");
    EXPECT_EQ(project.script, "y = 2");
}

TEST_F(SavedProject, KeepsItsNamesTaken) {
    scene["effect"]["names"] = {{"Float.Custom2", "amount"}};
    try {
        read();
        FAIL() << "it was accepted";
    } catch (const HostError& error) {
        EXPECT_THAT(error.what(), ::testing::EndsWith("effect.names.\"Float.Custom2\": another slot of \"Float\" is "
                                                      "called \"amount\" already"));
    }
}

TEST_F(SavedProject, MustBeThere) {
    scene["effect"]["project"] = "none.bin";
    EXPECT_THAT(problems(), ElementsAre(": " + (folder / "none.bin").string() + ": No such file or directory"));
    scene["effect"]["project"] = 3;
    EXPECT_THAT(problems(), ElementsAre(": must be text, not a number"));
}

TEST_F(SavedProject, IsToldFromOtherFiles) {
    const std::string none = ": is no saved project; write one with: tessavoy save SCENE -o FILE";
    for (const std::string& bytes :
         {std::string(), std::string("{\"tessavoy\": 1}"), std::string("\xF6", 1), std::string("\x9F", 1)}) {
        writeBytes(bytes);
        EXPECT_THAT(problems(), ElementsAre(none)) << bytes;
    }
    json saved = savedForm();
    saved["format"] = "something else";
    write(saved);
    EXPECT_THAT(problems(), ElementsAre(none));
}

// A list of one list of one list ...: as deep as this, a reader that calls itself for each would run out of stack.
TEST_F(SavedProject, MayNestAsDeeplyAsItLikes) {
    writeBytes(std::string(4'000'000, '\x81'));
    EXPECT_THAT(problems(), ElementsAre(": is no saved project; write one with: tessavoy save SCENE -o FILE"));
}

TEST_F(SavedProject, CutOffAnywhereIsNone) {
    const auto whole = json::to_cbor(withValue(4, 1.0));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        writeBytes({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
        EXPECT_EQ(problems().size(), 1U) << size;
    }
}

TEST_F(SavedProject, OfAnotherVersionSaysSo) {
    json saved = savedForm();
    saved["version"] = 2;
    write(saved);
    EXPECT_THAT(problems(), ElementsAre(": this command reads version 1 of saved projects; save it again with this "
                                        "command"));
}

TEST_F(SavedProject, NamesThePlaceOfEachWrongValue) {
    json saved = savedForm();
    saved["parameters"] = {{{"diskId", 104}, {"value", 1e6}},   {{"diskId", 104}, {"value", 1}},
                           {{"diskId", 104}, {"value", 2}},     {{"diskId", 103}, {"value", 2}},
                           {{"diskId", 999}, {"value", 2}},     {{"diskId", 117}, {"value", "flat"}},
                           {{"diskId", 114}, {"value", "Rad"}}, {{"diskId", "x"}, {"value", 2}}};
    saved["sequenceData"] = json::binary({1, 2});
    saved["more"] = 1;
    write(saved);
    EXPECT_THAT(
        problems(),
        ElementsAre(".more: unknown key", ".parameters[0].value: 1000000 is out of range; it goes from -10000 to 10000",
                    ".parameters[1]: disk id 104 stands twice", ".parameters[2]: disk id 104 stands twice",
                    ".parameters[3]: the effect keeps no value under disk id 103",
                    ".parameters[4]: the effect keeps no value under disk id 999",
                    ".parameters[5].value: must be a byte string, not text",
                    ".parameters[6].value: there is no layer \"Rad\"; did you mean \"Red\"?",
                    ".parameters[7].diskId: must be a number, not text",
                    ".sequenceData: is not in the effect's saved form"));
}

// A number that is none would pass for one within any range if only its bounds were compared.
TEST_F(SavedProject, RefusesNumbersThatAreNone) {
    write(withValue(4, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ(problems().size(), 1U);
    write(withValue(4, -std::numeric_limits<double>::infinity()));
    EXPECT_EQ(problems().size(), 1U);
}

TEST(SequenceBlockReading, GivesBackWhatWasWritten) {
    const std::map<std::int32_t, std::string> names = {{300, "a\"b"}, {-1, "\xC3\xA4"}};
    const auto texts = readSequenceBlock(sequenceBlock("x = 'ä'\r\n", names, 626176));
    ASSERT_TRUE(texts.has_value());
    EXPECT_EQ(texts->script, "x = 'ä'\r\n");
    EXPECT_EQ(texts->names, names);
    EXPECT_THAT(readSequenceBlock(sequenceBlock("", {}, 626176))->names, IsEmpty());
}

TEST(SequenceBlockReading, RefusesWhatIsNone) {
    const auto block = sequenceBlock("x = 1", {{300, "amount"}}, 626176);
    for (std::size_t size = 0; size < block.size(); ++size) {
        EXPECT_FALSE(readSequenceBlock(std::span(block).first(size)).has_value()) << size;
    }
    for (const std::size_t changed : {0U, 1U, 5U, 8U}) {  // flatten, "GRID", the zeros, the header's size
        auto other = block;
        other[changed] ^= std::byte{2};
        EXPECT_FALSE(readSequenceBlock(other).has_value()) << changed;
    }
    auto badNames = block;
    badNames[badNames.size() - 2] = std::byte{'['};
    EXPECT_FALSE(readSequenceBlock(badNames).has_value());
}

}  // namespace
}  // namespace TessavoyHost
