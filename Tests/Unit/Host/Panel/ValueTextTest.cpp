#include "Host/Panel/ValueText.h"

#include "Tests/Unit/Host/DrawingFixture.h"

namespace TessavoyHost {
namespace {

class HostValueText : public DrawingFixture {
protected:
    std::string textOf(int parameter, const ParameterValue& value) {
        instance().values().set(parameter, 0, value);
        return valueText(instance(), parameter, 0);
    }

    static void defineFloat(A_short precision, A_short displayFlags) {
        FakeEffect::hooks().define = [=](int index, PF_ParamDef& definition) {
            if (index != FakeEffect::FloatSlider)
                return;
            definition.u.fs_d.precision = precision;
            definition.u.fs_d.display_flags = displayFlags;
        };
    }
};

TEST_F(HostValueText, SlidersAreWhole) {
    EXPECT_EQ(textOf(FakeEffect::Slider, 40.0), "40");
    EXPECT_EQ(textOf(FakeEffect::Slider, -2.5), "-3") << "as the module gets it";
    EXPECT_EQ(textOf(FakeEffect::Slider, -0.2), "0");
}

TEST_F(HostValueText, FloatSlidersHaveTheirPrecision) {
    defineFloat(2, PF_ValueDisplayFlag_NONE);
    EXPECT_EQ(textOf(FakeEffect::FloatSlider, 12.345), "12.35");
    EXPECT_EQ(textOf(FakeEffect::FloatSlider, 100.0), "100.00");
    EXPECT_EQ(textOf(FakeEffect::FloatSlider, -0.004), "0.00") << "no minus before a zero";
    EXPECT_EQ(textOf(FakeEffect::FloatSlider, -0.006), "-0.01");
    EXPECT_EQ(textOf(FakeEffect::FloatSlider, 1e15), "1000000000000000.00");
}

TEST_F(HostValueText, PercentagesHaveASign) {
    defineFloat(1, PF_ValueDisplayFlag_PERCENT);
    EXPECT_EQ(textOf(FakeEffect::FloatSlider, 100.0), "100.0%");
}

TEST_F(HostValueText, AnglesAreTurnsAndDegrees) {
    EXPECT_EQ(textOf(FakeEffect::Angle, 0.0), "0x+0.0\xC2\xB0");
    EXPECT_EQ(textOf(FakeEffect::Angle, 90.0), "0x+90.0\xC2\xB0");
    EXPECT_EQ(textOf(FakeEffect::Angle, 765.5), "2x+45.5\xC2\xB0");
    EXPECT_EQ(textOf(FakeEffect::Angle, -450.0), "-1x-90.0\xC2\xB0");
    EXPECT_EQ(textOf(FakeEffect::Angle, -90.0), "0x-90.0\xC2\xB0");
}

TEST_F(HostValueText, PopupsShowTheirChoice) {
    EXPECT_EQ(textOf(FakeEffect::Popup, 1.0), "One");
    EXPECT_EQ(textOf(FakeEffect::Popup, 3.0), "Three");
    EXPECT_EQ(textOf(FakeEffect::Popup, 7.0), "7") << "a value without a text";
}

TEST_F(HostValueText, PointsAreInPixelsOfTheLayer) {
    EXPECT_EQ(valueText(instance(), FakeEffect::Point, 0), "50.0, 20.0") << "50 and 25 percent of 100 by 80 pixels";
    EXPECT_EQ(textOf(FakeEffect::Point3D, Point3{1.25, -2, 300}), "1.2, -2.0, 300.0");
}

TEST_F(HostValueText, LayersAndMasksAreNamed) {
    project.masks = {{"Orbit", true, {}}, {"Ring", true, {}}};
    EXPECT_EQ(valueText(instance(), FakeEffect::Layer, 0), "None");
    EXPECT_EQ(textOf(FakeEffect::Layer, LayerReference{0}), "Plate");
    EXPECT_EQ(valueText(instance(), FakeEffect::Path, 0), "None");
    EXPECT_EQ(textOf(FakeEffect::Path, MaskReference{2}), "Ring");
    EXPECT_EQ(textOf(FakeEffect::Path, MaskReference{3}), "None");
}

TEST_F(HostValueText, FollowsKeys) {
    project.parameters[FakeEffect::Slider] = {{{0, 0.0, Ease::Linear}, {2, 10.0, Ease::Linear}}};
    EXPECT_EQ(valueText(instance(), FakeEffect::Slider, 1), "5");
}

TEST_F(HostValueText, WhatShowsItselfOtherwiseHasNone) {
    for (const int parameter :
         {FakeEffect::Checkbox, FakeEffect::Color, FakeEffect::Data, FakeEffect::GroupStart, FakeEffect::Button})
        EXPECT_EQ(valueText(instance(), parameter, 0), "") << parameter;
}

}  // namespace
}  // namespace TessavoyHost
