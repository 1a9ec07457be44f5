#include "Host/Drawing/PanelReader.h"

#include "Host/HostError.h"
#include "Tests/Unit/Host/DrawingFixture.h"

namespace TessavoyHost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using HostPanelReader = DrawingFixture;

TEST_F(HostPanelReader, SendsOneDrawEventOfTheControl) {
    int events = 0;
    FakeEffect::hooks().event = [&](PF_InData* in, PF_OutData*, PF_ParamDef** params, PF_EventExtra* extra) {
        ++events;
        EXPECT_EQ(extra->e_type, PF_Event_DRAW);
        EXPECT_EQ(extra->effect_win.index, FakeEffect::Data);
        EXPECT_EQ(extra->effect_win.area, PF_EA_CONTROL);
        const PF_Rect& frame = extra->effect_win.current_frame;
        EXPECT_EQ(toRegion(frame), (Region{7, 11, 120, 40}));
        EXPECT_EQ(toRegion(extra->u.draw.update_rect), toRegion(frame));
        EXPECT_EQ((*extra->contextH)->w_type, PF_Window_EFFECT);
        EXPECT_EQ(in->current_time, 0);
        EXPECT_EQ(params[FakeEffect::Slider]->u.sd.value, 3);
        EXPECT_EQ(FakeEffect::numberIn(params[FakeEffect::Data]->u.arb_d.value), 7);
        return PF_Err{0};
    };
    TextRecorder recorder;
    EXPECT_EQ(reader().draw(FakeEffect::Data, {7, 11, 127, 51}, recorder).error, PF_Err_NONE);
    EXPECT_EQ(events, 1);
}

// A picture that can't be read is nothing that a panel stumbles over.
TEST_F(HostPanelReader, AsksForNoPixelsOfLayers) {
    class UnreadableLayer : public FakeProject::StillLayer {
    public:
        using StillLayer::StillLayer;
        std::shared_ptr<const Image> frameAt(double) override {
            throw HostError(ExitStatus::Scene, "the picture is damaged");
        }
    };
    project.layers[0] = std::make_shared<UnreadableLayer>("Plate", FakeProject::solidImage(100, 80, 0, 0, 0));
    project.parameters[FakeEffect::Layer] = {{{0, LayerReference{0}, Ease::Hold}}};
    FakeEffect::hooks().event = [](PF_InData*, PF_OutData*, PF_ParamDef** params, PF_EventExtra*) {
        for (const int index : {FakeEffect::InputLayer, FakeEffect::Layer}) {
            EXPECT_EQ(params[index]->u.ld.data, nullptr);
            EXPECT_EQ(params[index]->u.ld.width, 0);
        }
        return PF_Err{0};
    };
    EXPECT_THAT(reader().textsOf(FakeEffect::Data), IsEmpty());
    EXPECT_THAT(host().broken(), IsEmpty());
}

TEST_F(HostPanelReader, GivesTheLinesInTheOrderInWhichTheyAreDrawn) {
    duringDraw([](DrawCalls& calls) {
        calls.text("second", {3, 40}, 10);
        calls.text("first", {3, 20}, 12);
    });
    const auto texts = reader().textsOf(FakeEffect::Data);
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0].text, "second");
    EXPECT_EQ(texts[0].origin.x, 3);
    EXPECT_EQ(texts[0].origin.y, 40);
    EXPECT_EQ(texts[0].fontSize, 10);
    EXPECT_EQ(texts[1].text, "first");
    EXPECT_THAT(host().broken(), IsEmpty());
}

TEST_F(HostPanelReader, AsksOnlyForControlsThatTheModuleDraws) {
    duringDraw([](DrawCalls& calls) { calls.text("drawn", {0, 0}, 12); });
    EXPECT_TRUE(reader().drawsControl(FakeEffect::Data));
    EXPECT_FALSE(reader().drawsControl(FakeEffect::Slider));
    EXPECT_THAT(reader().textsOf(FakeEffect::Slider), IsEmpty());
    EXPECT_EQ(reader().textsOf(FakeEffect::Data).size(), 1u);
}

TEST_F(HostPanelReader, AModuleThatAskedForNoEventsGetsNone) {
    FakeEffect::hooks().paramsSetup = {};
    duringDraw([](DrawCalls&) { ADD_FAILURE() << "an event was sent"; });
    EXPECT_FALSE(reader().drawsControl(FakeEffect::Data));
    EXPECT_THAT(reader().textsOf(FakeEffect::Data), IsEmpty());
}

TEST_F(HostPanelReader, NotesWhatWentWrong) {
    FakeEffect::hooks().event = [](PF_InData*, PF_OutData* out, PF_ParamDef**, PF_EventExtra*) {
        std::snprintf(out->return_msg, sizeof out->return_msg, "no ink");
        return PF_Err{77};
    };
    EXPECT_THAT(reader().textsOf(FakeEffect::Data), IsEmpty());
    EXPECT_THAT(host().broken(), ElementsAre(HasSubstr("failed with error 77: no ink")));
}

TEST_F(HostPanelReader, NotesStatesThatWereNotPopped) {
    duringDraw([](DrawCalls& calls) {
        EXPECT_EQ(calls.surfaceSuite->PushStateStack(calls.surface), 0);
        EXPECT_EQ(calls.surfaceSuite->PushStateStack(calls.surface), 0);
        EXPECT_EQ(calls.surfaceSuite->PopStateStack(calls.surface), 0);
    });
    reader().textsOf(FakeEffect::Data);
    EXPECT_THAT(host().broken(), ElementsAre(HasSubstr("1 drawing states left pushed")));
}

}  // namespace
}  // namespace TessavoyHost
