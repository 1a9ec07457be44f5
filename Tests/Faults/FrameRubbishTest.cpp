#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

class FrameRubbish : public ModuleFixture {
protected:
    // All scenes in all depths, by a host of its own.
    std::vector<std::vector<std::byte>> picturesIn(bool rubbish) {
        HostOptions options;
        options.rubbishInFreshMemory = rubbish;
        host(options);
        std::vector<std::vector<std::byte>> pictures;
        std::vector<ModuleScene> scenes = {fourSquaresScene(), richScene(64, 48), richCameraScene(64, 48)};
        for (const FaultScene& faulty : faultScenes())
            scenes.push_back(faulty.scene);
        for (const ModuleScene& scene : scenes) {
            for (const int bits : {8, 16, 32})
                pictures.push_back(bytesOf(render(scene, {.frame = 2, .bitsPerChannel = bits}).output));
        }
        closeHost();
        return pictures;
    }
};

TEST_F(FrameRubbish, InFreshMemoryChangesNothing) {
    const auto clean = picturesIn(false), rubbish = picturesIn(true);
    ASSERT_EQ(clean.size(), rubbish.size());
    for (std::size_t picture = 0; picture < clean.size(); ++picture)
        EXPECT_TRUE(clean[picture] == rubbish[picture]) << picture;
}

TEST_F(FrameRubbish, InTheOutputIsReplacedWhollyByEmptyPictures) {
    HostOptions options;
    options.rubbishInFreshMemory = true;
    host(options);
    for (const int bits : {8, 16, 32})
        expectPicture(render(sharpScene(61, 47).set("CountX", 0), {.frame = 0, .bitsPerChannel = bits}).output, {});
}

TEST_F(FrameRubbish, InSequenceDataChangesNothing) {
    HostOptions options;
    options.rubbishInFreshMemory = true;
    host(options);
    ModuleScene scene = fourSquaresScene();
    scene.project.slotNames = {{77, "Amount"}};
    const auto instance = instanceOf(scene);
    const auto flat = instance->flattenedSequenceData();
    instance->resetup(flat);
    EXPECT_TRUE(instance->flattenedSequenceData() == flat);
    expectPicture(instance->renderFrame({}).output, fourSquares());
}

}  // namespace
}  // namespace TessavoyHost
