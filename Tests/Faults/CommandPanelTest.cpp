#include <gmock/gmock.h>

#include <fstream>

#include "Host/ImageFiles/ImageFiles.h"
#include "Tests/Support/CommandFixture.h"

namespace TessavoyHost {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class PanelCommand : public CommandFixture {
protected:
    Image draw(const std::string& options = {}) {
        const Outcome outcome = run("panel scene.json -o panel.png --existing overwrite " + options);
        EXPECT_EQ(outcome.status, 0) << outcome.error;
        EXPECT_EQ(outcome.error, "");
        return readImage(folder / "panel.png");
    }

    void expectRefusal(const std::string& arguments, int status, const std::string& words) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, status) << arguments;
        EXPECT_THAT(outcome.error, HasSubstr(words)) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
    }
};

TEST_F(PanelCommand, IsListedAndHasAnExample) {
    EXPECT_THAT(run("--help").out, HasSubstr("  panel "));
    const Outcome help = run("panel --help");
    EXPECT_EQ(help.status, 0);
    for (const char* words : {"Example:\n  tessavoy panel", "--output", "--all", "--frame", "--width", "--existing"})
        EXPECT_THAT(help.out, HasSubstr(words));
}

TEST_F(PanelCommand, WritesThePanelAndSaysHowLargeItIs) {
    const Outcome outcome = run("panel scene.json -o panel.png");
    ASSERT_EQ(outcome.status, 0) << outcome.error;
    const Image image = readImage(folder / "panel.png");
    EXPECT_EQ(image.width, 480);
    EXPECT_EQ(outcome.out, "panel.png: 480 x " + std::to_string(image.height) + " pixels\n");
}

// Each line is 22 pixels high. At first the groups are closed, all but the parameters of the script; opened they show
// hundreds of parameters.
TEST_F(PanelCommand, OpensAllWhenItIsAsked) {
    const int closed = draw().height, open = draw("--all").height;
    EXPECT_GT(closed, 30 * 22);
    EXPECT_LT(closed, 80 * 22);
    EXPECT_GT(open, 500 * 22);
}

TEST_F(PanelCommand, HasTheWidthThatIsAskedFor) {
    EXPECT_EQ(draw("--width 300").width, 300);
}

TEST_F(PanelCommand, ShowsTheValuesOfTheSceneAtTheFrame) {
    scene["effect"]["parameters"]["CountX"] =
        nlohmann::json::parse(R"({"keys": [{"time": 0, "value": 1}, {"time": 0.36, "value": 10}]})");
    const auto first = draw().samples;
    EXPECT_EQ(draw("--frame 0").samples, first);
    EXPECT_NE(draw("--frame 9").samples, first);
    EXPECT_EQ(draw("--frame 9 --set CountX=1").samples, first) << "the override has no keys";
}

// Without the composition's camera five parameters and groups are hidden, each a line of 22 pixels: the centre's depth,
// and the rotations about x and y of the grid and of its instances.
TEST_F(PanelCommand, LeavesOutWhatTheEffectHides) {
    const int flat = draw().height;
    EXPECT_EQ(draw("--set UseCompCamera=true").height, flat + 5 * 22);
}

TEST_F(PanelCommand, ShowsTheScript) {
    const auto before = draw().samples;
    scene["effect"]["scriptText"] = "x = x + 10";
    EXPECT_NE(draw().samples, before);
}

TEST_F(PanelCommand, TakesTheFramesNumberIntoTheName) {
    EXPECT_EQ(run("panel scene.json -o panel.###.png --frame 7").status, 0);
    EXPECT_TRUE(std::filesystem::exists(folder / "panel.007.png"));
}

TEST_F(PanelCommand, LeavesFilesThatAreThere) {
    std::ofstream(folder / "panel.png") << "mine";
    expectRefusal("panel scene.json -o panel.png", 2, "--existing");
    EXPECT_EQ(contents(folder / "panel.png"), "mine");
    EXPECT_EQ(run("panel scene.json -o panel.png --existing skip").status, 0);
    const std::string drawn = contents(folder / "panel.png");
    EXPECT_NE(drawn, "mine") << "what doesn't read whole at the right size is replaced";
    const Outcome kept = run("panel scene.json -o panel.png --existing skip --set CountX=99");
    EXPECT_EQ(kept.status, 0);
    EXPECT_THAT(kept.out, StartsWith("panel.png: kept, 480 x "));
    EXPECT_EQ(contents(folder / "panel.png"), drawn);
}

TEST_F(PanelCommand, RefusesWhatItCanNotDo) {
    expectRefusal("panel scene.json", 2, "--output is required");
    expectRefusal("panel scene.json -o panel.exr", 2, "must end in .png");
    expectRefusal("panel scene.json -o -", 2, "must end in .png");
    expectRefusal("panel scene.json -o no/panel.png", 2, "there is no folder");
    expectRefusal("panel scene.json -o panel.png --width 10", 2, "--width");
    expectRefusal("panel scene.json -o panel.png --width 100000", 2, "--width");
    expectRefusal("panel scene.json -o panel.png --frame 10", 2, "whose frames are 0 to 9");
    expectRefusal("panel scene.json -o panel.png --frame x", 2, "--frame");
    expectRefusal("panel scene.json -o panel.png --depth 8", 2, "--depth");
    expectRefusal("panel scene.json -o panel.png --set CountY=x", 2, "CountY");
    expectRefusal("panel scene.json -o panel.png --module no.so", 4, "there is no such module");
    expectRefusal("panel other.json -o panel.png", 3, "other.json");
    scene["effect"]["layer"] = "Plat";
    expectRefusal("panel scene.json -o panel.png", 3, "did you mean \"Plate\"?");
    EXPECT_FALSE(std::filesystem::exists(folder / "panel.png"));
}

}  // namespace
}  // namespace TessavoyHost
