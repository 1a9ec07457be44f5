#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "Host/ImageFiles/ImageFiles.h"
#include "Tests/Support/CommandFixture.h"
#include "Tests/Support/Examples.h"

// The scenes that the manual shows, as their readers try them.

namespace TessavoyHost {
namespace {

class Example : public CommandFixture, public testing::WithParamInterface<std::filesystem::path> {
protected:
    std::string quoted() const { return "'" + GetParam().string() + "'"; }

    // The scene's composition, layers, masks and camera around what was saved of its effect.
    nlohmann::json sceneAround(const std::string& project) const {
        nlohmann::json around = exampleScene(GetParam());
        around["effect"] = {{"layer", around.at("effect").at("layer")}, {"project", project}};
        return around;
    }

    static std::set<std::uint32_t> coloursOf(const Image& image) {
        std::set<std::uint32_t> colours;
        for (int y = 0; y < image.height; ++y) {
            const auto* row = image.row<std::uint8_t>(y);
            for (int x = 0; x < image.width; ++x, row += 4) {
                colours.insert(row[0] | row[1] << 8 | row[2] << 16 | static_cast<std::uint32_t>(row[3]) << 24);
            }
        }
        return colours;
    }
};

TEST_P(Example, IsAGoodScene) {
    const Outcome outcome = run("check " + quoted());
    EXPECT_EQ(outcome.status, 0) << outcome.error;
}

// Each example shows many instances whose edges are softened, so that a picture has far more colours than a flat field
// has; and each moves, so that two moments differ.
TEST_P(Example, RendersWithoutAMessageAndMoves) {
    const Outcome outcome =
        run("render " + quoted() + " -o picture.####.png --frames 0,12 --resolution quarter --strict --progress none");
    ASSERT_EQ(outcome.status, 0) << outcome.error;
    const Image first = readImage(folder / "picture.0000.png");
    const Image later = readImage(folder / "picture.0012.png");
    EXPECT_GT(coloursOf(first).size(), 16U);
    EXPECT_GT(coloursOf(later).size(), 16U);
    EXPECT_NE(first.samples, later.samples);
}

// What was saved is the effect: with nothing else of it the pictures are the same, and so is what is saved again.
TEST_P(Example, RendersTheSameFromItsSavedProject) {
    const std::string picture = " --frames 12 --resolution quarter --strict --progress none";
    ASSERT_EQ(run("save " + quoted() + " -o saved.bin").status, 0);
    ASSERT_EQ(run("render " + quoted() + " -o first.####.png" + picture).status, 0);
    scene = sceneAround("saved.bin");
    const Outcome again = run("render scene.json -o again.####.png" + picture);
    ASSERT_EQ(again.status, 0) << again.error;
    EXPECT_EQ(contents(folder / "first.0012.png"), contents(folder / "again.0012.png"));
    ASSERT_EQ(run("save scene.json -o twice.bin").status, 0);
    EXPECT_EQ(contents(folder / "saved.bin"), contents(folder / "twice.bin"));
}

INSTANTIATE_TEST_SUITE_P(Examples, Example, testing::ValuesIn(exampleScenes()), nameOfExample);

// A script beside a scene belongs to it, so that no example is left out.
TEST(Examples, EveryScriptHasItsScene) {
    for (const auto& entry : std::filesystem::directory_iterator(TESSAVOY_EXAMPLES)) {
        if (entry.path().extension() == ".lua") {
            const std::string scene = contents(std::filesystem::path(entry.path()).replace_extension(".json"));
            EXPECT_NE(scene.find('"' + entry.path().filename().string() + '"'), std::string::npos) << entry.path();
        }
    }
}

}  // namespace
}  // namespace TessavoyHost
