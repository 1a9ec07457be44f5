#include <cstring>
#include <utility>

#include "Host/ArbitraryCalls.h"
#include "Host/CommandContext.h"
#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

using testing::IsEmpty;
using testing::StartsWith;

using ModuleCommands = ModuleFixture;

TEST_F(ModuleCommands, AboutNamesProductAndVersion) {
    EXPECT_EQ(host().description().about, "Tessavoy v1.3\rA grid of instances, computed cell by cell.");
    const CommandResult about = host().command(PF_Cmd_ABOUT);
    EXPECT_EQ(about.error, PF_Err_NONE);
    EXPECT_THAT(about.message, StartsWith("Tessavoy v1.3\r"));
    EXPECT_FALSE(about.displayError);
    EXPECT_THAT(about.broken, IsEmpty());
}

TEST_F(ModuleCommands, DescriptionIsThatOfTheResource) {
    const ModuleDescription& module = host().description();
    EXPECT_EQ(module.name, "Tessavoy");
    EXPECT_EQ(module.matchName, "Quelvane Tessavoy");
    EXPECT_EQ(module.category, "Quelvane");
    EXPECT_EQ(module.entryPoint, "EffectMain");
    EXPECT_EQ(module.kind, 'e' << 24 | 'F' << 16 | 'K' << 8 | 'T');
    EXPECT_EQ(module.apiMajor, 13);
    EXPECT_EQ(module.apiMinor, 27);
    EXPECT_EQ(module.customEvents, PF_CustomEFlag_EFFECT);
}

struct Description {
    std::vector<std::string> texts;
    A_long reserved = 0;
};

A_Err takeDescription(PF_PluginDataPtr data, const A_u_char* name, const A_u_char* matchName, const A_u_char* category,
                      const A_u_char* entryPoint, A_long, A_long, A_long, A_long reserved) {
    auto& description = *reinterpret_cast<Description*>(data);
    for (const A_u_char* text : {name, matchName, category, entryPoint})
        description.texts.emplace_back(reinterpret_cast<const char*>(text));
    description.reserved = reserved;
    return 77;
}

TEST_F(ModuleCommands, DescriptionAnswersAsTheHostDoes) {
    const ModuleLoader module(TESSAVOY_MODULE);
    Description description;
    const auto describe = module.function<PF_PluginDataEntryFunction>("PluginDataEntryFunction");
    EXPECT_EQ(describe(reinterpret_cast<PF_PluginDataPtr>(&description), takeDescription, nullptr, "", ""), 77);
    EXPECT_EQ(description.texts, (std::vector<std::string>{"Tessavoy", "Quelvane Tessavoy", "Quelvane", "EffectMain"}));
    EXPECT_EQ(description.reserved, 8);
}

TEST_F(ModuleCommands, SetUpTellsVersionAndFlags) {
    const ModuleDescription& module = host().description();
    constexpr A_u_long release = 3;
    EXPECT_EQ(module.version, 1u << PF_Vers_VERS_SHIFT | 3u << PF_Vers_SUBVERS_SHIFT | 1u << PF_Vers_BUGFIX_SHIFT |
                                  release << PF_Vers_STAGE_SHIFT);
    EXPECT_EQ(module.version, 626176u);
    EXPECT_EQ(module.outFlags, PF_OutFlag_NON_PARAM_VARY | PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING |
                                   PF_OutFlag_USE_OUTPUT_EXTENT | PF_OutFlag_PIX_INDEPENDENT | PF_OutFlag_CUSTOM_UI |
                                   PF_OutFlag_DEEP_COLOR_AWARE);
    EXPECT_EQ(module.outFlags, 33588308);
    EXPECT_EQ(module.outFlags2, 411046915);
    EXPECT_TRUE(host().hasOutFlag2(PF_OutFlag2_SUPPORTS_THREADED_RENDERING));
    EXPECT_TRUE(host().hasOutFlag2(PF_OutFlag2_MUTABLE_RENDER_SEQUENCE_DATA_SLOWER));
    EXPECT_THAT(host().broken(), IsEmpty());
}

// Every bit of the out-data stays as it was, and the host is not called.
TEST_F(ModuleCommands, UnusedNumbersDoNothing) {
    const std::vector<PF_Cmd> unused = {2,  9,  10, 11, 12, 16, 17,   19,        20,        21, 25,
                                        26, 27, 29, 30, 31, 32, 1000, INT32_MAX, INT32_MIN, -1};
    for (const PF_Cmd number : unused) {
        SCOPED_TRACE(number);
        CommandContext context(host(), nullptr, number, {});
        const PF_OutData before = context.out;
        host().faults().failNth(Faults::anyCall, 1, PF_Err_INVALID_CALLBACK);
        EXPECT_EQ(context.run(), PF_Err_NONE);
        EXPECT_EQ(host().faults().struck(), 0) << "the host was called";
        EXPECT_EQ(std::memcmp(&context.out, &before, sizeof before), 0);
        EXPECT_THAT(context.finish().broken, IsEmpty());
        host().faults().clear();
    }
}

// One registration, in which the n-th call of a kind fails, if one is named. The defaults of what was added are
// disposed of at the end.
class Registration {
public:
    explicit Registration(EffectHost& host, std::string_view failing = {}, int n = 1, PF_Err error = PF_Err_NONE)
        : mHost(host) {
        CommandContext context(host, nullptr, PF_Cmd_PARAMS_SETUP, {});
        context.registration = &added;
        if (!failing.empty())
            host.faults().failNth(failing, n, error);
        context.run();
        host.faults().clear();
        result = context.finish();
        EXPECT_THAT(result.broken, IsEmpty());
    }

    ~Registration() {
        for (const RegisteredParameter& parameter : added) {
            if (parameter.definition.param_type == PF_Param_ARBITRARY_DATA)
                ArbitraryCalls(mHost, parameter).dispose(parameter.definition.u.arb_d.dephault);
        }
    }

    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

    std::vector<RegisteredParameter> added;
    CommandResult result;

private:
    EffectHost& mHost;
};

TEST_F(ModuleCommands, RegistrationEndsAt997Parameters) {
    EXPECT_EQ(host().parameters().size(), 997u);
    const Registration registration(host());
    EXPECT_EQ(registration.result.error, PF_Err_NONE);
    EXPECT_EQ(registration.added.size(), 996u);
    EXPECT_EQ(registration.result.out.num_params, 997);
}

TEST_F(ModuleCommands, RegistrationStopsAtTheFirstError) {
    for (const char* id : {"UseCompCamera", "CountX", "Script", "Ramp.Custom1", "Ramp.Custom2", "Gradient.Custom10",
                           "FogColorGradient", "RenderSettingsGroupEnd"}) {
        SCOPED_TRACE(id);
        const int n = parameterIndexOf(id);
        const Registration registration(host(), "add_param", n, PF_Err_INVALID_CALLBACK);
        EXPECT_EQ(registration.result.error, PF_Err_INVALID_CALLBACK);
        EXPECT_EQ(registration.added.size(), static_cast<std::size_t>(n - 1));
    }
}

TEST_F(ModuleCommands, RegistrationPassesOnTheErrorOfTheControls) {
    const Registration registration(host(), "register_ui", 1, PF_Err_INVALID_INDEX);
    EXPECT_EQ(registration.result.error, PF_Err_INVALID_INDEX);
    EXPECT_EQ(registration.added.size(), 996u) << "the rest is registered all the same";
}

TEST_F(ModuleCommands, WithoutTheTextSuiteEndAsAMissingSuite) {
    host();
    host().faults().removeSuite("PF ANSI Suite", 1);
    EXPECT_EQ(host().command(PF_Cmd_ABOUT).error, PF_Err_BAD_CALLBACK_PARAM);
    // The first text that is made is the label of the first slider.
    const Registration registration(host());
    EXPECT_EQ(registration.result.error, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(registration.added.size(), static_cast<std::size_t>(parameterIndexOf("Float.Custom1") - 1));
}

// The commands of the panel, for parameters that it does nothing about.
TEST_F(ModuleCommands, OfThePanelAreAnsweredAndGiveEverythingBack) {
    const auto instance = instanceOf(fourSquaresScene());
    PF_EventExtra event{};
    event.effect_win.index = parameterIndexOf("CountX");
    PF_UserChangedParamExtra changed{parameterIndexOf("SortByZ")};
    const std::pair<PF_Cmd, void*> commands[] = {{PF_Cmd_QUERY_DYNAMIC_FLAGS, nullptr},
                                                 {PF_Cmd_UPDATE_PARAMS_UI, nullptr},
                                                 {PF_Cmd_EVENT, &event},
                                                 {PF_Cmd_USER_CHANGED_PARAM, &changed}};
    for (const auto& [command, extra] : commands) {
        const CommandResult result = instance->command(command, 0, extra);
        EXPECT_EQ(result.error, PF_Err_NONE) << command;
        EXPECT_EQ(result.message, "") << command;
        EXPECT_THAT(result.broken, IsEmpty()) << command;
    }
    expectPicture(instance->renderFrame({}).output, fourSquares());
}

TEST_F(ModuleCommands, PreRenderPassesOnTheHostsError) {
    const auto instance = instanceOf(fourSquaresScene());
    host().faults().failNth("checkout_layer", 1, PF_Err_INVALID_INDEX);
    const FrameResult result = instance->renderFrame({});
    EXPECT_EQ(result.error, PF_Err_INVALID_INDEX);
    EXPECT_THAT(result.broken, IsEmpty());
}

}  // namespace
}  // namespace TessavoyHost
