#include <cstring>

#include "Host/EffectHost.h"
#include "Host/HostError.h"
#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

using FakeEffect::valueOf;
using testing::ElementsAre;
using testing::HasSubstr;

using HostParameterCheckout = HostFixture;

ParameterTrack constant(ParameterValue value) {
    return {{{0, std::move(value), Ease::Linear}}};
}

std::vector<std::byte> bytesOf(double number) {
    std::vector<std::byte> bytes(sizeof number);
    std::memcpy(bytes.data(), &number, sizeof number);
    return bytes;
}

TEST_F(HostParameterCheckout, GivesTheRegisteredDefaults) {
    renderWith(FakeProject::project(), [](PF_InData* in) {
        EXPECT_EQ(valueOf(in, FakeEffect::Slider).parameter.u.sd.value, 3);
        EXPECT_EQ(valueOf(in, FakeEffect::FloatSlider).parameter.u.fs_d.value, 1.5);
        EXPECT_EQ(valueOf(in, FakeEffect::Angle).parameter.u.ad.value, 90 * 65536);
        EXPECT_EQ(valueOf(in, FakeEffect::Checkbox).parameter.u.bd.value, 1);
        EXPECT_EQ(valueOf(in, FakeEffect::Popup).parameter.u.pd.value, 2);
        const PF_Pixel color = valueOf(in, FakeEffect::Color).parameter.u.cd.value;
        EXPECT_EQ(color.red, 10);
        EXPECT_EQ(color.blue, 30);
        EXPECT_EQ(color.alpha, 255);
        // Percent of the layer of 100 by 80 pixels.
        EXPECT_EQ(valueOf(in, FakeEffect::Point).parameter.u.td.x_value, 50 * 65536);
        EXPECT_EQ(valueOf(in, FakeEffect::Point).parameter.u.td.y_value, 20 * 65536);
        EXPECT_EQ(valueOf(in, FakeEffect::Point3D).parameter.u.point3d_d.y_value, 80);
        EXPECT_EQ(valueOf(in, FakeEffect::Layer).parameter.u.ld.data, nullptr);
        EXPECT_EQ(valueOf(in, FakeEffect::Path).parameter.u.path_d.path_id, 0u);
        EXPECT_EQ(valueOf(in, FakeEffect::Button).parameter.u.arb_d.value, nullptr);
    });
}

TEST_F(HostParameterCheckout, GivesTheProjectsValues) {
    Project project = FakeProject::project();
    project.parameters[FakeEffect::Slider] = constant(-2.5);
    project.parameters[FakeEffect::Angle] = constant(-450.25);
    project.parameters[FakeEffect::Checkbox] = constant(0.0);
    project.parameters[FakeEffect::Popup] = constant(3.0);
    project.parameters[FakeEffect::Color] = constant(ColorValue{1, 2, 3, 4});
    project.parameters[FakeEffect::Path] = constant(MaskReference{9});
    renderWith(project, [](PF_InData* in) {
        EXPECT_EQ(valueOf(in, FakeEffect::Slider).parameter.u.sd.value, -3);  // half away from zero
        EXPECT_EQ(valueOf(in, FakeEffect::Angle).parameter.u.ad.value, -450 * 65536 - 16384);
        EXPECT_EQ(valueOf(in, FakeEffect::Checkbox).parameter.u.bd.value, 0);
        EXPECT_EQ(valueOf(in, FakeEffect::Popup).parameter.u.pd.value, 3);
        A_u_long word = 0;
        const PF_ParamDef color = valueOf(in, FakeEffect::Color).parameter;
        std::memcpy(&word, &color.u.cd.value, sizeof word);
        EXPECT_EQ(word, 0x03020104u);  // alpha in the low byte, then red, green, blue
        EXPECT_EQ(valueOf(in, FakeEffect::Path).parameter.u.path_d.path_id, 9u);
    });
}

TEST_F(HostParameterCheckout, ScalesPointsToTheDownsampledLayer) {
    Project project = FakeProject::project();
    project.parameters[FakeEffect::Point] = constant(Point2{30, 40});
    project.parameters[FakeEffect::Point3D] = constant(Point3{30, 40, 50});
    FrameRequest request;
    request.downsampleX = {1, 2};
    request.downsampleY = {1, 4};
    renderWith(
        project,
        [](PF_InData* in) {
            EXPECT_EQ(valueOf(in, FakeEffect::Point).parameter.u.td.x_value, 15 * 65536);
            EXPECT_EQ(valueOf(in, FakeEffect::Point).parameter.u.td.y_value, 10 * 65536);
            const PF_Point3DDef point = valueOf(in, FakeEffect::Point3D).parameter.u.point3d_d;
            EXPECT_EQ(point.x_value, 15);
            EXPECT_EQ(point.y_value, 10);
            EXPECT_EQ(point.z_value, 25);  // by the horizontal factor
        },
        request);
}

TEST_F(HostParameterCheckout, ReadsAnyMomentInLayerTime) {
    Project project = FakeProject::project();
    project.layers[0] = std::make_shared<FakeProject::StillLayer>("Late", FakeProject::solidImage(4, 4, 1, 2, 3), 1, 3);
    project.parameters[FakeEffect::FloatSlider] = {{{0, 0.0, Ease::Linear}, {4, 4.0, Ease::Linear}}};
    renderWith(project, [](PF_InData* in) {
        PF_ParamDef parameter{};
        in->inter.checkout_param(in->effect_ref, FakeEffect::FloatSlider, 3, 1, 2, &parameter);
        EXPECT_DOUBLE_EQ(parameter.u.fs_d.value, 2.5);
        in->inter.checkin_param(in->effect_ref, &parameter);
    });
}

TEST_F(HostParameterCheckout, HoldsWhatCannotBlend) {
    Project project = FakeProject::project();
    project.parameters[FakeEffect::Popup] = {{{0, 1.0, Ease::Linear}, {1, 3.0, Ease::Linear}}};
    FrameRequest request;
    request.frame = 24;
    renderWith(
        project, [](PF_InData* in) { EXPECT_EQ(valueOf(in, FakeEffect::Popup).parameter.u.pd.value, 1); }, request);
}

TEST_F(HostParameterCheckout, LendsLayersAsWorldsAtTheirTime) {
    Project project = FakeProject::project();
    project.layers.push_back(
        std::make_shared<FakeProject::StillLayer>("Clip", FakeProject::solidImage(31, 9, 7, 8, 9), 1, 1));
    project.parameters[FakeEffect::Layer] = constant(LayerReference{1});
    FrameRequest request;
    request.downsampleX = {1, 2};
    renderWith(
        project,
        [](PF_InData* in) {
            PF_ParamDef parameter{};
            EXPECT_EQ(in->inter.checkout_param(in->effect_ref, FakeEffect::Layer, 1, 1, 1, &parameter), PF_Err_NONE);
            const PF_LayerDef& layer = parameter.u.ld;
            EXPECT_EQ(layer.width, 16);
            EXPECT_EQ(layer.height, 9);
            EXPECT_EQ(layer.data[15].green, 8);
            in->inter.checkin_param(in->effect_ref, &parameter);
            in->inter.checkout_param(in->effect_ref, FakeEffect::Layer, 2, 1, 1, &parameter);
            EXPECT_EQ(parameter.u.ld.data, nullptr);
            EXPECT_EQ(parameter.u.ld.width, 0);
            in->inter.checkin_param(in->effect_ref, &parameter);
            EXPECT_EQ(valueOf(in, FakeEffect::InputLayer).parameter.u.ld.width, 50);
        },
        request);
}

TEST_F(HostParameterCheckout, InterpolatesArbitraryDataThroughTheModule) {
    Project project = FakeProject::project();
    project.parameters[FakeEffect::Data].keys = {{0, ArbitraryValue{bytesOf(10)}, Ease::Smooth},
                                                 {4, ArbitraryValue{bytesOf(20)}, Ease::Linear}};
    const auto expectNumber = [](int frame, double expected, bool own) {
        return [=](PF_InData* in) {
            PF_ParamDef first{}, second{};
            in->inter.checkout_param(in->effect_ref, FakeEffect::Data, frame, 1, 25, &first);
            in->inter.checkout_param(in->effect_ref, FakeEffect::Data, frame, 1, 25, &second);
            EXPECT_DOUBLE_EQ(FakeEffect::numberIn(first.u.arb_d.value), expected);
            EXPECT_EQ(first.u.arb_d.value == second.u.arb_d.value, own);
            in->inter.checkin_param(in->effect_ref, &second);
            in->inter.checkin_param(in->effect_ref, &first);
        };
    };
    renderWith(project, expectNumber(0, 10, true));
    renderWith(project, expectNumber(25, 10 + 10 * 5.0 / 32, false));  // 3u^2 - 2u^3 of 1/4
    renderWith(project, expectNumber(200, 20, true));
    renderWith(FakeProject::project(), expectNumber(0, 7, true));
}

TEST_F(HostParameterCheckout, RefusesSavedDataThatTheModuleRefuses) {
    Project project = FakeProject::project();
    project.parameters[FakeEffect::Data] = constant(ArbitraryValue{std::vector<std::byte>(3)});
    EffectHost host(FakeEffect::entryPoints());
    try {
        host.createInstance(project);
        FAIL() << "accepted";
    } catch (const HostError& error) {
        EXPECT_EQ(error.status(), ExitStatus::Scene);
        EXPECT_THAT(error.what(), HasSubstr("parameter 11 (\"Data\"), error 512"));
    }
}

TEST_F(HostParameterCheckout, AnswersBadRequestsWithErrors) {
    renderWith(FakeProject::project(), [](PF_InData* in) {
        PF_ParamDef parameter{};
        const auto checkout = in->inter.checkout_param;
        EXPECT_EQ(checkout(in->effect_ref, FakeEffect::ParameterCount, 0, 1, 25, &parameter), PF_Err_INVALID_INDEX);
        EXPECT_EQ(checkout(in->effect_ref, -1, 0, 1, 25, &parameter), PF_Err_INVALID_INDEX);
        EXPECT_EQ(checkout(in->effect_ref, 1, 0, 1, 0, &parameter), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(checkout(in->effect_ref, 1, 0, 1, 25, nullptr), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(in->inter.add_param(in->effect_ref, -1, &parameter), PF_Err_INVALID_CALLBACK);
    });
}

// Modules keep records in growing lists, so they come back from other addresses; zeroed ones were never out.
TEST_F(HostParameterCheckout, KnowsARecordWhereverItWasMovedTo) {
    renderWith(FakeProject::project(), [](PF_InData* in) {
        PF_ParamDef zero{};
        EXPECT_EQ(in->inter.checkin_param(in->effect_ref, &zero), PF_Err_NONE);
        std::vector<PF_ParamDef> list;
        for (int i = 0; i < 20; ++i)
            in->inter.checkout_param(in->effect_ref, FakeEffect::Slider, 0, 1, 25, &list.emplace_back());
        for (PF_ParamDef& parameter : list)
            EXPECT_EQ(in->inter.checkin_param(in->effect_ref, &parameter), PF_Err_NONE);
    });
}

TEST_F(HostParameterCheckout, NoticesASecondCheckin) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    duringRender([](PF_InData* in) {
        PF_ParamDef parameter{};
        in->inter.checkout_param(in->effect_ref, FakeEffect::Slider, 0, 1, 25, &parameter);
        in->inter.checkin_param(in->effect_ref, &parameter);
        EXPECT_EQ(in->inter.checkin_param(in->effect_ref, &parameter), PF_Err_BAD_CALLBACK_PARAM);
    });
    EXPECT_THAT(instance->renderFrame({}).broken, ElementsAre(HasSubstr("checked in that was not checked out")));
}

}  // namespace
}  // namespace TessavoyHost
