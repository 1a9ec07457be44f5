#include "Host/Scene/Layers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <thread>

#include "Tests/Unit/Host/SceneFixture.h"

namespace TessavoyHost {
namespace {

using namespace SceneFixture;
using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A new folder that goes away with the test.
class Folder {
public:
    Folder() {
        std::string name = (std::filesystem::temp_directory_path() / "tessavoy-layers-XXXXXX").string();
        mPath = ::mkdtemp(name.data());
    }
    ~Folder() { std::filesystem::remove_all(mPath); }
    const std::filesystem::path& path() const { return mPath; }
    void touch(const std::string& name) const { std::ofstream(mPath / name) << "x"; }

private:
    std::filesystem::path mPath;
};

json withLayer(const json& layer) {
    auto scene = rightScene();
    scene["layers"].push_back(layer);
    return scene;
}

const std::string place = "scene.json: layers[2]";

// The files whose headers are read for a scene, in order.
std::vector<std::string> probedFiles(const json& scene, const std::string& file) {
    std::vector<std::string> probed;
    ImageAccess images = fakeImages();
    images.probe = [&probed](const std::filesystem::path& image) {
        probed.push_back(image.string());
        return PixelSize{1, 1};
    };
    readScene({file, scene.dump()}, fakeTable(), {}, images);
    return probed;
}

// What is wrong with a scene whose pictures named "broken" can't be decoded; they are told in `looked`, too.
std::vector<std::string> brokenPictures(const json& scene, PictureCheck check, std::vector<std::string>& looked) {
    ImageAccess images = fakeImages();
    images.check = check;
    images.read = [&looked, read = images.read](const std::filesystem::path& file) {
        looked.push_back(file.filename().string());
        if (file.string().find("broken") != std::string::npos) {
            throw HostError(ExitStatus::Scene, file.filename().string() + ": is cut short");
        }
        return read(file);
    };
    try {
        readScene({"scene.json", scene.dump()}, fakeTable(), {}, images);
    } catch (const HostError& error) {
        EXPECT_EQ(error.status(), ExitStatus::Scene);
        return linesOf(error.what());
    }
    return {};
}

TEST(SceneLayers, PicturesAreDecodedAsFarAsTheyAreChecked) {
    const Folder folder;
    for (const char* number : {"1", "2", "3"}) {
        folder.touch(std::string("walk.") + number + ".png");
    }
    json scene =
        withLayer({{"name", "Walk"}, {"image", (folder.path() / "walk.%d.png").string()}, {"first", 1}, {"count", 3}});
    std::vector<std::string> looked;
    EXPECT_THAT(brokenPictures(scene, PictureCheck::None, looked), IsEmpty());
    EXPECT_THAT(looked, IsEmpty());
    EXPECT_THAT(brokenPictures(scene, PictureCheck::Stills, looked), IsEmpty());
    EXPECT_THAT(looked, ElementsAre("plate.png"));
    looked.clear();
    EXPECT_THAT(brokenPictures(scene, PictureCheck::All, looked), IsEmpty());
    EXPECT_THAT(looked, ElementsAre("plate.png", "walk.1.png", "walk.2.png", "walk.3.png"));
}

TEST(SceneLayers, BrokenPicturesAreToldWithTheirPlace) {
    const Folder folder;
    for (const char* number : {"1", "2", "3"}) {
        folder.touch(std::string("broken.") + number + ".png");
    }
    json scene = withLayer(
        {{"name", "Walk"}, {"image", (folder.path() / "broken.%d.png").string()}, {"first", 1}, {"count", 3}});
    scene["layers"][0]["image"] = "broken.png";
    std::vector<std::string> looked;
    const std::string still = "scene.json: layers[0].image: broken.png: is cut short";
    EXPECT_THAT(brokenPictures(scene, PictureCheck::None, looked), IsEmpty());
    EXPECT_THAT(brokenPictures(scene, PictureCheck::Stills, looked), ElementsAre(still));
    EXPECT_THAT(
        brokenPictures(scene, PictureCheck::All, looked),
        ElementsAre(still, place + ".image: broken.1.png: is cut short", place + ".image: broken.2.png: is cut short",
                    place + ".image: broken.3.png: is cut short"));
}

TEST(SceneLayers, AStillLastsAsLongAsTheComposition) {
    const auto project = readJson(rightScene());
    auto& still = *project.layers.at(0);
    EXPECT_EQ(still.name(), "Plate");
    EXPECT_EQ(still.width(), 64);
    EXPECT_EQ(still.height(), 48);
    EXPECT_EQ(still.start(), 0.0);
    EXPECT_EQ(still.duration(), 4.0);
    EXPECT_NE(still.frameAt(0), nullptr);
    EXPECT_NE(still.frameAt(3.99), nullptr);
    EXPECT_EQ(still.frameAt(4.0), nullptr);
    EXPECT_EQ(still.frameAt(-0.04), nullptr);
}

TEST(SceneLayers, ASolidIsOneColour) {
    const auto project = readJson(withLayer({{"name", "S"}, {"solid", {1, 2, 3, 4}}, {"width", 2}, {"height", 1}}));
    const auto image = project.layers.at(2)->frameAt(1);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->format, SampleFormat::UInt8);
    EXPECT_THAT(image->samples, ElementsAre(std::byte{1}, std::byte{2}, std::byte{3}, std::byte{4}, std::byte{1},
                                            std::byte{2}, std::byte{3}, std::byte{4}));
    EXPECT_EQ(project.layers.at(2)->frameAt(2), image);
    EXPECT_EQ(project.layers.at(2)->duration(), 4.0);
}

TEST(SceneLayers, ASolidNeedsItsSize) {
    EXPECT_THAT(
        refusal(withLayer({{"name", "S"}, {"solid", "#ff0000"}, {"width", 30001}})),
        ElementsAre(place + ".width: 30001 is out of range; it goes from 1 to 30000", place + ".height: missing"));
}

TEST(SceneLayers, ALayerIsOneThing) {
    EXPECT_THAT(refusal(withLayer({{"name", "S"}})), ElementsAre(place + ": needs \"image\" or \"solid\""));
    EXPECT_THAT(refusal(withLayer({{"name", "S"}, {"solid", "#ff0000"}, {"image", "a.png"}})),
                ElementsAre(place + ": has both \"image\" and \"solid\""));
    EXPECT_THAT(refusal(withLayer(5)), ElementsAre(place + ": must be an object, not a number"));
    EXPECT_THAT(refusal(withLayer({{"name", "S"}, {"image", "a.png"}, {"start", 1}})),
                ElementsAre(place + ".start: unknown key"));
}

TEST(SceneLayers, NamesAreThereAndDiffer) {
    EXPECT_THAT(refusal(withLayer({{"image", "a.png"}})), ElementsAre(place + ".name: missing"));
    EXPECT_THAT(refusal(withLayer({{"name", ""}, {"image", "a.png"}})),
                ElementsAre(place + ".name: must not be empty"));
    EXPECT_THAT(refusal(withLayer({{"name", "Red"}, {"image", "a.png"}})),
                ElementsAre(place + ".name: there is a layer \"Red\" already"));
}

TEST(SceneLayers, AMissingFileIsNamed) {
    EXPECT_THAT(refusal(withLayer({{"name", "S"}, {"image", "missing.png"}})),
                ElementsAre(place + ".image: missing.png: there is no such file"));
}

TEST(SceneLayers, PathsAreRelativeToTheScene) {
    auto scene = rightScene();
    scene["layers"][1] = {{"name", "Absolute"}, {"image", "/else/where.png"}};
    EXPECT_THAT(probedFiles(scene, "some/folder/scene.json"), ElementsAre("some/folder/plate.png", "/else/where.png"));
}

TEST(SceneLayers, ALoneHashIsPartOfAStillsName) {
    EXPECT_EQ(readJson(withLayer({{"name", "S"}, {"image", "take #2.png"}})).layers.at(2)->duration(), 4.0);
}

TEST(SceneLayers, ALoneHashOfASequenceIsTheOnlyThingToldOfIt) {
    EXPECT_THAT(refusal(withLayer({{"name", "S"}, {"image", "missing.#.png"}, {"first", 1}, {"count", 2}})),
                ElementsAre(place + ".image: a lone # means a number to some tools and not to others; write ## or %d"));
}

TEST(SceneLayers, ASequencesNumberStandsInTheFilesName) {
    const std::string told = ".image: has no place for the number in the file's name; write ## or %d where it stands";
    EXPECT_THAT(refusal(withLayer({{"name", "S"}, {"image", "missing.png"}, {"count", 2}})), ElementsAre(place + told));
    EXPECT_THAT(refusal(withLayer({{"name", "S"}, {"image", "take ##/missing.png"}, {"first", 1}, {"cuont", 2}})),
                ElementsAre(place + ".cuont: unknown key; did you mean \"count\"?", place + told));
}

TEST(SceneLayers, FoldersMayLookLikeNumberPlaces) {
    auto scene = rightScene();
    scene["layers"][1] = {{"name", "S"}, {"image", "p%d/take [##]/walk.###.png"}, {"first", 7}, {"count", 1}};
    EXPECT_THAT(probedFiles(scene, "shot ##/scene.json"),
                ElementsAre("shot ##/plate.png", "shot ##/p%d/take [##]/walk.007.png"));
}

// At 25 units a second the clock ends at 2147483647 / 25 = 85899345.88 seconds.
TEST(SceneLayers, ASequenceMustFitTheHostsClock) {
    const auto refused = [](double start, const json& rate) {
        return refusal(withLayer({{"name", "S"},
                                  {"image", "missing.##.png"},
                                  {"first", 1},
                                  {"count", 1},
                                  {"start", start},
                                  {"frameRate", rate}}));
    };
    const std::string tail = " seconds, which is more than the host's clock holds at 25 units a second";
    const std::string missing = place + ".image: missing.01.png: there is no such file";
    EXPECT_THAT(refused(85899346, 1), ElementsAre(place + ": runs from 85899346 to 85899347" + tail));
    EXPECT_THAT(refused(85899345, 1), ElementsAre(place + ": runs from 85899345 to 85899346" + tail));
    EXPECT_THAT(refused(-85899346, 1), ElementsAre(place + ": runs from -85899346 to -85899345" + tail));
    EXPECT_THAT(refused(0, "1/100000000"), ElementsAre(place + ": runs from 0 to 100000000" + tail));
    EXPECT_THAT(refused(85899344, 1), ElementsAre(missing));
    // The composition ends 4 seconds after its start; its end in layer time is the start's distance and these.
    EXPECT_THAT(refused(-85899342, 1), ElementsAre(place + ": runs from -85899342 to -85899341" + tail));
    EXPECT_THAT(refused(-85899341, 1), ElementsAre(missing));
}

class SceneSequence : public ::testing::Test {
protected:
    void SetUp() override {
        for (int i = 8; i <= 11; ++i) {
            folder.touch("walk." + std::string(i < 10 ? "00" : "0") + std::to_string(i) + ".png");
        }
        images.read = [this](const std::filesystem::path& file) {
            read.push_back(file.filename().string());
            Image image;
            image.width = 64;
            image.height = file.filename() == "walk.011.png" ? 47 : 48;
            image.samples.resize(4);
            return image;
        };
    }

    std::shared_ptr<FrameSource> sequence(json layer) {
        layer["name"] = "Sprites";
        layer["image"] = "walk.###.png";
        return readScene({folder.path() / "scene.json", withLayer(layer).dump()}, fakeTable(), {}, images).layers.at(2);
    }

    std::string nameAt(FrameSource& source, double time) {
        read.clear();
        const auto image = source.frameAt(time);
        return image == nullptr ? "nothing" : read.empty() ? "kept" : read.at(0);
    }

    Folder folder;
    ImageAccess images = fakeImages();
    std::vector<std::string> read;
};

TEST_F(SceneSequence, ShowsEachFileForOneFrame) {
    const auto source = sequence({{"first", 8}, {"count", 3}, {"frameRate", 10}, {"start", 1}});
    EXPECT_EQ(source->start(), 1.0);
    EXPECT_DOUBLE_EQ(source->duration(), 0.3);
    EXPECT_EQ(nameAt(*source, 0.99), "nothing");
    EXPECT_EQ(nameAt(*source, 1.0), "walk.008.png");
    EXPECT_EQ(nameAt(*source, 1.09), "kept");
    EXPECT_EQ(nameAt(*source, 1.1), "walk.009.png");
    EXPECT_EQ(nameAt(*source, 1.2), "walk.010.png");
    EXPECT_EQ(nameAt(*source, 1.299), "kept");
    EXPECT_EQ(nameAt(*source, 1.3), "nothing");
}

TEST_F(SceneSequence, FrameTimesFindTheirFileInSpiteOfRounding) {
    // 0.07 * 100 is 7.000000000000001 and 0.29 * 100 is 28.999999999999996 in doubles; each frame must find its own
    // file.
    for (int i = 8; i < 60; ++i) {
        folder.touch("walk.0" + std::string(i < 10 ? "0" : "") + std::to_string(i) + ".png");
    }
    const auto source = sequence({{"first", 8}, {"count", 52}, {"frameRate", 100}});
    for (int i = 0; i < 52; ++i) {
        const double time = i / 100.0;
        images.read = nullptr;
        std::string expected = "walk.0" + std::string(i + 8 < 10 ? "0" : "") + std::to_string(i + 8) + ".png";
        if (i + 8 == 11) {
            EXPECT_THROW(source->frameAt(time), HostError);
            continue;
        }
        EXPECT_EQ(nameAt(*source, time), expected);
    }
}

TEST_F(SceneSequence, TakesTheCompositionsRateAndStartsAtZeroUnlessTold) {
    const auto source = sequence({{"first", 8}, {"count", 2}});
    EXPECT_EQ(source->start(), 0.0);
    EXPECT_DOUBLE_EQ(source->duration(), 2.0 / 25);
}

TEST_F(SceneSequence, EveryFileMustBeThere) {
    const json layer = {{"name", "S"}, {"image", "walk.###.png"}, {"first", 10}, {"count", 3}};
    try {
        readScene({folder.path() / "scene.json", withLayer(layer).dump()}, fakeTable(), {}, images);
        FAIL() << "the scene was accepted";
    } catch (const HostError& error) {
        EXPECT_EQ(error.what(), (folder.path() / "scene.json").string() +
                                    ": layers[2].image: " + (folder.path() / "walk.012.png").string() +
                                    ": there is no such file; the sequence has 3 files from number 10");
    }
}

TEST_F(SceneSequence, NeedsItsFirstNumberAndCount) {
    EXPECT_THAT(refusal(withLayer({{"name", "S"}, {"image", "a.##.png"}})),
                ElementsAre(place + ".first: missing", place + ".count: missing"));
    EXPECT_THAT(refusal(withLayer({{"name", "S"}, {"image", "a.##.png"}, {"first", -1}, {"count", 0}})),
                ElementsAre(place + ".first: -1 is out of range; it goes from 0 to 1000000",
                            place + ".count: 0 is out of range; it goes from 1 to 1000000"));
    EXPECT_THAT(refusal(withLayer({{"name", "S"}, {"image", "##.##.png"}, {"first", 1}, {"count", 1}})),
                ElementsAre(place + ".image: has more than one place for a number"));
}

TEST_F(SceneSequence, AFileOfAnotherSizeIsAnErrorWhenItIsReached) {
    const auto source = sequence({{"first", 8}, {"count", 4}, {"frameRate", 10}});
    EXPECT_NE(source->frameAt(0.2), nullptr);
    EXPECT_THROW(source->frameAt(0.3), HostError);
}

Image square(int side) {
    Image image;
    image.width = image.height = side;
    image.samples.resize(static_cast<std::size_t>(side * side) * 4);
    return image;
}

TEST(SceneImageCache, KeepsWhatFitsTheBudgetAndWhatIsHeld) {
    std::vector<std::string> read;
    const auto reader = [&read](const std::filesystem::path& file) {
        read.push_back(file.string());
        return square(10);  // 400 bytes
    };
    ImageCache cache(reader, 10, 10, 800);
    const auto held = cache.get("a");
    cache.get("b");
    cache.get("c");  // a is beyond the budget now, but held
    EXPECT_EQ(cache.get("a"), held);
    EXPECT_THAT(read, ElementsAre("a", "b", "c"));
    cache.get("c");
    cache.get("b");  // pushed out by the second a
    EXPECT_THAT(read, ElementsAre("a", "b", "c", "b"));
}

TEST(SceneImageCache, KeepsOnePictureThatIsLargerThanTheBudget) {
    int reads = 0;
    ImageCache cache([&reads](const auto&) { return ++reads, square(10); }, 10, 10, 1);
    cache.get("a");
    cache.get("a");
    EXPECT_EQ(reads, 1);
}

TEST(SceneImageCache, ThreadsThatAskForOneFileShareOneDecoding) {
    std::atomic<int> reads = 0;
    ImageCache cache([&reads](const auto&) { return ++reads, square(10); }, 10, 10, 100000);
    std::vector<std::thread> threads;
    std::vector<std::shared_ptr<const Image>> images(8);
    for (auto& image : images) {
        threads.emplace_back([&image, &cache] { image = cache.get("a"); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(reads, 1);
    EXPECT_THAT(images, ::testing::Each(images[0]));
}

TEST(SceneImageCache, AFailureIsTriedAgain) {
    int reads = 0;
    const auto reader = [&reads](const std::filesystem::path&) {
        if (++reads == 1) {
            throw HostError(ExitStatus::Scene, "broken");
        }
        return square(10);
    };
    ImageCache cache(reader, 10, 10, 100000);
    EXPECT_THROW(cache.get("a"), HostError);
    EXPECT_NE(cache.get("a"), nullptr);
}

}  // namespace
}  // namespace TessavoyHost
