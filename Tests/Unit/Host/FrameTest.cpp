#include <atomic>
#include <functional>
#include <new>
#include <stdexcept>
#include <thread>
#include <utility>

#include "Host/EffectHost.h"
#include "Host/HostError.h"
#include "HostInterface/AegpSuites.h"
#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using HostFrame = HostFixture;

const auto nothing = [](PF_InData*) {};

void expectPlate(const PF_Pixel& pixel) {
    EXPECT_EQ(pixel.alpha, 255);
    EXPECT_EQ(pixel.red, 200);
    EXPECT_EQ(pixel.green, 100);
    EXPECT_EQ(pixel.blue, 50);
}

TEST_F(HostFrame, HasTheLayersSizeAndWhatTheModuleDrew) {
    const FrameResult result = renderWith(FakeProject::project(), nothing);
    EXPECT_EQ(result.output.width(), 100);
    EXPECT_EQ(result.output.height(), 80);
    expectPlate(pixelOf(result.output, 0, 0));
    expectPlate(pixelOf(result.output, 99, 79));
}

TEST_F(HostFrame, IsDrawnIntoMemoryFullOfRubbish) {
    HostOptions options;
    options.rubbishInFreshMemory = true;
    const FrameResult result = renderWith(FakeProject::project(), nothing, {}, options);
    expectPlate(pixelOf(result.output, 50, 40));
}

TEST_F(HostFrame, TellsTheModuleItsMoment) {
    Project project = FakeProject::project();
    project.composition.frameRate = {30000, 1001};
    project.layers[0] =
        std::make_shared<FakeProject::StillLayer>("Plate", FakeProject::solidImage(60, 40, 1, 2, 3), 1.001, 2.0005);
    FrameRequest request;
    request.frame = 40;
    request.downsampleX = {1, 2};
    request.downsampleY = {1, 4};
    renderWith(
        project,
        [](PF_InData* in) {
            EXPECT_EQ(in->time_scale, 30000u);
            EXPECT_EQ(in->time_step, 1001);
            EXPECT_EQ(in->current_time, 40 * 1001 - 30030);
            EXPECT_EQ(in->total_time, 60015);  // 2.0005 seconds of the layer
            EXPECT_EQ(in->width, 60);
            EXPECT_EQ(in->height, 40);
            EXPECT_EQ(in->downsample_x.num, 1);
            EXPECT_EQ(in->downsample_x.den, 2u);
            EXPECT_EQ(in->downsample_y.den, 4u);
            EXPECT_EQ(in->extent_hint.right, 30);
            EXPECT_EQ(in->extent_hint.bottom, 10);
            EXPECT_EQ(in->num_params, FakeEffect::ParameterCount);
        },
        request);
}

TEST_F(HostFrame, OfARegionHasItsSizeAndItsOrigin) {
    FrameRequest request;
    request.region = Region{30, 20, 40, 10};
    FakeEffect::hooks().preRender = [](PF_InData* in, PF_OutData*, PF_PreRenderExtra* extra) {
        EXPECT_EQ(extra->input->output_request.rect.left, 30);
        EXPECT_EQ(extra->input->output_request.rect.bottom, 30);
        EXPECT_EQ(extra->input->bitdepth, 8);
        PF_RenderRequest wide = extra->input->output_request;
        wide.rect = {-50, -50, 500, 500};
        PF_CheckoutResult whole{};
        EXPECT_EQ(extra->cb->checkout_layer(in->effect_ref, 0, 7, &wide, in->current_time, 1, in->time_scale, &whole),
                  0);
        EXPECT_EQ(whole.result_rect.left, 0);
        EXPECT_EQ(whole.result_rect.right, 100);
        EXPECT_EQ(whole.max_result_rect.bottom, 80);
        EXPECT_EQ(whole.ref_width, 100);
        return FakeEffect::usualPreRender(in, extra);
    };
    EffectHost host(FakeEffect::entryPoints());
    FakeEffect::hooks().render = [](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
        PF_EffectWorld *input = nullptr, *output = nullptr;
        extra->cb->checkout_layer_pixels(in->effect_ref, 0, &input);
        extra->cb->checkout_output(in->effect_ref, &output);
        EXPECT_EQ(input->width, 40);
        EXPECT_EQ(input->height, 10);
        EXPECT_EQ(output->width, 40);
        EXPECT_EQ(output->origin_x, 30);
        EXPECT_EQ(output->origin_y, 20);
        EXPECT_GT(output->rowbytes, 40 * 4);
        extra->cb->checkin_layer_pixels(in->effect_ref, 0);
        return FakeEffect::usualRender(in, extra);
    };
    const FrameResult result = host.createInstance(FakeProject::project())->renderFrame(request);
    EXPECT_EQ(result.error, PF_Err_NONE);
    EXPECT_THAT(result.broken, IsEmpty());
    EXPECT_EQ(result.output.width(), 40);
    EXPECT_EQ(result.output.height(), 10);
    expectPlate(pixelOf(result.output, 39, 9));
}

TEST_F(HostFrame, FillsWhatTheModuleDidNotGiveWithNothing) {
    FakeEffect::hooks().preRender = [](PF_InData* in, PF_OutData*, PF_PreRenderExtra* extra) {
        const PF_Err error = FakeEffect::usualPreRender(in, extra);
        extra->output->result_rect = {10, 10, 20, 20};
        return error;
    };
    const FrameResult result = renderWith(FakeProject::project(), nothing);
    EXPECT_EQ(result.output.width(), 100);
    EXPECT_EQ(pixelOf(result.output, 9, 15).alpha, 0);
    expectPlate(pixelOf(result.output, 10, 10));
    expectPlate(pixelOf(result.output, 19, 19));
    EXPECT_EQ(pixelOf(result.output, 20, 15).alpha, 0);
}

TEST_F(HostFrame, HasTheDepthThatWasAskedFor) {
    for (const int bits : {8, 16, 32}) {
        FrameRequest request;
        request.bitsPerChannel = bits;
        const FrameResult result = renderWith(FakeProject::project(), nothing, request);
        EXPECT_EQ(result.output.bitsPerChannel(), bits);
        EXPECT_EQ(result.output.view().bitsPerChannel, bits);
    }
}

TEST_F(HostFrame, IsTransparentWhereTheEffectLayerHasNoPicture) {
    Project project = FakeProject::project();
    project.layers[0] =
        std::make_shared<FakeProject::StillLayer>("Late", FakeProject::solidImage(10, 10, 1, 2, 3), 2, 1);
    const FrameResult result = renderWith(project, [](PF_InData* in) {
        EXPECT_EQ(FakeEffect::valueOf(in, FakeEffect::InputLayer).parameter.u.ld.data, nullptr);
    });
    EXPECT_EQ(result.output.width(), 10);
    EXPECT_EQ(pixelOf(result.output, 5, 5).alpha, 0);
}

TEST_F(HostFrame, CarriesTheModulesErrorAndMessage) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    FakeEffect::hooks().render = [](PF_InData*, PF_OutData* out, PF_SmartRenderExtra*) {
        std::snprintf(out->return_msg, sizeof out->return_msg, "out of paint");
        out->out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
        return PF_Err{512};
    };
    const FrameResult result = instance->renderFrame({});
    EXPECT_EQ(result.error, 512);
    EXPECT_EQ(result.message, "out of paint");
    EXPECT_TRUE(result.displayError);
    EXPECT_FALSE(result.output.hasPixels());
}

// A layer whose picture can't be had.
class LostLayer : public FakeProject::StillLayer {
public:
    explicit LostLayer(std::function<void()> fail)
        : StillLayer("Lost", FakeProject::solidImage(100, 80, 1, 2, 3)), mFail(std::move(fail)) {}
    std::shared_ptr<const Image> frameAt(double) override {
        mFail();
        return nullptr;
    }

private:
    std::function<void()> mFail;
};

Project projectWithLostLayer(std::function<void()> fail) {
    Project project = FakeProject::project();
    project.layers[0] = std::make_shared<LostLayer>(std::move(fail));
    return project;
}

// A module that takes no notice of what the host answers.
void makeHeedless() {
    FakeEffect::hooks().preRender = [](PF_InData* in, PF_OutData*, PF_PreRenderExtra* extra) {
        FakeEffect::usualPreRender(in, extra);
        return PF_Err{0};
    };
    FakeEffect::hooks().render = [](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
        FakeEffect::valueOf(in, FakeEffect::FloatSlider);
        FakeEffect::usualRender(in, extra);
        return PF_Err{0};
    };
}

TEST_F(HostFrame, FailsWithTheHostEvenWhereTheModuleGoesOn) {
    FakeEffect::hooks().render = [](PF_InData* in, PF_OutData* out, PF_SmartRenderExtra* extra) {
        PF_EffectWorld* pixels = nullptr;
        EXPECT_NE(extra->cb->checkout_layer_pixels(in->effect_ref, 0, &pixels), PF_Err_NONE);
        std::snprintf(out->return_msg, sizeof out->return_msg, "all is well");
        return PF_Err{0};
    };
    EffectHost host(FakeEffect::entryPoints());
    const auto lose = [] { throw HostError(ExitStatus::FrameFailed, "lost.png: the file is gone"); };
    const FrameResult result = host.createInstance(projectWithLostLayer(lose))->renderFrame({});
    EXPECT_EQ(result.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(result.failure, "lost.png: the file is gone");
    EXPECT_EQ(result.message, "lost.png: the file is gone");
    EXPECT_FALSE(result.output.hasPixels());
}

// Whatever is thrown inside a call of the host, the frame is no frame, even where the module makes nothing of the
// answer.
TEST_F(HostFrame, FailsWithAnyExceptionInACallOfTheHost) {
    struct Thrown {
        std::function<void()> fail;
        PF_Err error;
        const char* failure;
    };
    const std::vector<Thrown> rows = {
        {[] { throw std::bad_alloc(); }, PF_Err_OUT_OF_MEMORY, "the host ran out of memory in checkout_layer_pixels; "},
        {[] { throw std::runtime_error("odd"); }, PF_Err_INTERNAL_STRUCT_DAMAGED, "odd"},
        {[] { throw 7; }, PF_Err_INTERNAL_STRUCT_DAMAGED, "an exception of an unknown kind"}};
    for (const Thrown& thrown : rows) {
        SCOPED_TRACE(thrown.failure);
        FakeEffect::hooks().render = [&thrown](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
            PF_EffectWorld* pixels = nullptr;
            EXPECT_EQ(extra->cb->checkout_layer_pixels(in->effect_ref, 0, &pixels), thrown.error);
            return PF_Err{0};
        };
        EffectHost host(FakeEffect::entryPoints());
        const FrameResult result = host.createInstance(projectWithLostLayer(thrown.fail))->renderFrame({});
        EXPECT_EQ(result.error, thrown.error);
        EXPECT_THAT(result.failure, HasSubstr(thrown.failure));
        EXPECT_FALSE(result.output.hasPixels());
        EXPECT_THAT(result.broken, IsEmpty());
    }
}

// The error is the module's, and the reason the host's.
TEST_F(HostFrame, NamesTheHostsFailureWhereTheModulePassesItOn) {
    FakeEffect::hooks().render = [](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
        PF_EffectWorld* pixels = nullptr;
        return extra->cb->checkout_layer_pixels(in->effect_ref, 0, &pixels) == PF_Err_NONE ? PF_Err{0} : PF_Err{4};
    };
    EffectHost host(FakeEffect::entryPoints());
    const auto lose = [] { throw HostError(ExitStatus::FrameFailed, "lost.png: the file is gone"); };
    const FrameResult result = host.createInstance(projectWithLostLayer(lose))->renderFrame({});
    EXPECT_EQ(result.error, 4);
    EXPECT_EQ(result.failure, "lost.png: the file is gone");
    EXPECT_EQ(result.message, "lost.png: the file is gone");
}

// It knows better what the memory was for.
TEST_F(HostFrame, LeavesItToTheModuleToTellOfMemoryThatRanOut) {
    FakeEffect::hooks().render = [](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
        PF_EffectWorld* pixels = nullptr;
        return extra->cb->checkout_layer_pixels(in->effect_ref, 0, &pixels);
    };
    EffectHost host(FakeEffect::entryPoints());
    const auto exhaust = [] { throw std::bad_alloc(); };
    const FrameResult result = host.createInstance(projectWithLostLayer(exhaust))->renderFrame({});
    EXPECT_EQ(result.error, PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(result.failure, "");
    EXPECT_EQ(result.message, "");
}

// What the module says through the host is no failure.
TEST_F(HostFrame, ComesOutWellWhenTheModuleReports) {
    const FrameResult result = renderWith(FakeProject::project(), [](PF_InData* in) {
        const void* suite = nullptr;
        ASSERT_EQ(in->pica_basicP->AcquireSuite("AEGP Utility Suite", 7, &suite), PF_Err_NONE);
        static_cast<const AEGP_UtilitySuite3*>(suite)->AEGP_ReportInfo(1, "a remark");
        in->pica_basicP->ReleaseSuite("AEGP Utility Suite", 7);
    });
    EXPECT_EQ(result.message, "a remark");
}

TEST_F(HostFrame, NamesWhatACommandLeftOut) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    FakeEffect::hooks().render = [](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
        PF_ParamDef parameter{};
        in->inter.checkout_param(in->effect_ref, FakeEffect::Angle, 0, 1, 25, &parameter);
        const void* suite = nullptr;
        in->pica_basicP->AcquireSuite("PF World Suite", 2, &suite);
        in->utils->host_lock_handle(in->global_data);
        PF_EffectWorld* pixels = nullptr;
        extra->cb->checkout_layer_pixels(in->effect_ref, 0, &pixels);
        return PF_Err{0};
    };
    EXPECT_THAT(instance->renderFrame({}).broken,
                ElementsAre("PF_Cmd_SMART_RENDER: not given back: layer pixels \"checkout id\" (0)",
                            "PF_Cmd_SMART_RENDER: not given back: lock of a handle (4)",
                            "PF_Cmd_SMART_RENDER: not given back: parameter \"Angle\" (3)",
                            "PF_Cmd_SMART_RENDER: not given back: suite \"PF World Suite\" (2)"));
}

TEST_F(HostFrame, StopsWhenItIsCancelled) {
    std::atomic<bool> cancel = true;
    FakeEffect::hooks().render = [](PF_InData* in, PF_OutData*, PF_SmartRenderExtra*) {
        return in->inter.abort(in->effect_ref);
    };
    EffectHost host(FakeEffect::entryPoints());
    FrameRequest request;
    request.cancel = &cancel;
    const auto instance = host.createInstance(FakeProject::project());
    EXPECT_EQ(instance->renderFrame(request).error, PF_Interrupt_CANCEL);
    cancel = false;
    EXPECT_EQ(instance->renderFrame(request).error, PF_Err_NONE);
}

TEST_F(HostFrame, HoldsThePreRenderToItsPromise) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    FakeEffect::hooks().preRender = [](PF_InData* in, PF_OutData*, PF_PreRenderExtra* extra) {
        const PF_Err error = FakeEffect::usualPreRender(in, extra);
        extra->output->result_rect.right = 120;
        return error;
    };
    EXPECT_THAT(instance->renderFrame({}).broken,
                ElementsAre(HasSubstr("outside max_result_rect"), HasSubstr("outside the request")));
}

TEST_F(HostFrame, DropsPreRenderDataThroughTheModulesFunction) {
    static int dropped;
    dropped = 0;
    static int data;
    FakeEffect::hooks().preRender = [](PF_InData* in, PF_OutData*, PF_PreRenderExtra* extra) {
        extra->output->pre_render_data = &data;
        extra->output->delete_pre_render_data_func = [](void* given) { dropped += given == &data; };
        return FakeEffect::usualPreRender(in, extra);
    };
    renderWith(FakeProject::project(), nothing);
    EXPECT_EQ(dropped, 1);
}

TEST_F(HostFrame, ToleratesPixelsThatWereNeverLentButNotASecondReturn) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    FakeEffect::hooks().render = [](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
        EXPECT_EQ(extra->cb->checkin_layer_pixels(in->effect_ref, 0), PF_Err_NONE);
        PF_EffectWorld* pixels = nullptr;
        extra->cb->checkout_layer_pixels(in->effect_ref, 0, &pixels);
        EXPECT_EQ(extra->cb->checkin_layer_pixels(in->effect_ref, 0), PF_Err_NONE);
        EXPECT_EQ(extra->cb->checkin_layer_pixels(in->effect_ref, 0), PF_Err_BAD_CALLBACK_PARAM);
        return PF_Err{0};
    };
    EXPECT_THAT(instance->renderFrame({}).broken, ElementsAre(HasSubstr("checked in twice")));
}

// Every host call of a frame fails in turn; the frame ends with that error, nothing is left out, and at last succeeds.
TEST_F(HostFrame, SurvivesAFailureOfEveryHostCall) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    FakeEffect::hooks().render = [](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
        const FakeEffect::Value value = FakeEffect::valueOf(in, FakeEffect::FloatSlider);
        return value.error != PF_Err_NONE ? value.error : FakeEffect::usualRender(in, extra);
    };
    int n = 1;
    for (bool struck = true; struck; ++n) {
        host.faults().failNth(Faults::anyCall, n, 513);
        const FrameResult result = instance->renderFrame({});
        struck = host.faults().struck() > 0;
        EXPECT_THAT(result.broken, IsEmpty()) << "call " << n;
        EXPECT_EQ(result.error, struck ? 513 : PF_Err_NONE) << "call " << n;
        host.faults().clear();
    }
    EXPECT_GT(n, 6);
}

// Memory runs out in every host call in turn, and the module goes on each time; the frame fails until none is left.
TEST_F(HostFrame, FailsWhicheverCallOfTheHostRunsOutOfMemory) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    makeHeedless();
    int n = 1;
    for (bool struck = true; struck; ++n) {
        host.faults().exhaustNth(Faults::anyCall, n);
        const FrameResult result = instance->renderFrame({});
        struck = host.faults().struck() > 0;
        EXPECT_THAT(result.broken, IsEmpty()) << "call " << n;
        EXPECT_EQ(result.error, struck ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE) << "call " << n;
        EXPECT_EQ(result.failure.starts_with("the host ran out of memory in "), struck) << "call " << n;
        EXPECT_NE(result.output.hasPixels(), struck) << "call " << n;
        host.faults().clear();
    }
    EXPECT_GT(n, 6);
}

// The fake effect, but that it passes on that there was no memory for an interpolated value.
PF_Err passMemoryOn(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output,
                    void* extra) {
    const PF_Err error = FakeEffect::entryPoints().effectMain(command, in, out, params, output, extra);
    if (command != PF_Cmd_ARBITRARY_CALLBACK)
        return error;
    const auto& arbitrary = *static_cast<PF_ArbParamsExtra*>(extra);
    const bool isMissing =
        arbitrary.which_function == PF_Arbitrary_INTERP_FUNC && *arbitrary.u.interp_func_params.interpPH == nullptr;
    return isMissing ? PF_Err{PF_Err_OUT_OF_MEMORY} : error;
}

// The interpolated value is made by a command inside the check-out, whatever that command answers.
TEST_F(HostFrame, FailsWhereMemoryRunsOutInACommandWithinIt) {
    Project project = FakeProject::project();
    project.parameters[FakeEffect::Data].keys = {{0, ArbitraryValue{std::vector<std::byte>(8)}, Ease::Linear},
                                                 {4, ArbitraryValue{}, Ease::Linear}};
    ModuleEntryPoints passing = FakeEffect::entryPoints();
    passing.effectMain = passMemoryOn;
    for (const ModuleEntryPoints& module : {FakeEffect::entryPoints(), passing}) {
        EffectHost host(module);
        const auto instance = host.createInstance(project);
        FakeEffect::hooks().render = [&](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
            host.faults().exhaustNth("host_new_handle", 1);
            PF_ParamDef data{};
            in->inter.checkout_param(in->effect_ref, FakeEffect::Data, 50, 1, 25, &data);
            in->inter.checkin_param(in->effect_ref, &data);
            return FakeEffect::usualRender(in, extra);
        };
        const FrameResult result = instance->renderFrame({});
        EXPECT_EQ(host.faults().struck(), 1);
        EXPECT_EQ(result.error, PF_Err_OUT_OF_MEMORY);
        EXPECT_THAT(result.failure, HasSubstr("out of memory in host_new_handle"));
    }
}

// The fake effect, but that it interpolates nothing.
PF_Err refuseInterpolation(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output,
                           void* extra) {
    const bool interpolates = command == PF_Cmd_ARBITRARY_CALLBACK &&
                              static_cast<PF_ArbParamsExtra*>(extra)->which_function == PF_Arbitrary_INTERP_FUNC;
    return interpolates ? PF_Err{PF_Err_INVALID_INDEX}
                        : FakeEffect::entryPoints().effectMain(command, in, out, params, output, extra);
}

// Parameters' values go with the commands of panels, too, and one of them may not be had.
TEST_F(HostFrame, AValueThatTheModuleRefusesFailsACommand) {
    Project project = FakeProject::project();
    project.parameters[FakeEffect::Data].keys = {{0, ArbitraryValue{std::vector<std::byte>(8)}, Ease::Linear},
                                                 {4, ArbitraryValue{}, Ease::Linear}};
    ModuleEntryPoints module = FakeEffect::entryPoints();
    module.effectMain = refuseInterpolation;
    EffectHost host(module);
    const auto instance = host.createInstance(project);
    EXPECT_EQ(instance->command(PF_Cmd_UPDATE_PARAMS_UI, 0).error, PF_Err_NONE) << "at a key nothing is interpolated";
    const CommandResult between = instance->command(PF_Cmd_UPDATE_PARAMS_UI, 50);
    EXPECT_EQ(between.error, PF_Err_INVALID_INDEX);
    EXPECT_EQ(instance->panelCommand(PF_Cmd_UPDATE_PARAMS_UI, 50).error, PF_Err_INVALID_INDEX);
}

TEST_F(HostFrame, RendersOnSeveralThreadsAtOnce) {
    Project project = FakeProject::project();
    project.parameters[FakeEffect::Slider] = {{{0, 0.0, Ease::Linear}, {4, 100.0, Ease::Linear}}};
    project.parameters[FakeEffect::Data].keys = {{0, ArbitraryValue{std::vector<std::byte>(8)}, Ease::Linear},
                                                 {4, ArbitraryValue{}, Ease::Linear}};
    FakeEffect::hooks().outFlags2 |= PF_OutFlag2_MUTABLE_RENDER_SEQUENCE_DATA_SLOWER;
    std::atomic<int> wrong = 0;
    FakeEffect::hooks().render = [&](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
        // Frame f of 100 is at f / 25 seconds, so the slider says f, and the data 7 f / 100.
        const A_long frame = in->current_time;
        wrong += FakeEffect::valueOf(in, FakeEffect::Slider).parameter.u.sd.value != frame;
        PF_ParamDef data{};
        in->inter.checkout_param(in->effect_ref, FakeEffect::Data, in->current_time, 1, in->time_scale, &data);
        wrong += std::abs(FakeEffect::numberIn(data.u.arb_d.value) - 0.07 * frame) > 1e-12;
        in->inter.checkin_param(in->effect_ref, &data);
        // What renders write into their sequence data is their own.
        auto& byte = *static_cast<unsigned char*>(*in->sequence_data);
        wrong += byte != 0;
        byte = static_cast<unsigned char>(frame);
        std::this_thread::yield();
        wrong += byte != static_cast<unsigned char>(frame);
        byte = 0;
        return FakeEffect::usualRender(in, extra);
    };
    EffectHost host(FakeEffect::entryPoints());
    {
        const auto instance = host.createInstance(project);
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&, thread] {
                for (int frame = thread; frame < 100; frame += 4) {
                    const FrameResult result = instance->renderFrame({.frame = frame});
                    wrong += result.error != PF_Err_NONE || !result.broken.empty();
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(host.ledger().count(Loan::Handle), 2);
    EXPECT_THAT(host.broken(), IsEmpty());
}

TEST_F(HostFrame, TouchesNoFreshMemoryTheSecondTime) {
    Project project = FakeProject::project();
    project.layers[0] = std::make_shared<FakeProject::StillLayer>("Large", FakeProject::solidImage(400, 300, 1, 2, 3));
    duringRender([](PF_InData* in) { in->utils->host_dispose_handle(in->utils->host_new_handle(3000000)); });
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(project);
    instance->renderFrame({});
    const std::size_t fresh = BlockPool::shared().freshLargeBlocks();
    instance->renderFrame({});
    EXPECT_EQ(BlockPool::shared().freshLargeBlocks(), fresh);
}

}  // namespace
}  // namespace TessavoyHost
