#include "Host/Command/ParameterListing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Unit/Host/SceneFixture.h"

namespace TessavoyHost {
namespace {

using namespace SceneFixture;
using ::testing::ElementsAre;
using Json = nlohmann::ordered_json;

// The listing of the only parameter of a list.
Json described(const FakeParameters& list) {
    const ParameterTable table(list.parameters, list.ids);
    return describeParameter(table, 1);
}

Json common(int type, const std::string& label, int flags = 0, int uiFlags = 0) {
    return {{"id", "A.B"},    {"index", 1},     {"diskId", 101},     {"type", type},
            {"label", label}, {"flags", flags}, {"uiFlags", uiFlags}};
}

void expectDescribed(const FakeParameters& list, Json expected, const Json& more) {
    expected.update(more);
    EXPECT_EQ(described(list).dump(), expected.dump());  // the order of the keys too
}

TEST(CommandParameterListing, Slider) {
    FakeParameters list;
    auto& slider = list.add("A.B", PF_Param_SLIDER, 0, "Count").u.sd;
    slider.dephault = 10;
    slider.valid_min = -5;
    slider.valid_max = 100000;
    slider.slider_min = 0;
    slider.slider_max = 100;
    expectDescribed(list, common(1, "Count"),
                    {{"default", 10}, {"validMin", -5}, {"validMax", 100000}, {"sliderMin", 0}, {"sliderMax", 100}});
}

TEST(CommandParameterListing, FloatSliderIsWrittenAsItsSinglePrecisionNumbers) {
    FakeParameters list;
    auto& slider = list.add("A.B", PF_Param_FLOAT_SLIDER, 2, "Size").u.fs_d;
    slider.dephault = 0.1F;
    slider.valid_min = -10000;
    slider.valid_max = 10000;
    slider.slider_min = -0.3F;
    slider.slider_max = 1;
    slider.precision = 2;
    slider.display_flags = 1;
    expectDescribed(list, common(10, "Size", 2),
                    {{"default", 0.1},
                     {"validMin", -10000.0},
                     {"validMax", 10000.0},
                     {"sliderMin", -0.3},
                     {"sliderMax", 1.0},
                     {"precision", 2},
                     {"percent", true}});
}

TEST(CommandParameterListing, AngleInDegrees) {
    FakeParameters list;
    list.add("A.B", PF_Param_ANGLE, 0, "Turn").u.ad.dephault = 90 * 65536 + 32768;
    expectDescribed(list, common(3, "Turn"), {{"default", 90.5}});
}

TEST(CommandParameterListing, CheckboxAndButtonWithTheirTexts) {
    FakeParameters box;
    box.add("A.B", PF_Param_CHECKBOX, 70, "Use").u.bd.dephault = 1;
    box.parameters[1].text = "3D Mode";
    expectDescribed(box, common(4, "Use", 70), {{"default", true}, {"text", "3D Mode"}});

    FakeParameters button;
    button.add("A.B", PF_Param_BUTTON, 64);
    button.parameters[1].text = "Show";
    expectDescribed(button, common(15, "", 64), {{"text", "Show"}});
}

TEST(CommandParameterListing, PopupWithTheDeclaredCount) {
    FakeParameters list;
    list.popup("A.B", "None|Layer 1", 24, 6);
    expectDescribed(list, common(7, "", 6), {{"default", 1}, {"choices", {"None", "Layer 1"}}, {"declaredCount", 24}});
}

TEST(CommandParameterListing, ColourPointsLayerAndPath) {
    FakeParameters color;
    color.add("A.B", PF_Param_COLOR).u.cd.dephault = {255, 1, 2, 3};  // alpha, red, green, blue
    expectDescribed(color, common(5, ""), {{"default", {1, 2, 3, 255}}});

    FakeParameters point;
    auto& td = point.add("A.B", PF_Param_POINT).u.td;
    td.x_dephault = 50 * 65536;
    td.y_dephault = 25 * 65536;
    expectDescribed(point, common(6, ""), {{"default", {50.0, 25.0}}});

    FakeParameters point3;
    point3.add("A.B", PF_Param_POINT_3D).u.point3d_d.z_dephault = 1.5;
    expectDescribed(point3, common(18, ""), {{"default", {0.0, 0.0, 1.5}}});

    FakeParameters layer;
    layer.add("A.B", PF_Param_LAYER);
    expectDescribed(layer, common(0, ""), {{"default", nullptr}});

    FakeParameters path;
    path.add("A.B", PF_Param_PATH);
    expectDescribed(path, common(12, ""), {{"default", nullptr}});
}

TEST(CommandParameterListing, CustomControlsHaveASize) {
    FakeParameters list;
    auto& definition = list.add("A.B", PF_Param_ARBITRARY_DATA, 32, "Ramp");
    definition.ui_flags = 130;
    definition.ui_width = 150;
    definition.ui_height = 140;
    expectDescribed(list, common(11, "Ramp", 32, 130), {{"uiWidth", 150}, {"uiHeight", 140}});
}

TEST(CommandParameterListing, ALabelMayFillItsPlace) {
    FakeParameters list;
    auto& definition = list.add("A.B", PF_Param_GROUP_START);
    std::memset(definition.name, 'x', sizeof definition.name);
    EXPECT_EQ(described(list)["label"], std::string(32, 'x'));
}

TEST(CommandParameterListing, JsonIsAListInPanelOrder) {
    const auto list = nlohmann::json::parse(parametersAsJson(fakeTable()));
    ASSERT_EQ(list.size(), fakeParameters().ids.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        EXPECT_EQ(list[i]["id"], fakeParameters().ids[i]);
        EXPECT_EQ(list[i]["index"], i + 1);
    }
}

ParameterTable smallTable() {
    static const FakeParameters list = [] {
        FakeParameters made;
        made.slider("CountX", 0, 100, 10);
        made.popup("Mode", "Fill|Line", 2, 0);
        return made;
    }();
    return {list.parameters, list.ids};
}

TEST(CommandParameterListing, TextHasColumns) {
    EXPECT_THAT(linesOf(parametersAsText(smallTable())),
                ElementsAre("index  disk id  id      type    label  range     default  popup texts",
                            "1      101      CountX  slider         0 to 100  10",
                            "2      102      Mode    popup                    Fill     Fill, Line"));
}

TEST(CommandParameterListing, MarkdownIsATable) {
    EXPECT_THAT(linesOf(parametersAsMarkdown(smallTable())),
                ElementsAre("| index | disk id | id | type | label | range | default | popup texts |",
                            "| --- | --- | --- | --- | --- | --- | --- | --- |",
                            "| 1 | 101 | `CountX` | slider |  | 0 to 100 | 10 |  |",
                            "| 2 | 102 | `Mode` | popup |  |  | Fill | Fill, Line |"));
}

}  // namespace
}  // namespace TessavoyHost
