#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

using FakeEffect::Acquired;
using testing::ElementsAre;
using testing::HasSubstr;

using HostWorldSuites = HostFixture;

TEST_F(HostWorldSuites, MakeClearedWorldsOfEachFormat) {
    renderWith(FakeProject::project(), [](PF_InData* in) {
        const Acquired<PF_WorldSuite2> suite(in);
        for (const PF_PixelFormat format : {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB128}) {
            PF_EffectWorld world{};
            ASSERT_EQ(suite->PF_NewWorld(in->effect_ref, 5, 3, 1, format, &world), PF_Err_NONE);
            EXPECT_EQ(world.width, 5);
            EXPECT_EQ(world.height, 3);
            EXPECT_EQ(world.data->alpha, 0);
            PF_PixelFormat found = PF_PixelFormat_INVALID;
            EXPECT_EQ(suite->PF_GetPixelFormat(&world, &found), PF_Err_NONE);
            EXPECT_EQ(found, format);
            EXPECT_EQ(suite->PF_DisposeWorld(in->effect_ref, &world), PF_Err_NONE);
            EXPECT_EQ(world.data, nullptr);
        }
        PF_EffectWorld world{};
        EXPECT_NE(suite->PF_NewWorld(in->effect_ref, 5, 3, 1, PF_PixelFormat_INVALID, &world), PF_Err_NONE);
        EXPECT_NE(suite->PF_NewWorld(in->effect_ref, 0, 3, 1, PF_PixelFormat_ARGB32, &world), PF_Err_NONE);
    });
}

TEST_F(HostWorldSuites, ReportAWorldThatWasNotDisposedOf) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    duringRender([](PF_InData* in) {
        const Acquired<PF_WorldSuite2> suite(in);
        PF_EffectWorld world{};
        suite->PF_NewWorld(in->effect_ref, 5, 3, 0, PF_PixelFormat_ARGB32, &world);
    });
    EXPECT_THAT(instance->renderFrame({}).broken, ElementsAre(HasSubstr("world \"PF_NewWorld\" (5)")));
}

TEST_F(HostWorldSuites, GivePixelsAtTheirOwnDepthOnlyAndWithoutAnError) {
    for (const int bits : {8, 16, 32}) {
        FrameRequest request;
        request.bitsPerChannel = bits;
        renderWith(
            FakeProject::project(),
            [bits](PF_InData* in) {
                const Acquired<PF_PixelDataSuite1> suite(in);
                PF_ParamDef layer{};
                in->inter.checkout_param(in->effect_ref, 0, 0, 1, 25, &layer);
                PF_LayerDef& world = layer.u.ld;
                PF_Pixel8* pixels8 = nullptr;
                PF_Pixel16* pixels16 = nullptr;
                PF_PixelFloat* floats = nullptr;
                EXPECT_EQ(suite->get_pixel_data8(&world, nullptr, &pixels8), PF_Err_NONE);
                EXPECT_EQ(suite->get_pixel_data16(&world, nullptr, &pixels16), PF_Err_NONE);
                EXPECT_EQ(suite->get_pixel_data_float(&world, nullptr, &floats), PF_Err_NONE);
                EXPECT_EQ(pixels8 != nullptr, bits == 8);
                EXPECT_EQ(pixels16 != nullptr, bits == 16);
                EXPECT_EQ(floats != nullptr, bits == 32);
                EXPECT_TRUE(pixels16 == nullptr || pixels16[0].alpha == 32768);
                EXPECT_TRUE(floats == nullptr || floats[0].alpha == 1.0f);
                EXPECT_EQ(in->utils->get_pixel_data8(&world, nullptr, &pixels8), PF_Err_NONE);
                EXPECT_EQ(pixels8 != nullptr, bits == 8);
                in->inter.checkin_param(in->effect_ref, &layer);
            },
            request);
    }
}

}  // namespace
}  // namespace TessavoyHost
