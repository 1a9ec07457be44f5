#include "Host/Panel/PanelUser.h"

#include <cstring>

#include "Host/HostError.h"
#include "Tests/Unit/Host/DrawingFixture.h"

namespace TessavoyHost {
namespace {

using FakeEffect::Button;
using FakeEffect::Data;
using FakeEffect::FloatSlider;
using FakeEffect::numberIn;
using FakeEffect::setNumberIn;
using FakeEffect::Slider;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Notes each event and command in a line of text, and does with mouse events what the test says.
class HostPanelUser : public DrawingFixture {
protected:
    using MouseBody = std::function<PF_Err(PF_ParamDef**, PF_EventExtra&, PF_OutData*)>;

    HostPanelUser() {
        FakeEffect::hooks().event = [this](PF_InData*, PF_OutData* out, PF_ParamDef** params, PF_EventExtra* event) {
            return takeEvent(out, params, *event);
        };
        FakeEffect::hooks().updateParamsUi = [this](PF_InData*, PF_OutData*, PF_ParamDef**) {
            log.push_back("update");
            return PF_Err{0};
        };
        FakeEffect::hooks().userChangedParam = [this](PF_InData*, PF_OutData* out, PF_ParamDef** params, void* extra) {
            const PF_ParamIndex index = static_cast<PF_UserChangedParamExtra*>(extra)->param_index;
            log.push_back("changed " + std::to_string(index));
            return onChange ? onChange(params, out) : PF_Err{0};
        };
    }

    PF_Err takeEvent(PF_OutData* out, PF_ParamDef** params, PF_EventExtra& event) {
        if (event.e_type == PF_Event_DRAW) {
            log.push_back("draw " + std::to_string(numberIn(params[Data]->u.arb_d.value)).substr(0, 3));
            return PF_Err_NONE;
        }
        const PF_DoClickEventInfo& mouse = event.u.do_click;
        log.push_back(std::string(event.e_type == PF_Event_DRAG ? "drag" : "click") +
                      (mouse.last_time != 0 ? " last" : "") + ' ' + std::to_string(mouse.num_clicks));
        events.push_back(event);
        return onMouse ? onMouse(params, event, out) : PF_Err{0};
    }

    PanelUser& user() {
        if (mUser == nullptr)
            mUser = std::make_unique<PanelUser>(instance(), frame);
        return *mUser;
    }

    double number(double time = 0) {
        return numberIn(static_cast<PF_Handle>(instance().values().arbitraryAt(Data, time).get()));
    }

    std::vector<std::string> log;
    std::vector<PF_EventExtra> events;
    MouseBody onMouse;
    std::function<PF_Err(PF_ParamDef**, PF_OutData*)> onChange;
    int frame = 0;

private:
    std::unique_ptr<PanelUser> mUser;
};

// What an editor does: changes the value and says so, and wants to be told of moves.
PF_Err addOne(PF_ParamDef** params, PF_EventExtra& event) {
    PF_ParamDef& parameter = *params[event.effect_win.index];
    setNumberIn(parameter.u.arb_d.value, numberIn(parameter.u.arb_d.value) + 1);
    parameter.uu.change_flags = PF_ChangeFlag_CHANGED_VALUE;
    event.evt_out_flags = PF_EO_HANDLED_EVENT;
    event.u.do_click.send_drag = 1;
    return PF_Err_NONE;
}

TEST_F(HostPanelUser, AClickHasItsPlaceAndModifiers) {
    const PF_Rect place = user().placeOf(Data);
    EXPECT_EQ(place.right - place.left, 120);
    EXPECT_EQ(place.bottom - place.top, 40);
    const UserAction action = user().click(Data, {place.left + 7, place.top + 9}, 1, PF_Mod_CMD_CTRL_KEY);
    ASSERT_EQ(events.size(), 1u);
    const PF_EventExtra& event = events[0];
    EXPECT_EQ(event.e_type, PF_Event_DO_CLICK);
    EXPECT_EQ(event.effect_win.index, Data);
    EXPECT_EQ(event.effect_win.area, PF_EA_CONTROL);
    EXPECT_EQ(toRegion(event.effect_win.current_frame), toRegion(place));
    EXPECT_LT(event.effect_win.param_title_frame.top, place.top);
    EXPECT_EQ((*event.contextH)->w_type, PF_Window_EFFECT);
    EXPECT_EQ(event.u.do_click.screen_point.h, place.left + 7);
    EXPECT_EQ(event.u.do_click.screen_point.v, place.top + 9);
    EXPECT_EQ(event.u.do_click.modifiers, PF_Mod_CMD_CTRL_KEY);
    EXPECT_EQ(action.mouseEvents, 1);
    EXPECT_FALSE(action.handled);
    EXPECT_FALSE(action.rerender);
    EXPECT_THAT(log, ElementsAre("click 1")) << "an event that wasn't handled has no redraw";
}

TEST_F(HostPanelUser, ADoubleClickIsTwoClicks) {
    user().click(Data, {0, 0}, 2);
    EXPECT_THAT(log, ElementsAre("click 1", "click 2"));
}

TEST_F(HostPanelUser, WhatTheModuleSaysItChangedIsTheInstancesValue) {
    onMouse = [](PF_ParamDef** params, PF_EventExtra& event, PF_OutData*) {
        addOne(params, event);
        event.u.do_click.send_drag = 0;
        return PF_Err{0};
    };
    const UserAction action = user().click(Data, {0, 0});
    EXPECT_TRUE(action.handled);
    EXPECT_TRUE(action.rerender);
    EXPECT_THAT(action.changed, ElementsAre(Data));
    EXPECT_EQ(number(), 8) << "one more than the default";
    EXPECT_THAT(log, ElementsAre("click 1", "draw 8.0")) << "the redraw shows it";
    EXPECT_THAT(action.broken, IsEmpty());
    double rendered = 0;
    duringRender([&](PF_InData* in) { rendered = numberIn(FakeEffect::valueOf(in, Data).parameter.u.arb_d.value); });
    EXPECT_EQ(instance().renderFrame({}).error, PF_Err_NONE);
    EXPECT_EQ(rendered, 8);
}

TEST_F(HostPanelUser, WhatItDoesNotSayIsLost) {
    onMouse = [](PF_ParamDef** params, PF_EventExtra&, PF_OutData*) {
        setNumberIn(params[Data]->u.arb_d.value, 99);
        return PF_Err{0};
    };
    EXPECT_THAT(user().click(Data, {0, 0}).changed, IsEmpty());
    EXPECT_EQ(number(), 7);
}

TEST_F(HostPanelUser, WhatAFailedEventChangedIsLost) {
    onMouse = [](PF_ParamDef** params, PF_EventExtra& event, PF_OutData* out) {
        addOne(params, event);
        std::strcpy(out->return_msg, "no");
        out->out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
        return PF_Err{77};
    };
    const UserAction action = user().drag(Data, {{0, 0}, {1, 0}});
    EXPECT_EQ(action.error, 77);
    EXPECT_EQ(action.message, "no");
    EXPECT_TRUE(action.displayError);
    EXPECT_EQ(action.mouseEvents, 1) << "the drag ends with the error";
    EXPECT_EQ(number(), 7);
}

// Each event finds the value as the last one left it, and what the module put aside.
TEST_F(HostPanelUser, ADragIsTakenOverPointByPoint) {
    onMouse = [](PF_ParamDef** params, PF_EventExtra& event, PF_OutData*) {
        auto& refcon = event.u.do_click.continue_refcon;
        EXPECT_EQ(refcon[3], event.e_type == PF_Event_DO_CLICK ? 0 : numberIn(params[Data]->u.arb_d.value));
        addOne(params, event);
        refcon[3] = static_cast<A_intptr_t>(numberIn(params[Data]->u.arb_d.value));
        return PF_Err{0};
    };
    const UserAction action = user().drag(Data, {{10, 1}, {20, 2}, {30, 3}}, PF_Mod_SHIFT_KEY);
    EXPECT_THAT(log, ElementsAre("click 1", "draw 8.0", "drag 1", "draw 9.0", "drag last 1", "draw 10."));
    EXPECT_EQ(action.mouseEvents, 3);
    EXPECT_EQ(action.redraws, 3);
    EXPECT_THAT(action.changed, ElementsAre(Data));
    EXPECT_EQ(number(), 10);
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(events[1].u.do_click.screen_point.h, 20);
    EXPECT_EQ(events[2].u.do_click.screen_point.v, 3);
    EXPECT_EQ(events[2].u.do_click.modifiers, PF_Mod_SHIFT_KEY);
    EXPECT_LT(events[0].u.do_click.when, events[1].u.do_click.when);
}

TEST_F(HostPanelUser, MovesAreToldOnlyWhileTheModuleWantsThem) {
    user().drag(Data, {{10, 1}, {20, 2}});
    EXPECT_THAT(log, ElementsAre("click 1"));
    log.clear();
    onMouse = [](PF_ParamDef**, PF_EventExtra& event, PF_OutData*) {
        event.u.do_click.send_drag = event.e_type == PF_Event_DO_CLICK ? 1 : 0;
        return PF_Err{0};
    };
    user().drag(Data, {{10, 1}, {20, 2}, {30, 3}});
    EXPECT_THAT(log, ElementsAre("click 1", "drag 1"));
}

TEST_F(HostPanelUser, AClickThatBeginsADragEndsItWhereItBegan) {
    onMouse = [](PF_ParamDef**, PF_EventExtra& event, PF_OutData*) {
        event.u.do_click.send_drag = 1;
        return PF_Err{0};
    };
    user().click(Data, {10, 1});
    EXPECT_THAT(log, ElementsAre("click 1", "drag last 1"));
    EXPECT_EQ(events[1].u.do_click.screen_point.h, 10);
}

TEST_F(HostPanelUser, TheModuleSaysWhetherItsControlIsRedrawn) {
    struct Case {
        PF_EventOutFlags flags;
        int redraws;
    };
    for (const Case& flags : {Case{PF_EO_NONE, 0}, Case{PF_EO_HANDLED_EVENT, 1}, Case{PF_EO_ALWAYS_UPDATE, 1},
                              Case{PF_EO_UPDATE_NOW, 1}, Case{PF_EO_HANDLED_EVENT | PF_EO_NEVER_UPDATE, 0}}) {
        onMouse = [&](PF_ParamDef**, PF_EventExtra& event, PF_OutData*) {
            event.evt_out_flags = flags.flags;
            return PF_Err{0};
        };
        EXPECT_EQ(user().click(Data, {0, 0}).redraws, flags.redraws) << flags.flags;
    }
}

TEST_F(HostPanelUser, OutFlagsAreHeeded) {
    onMouse = [](PF_ParamDef**, PF_EventExtra&, PF_OutData* out) {
        out->out_flags |= PF_OutFlag_FORCE_RERENDER | PF_OutFlag_REFRESH_UI;
        return PF_Err{0};
    };
    EXPECT_TRUE(user().click(Data, {0, 0}).rerender);
    EXPECT_THAT(log, ElementsAre("click 1", "update"));
}

// Two keys, 0 and 10, at 0 and 2 seconds; the user works at frame 25, which is 1 second.
TEST_F(HostPanelUser, AChangeBetweenKeysMakesAKey) {
    const auto bytes = [](double value) {
        std::vector<std::byte> flat(sizeof value);
        std::memcpy(flat.data(), &value, sizeof value);
        return ArbitraryValue{flat};
    };
    project.parameters[Data] = {{{0, bytes(0), Ease::Linear}, {2, bytes(10), Ease::Linear}}};
    project.parameters[Slider] = {{{0, 0.0, Ease::Linear}, {2, 10.0, Ease::Linear}}};
    frame = 25;
    onMouse = [](PF_ParamDef** params, PF_EventExtra& event, PF_OutData*) {
        EXPECT_EQ(numberIn(params[Data]->u.arb_d.value), 5);
        addOne(params, event);
        event.u.do_click.send_drag = 0;
        return PF_Err{0};
    };
    user().click(Data, {0, 0});
    EXPECT_EQ(number(0), 0);
    EXPECT_EQ(number(1), 6);
    EXPECT_EQ(number(1.5), 8) << "halfway from 6 to 10";
    EXPECT_EQ(number(2), 10);
    user().change(Slider, 20.0);
    user().change(Slider, 8.0);
    EXPECT_EQ(std::get<double>(instance().values().at(Slider, 0.5)), 4) << "the key was made once, then changed";
    EXPECT_EQ(std::get<double>(instance().values().at(Slider, 2)), 10);
}

TEST_F(HostPanelUser, OrdinaryParametersOfAnEventAreTakenOver) {
    onMouse = [](PF_ParamDef** params, PF_EventExtra&, PF_OutData*) {
        params[Slider]->u.sd.value = 12;
        params[FakeEffect::Angle]->u.ad.value = 45 << 16;
        params[FakeEffect::Color]->u.cd.value = {255, 1, 2, 3};
        params[FakeEffect::Point]->u.td.x_value = 30 << 16;
        for (const int index : {FakeEffect::Slider, FakeEffect::Angle, FakeEffect::Color, FakeEffect::Point})
            params[index]->uu.change_flags = PF_ChangeFlag_CHANGED_VALUE;
        return PF_Err{0};
    };
    EXPECT_THAT(user().click(Data, {0, 0}).changed,
                ElementsAre(Slider, FakeEffect::Angle, FakeEffect::Color, FakeEffect::Point));
    const auto value = [this](int index) { return instance().values().at(index, 0); };
    EXPECT_EQ(std::get<double>(value(Slider)), 12);
    EXPECT_EQ(std::get<double>(value(FakeEffect::Angle)), 45);
    EXPECT_EQ(std::get<ColorValue>(value(FakeEffect::Color)).blue, 3);
    EXPECT_EQ(std::get<Point2>(value(FakeEffect::Point)).x, 30);
    EXPECT_EQ(std::get<Point2>(value(FakeEffect::Point)).y, 20);
}

TEST_F(HostPanelUser, SayingThatAGroupChangedBreaksAPromise) {
    onMouse = [](PF_ParamDef** params, PF_EventExtra&, PF_OutData*) {
        params[FakeEffect::GroupStart]->uu.change_flags = PF_ChangeFlag_CHANGED_VALUE;
        return PF_Err{0};
    };
    EXPECT_THAT(user().click(Data, {0, 0}).broken, ElementsAre(HasSubstr("parameter 12 is marked as changed")));
}

TEST_F(HostPanelUser, BrokenPromisesOfAnEventAreReported) {
    onMouse = [](PF_ParamDef**, PF_EventExtra& event, PF_OutData*) {
        event.evt_out_flags = PF_EO_HANDLED_EVENT;
        return PF_Err{0};
    };
    const auto taken = FakeEffect::hooks().event;
    FakeEffect::hooks().event = [taken](PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_EventExtra* event) {
        if (event->e_type == PF_Event_DRAW)
            DrawCalls(in, event).path();
        else
            in->utils->host_new_handle(8);
        return taken(in, out, params, event);
    };
    EXPECT_THAT(user().click(Data, {0, 0}).broken,
                ElementsAre(HasSubstr("handle"), HasSubstr("drawing object \"NewPath\"")));
}

TEST_F(HostPanelUser, AModuleWhoseDataCanNotBeReadFailsTheEvent) {
    onMouse = [this](PF_ParamDef** params, PF_EventExtra& event, PF_OutData*) {
        addOne(params, event);
        host().faults().failNth("host_new_handle", 1, PF_Err_OUT_OF_MEMORY);
        return PF_Err{0};
    };
    const UserAction action = user().click(Data, {0, 0});
    host().faults().clear();
    EXPECT_NE(action.error, PF_Err_NONE);
    EXPECT_EQ(number(), 7) << "the old value stays";
}

TEST_F(HostPanelUser, ASupervisedParametersChangeIsTold) {
    addFlags(Slider, PF_ParamFlag_SUPERVISE);
    onChange = [](PF_ParamDef** params, PF_OutData*) {
        EXPECT_EQ(params[Slider]->u.sd.value, 5) << "the module finds the new value";
        params[FloatSlider]->u.fs_d.value = 2.5;
        params[FloatSlider]->uu.change_flags = PF_ChangeFlag_CHANGED_VALUE;
        return PF_Err{0};
    };
    const UserAction action = user().change(Slider, 5.0);
    EXPECT_THAT(log, ElementsAre("changed 1", "update"));
    EXPECT_THAT(action.changed, ElementsAre(Slider, FloatSlider));
    EXPECT_EQ(std::get<double>(instance().values().at(FloatSlider, 0)), 2.5);
    log.clear();
    user().change(FakeEffect::Checkbox, 0.0);
    EXPECT_THAT(log, ElementsAre("update")) << "this one is not supervised";
}

TEST_F(HostPanelUser, PressesButtons) {
    addFlags(Button, PF_ParamFlag_SUPERVISE);
    const UserAction action = user().press(Button);
    EXPECT_THAT(log, ElementsAre("changed 13", "update"));
    EXPECT_FALSE(action.rerender);
    EXPECT_THROW(user().press(Slider), HostError);
}

TEST_F(HostPanelUser, LooksAtThePanel) {
    user().look();
    EXPECT_THAT(log, ElementsAre("update"));
}

TEST_F(HostPanelUser, WhatIsHiddenCanNotBeReached) {
    instance().panel().hide(Data, true);
    instance().panel().hide(FakeEffect::GroupStart, true);
    EXPECT_THROW(user().click(Data, {0, 0}), HostError);
    EXPECT_THROW(user().press(Button), HostError) << "its group is hidden";
    EXPECT_THROW(user().placeOf(Slider), HostError) << "the module draws no control of it";
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(HostPanelUser, ControlsOfClosedGroupsCanBeReached) {
    addFlags(FakeEffect::GroupStart, PF_ParamFlag_START_COLLAPSED);
    addFlags(Data, PF_ParamFlag_START_COLLAPSED);
    EXPECT_EQ(user().click(Data, {0, 0}).mouseEvents, 1);
    EXPECT_NO_THROW(user().press(Button));
}

}  // namespace
}  // namespace TessavoyHost
