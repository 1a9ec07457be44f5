#include "Source/Shell/EffectMain.h"

#include "HostInterface/Constants.h"
#include "HostInterface/Events.h"
#include "Source/Parameter/Catalogue.h"
#include "Source/Shell/PreRender.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Tessavoy {
namespace {

TEST(EffectMain, UnusedCommandsAreAnsweredWith0AndNothingElse) {
    for (const A_long command : {2, 9, 10, 11, 12, 16, 17, 19, 20, 21, 25, 26, 27, 29, 30, 31, 32, 33, 1000, -1}) {
        // Neither record is there to be touched.
        EXPECT_EQ(EffectMain(command, nullptr, nullptr, nullptr, nullptr, nullptr), 0) << "command " << command;
    }
}

PF_Err arbitrary(std::uint64_t reference, A_long selector) {
    PF_ArbParamsExtra extra{};
    extra.which_function = selector;
    extra.u.new_func_params.refconPV = reinterpret_cast<void*>(static_cast<std::uintptr_t>(reference));
    return EffectMain(PF_Cmd_ARBITRARY_CALLBACK, nullptr, nullptr, nullptr, nullptr, &extra);
}

constexpr std::uint64_t script = 0x534352495054;
constexpr std::uint64_t gradient = 0x544E454944415247;
constexpr std::uint64_t ramp = 0x52414D50000000;

TEST(EffectMain, ASelectorOutOfRangeGives514ForEveryKind) {
    for (const std::uint64_t kind : {script, gradient, ramp, std::uint64_t{0}}) {
        EXPECT_EQ(arbitrary(kind, 11), 514);
        EXPECT_EQ(arbitrary(kind, -1), 514);
    }
}

TEST(EffectMain, TheScriptsArbitraryDataIsLeftAlone) {
    for (A_long selector = 0; selector <= 10; ++selector) {
        EXPECT_EQ(arbitrary(script, selector), 0);
    }
}

TEST(EffectMain, AnUnknownArbitraryKindGives514) {
    EXPECT_EQ(arbitrary(0, 0), 514);
    EXPECT_EQ(arbitrary(gradient + 1, 0), 514);
}

// The reference values are the kinds' names, read as little-endian numbers.
TEST(EffectMain, ReferenceValuesSpellTheKinds) {
    const auto numberOf = [](const std::string& letters) {
        std::uint64_t number = 0;
        for (std::size_t i = letters.size(); i-- > 0;) {
            number = number << 8 | static_cast<unsigned char>(letters[i]);
        }
        return number;
    };
    EXPECT_EQ(numberOf("GRADIENT"), gradient);
    EXPECT_EQ(numberOf("TPIRCS"), script);
    EXPECT_EQ(numberOf(std::string("\0\0\0PMAR", 7)), ramp);
}

// Panel events go by the control's parameter. No record is there to be touched.
TEST(EffectMain, EventsOfOtherControlsAndOtherEventsOfTheScriptAreAnsweredWith0) {
    PF_EventExtra extra{};
    extra.e_type = PF_Event_DRAW;
    extra.effect_win.area = PF_EA_CONTROL;
    for (const A_long index : {-1, 0, 1, 996, 5000}) {
        extra.effect_win.index = index;
        EXPECT_EQ(EffectMain(PF_Cmd_EVENT, nullptr, nullptr, nullptr, nullptr, &extra), 0) << "parameter " << index;
    }
    extra.effect_win.index = parameterIndex("Script");
    for (const PF_EventType type : {PF_Event_NEW_CONTEXT, PF_Event_DRAG, PF_Event_KEYDOWN, PF_Event_IDLE}) {
        extra.e_type = type;
        EXPECT_EQ(EffectMain(PF_Cmd_EVENT, nullptr, nullptr, nullptr, nullptr, &extra), 0);
        EXPECT_EQ(extra.evt_out_flags, 0);
    }
}

struct Described {
    void* refcon = nullptr;
    std::vector<std::string> texts;
    std::vector<A_long> numbers;
    int calls = 0;
};
Described described;

A_Err describe(PF_PluginDataPtr refcon, const A_u_char* name, const A_u_char* matchName, const A_u_char* category,
               const A_u_char* entryPoint, A_long kind, A_long major, A_long minor, A_long reserved) {
    const auto text = [](const A_u_char* letters) { return std::string(reinterpret_cast<const char*>(letters)); };
    described.refcon = refcon;
    described.texts = {text(name), text(matchName), text(category), text(entryPoint)};
    described.numbers = {kind, major, minor, reserved};
    ++described.calls;
    return 77;
}

TEST(EffectMain, TheModuleDescribesItselfThroughOneCallWhoseResultIsPassedOn) {
    described = {};
    int something = 0;
    const auto refcon = reinterpret_cast<PF_PluginDataPtr>(&something);
    EXPECT_EQ(PluginDataEntryFunction(refcon, describe, nullptr, nullptr, nullptr), 77);
    EXPECT_EQ(described.calls, 1);
    EXPECT_EQ(described.refcon, refcon);
    EXPECT_EQ(described.texts, (std::vector<std::string>{"Tessavoy", "Quelvane Tessavoy", "Quelvane", "EffectMain"}));
    EXPECT_EQ(described.numbers, (std::vector<A_long>{('e' << 24) | ('F' << 16) | ('K' << 8) | 'T', 13, 27, 8}));
}

PF_LRect merged(PF_LRect target, const PF_LRect& source) {
    mergeRectangle(source, target);
    return target;
}

bool equal(const PF_LRect& a, const PF_LRect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

TEST(PreRender, AnEmptyTargetTakesTheSource) {
    EXPECT_TRUE(equal(merged({0, 0, 0, 0}, {3, 4, 10, 20}), {3, 4, 10, 20}));
    EXPECT_TRUE(equal(merged({5, 5, 5, 50}, {3, 4, 10, 20}), {3, 4, 10, 20}));
    EXPECT_TRUE(equal(merged({0, 9, 50, 2}, {7, 7, 7, 7}), {7, 7, 7, 7}));
}

TEST(PreRender, AnEmptySourceChangesNothing) {
    EXPECT_TRUE(equal(merged({1, 2, 3, 4}, {100, 100, 100, 200}), {1, 2, 3, 4}));
}

TEST(PreRender, TwoRectanglesGrowToTheirUnion) {
    EXPECT_TRUE(equal(merged({1, 2, 30, 40}, {-5, 10, 20, 50}), {-5, 2, 30, 50}));
}

struct Checkout {
    A_long index = -1;
    A_long id = -1;
    PF_RenderRequest request{};
    A_long time = 0;
    A_long step = 0;
    A_u_long scale = 0;
    PF_Err result = 0;
};
Checkout checkout;

PF_Err checkoutLayer(PF_ProgPtr, PF_ParamIndex index, A_long id, const PF_RenderRequest* request, A_long time,
                     A_long step, A_u_long scale, PF_CheckoutResult* result) {
    checkout.index = index;
    checkout.id = id;
    checkout.request = *request;
    checkout.time = time;
    checkout.step = step;
    checkout.scale = scale;
    result->result_rect = {10, 20, 100, 80};
    result->max_result_rect = {0, 0, 640, 360};
    return checkout.result;
}

TEST(PreRender, AsksForItsOwnLayerAtTheRequestAndPromisesExactlyThat) {
    checkout = {};
    PF_InData inData{};
    inData.current_time = 11;
    inData.time_step = 2;
    inData.time_scale = 50;
    PF_PreRenderInput input{};
    input.output_request.rect = {10, 20, 100, 80};
    input.output_request.channel_mask = 15;
    PF_PreRenderOutput output{};
    PF_PreRenderCallbacks callbacks{};
    callbacks.checkout_layer = checkoutLayer;
    PF_PreRenderExtra extra{&input, &output, &callbacks};
    EXPECT_EQ(EffectMain(PF_Cmd_SMART_PRE_RENDER, &inData, nullptr, nullptr, nullptr, &extra), 0);
    EXPECT_EQ(checkout.index, 0);
    EXPECT_EQ(checkout.id, 0);
    EXPECT_TRUE(equal(checkout.request.rect, input.output_request.rect));
    EXPECT_EQ(checkout.request.channel_mask, 15);
    EXPECT_EQ(checkout.time, 11);
    EXPECT_EQ(checkout.step, 2);
    EXPECT_EQ(checkout.scale, 50U);
    EXPECT_TRUE(equal(output.result_rect, {10, 20, 100, 80}));
    EXPECT_TRUE(equal(output.max_result_rect, {0, 0, 640, 360}));
    EXPECT_EQ(output.pre_render_data, nullptr);
}

TEST(PreRender, AFailedCheckoutIsReturnedAsItIsAndPromisesNothing) {
    checkout = {};
    checkout.result = 513;
    PF_InData inData{};
    PF_PreRenderInput input{};
    PF_PreRenderOutput output{};
    PF_PreRenderCallbacks callbacks{};
    callbacks.checkout_layer = checkoutLayer;
    PF_PreRenderExtra extra{&input, &output, &callbacks};
    EXPECT_EQ(SmartPreRender(&inData, &extra), 513);
    EXPECT_TRUE(equal(output.result_rect, {0, 0, 0, 0}));
}

}  // namespace
}  // namespace Tessavoy
