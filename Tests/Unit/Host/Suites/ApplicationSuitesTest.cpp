#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

using FakeEffect::Acquired;
using testing::ElementsAre;
using testing::HasSubstr;

class HostApplicationSuites : public HostFixture {
protected:
    // Two layers, the second on screen from 1.5 to 3.5 seconds; the effect sits on it.
    static Project layered() {
        Project project = FakeProject::project();
        project.layers.push_back(
            std::make_shared<FakeProject::StillLayer>("Late", FakeProject::solidImage(20, 10, 1, 2, 3), 1.6, 2));
        project.effectLayer = 1;
        return project;
    }

    static Camera camera() {
        Camera made;
        made.position = {{{0, Point3{50, 40, -500}, Ease::Linear}, {4, Point3{50, 40, -900}, Ease::Linear}}};
        made.zoom = {{{0, 500.0, Ease::Linear}, {4, 900.0, Ease::Linear}}};
        return made;
    }

    static A_Time compTime(PF_InData* in) {
        const Acquired<AEGP_PFInterfaceSuite1> suite(in);
        A_Time time{};
        EXPECT_EQ(suite->AEGP_ConvertEffectToCompTime(in->effect_ref, in->current_time, in->time_scale, &time), 0);
        return time;
    }
};

TEST_F(HostApplicationSuites, TurnEffectTimeIntoCompositionTime) {
    FrameRequest request;
    request.frame = 60;
    renderWith(
        layered(),
        [](PF_InData* in) {
            EXPECT_EQ(in->current_time, 20);
            const A_Time time = compTime(in);
            EXPECT_EQ(time.value, 60);
            EXPECT_EQ(time.scale, 25u);
        },
        request);
}

// The whole walk from the effect to the size of its composition, and to the camera.
TEST_F(HostApplicationSuites, LeadToTheCameraAndTheComposition) {
    Project project = layered();
    project.camera = camera();
    FrameRequest request;
    request.frame = 50;
    renderWith(
        project,
        [](PF_InData* in) {
            const Acquired<AEGP_PFInterfaceSuite1> interface(in);
            const Acquired<AEGP_LayerSuite5> layers11(in);
            const Acquired<AEGP_LayerSuite8> layers14(in);
            const Acquired<AEGP_StreamSuite5> streams(in);
            const Acquired<AEGP_CompSuite4> compositions(in);
            const Acquired<AEGP_ItemSuite6> items(in);
            const A_Time time = compTime(in);
            AEGP_LayerH found = nullptr;
            ASSERT_EQ(interface->AEGP_GetEffectCamera(in->effect_ref, &time, &found), 0);
            ASSERT_NE(found, nullptr);
            A_Matrix4 matrix{};
            EXPECT_EQ(layers11->AEGP_GetLayerToWorldXform(found, &time, &matrix), 0);
            EXPECT_EQ(matrix.mat[3][2], -700);  // halfway at 2 of 4 seconds
            EXPECT_EQ(matrix.mat[2][2], 1);
            AEGP_StreamVal2 zoom{};
            AEGP_StreamType type = 0;
            EXPECT_EQ(streams->AEGP_GetLayerStreamValue(found, AEGP_LayerStream_ZOOM, AEGP_LTimeMode_CompTime, &time, 0,
                                                        &zoom, &type),
                      0);
            EXPECT_EQ(zoom.one_d, 700);
            EXPECT_EQ(type, AEGP_StreamType_OneD);
            AEGP_LayerH layer = nullptr;
            AEGP_CompH composition = nullptr;
            AEGP_ItemH item = nullptr;
            A_long width = 0, height = 0;
            EXPECT_EQ(interface->AEGP_GetEffectLayer(in->effect_ref, &layer), 0);
            EXPECT_EQ(layers14->AEGP_GetLayerParentComp(layer, &composition), 0);
            EXPECT_EQ(compositions->AEGP_GetItemFromComp(composition, &item), 0);
            EXPECT_EQ(items->AEGP_GetItemDimensions(item, &width, &height), 0);
            EXPECT_EQ(width, 100);
            EXPECT_EQ(height, 80);
        },
        request);
}

TEST_F(HostApplicationSuites, GiveANullCameraWhereThereIsNone) {
    renderWith(layered(), [](PF_InData* in) {
        const Acquired<AEGP_PFInterfaceSuite1> suite(in);
        const A_Time time = compTime(in);
        AEGP_LayerH found = reinterpret_cast<AEGP_LayerH>(in);
        EXPECT_EQ(suite->AEGP_GetEffectCamera(in->effect_ref, &time, &found), 0);
        EXPECT_EQ(found, nullptr);
    });
}

TEST_F(HostApplicationSuites, FindTheLayerOfALayerParameterAndItsTimes) {
    Project project = layered();
    project.parameters[FakeEffect::Layer] = {{{0, LayerReference{1}, Ease::Linear}}};
    renderWith(project, [](PF_InData* in) {
        const Acquired<AEGP_PFInterfaceSuite1> interface(in);
        const Acquired<AEGP_EffectSuite2> effects(in);
        const Acquired<AEGP_StreamSuite2> streams(in);
        const Acquired<AEGP_LayerSuite8> layers(in);
        AEGP_EffectRefH effect = nullptr;
        AEGP_StreamRefH stream = nullptr;
        ASSERT_EQ(interface->AEGP_GetNewEffectForEffect(1, in->effect_ref, &effect), 0);
        ASSERT_EQ(streams->AEGP_GetNewEffectStreamByIndex(1, effect, FakeEffect::Layer, &stream), 0);
        AEGP_StreamValue value{};
        const A_Time now = compTime(in);
        ASSERT_EQ(streams->AEGP_GetNewStreamValue(1, stream, AEGP_LTimeMode_CompTime, &now, 0, &value), 0);
        EXPECT_EQ(value.val.layer_id, 2);
        AEGP_LayerH own = nullptr, layer = nullptr;
        AEGP_CompH composition = nullptr;
        EXPECT_EQ(interface->AEGP_GetEffectLayer(in->effect_ref, &own), 0);
        EXPECT_EQ(layers->AEGP_GetLayerParentComp(own, &composition), 0);
        EXPECT_EQ(layers->AEGP_GetLayerFromLayerID(composition, value.val.layer_id, &layer), 0);
        A_Time start{}, duration{}, inLayer{};
        EXPECT_EQ(layers->AEGP_GetLayerInPoint(layer, AEGP_LTimeMode_CompTime, &start), 0);
        EXPECT_EQ(start.value, 40);
        EXPECT_EQ(start.scale, 25u);
        EXPECT_EQ(layers->AEGP_GetLayerInPoint(layer, AEGP_LTimeMode_LayerTime, &start), 0);
        EXPECT_EQ(start.value, 0);
        EXPECT_EQ(layers->AEGP_GetLayerDuration(layer, AEGP_LTimeMode_CompTime, &duration), 0);
        EXPECT_EQ(duration.value, 50);
        EXPECT_EQ(layers->AEGP_ConvertCompToLayerTime(layer, &now, &inLayer), 0);
        EXPECT_EQ(inLayer.value, now.value - 40);
        EXPECT_EQ(streams->AEGP_DisposeStreamValue(&value), 0);
        EXPECT_EQ(streams->AEGP_DisposeStream(stream), 0);
        EXPECT_EQ(effects->AEGP_DisposeEffect(effect), 0);
    });
}

TEST_F(HostApplicationSuites, ShowAndRenameParametersThroughStreams) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    FakeEffect::hooks().userChangedParam = [](PF_InData* in, PF_OutData*, PF_ParamDef**, void*) {
        const Acquired<AEGP_PFInterfaceSuite1> interface(in);
        const Acquired<AEGP_EffectSuite2> effects(in);
        const Acquired<AEGP_StreamSuite5> streams(in);
        const Acquired<AEGP_DynamicStreamSuite4> dynamic(in);
        const Acquired<AEGP_MemorySuite1> memory(in);
        AEGP_EffectRefH effect = nullptr;
        AEGP_StreamRefH stream = nullptr;
        interface->AEGP_GetNewEffectForEffect(1, in->effect_ref, &effect);
        streams->AEGP_GetNewEffectStreamByIndex(1, effect, FakeEffect::Angle, &stream);
        EXPECT_EQ(dynamic->AEGP_SetDynamicStreamFlag(stream, AEGP_DynStreamFlag_HIDDEN, 0, 1), 0);
        const A_UTF16Char name[] = {'T', 0xFC, 'r', 0};
        EXPECT_EQ(dynamic->AEGP_SetStreamName(stream, name), 0);
        AEGP_MemHandle text = nullptr;
        EXPECT_EQ(streams->AEGP_GetStreamName(1, stream, 0, &text), 0);
        void* units = nullptr;
        memory->AEGP_LockMemHandle(text, &units);
        EXPECT_EQ(std::u16string(static_cast<const char16_t*>(units)), u"T\u00FCr");
        memory->AEGP_UnlockMemHandle(text);
        memory->AEGP_FreeMemHandle(text);
        streams->AEGP_DisposeStream(stream);
        return effects->AEGP_DisposeEffect(effect);
    };
    const CommandResult result = instance->command(PF_Cmd_USER_CHANGED_PARAM, 0);
    EXPECT_EQ(result.error, PF_Err_NONE);
    EXPECT_THAT(result.broken, testing::IsEmpty());
    EXPECT_TRUE(instance->panel().at(FakeEffect::Angle).hidden);
    EXPECT_EQ(instance->panel().at(FakeEffect::Angle).name, "T\xC3\xBCr");
    EXPECT_FALSE(instance->panel().at(FakeEffect::Slider).hidden);
}

TEST_F(HostApplicationSuites, GivePanelCommandsTheValuesAndPresentNames) {
    Project project = FakeProject::project();
    project.parameters[FakeEffect::Slider] = {{{0, 0.0, Ease::Linear}, {4, 100.0, Ease::Linear}}};
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(project);
    instance->panel().rename(FakeEffect::Slider, "A name that has more than thirty-one characters");
    FakeEffect::hooks().userChangedParam = [](PF_InData* in, PF_OutData*, PF_ParamDef** params, void*) {
        EXPECT_EQ(params[FakeEffect::Slider]->u.sd.value, 50);
        EXPECT_STREQ(params[FakeEffect::Slider]->name, "A name that has more than thirt");
        PF_ParamDef renamed = *params[FakeEffect::Angle];
        std::snprintf(renamed.name, sizeof renamed.name, "Turn");
        const Acquired<PF_ParamUtilsSuite3> utilities(in);
        EXPECT_EQ(utilities->PF_UpdateParamUI(in->effect_ref, FakeEffect::Angle, &renamed), 0);
        const Acquired<PF_AdvAppSuite2> application(in);
        return application->PF_SetProjectDirty();
    };
    const CommandResult result = instance->command(PF_Cmd_USER_CHANGED_PARAM, 50);
    EXPECT_THAT(result.broken, testing::IsEmpty());
    EXPECT_TRUE(result.projectDirty);
    EXPECT_EQ(instance->panel().at(FakeEffect::Angle).name, "Turn");
}

TEST_F(HostApplicationSuites, ReportReferencesThatWereNotDisposedOf) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    duringRender([](PF_InData* in) {
        const Acquired<AEGP_PFInterfaceSuite1> interface(in);
        const Acquired<AEGP_StreamSuite4> streams(in);
        AEGP_EffectRefH effect = nullptr;
        AEGP_StreamRefH stream = nullptr;
        interface->AEGP_GetNewEffectForEffect(1, in->effect_ref, &effect);
        streams->AEGP_GetNewEffectStreamByIndex(1, effect, FakeEffect::Angle, &stream);
    });
    EXPECT_THAT(instance->renderFrame({}).broken,
                ElementsAre(HasSubstr("effect reference"), HasSubstr("stream \"Angle\" (3)")));
}

TEST_F(HostApplicationSuites, RegisterModulesWithIdsOfTheirOwn) {
    renderWith(FakeProject::project(), [](PF_InData* in) {
        const Acquired<AEGP_UtilitySuite3> older(in);
        const Acquired<AEGP_UtilitySuite5> newer(in);
        AEGP_PluginID first = 0, second = 0;
        EXPECT_EQ(older->AEGP_RegisterWithAEGP(nullptr, "First", &first), 0);
        EXPECT_EQ(newer->AEGP_RegisterWithAEGP(nullptr, "Second", &second), 0);
        EXPECT_NE(first, second);
    });
}

TEST_F(HostApplicationSuites, RunScriptsOnlyWhereTheHostCan) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    std::string answer;
    PF_Err error = 0;
    duringRender([&](PF_InData* in) {
        const Acquired<AEGP_UtilitySuite5> utilities(in);
        const Acquired<AEGP_MemorySuite1> memory(in);
        AEGP_MemHandle result = nullptr;
        error = utilities->AEGP_ExecuteScript(1, "1 + 1", 0, &result, nullptr);
        if (error != 0)
            return;
        void* text = nullptr;
        memory->AEGP_LockMemHandle(result, &text);
        answer = static_cast<const char*>(text);
        memory->AEGP_UnlockMemHandle(result);
        memory->AEGP_FreeMemHandle(result);
    });
    instance->renderFrame({});
    EXPECT_NE(error, 0);
    host.services().hooks.runScript = [](const std::string& script) { return script + " = 2"; };
    EXPECT_THAT(instance->renderFrame({}).broken, testing::IsEmpty());
    EXPECT_EQ(error, 0);
    EXPECT_EQ(answer, "1 + 1 = 2");
}

}  // namespace
}  // namespace TessavoyHost
