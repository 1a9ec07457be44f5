#include "Host/EffectHost.h"

#include "Host/HostError.h"
#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using HostEffectHost = HostFixture;

TEST_F(HostEffectHost, TakesTheModulesDescription) {
    FakeEffect::hooks().outFlags = PF_OutFlag_CUSTOM_UI;
    const EffectHost host(FakeEffect::entryPoints());
    EXPECT_EQ(host.description().name, "Fake");
    EXPECT_EQ(host.description().matchName, "Test Fake");
    EXPECT_EQ(host.description().entryPoint, "EffectMain");
    EXPECT_EQ(host.description().apiMinor, 27);
    EXPECT_EQ(host.description().version, 626176u);
    EXPECT_TRUE(host.hasOutFlag(PF_OutFlag_CUSTOM_UI));
    EXPECT_FALSE(host.hasOutFlag(PF_OutFlag_NON_PARAM_VARY));
}

TEST_F(HostEffectHost, KeepsParametersWithTheirTexts) {
    const EffectHost host(FakeEffect::entryPoints());
    ASSERT_EQ(host.parameters().size(), static_cast<std::size_t>(FakeEffect::ParameterCount));
    EXPECT_EQ(host.parameters()[0].definition.param_type, PF_Param_LAYER);
    const RegisteredParameter& popup = host.parameters()[FakeEffect::Popup];
    EXPECT_EQ(popup.popupTexts, "One|Two|Three");
    EXPECT_EQ(popup.definition.u.pd.u.namesptr, popup.popupTexts.c_str());
    EXPECT_EQ(host.parameters()[FakeEffect::Checkbox].text, "On");
    EXPECT_EQ(host.parameters()[FakeEffect::Button].text, "Press");
    EXPECT_EQ(host.parameters()[FakeEffect::Angle].definition.uu.id, FakeEffect::diskIdOf(FakeEffect::Angle));
    EXPECT_THAT(host.broken(), IsEmpty());
}

TEST_F(HostEffectHost, LeavesNothingBehindAfterTheSetDown) {
    EffectHost host(FakeEffect::entryPoints());
    EXPECT_EQ(host.ledger().count(Loan::Handle), 2);  // global data and the default of the arbitrary parameter
    EXPECT_EQ(host.setDown().error, PF_Err_NONE);
    EXPECT_THAT(host.ledger().outstanding(), IsEmpty());
    EXPECT_EQ(host.services().handles.count(), 0u);
    EXPECT_THAT(host.broken(), IsEmpty());
}

TEST_F(HostEffectHost, NoticesAWrongNumberOfParameters) {
    FakeEffect::hooks().paramsSetup = [](PF_InData*, PF_OutData* out) {
        out->num_params = 3;
        return PF_Err_NONE;
    };
    const EffectHost host(FakeEffect::entryPoints());
    EXPECT_THAT(host.broken(), ElementsAre(HasSubstr("num_params is 3, but 15")));
}

TEST_F(HostEffectHost, NoticesADiskIdThatIsUsedTwice) {
    FakeEffect::hooks().paramsSetup = [](PF_InData* in, PF_OutData* out) {
        PF_ParamDef again{};
        again.param_type = PF_Param_SLIDER;
        again.uu.id = FakeEffect::diskIdOf(FakeEffect::Angle);
        ++out->num_params;
        return in->inter.add_param(in->effect_ref, -1, &again);
    };
    const EffectHost host(FakeEffect::entryPoints());
    EXPECT_THAT(host.broken(), ElementsAre(HasSubstr("disk id 103 is used twice")));
}

TEST_F(HostEffectHost, TellsWhyTheSetUpFailed) {
    FakeEffect::hooks().globalSetup = [](PF_InData* in, PF_OutData* out) {
        in->utils->ansi.sprintf(out->return_msg, "no %s", "driver");
        in->utils->host_dispose_handle(out->global_data);
        out->global_data = nullptr;
        return PF_Err{4};
    };
    try {
        const EffectHost host(FakeEffect::entryPoints());
        FAIL() << "set up";
    } catch (const HostError& error) {
        EXPECT_EQ(error.status(), ExitStatus::Module);
        EXPECT_STREQ(error.what(),
                     "setting the module up failed with error 4: no driver; the effect needs a driver for OpenGL 3.3, "
                     "on Linux with EGL, such as Mesa's");
    }
}

TEST_F(HostEffectHost, SetsDownAModuleWhoseRegistrationFailed) {
    FakeEffect::hooks().paramsSetup = [](PF_InData*, PF_OutData*) { return PF_Err{513}; };
    EXPECT_THROW(const EffectHost host(FakeEffect::entryPoints()), HostError);
}

// A module that makes nothing of it would stand without parameters.
TEST_F(HostEffectHost, RefusesAModuleForWhichMemoryRanOut) {
    FakeEffect::hooks().paramsSetup = [](PF_InData* in, PF_OutData*) {
        HostServices::current()->faults.exhaustNth("add_param", 1);
        PF_ParamDef further{};
        in->inter.add_param(in->effect_ref, -1, &further);
        return PF_Err{0};
    };
    try {
        const EffectHost host(FakeEffect::entryPoints());
        FAIL() << "set up";
    } catch (const HostError& error) {
        EXPECT_THAT(error.what(), HasSubstr("registering the parameters failed with error 4: the host ran out of "
                                            "memory in add_param"));
    }
}

TEST_F(HostEffectHost, NamesAModuleThatCannotBeLoaded) {
    try {
        const EffectHost host(std::filesystem::path("no/such/module.so"));
        FAIL() << "loaded";
    } catch (const HostError& error) {
        EXPECT_EQ(error.status(), ExitStatus::Module);
        EXPECT_THAT(error.what(), HasSubstr("no/such/module.so"));
    }
}

TEST_F(HostEffectHost, TakesCustomEventsFromRegisterUi) {
    FakeEffect::hooks().paramsSetup = [](PF_InData* in, PF_OutData*) {
        PF_CustomUIInfo info{};
        info.events = PF_CustomEFlag_EFFECT;
        return in->inter.register_ui(in->effect_ref, &info);
    };
    const EffectHost host(FakeEffect::entryPoints());
    EXPECT_EQ(host.description().customEvents, PF_CustomEFlag_EFFECT);
}

TEST_F(HostEffectHost, CatchesWhatLeavesTheModuleAsAnException) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    FakeEffect::hooks().queryFlags = [](PF_InData*, PF_OutData*) -> PF_Err { throw PF_Err_OUT_OF_MEMORY; };
    const FrameResult result = instance->renderFrame({});
    EXPECT_EQ(result.error, PF_Err_OUT_OF_MEMORY);
    EXPECT_THAT(result.broken, ElementsAre(HasSubstr("an error value left the module as an exception: 4")));
}

TEST_F(HostEffectHost, SaysWhichApplicationItIs) {
    HostOptions options;
    options.applId = PF_AppID_Editing;
    renderWith(
        FakeProject::project(), [](PF_InData* in) { EXPECT_EQ(in->appl_id, 0x50724D72); }, {}, options);
    renderWith(FakeProject::project(), [](PF_InData* in) { EXPECT_EQ(in->appl_id, 0x46585443); });
}

TEST_F(HostEffectHost, RefusesAnEffectLayerThatIsNotThere) {
    EffectHost host(FakeEffect::entryPoints());
    Project project = FakeProject::project();
    project.effectLayer = 1;
    EXPECT_THROW(host.createInstance(project), HostError);
}

}  // namespace
}  // namespace TessavoyHost
