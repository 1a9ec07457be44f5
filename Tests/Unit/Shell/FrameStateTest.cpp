#include <glbinding/gl33core/gl.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "Source/Shell/EffectMain.h"
#include "Source/Shell/FrameStages.h"
#include "Tests/Module/ModuleFixture.h"

// What a whole frame leaves in its thread's context, seen from within.

namespace Tessavoy {
namespace {

using FakeProject::StillLayer;

std::vector<gl33core::GLint> unitsAtTheEnd;

void noteUnit(FrameStage ended) {
    if (ended == FrameStage::ReadBack) {
        gl33core::GLint unit = 0;
        gl33core::glGetIntegerv(gl33core::GL_ACTIVE_TEXTURE, &unit);
        unitsAtTheEnd.push_back(unit);
    }
}

TessavoyHost::ModuleScene textured(TessavoyHost::ModuleScene scene) {
    const auto sheet = FakeProject::image(4, 4, [](int, int) { return FakeProject::Texel{255, 255, 255, 255}; });
    scene.layer(1, std::make_shared<StillLayer>("Sheet", sheet));
    return scene.set("ShapeType", 2).set("ShapeTextureLayerIndex", 2);
}

// The fog's colours lie in another texture unit than the pictures; the next frame's pictures are bound where they are
// looked for only if the first unit is the active one again.
TEST(FrameState, TheFirstTextureUnitIsActiveWhateverWasDrawn) {
    const Testing::QuietOutput quiet;
    const TessavoyHost::ModuleScene plain = TessavoyHost::fourSquaresScene();
    TessavoyHost::ModuleScene fog = plain;
    fog.set("FogEnabled", 1).set("FogColorWeight", 100).set("FogOpacity", 100).set("FogStart", -2).set("FogEnd", -1);
    TessavoyHost::ModuleScene depth = plain;
    depth.set("OutputType", 2).set("OutputZDepthStart", 0).set("OutputZDepthEnd", 100);
    TessavoyHost::ModuleScene doubled = fog;
    doubled.set("MSAA", 2);

    TessavoyHost::EffectHost host(TessavoyHost::ModuleEntryPoints{PluginDataEntryFunction, EffectMain},
                                  TessavoyHost::forThisSystem());
    unitsAtTheEnd.clear();
    observeFrameStages(noteUnit);
    for (const auto& scene : {plain, fog, textured(fog), depth, textured(depth), doubled}) {
        EXPECT_EQ(host.createInstance(scene.project)->renderFrame({}).error, PF_Err_NONE);
    }
    observeFrameStages(nullptr);
    EXPECT_EQ(unitsAtTheEnd, std::vector<gl33core::GLint>(6, static_cast<gl33core::GLint>(gl33core::GL_TEXTURE0)));
}

}  // namespace
}  // namespace Tessavoy
