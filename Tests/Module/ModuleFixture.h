#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "Host/EffectHost.h"
#include "Tests/Support/FakeProject.h"
#include "Tests/Support/QuietOutput.h"

namespace TessavoyHost {

// Index of a parameter of the built module. It is a failure of the test when the id is unknown.
int parameterIndexOf(std::string_view id);

// A project for the built module, its parameters named by their ids.
struct ModuleScene {
    // A composition of 25 frames a second and 4 seconds, with the effect on a grey layer of the same size.
    ModuleScene(int width, int height);

    ModuleScene& set(std::string_view id, double value);
    ModuleScene& set(std::string_view id, ParameterValue value);
    ModuleScene& key(std::string_view id, double compositionSeconds, double value, Ease ease = Ease::Linear);
    // Adds a layer to the project and chooses it for a custom slot, 1 to 10.
    ModuleScene& layer(int slot, std::shared_ptr<FrameSource> source);

    Project project;
};

// Instances whose edges fall between pixels and are drawn as they are: no feather, no multisampling, drawn in cell
// order.
ModuleScene sharpScene(int width, int height);

// 2 by 2 white squares of 10 pixels' side in a picture of 64 by 48; see fourSquares.
ModuleScene fourSquaresScene();

// 12 by 9 instances with noise in everything, overlapping, softened: a picture in which every pixel counts.
ModuleScene richScene(int width, int height);

// The same under a camera that stands aside and looks at the middle.
ModuleScene richCameraScene(int width, int height);

// A camera that looks at the middle of the composition from a distance of its zoom: what lies at z = 0 has its own
// size.
Camera facingCamera(double zoom);

// A pixel with channels from 0 to 1.
struct Argb {
    double a = 0;
    double r = 0;
    double g = 0;
    double b = 0;
};

inline constexpr Argb white{1, 1, 1, 1};

// A rectangle of one colour.
struct Patch {
    Region place;
    Argb colour = white;
};

// What fourSquaresScene shows.
std::vector<Patch> fourSquares(const Argb& colour = white);

Argb pixelAt(const World& world, int x, int y);

// The world is transparent black but for the patches, later ones before earlier ones. Channels may be off by rounding
// to the world's depth.
void expectPicture(const World& world, const std::vector<Patch>& patches);

// The pixels of a part of a world, row by row without padding; without a region of all of it.
std::vector<std::byte> bytesOf(const World& world, const Region& region);
std::vector<std::byte> bytesOf(const World& world);

// The largest difference of any channel between two worlds of one size.
double largestDifference(const World& first, const World& second);

using Tessavoy::Testing::QuietOutput;

// Scenes that between them make every kind of host call that frames make, and their depths.
struct FaultScene {
    const char* name;
    ModuleScene scene;
    int bitsPerChannel;
};
std::vector<FaultScene> faultScenes();

// The options with what this system needs besides.
HostOptions forThisSystem(HostOptions options = {});

// A host of the built module. At the end of each test the module is set down, and has left nothing and broken no
// promise.
class ModuleFixture : public testing::Test {
protected:
    void TearDown() override { closeHost(); }

    // Loads the module at the first call, with these options.
    EffectHost& host(const HostOptions& options = {});
    // Sets the module down; instances must be gone.
    void closeHost();

    std::unique_ptr<EffectInstance> instanceOf(const ModuleScene& scene) {
        return host().createInstance(scene.project);
    }
    // One frame of an instance of its own, which must come out well.
    FrameResult render(const ModuleScene& scene, const FrameRequest& request = {});
    // The same in 8, 16 and 32 bits; each must show the patches.
    void expectPictureAtEveryDepth(const ModuleScene& scene, const std::vector<Patch>& patches);

    const QuietOutput quiet;
    // Blocks that failing frames are known to leave behind.
    int blocksLeft = 0;

private:
    std::unique_ptr<EffectHost> mHost;
};

// There is no error and no word about one, and the module gave everything back.
void expectGood(const FrameResult& result);
void expectGood(const CommandResult& result);

// The frame failed for want of memory or of room on the GPU: without a picture, a word of the module's, or anything
// left out.
void expectOutOfMemory(const FrameResult& result);

}  // namespace TessavoyHost
