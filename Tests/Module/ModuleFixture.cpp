#include "Tests/Module/ModuleFixture.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Host/ParameterIds.h"
#include "Host/WineContexts.h"

namespace TessavoyHost {
namespace {

template <class Sample>
Argb pixelOf(const World& world, int x, int y, double full) {
    Sample samples[4];
    std::memcpy(samples, world.row(y) + static_cast<std::size_t>(x) * sizeof samples, sizeof samples);
    return {samples[0] / full, samples[1] / full, samples[2] / full, samples[3] / full};
}

// Half a step of the depth; in floats what single precision and the filters between the passes lose of a colour.
double roundingOf(const World& world) {
    return world.bitsPerChannel() == 8 ? 0.5 / 255 : world.bitsPerChannel() == 16 ? 0.5001 / 32768 : 1e-5;
}

double difference(const Argb& a, const Argb& b) {
    return std::max({std::abs(a.a - b.a), std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b)});
}

bool contains(const Region& region, int x, int y) {
    return x >= region.x && y >= region.y && x < region.x + region.width && y < region.y + region.height;
}

Argb colourAt(const std::vector<Patch>& patches, int x, int y) {
    Argb colour;
    for (const Patch& patch : patches) {
        if (contains(patch.place, x, y))
            colour = patch.colour;
    }
    return colour;
}

void addNoise(ModuleScene& scene, const std::string& section, double multiplier, int seed) {
    scene.set(section + ".Noise.Multiplier", multiplier).set(section + ".Noise.Seed", seed);
    scene.set(section + ".Noise.Scale", 300);
}

template <class Result>
void expectGoodResult(const Result& result) {
    EXPECT_EQ(result.error, PF_Err_NONE) << result.message;
    EXPECT_EQ(result.message, "");
    EXPECT_FALSE(result.displayError);
    EXPECT_THAT(result.broken, testing::IsEmpty());
}

}  // namespace

int parameterIndexOf(std::string_view id) {
    const auto& ids = parameterIds();
    const auto found = std::find(ids.begin(), ids.end(), id);
    EXPECT_NE(found, ids.end()) << id;
    return static_cast<int>(found - ids.begin()) + 1;
}

ModuleScene::ModuleScene(int width, int height) {
    project.composition = {width, height, {25, 1}, 4};
    project.layers.push_back(
        std::make_shared<FakeProject::StillLayer>("Plate", FakeProject::solidImage(width, height, 128, 128, 128)));
}

ModuleScene& ModuleScene::set(std::string_view id, ParameterValue value) {
    project.parameters[parameterIndexOf(id)] = {{{0, std::move(value), Ease::Hold}}};
    return *this;
}

ModuleScene& ModuleScene::set(std::string_view id, double value) {
    return set(id, ParameterValue(value));
}

ModuleScene& ModuleScene::key(std::string_view id, double compositionSeconds, double value, Ease ease) {
    project.parameters[parameterIndexOf(id)].keys.push_back({compositionSeconds, value, ease});
    return *this;
}

ModuleScene& ModuleScene::layer(int slot, std::shared_ptr<FrameSource> source) {
    project.layers.push_back(std::move(source));
    return set("Layer.Custom" + std::to_string(slot), LayerReference{static_cast<int>(project.layers.size()) - 1});
}

ModuleScene sharpScene(int width, int height) {
    ModuleScene scene(width, height);
    scene.set("MSAA", 1).set("ShapeFeatherPixels", 0).set("SortByZ", 0);
    return scene;
}

ModuleScene fourSquaresScene() {
    ModuleScene scene = sharpScene(64, 48);
    scene.set("CountX", 2).set("CountY", 2).set("GridWidth", 32).set("GridHeight", 24).set("InstanceSize.Value", 5);
    return scene;
}

std::vector<Patch> fourSquares(const Argb& colour) {
    return {
        {{11, 7, 10, 10}, colour}, {{43, 7, 10, 10}, colour}, {{11, 31, 10, 10}, colour}, {{43, 31, 10, 10}, colour}};
}

ModuleScene richScene(int width, int height) {
    ModuleScene scene(width, height);
    scene.set("CountX", 12).set("CountY", 9).set("GridWidth", width).set("GridHeight", height);
    scene.set("InstanceSize.Value", width / 12.0).set("InstanceAlpha.Value", 0.7).set("HexGrid", 1);
    scene.set("InstanceColor.Color", ColorValue{220, 90, 40}).set("ShapeRaysCount.Value", 5);
    scene.set("ShapeRoundingRadius.Value", 20).set("InstanceVisible.Probability", 90).set("Rotation", 7);
    addNoise(scene, "InstanceSize", 3, 1);
    addNoise(scene, "InstanceRotation", 90, 2);
    addNoise(scene, "InstanceOffsetX", 5, 3);
    addNoise(scene, "InstanceOffsetY", 5, 4);
    addNoise(scene, "InstanceColor.Hue", 100, 5);
    addNoise(scene, "ShapeShelfLength", 30, 6);
    scene.key("InstanceSize.Noise.OffsetZ", 0, 0).key("InstanceSize.Noise.OffsetZ", 4, 4);
    return scene;
}

ModuleScene richCameraScene(int width, int height) {
    ModuleScene scene = richScene(width, height);
    scene.set("UseCompCamera", 1).set("Rotation3DX", 20).set("Rotation3DY", -15);
    addNoise(scene, "InstanceOffsetZ", width / 4.0, 7);
    Camera camera = facingCamera(2.0 * width);
    camera.position = {{{0, Point3{width * 0.2, height * 0.7, -2.0 * width}, Ease::Hold}}};
    scene.project.camera = camera;
    return scene;
}

std::vector<FaultScene> faultScenes() {
    const auto film =
        std::make_shared<FakeProject::StillLayer>("Film", FakeProject::solidImage(8, 6, 250, 40, 90), 0, 0.12);
    ModuleScene sampled = richScene(32, 24);
    sampled.layer(1, film).set("InstanceColor.Layer.Index", 2).set("InstanceColor.Layer.Multiplier", 1);
    sampled.set("FogEnabled", 1).set("FogStart", 0).set("FogEnd", 1);
    ModuleScene timeline = richCameraScene(32, 24);
    timeline.layer(1, film).set("ShapeType", 2).set("ShapeTextureLayerIndex", 2).set("ShapeFramesSplittingMode", 2);
    ModuleScene split = richScene(32, 24);
    split.layer(1, film).set("ShapeType", 2).set("ShapeTextureLayerIndex", 2).set("ShapeFramesSplittingMode", 3);
    split.set("InstanceSize.Layer.Index", 2).set("InstanceSize.Layer.Multiplier", 5);
    return {{"a sampled layer and fog", sampled, 8},
            {"a timeline under a camera", timeline, 16},
            {"a split image and a sampled layer", split, 32}};
}

Camera facingCamera(double zoom) {
    Camera camera;
    camera.zoom = {{{0, zoom, Ease::Hold}}};
    return camera;
}

Argb pixelAt(const World& world, int x, int y) {
    switch (world.bitsPerChannel()) {
        case 8:
            return pixelOf<std::uint8_t>(world, x, y, 255);
        case 16:
            return pixelOf<std::uint16_t>(world, x, y, 32768);
        default:
            return pixelOf<float>(world, x, y, 1);
    }
}

void expectPicture(const World& world, const std::vector<Patch>& patches) {
    ASSERT_TRUE(world.hasPixels());
    const double tolerance = roundingOf(world);
    int wrong = 0;
    for (int y = 0; y < world.height(); ++y) {
        for (int x = 0; x < world.width(); ++x) {
            const Argb actual = pixelAt(world, x, y), expected = colourAt(patches, x, y);
            if (difference(actual, expected) <= tolerance || ++wrong > 5)
                continue;
            ADD_FAILURE() << "pixel " << x << ", " << y << " is " << actual.a << " " << actual.r << " " << actual.g
                          << " " << actual.b << ", not " << expected.a << " " << expected.r << " " << expected.g << " "
                          << expected.b;
        }
    }
    EXPECT_EQ(wrong, 0) << "pixels of " << world.width() << " by " << world.height();
}

std::vector<std::byte> bytesOf(const World& world, const Region& region) {
    const std::size_t pixelBytes = static_cast<std::size_t>(bytesPerPixel(world.bitsPerChannel()));
    std::vector<std::byte> bytes;
    for (int y = region.y; y < region.y + region.height; ++y) {
        const std::byte* first = world.row(y) + static_cast<std::size_t>(region.x) * pixelBytes;
        bytes.insert(bytes.end(), first, first + static_cast<std::size_t>(region.width) * pixelBytes);
    }
    return bytes;
}

std::vector<std::byte> bytesOf(const World& world) {
    return bytesOf(world, {0, 0, world.width(), world.height()});
}

double largestDifference(const World& first, const World& second) {
    EXPECT_EQ(first.width(), second.width());
    EXPECT_EQ(first.height(), second.height());
    double largest = 0;
    for (int y = 0; y < std::min(first.height(), second.height()); ++y) {
        for (int x = 0; x < std::min(first.width(), second.width()); ++x)
            largest = std::max(largest, difference(pixelAt(first, x, y), pixelAt(second, x, y)));
    }
    return largest;
}

HostOptions forThisSystem(HostOptions options) {
#ifdef _WIN32
    // As in the application, the file stays loaded. The module leaves the classes of its windows to the process, and
    // loaded anew would take their names again.
    static const ModuleLoader stays{std::filesystem::path(TESSAVOY_MODULE)};
#endif
    options.contextsForWine = runsUnderWine();
    return options;
}

EffectHost& ModuleFixture::host(const HostOptions& options) {
    if (mHost == nullptr)
        mHost = std::make_unique<EffectHost>(std::filesystem::path(TESSAVOY_MODULE), forThisSystem(options));
    return *mHost;
}

void ModuleFixture::closeHost() {
    if (mHost == nullptr)
        return;
    mHost->faults().clear();
    EXPECT_EQ(mHost->setDown().error, PF_Err_NONE);
    EXPECT_THAT(mHost->broken(), testing::SizeIs(blocksLeft));
    EXPECT_EQ(mHost->services().handles.count(), static_cast<std::size_t>(blocksLeft));
    mHost.reset();
}

FrameResult ModuleFixture::render(const ModuleScene& scene, const FrameRequest& request) {
    FrameResult result = instanceOf(scene)->renderFrame(request);
    expectGood(result);
    return result;
}

void ModuleFixture::expectPictureAtEveryDepth(const ModuleScene& scene, const std::vector<Patch>& patches) {
    for (const int bits : {8, 16, 32}) {
        SCOPED_TRACE(bits);
        expectPicture(render(scene, {.bitsPerChannel = bits}).output, patches);
    }
}

void expectGood(const FrameResult& result) {
    expectGoodResult(result);
}

void expectGood(const CommandResult& result) {
    expectGoodResult(result);
}

void expectOutOfMemory(const FrameResult& result) {
    EXPECT_EQ(result.error, PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(result.message, "");
    EXPECT_FALSE(result.output.hasPixels());
    EXPECT_THAT(result.broken, testing::IsEmpty());
}

}  // namespace TessavoyHost
