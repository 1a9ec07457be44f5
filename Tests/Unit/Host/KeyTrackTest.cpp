#include "Host/KeyTrack.h"

#include <gtest/gtest.h>

namespace TessavoyHost {
namespace {

ParameterTrack numbers(Ease first = Ease::Linear) {
    return {{{1, 10.0, first}, {3, 20.0, Ease::Linear}, {4, 0.0, Ease::Hold}}};
}

double numberAt(const ParameterTrack& track, double time, bool blending = true) {
    return std::get<double>(valueAt(track, time, blending));
}

TEST(HostKeyTrack, HoldsBeforeTheFirstAndAfterTheLastKey) {
    EXPECT_EQ(numberAt(numbers(), -5), 10);
    EXPECT_EQ(numberAt(numbers(), 1), 10);
    EXPECT_EQ(numberAt(numbers(), 4), 0);
    EXPECT_EQ(numberAt(numbers(), 99), 0);
}

TEST(HostKeyTrack, GoesStraightBetweenKeys) {
    EXPECT_EQ(numberAt(numbers(), 1.5), 12.5);
    EXPECT_EQ(numberAt(numbers(), 3), 20);
    EXPECT_EQ(numberAt(numbers(), 3.75), 5);
}

TEST(HostKeyTrack, HoldsAStretchWhoseKeySaysSo) {
    EXPECT_EQ(numberAt(numbers(Ease::Hold), 2.999), 10);
    EXPECT_EQ(numberAt(numbers(Ease::Hold), 3), 20);
}

// 0.6 + 0.3 is less than 0.9 in doubles, and a key that a program writes as 1001 / 30000 * 6 stands after its frame.
TEST(HostKeyTrack, AFramesRoundingDoesNotMissItsKey) {
    for (const double justBefore : {2.9999999999999996, 2.9999995}) {
        EXPECT_EQ(numberAt(numbers(), justBefore), 20);
        EXPECT_EQ(numberAt(numbers(Ease::Hold), justBefore), 20);
        EXPECT_EQ(numberAt(numbers(Ease::Smooth), justBefore), 20);
    }
    EXPECT_EQ(numberAt(numbers(), 3.9999999), 0);
    EXPECT_EQ(numberAt(numbers(), 0.9999999), 10);
    EXPECT_NE(numberAt(numbers(), 2.99999), 20);
}

// 3u^2 - 2u^3 at u = 1/4: 3/16 - 2/64 = 5/32.
TEST(HostKeyTrack, EasesASmoothStretch) {
    EXPECT_DOUBLE_EQ(numberAt(numbers(Ease::Smooth), 1.5), 10 + 10 * 5.0 / 32);
    EXPECT_DOUBLE_EQ(numberAt(numbers(Ease::Smooth), 2), 15);
}

TEST(HostKeyTrack, HoldsEverythingWhereNothingBlends) {
    EXPECT_EQ(numberAt(numbers(), 2.5, false), 10);
}

TEST(HostKeyTrack, BlendsColoursAndPointsByComponent) {
    const ParameterTrack colours{
        {{0, ColorValue{0, 100, 10, 255}, Ease::Linear}, {1, ColorValue{255, 0, 11, 0}, Ease::Linear}}};
    const auto colour = std::get<ColorValue>(valueAt(colours, 0.25));
    EXPECT_EQ(colour.red, 64);  // 63.75
    EXPECT_EQ(colour.green, 75);
    EXPECT_EQ(colour.blue, 10);    // 10.25
    EXPECT_EQ(colour.alpha, 191);  // 191.25
    const ParameterTrack points{{{0, Point3{1, 2, 3}, Ease::Linear}, {2, Point3{3, 2, -3}, Ease::Linear}}};
    const auto point = std::get<Point3>(valueAt(points, 1));
    EXPECT_EQ(point.x, 2);
    EXPECT_EQ(point.y, 2);
    EXPECT_EQ(point.z, 0);
}

TEST(HostKeyTrack, HoldsReferences) {
    const ParameterTrack layers{{{0, LayerReference{4}, Ease::Linear}, {1, LayerReference{7}, Ease::Linear}}};
    EXPECT_EQ(std::get<LayerReference>(valueAt(layers, 0.9)).layer, 4);
    EXPECT_EQ(std::get<LayerReference>(valueAt(layers, 1)).layer, 7);
}

}  // namespace
}  // namespace TessavoyHost
