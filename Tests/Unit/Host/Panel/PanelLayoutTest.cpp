#include "Host/Panel/PanelLayout.h"

#include "Tests/Unit/Host/DrawingFixture.h"

namespace TessavoyHost {
namespace {

using FakeEffect::Button;
using FakeEffect::Data;
using FakeEffect::GroupStart;
using FakeEffect::Slider;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class HostPanelLayout : public DrawingFixture {
protected:
    std::vector<int> shown(const PanelView& view = {}) {
        const PanelLayout layout(instance(), view);
        std::vector<int> parameters;
        for (const PanelRow& row : layout.rows())
            parameters.push_back(row.parameter);
        return parameters;
    }
};

constexpr PanelView all = {.opensAll = true};

TEST_F(HostPanelLayout, ShowsParametersInTheirOrder) {
    EXPECT_THAT(shown(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, Data, GroupStart, Button))
        << "neither the input layer nor ends of groups";
}

TEST_F(HostPanelLayout, GroupsThatAreRegisteredSoStartClosed) {
    addFlags(GroupStart, PF_ParamFlag_START_COLLAPSED);
    EXPECT_THAT(shown(), Not(Contains(Button)));
    EXPECT_THAT(shown(), Contains(GroupStart));
    EXPECT_THAT(shown(all), Contains(Button));
    const PanelLayout closed(instance(), {}), open(instance(), all);
    EXPECT_TRUE(closed.find(GroupStart)->canTwirl);
    EXPECT_FALSE(closed.find(GroupStart)->isOpen);
    EXPECT_TRUE(open.find(GroupStart)->isOpen);
    EXPECT_FALSE(closed.find(Slider)->canTwirl);
}

// The button becomes the start of a group inside the group, and the point's parameter its end.
TEST_F(HostPanelLayout, WhatIsInAHiddenGroupIsHiddenDownToItsOwnEnd) {
    FakeEffect::hooks().define = [](int index, PF_ParamDef& definition) {
        constexpr int inner[] = {FakeEffect::Slider, FakeEffect::Angle};
        constexpr int ends[] = {FakeEffect::Checkbox, FakeEffect::Color};
        if (index == inner[0] || index == inner[1])
            definition.param_type = PF_Param_GROUP_START;
        if (index == ends[0] || index == ends[1])
            definition.param_type = PF_Param_GROUP_END;
    };
    EXPECT_THAT(shown(), ElementsAre(1, 2, 3, 5, 7, 8, 9, 10, Data, GroupStart, Button));
    const PanelLayout layout(instance(), {});
    const int first = layout.find(Slider)->twirl.left;
    const int second = layout.find(FakeEffect::FloatSlider)->twirl.left;
    EXPECT_GT(second, first);
    EXPECT_EQ(layout.find(FakeEffect::Angle)->twirl.left, second);
    EXPECT_EQ(layout.find(FakeEffect::Popup)->twirl.left, second) << "the inner group has nothing in it";
    EXPECT_EQ(layout.find(FakeEffect::Point)->twirl.left, first);
    instance().panel().hide(Slider, true);
    EXPECT_THAT(shown(all), ElementsAre(7, 8, 9, 10, Data, GroupStart, Button));
}

TEST_F(HostPanelLayout, HiddenParametersAreLeftOut) {
    const int before = PanelLayout(instance(), {}).height();
    instance().panel().hide(Slider, true);
    const PanelLayout layout(instance(), {});
    EXPECT_EQ(layout.find(Slider), nullptr);
    EXPECT_LT(layout.height(), before);
    instance().panel().hide(Slider, false);
    EXPECT_EQ(PanelLayout(instance(), {}).height(), before);
}

TEST_F(HostPanelLayout, ParametersWithoutAPlaceInThePanelAreLeftOut) {
    FakeEffect::hooks().define = [](int index, PF_ParamDef& definition) {
        if (index == Slider)
            definition.ui_flags |= PF_PUI_NO_ECW_UI;
    };
    EXPECT_THAT(shown(all), Not(Contains(Slider)));
}

// The fake's control is registered with 120 by 40 pixels.
TEST_F(HostPanelLayout, AControlHasItsRegisteredSizeBelowItsTitle) {
    const PanelLayout layout(instance(), {});
    const PanelRow& row = *layout.find(Data);
    EXPECT_EQ(row.control.right - row.control.left, 120);
    EXPECT_EQ(row.control.bottom - row.control.top, 40);
    EXPECT_GE(row.control.top, row.title.bottom);
    EXPECT_EQ(layout.find(Slider)->control.bottom, 0);
}

TEST_F(HostPanelLayout, AControlThatStartsClosedHasNoPlaceUntilItIsOpened) {
    addFlags(Data, PF_ParamFlag_START_COLLAPSED);
    const PanelLayout closed(instance(), {}), open(instance(), all);
    EXPECT_TRUE(closed.find(Data)->canTwirl);
    EXPECT_EQ(closed.find(Data)->control.bottom, 0);
    EXPECT_EQ(open.find(Data)->control.bottom - open.find(Data)->control.top, 40);
    EXPECT_GT(open.height(), closed.height() + 39);
}

// From the caption down nothing overlaps or is left out, and each line is as wide as the panel.
TEST_F(HostPanelLayout, RowsFollowEachOther) {
    for (const int width : {leastPanelWidth, 480, 1000}) {
        const PanelLayout layout(instance(), {width, true});
        EXPECT_EQ(layout.width(), width);
        EXPECT_EQ(layout.caption().right, width);
        int below = layout.caption().bottom;
        for (const PanelRow& row : layout.rows()) {
            EXPECT_EQ(row.title.top, below);
            EXPECT_EQ(row.twirl.right, row.title.left);
            EXPECT_EQ(row.title.right, row.value.left);
            EXPECT_EQ(row.value.right, width);
            EXPECT_LE(row.title.left, row.title.right);
            below = row.title.bottom;
            if (row.control.bottom != 0)
                below = std::max<int>(below, row.control.bottom + 4);
        }
        EXPECT_EQ(layout.height(), below);
    }
}

}  // namespace
}  // namespace TessavoyHost
