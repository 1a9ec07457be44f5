#include "Tests/Pictures/PictureFixture.h"

#include <filesystem>
#include <functional>

#include "Host/ImageFiles/ImageFiles.h"
#include "Host/ParameterIds.h"
#include "Host/Scene/SceneFile.h"
#include "Tests/Pictures/PictureParts.h"
#include "Tests/Pictures/SceneWriter.h"

namespace Tessavoy {
namespace {

/// Something of everything that a scene holds.
Picture everything() {
    Picture picture = cells(3, 2, 44.0, 24.0, 13.0);
    picture.grid.threeDimensional = true;
    picture.grid.cell.corners = 5;
    picture.grid.cell.colour = colour(255, 204, 51, 0.7);
    picture.grid.cell.shelf = 20.0;
    picture.grid.camera = ReferenceCamera{{90.0, -10.0, -150.0}, 190.0, 0.0, 0.0, ReferencePoint{36.0, 24.0, 30.0}};
    picture.sortByDepth = true;
    picture.fog = PictureFog{100.0,
                             300.0,
                             80.0,
                             60.0,
                             {{0.0, StopKind::Soft, {0.2, 0.4, 0.8, 1.0}},
                              {0.5, StopKind::Edge, {0.8, 0.6, 0.2, 1.0}},
                              {1.0, StopKind::Straight, {1.0, 1.0, 1.0, 1.0}}}};
    picture.paint(distinctColours(6));
    picture.vary("InstanceOffsetZ", 90.0, {10, 200, 50, 90, 240, 130});
    picture.tolerance = 1e-3;
    return picture;
}

Picture timelineOfEverything() {
    Picture picture = everything();
    picture.frames = PictureFrames{PictureFrames::Splitting::Timeline, 4, 4, {}};
    for (int frame = 0; frame < 3; ++frame) {
        const auto level = static_cast<std::uint8_t>(100 + 50 * frame);
        picture.frames->images.emplace_back(16, Texel{level, 255, level, 255});
    }
    picture.vary("ShapeFrameIndex", 100.0, {0, 128, 255, 128, 0, 255});
    return picture;
}

/// One change to a picture that the eye may overlook.
struct Change {
    const char* name;
    std::function<void(Picture&)> apply;
};

const std::vector<Change> smallChanges = {
    {"size", [](Picture& p) { p.grid.cell.size += 0.3; }},
    {"place", [](Picture& p) { p.grid.centreX += 0.15; }},
    {"colour", [](Picture& p) { p.colours[2][1] += 2; }},
    {"alpha", [](Picture& p) { p.grid.cell.colour[3] += 0.01; }},
    {"angle", [](Picture& p) { p.grid.rotation += 0.5; }},
    {"corners", [](Picture& p) { p.grid.cell.corners += 1; }},
    {"shelf", [](Picture& p) { p.grid.cell.shelf += 5.0; }},
    {"order", [](Picture& p) { p.sortByDepth = false; }},
    {"blend", [](Picture& p) { p.grid.blend = ReferenceBlend::Add; }},
    {"doubled", [](Picture& p) { p.grid.multisampled = true; }},
    {"depth", [](Picture& p) { p.variations[0].levels[4] -= 6; }},
    {"zoom", [](Picture& p) { p.grid.camera->zoom += 1.5; }},
    {"roll", [](Picture& p) { p.grid.camera->roll += 0.5; }},
    {"fog start", [](Picture& p) { p.fog->start += 4.0; }},
    {"fog colour", [](Picture& p) { p.fog->gradient[1].colour[1] += 0.02; }},
    {"fog opacity", [](Picture& p) { p.fog->opacity -= 3.0; }},
};

using PictureFixtureTest = PictureFixture;

TEST_F(PictureFixtureTest, pictureAsDescribedIsAccepted) {
    for (const int bits : {8, 16, 32}) {
        expectAsReference(everything(), wholeView(bits));
    }
}

TEST_F(PictureFixtureTest, everySmallChangeIsNoticedAtEveryDepth) {
    for (const int bits : {8, 16, 32}) {
        const View view = wholeView(bits);
        const TessavoyHost::FrameResult frame = render(sceneOf(everything()), view.request());
        for (const Change& change : smallChanges) {
            Picture changed = everything();
            change.apply(changed);
            EXPECT_GT(judge(referenceOf(changed, view), frame.output, changed.tolerance).comparison.wrong, 0)
                << change.name << " at " << bits << " bits";
        }
    }
}

/// What the command would render of a written scene.
TessavoyHost::Project readBack(const std::filesystem::path& folder, TessavoyHost::EffectHost& host) {
    const TessavoyHost::ParameterTable table(host.parameters(), TessavoyHost::parameterIds());
    return TessavoyHost::readScene(TessavoyHost::loadSceneText(folder / "scene.json"), table, {},
                                   TessavoyHost::imageFileAccess());
}

TEST_F(PictureFixtureTest, theWrittenSceneShowsTheSamePicture) {
    for (const Picture& picture : {everything(), timelineOfEverything()}) {
        const std::filesystem::path folder = std::filesystem::path(testing::TempDir()) / "TessavoyWrittenScene";
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        const TessavoyHost::ModuleScene scene = sceneOf(picture);
        writeScene(folder, scene.project, host().parameters());
        const View view = wholeView(16);
        const TessavoyHost::FrameResult first = render(scene, view.request());
        const TessavoyHost::FrameResult again =
            host().createInstance(readBack(folder, host()))->renderFrame(view.request());
        TessavoyHost::expectGood(again);
        EXPECT_EQ(TessavoyHost::bytesOf(first.output), TessavoyHost::bytesOf(again.output));
        std::filesystem::remove_all(folder);
    }
}

}  // namespace
}  // namespace Tessavoy
