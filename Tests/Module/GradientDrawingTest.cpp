#include <array>
#include <cmath>
#include <limits>
#include <tuple>

#include "Tests/Module/GradientPanel.h"

namespace TessavoyHost {
namespace {

using namespace GradientPanel;
using Tessavoy::gradientAt;
using Tessavoy::ReferenceColour;
using Tessavoy::StopKind;
using testing::IsEmpty;
using testing::SizeIs;

using Bytes = std::vector<std::byte>;

class ModuleGradientDrawing : public ModuleFixture {};

TEST_F(ModuleGradientDrawing, FillsItsFrameAndStaysInIt) {
    GradientInPanel panel(host(), {red, green, blue});
    DrawingRecorder recorder;
    expectGood(panel.control.draw(recorder));
    expectFilled(host(), recorder, frame);
}

// Column x of the bar, of 206, is the gradient at x / 206, cut to whole numbers; behind an opaque bar there is nothing.
// The cut may fall one short where single precision is a little lower than this.
TEST_F(ModuleGradientDrawing, DrawsABarOfItsColours) {
    const Stops stops = {{0.1F, StopKind::Soft, {1, 0.2F, 0, 1}},
                         {0.3F, StopKind::Straight, {0, 0.9F, 1, 1}},
                         {0.6F, StopKind::Edge, {0.5F, 0.5F, 0, 1}},
                         {0.8F, StopKind::Straight, {0, 0, 0.25F, 1}},
                         {0.95F, StopKind::Soft, {1, 1, 1, 1}}};
    GradientInPanel panel(host(), stops);
    DrawingRecorder recorder;
    expectGood(panel.control.draw(recorder));
    ASSERT_THAT(recorder.pictures, SizeIs(1));
    const auto& [bar, origin, alpha] = recorder.pictures[0];
    EXPECT_EQ(origin.x, 103);
    EXPECT_EQ(origin.y, 56);
    EXPECT_EQ(alpha, 1);
    ASSERT_EQ(bar.width, 206);
    ASSERT_EQ(bar.height, 23);
    for (int y = 0; y < bar.height; ++y) {
        for (int x = 0; x < bar.width; ++x) {
            const std::byte* pixel = &bar.samples[static_cast<std::size_t>(y * bar.width + x) * 4];
            const auto expected = gradientAt(stops, x / 206.0);
            for (const auto& [channel, place] : {std::pair{0, 2}, std::pair{1, 1}, std::pair{2, 0}, std::pair{3, 3}})
                EXPECT_NEAR(std::to_integer<int>(pixel[place]),
                            std::floor(expected[static_cast<std::size_t>(channel)] * 255), 1)
                    << "column " << x << ", channel " << channel;
        }
    }
}

// The picture reaches the host with straight alpha, which premultiplies it; behind it a board of the theme's white and
// grey shows.
TEST_F(ModuleGradientDrawing, DrawsTransparentColoursOverACheckerboard) {
    GradientInPanel panel(host(), {{0.5F, StopKind::Straight, {1, 0.5F, 0, 0.4F}}});
    DrawingRecorder recorder;
    expectGood(panel.control.draw(recorder));
    ASSERT_THAT(recorder.pictures, SizeIs(2));
    const DrawnImage& bar = recorder.pictures[1].image;
    // 0.4 * 255 = 102; of red 255, of green 127 * 102 / 255 = 50.8
    EXPECT_EQ(Bytes(bar.samples.begin(), bar.samples.begin() + 4),
              (Bytes{std::byte{0}, std::byte{51}, std::byte{102}, std::byte{102}}));

    const auto& [board, origin, alpha] = recorder.pictures[0];
    EXPECT_EQ(origin.x, 103);
    EXPECT_EQ(origin.y, 56);
    ASSERT_EQ(board.width, 206);
    ASSERT_EQ(board.height, 23);
    const auto greenAt = [&board = board](int x, int y) {
        return std::to_integer<int>(board.samples[static_cast<std::size_t>(y * board.width + x) * 4 + 1]);
    };
    const int light = static_cast<int>(themeColorOf(host(), PF_App_Color_WHITE).green * 255);
    const int dark = static_cast<int>(themeColorOf(host(), PF_App_Color_GRAY).green * 255);
    EXPECT_NE(light, dark);
    EXPECT_EQ(greenAt(0, 0), light);
    EXPECT_EQ(greenAt(6, 0), dark);
    EXPECT_EQ(greenAt(6, 6), light);
    EXPECT_EQ(greenAt(205, 22), (205 / 6 + 22 / 6) % 2 == 0 ? light : dark);
}

// Each is 10 pixels wide about the whole pixel of its position and 15 high, with its tip at the bar's bottom, in the
// colour of its point without the alpha, with an outline in the colour of text. The first in order comes last, in
// front.
TEST_F(ModuleGradientDrawing, MarksEachPointBelowTheBar) {
    const Stops stops = {at(0, red), at(0.2525F, green), at(1, blue)};
    GradientInPanel panel(host(), stops);
    DrawingRecorder recorder;
    expectGood(panel.control.draw(recorder));
    ASSERT_THAT(recorder.fills, SizeIs(3));
    ASSERT_THAT(recorder.strokes, SizeIs(3));
    const float middles[] = {106, 157, 306};  // 50.5 pixels from the start are rounded up
    for (std::size_t n = 0; n < 3; ++n) {
        const auto& fill = recorder.fills[2 - n];
        const DRAWBOT_RectF32 bounds = boundsOf(fill.path);
        EXPECT_EQ(bounds.left, middles[n] - 5) << n;
        EXPECT_EQ(bounds.width, 10) << n;
        EXPECT_EQ(bounds.top, 79) << n;
        EXPECT_EQ(bounds.height, 15) << n;
        EXPECT_EQ(cornersOf(fill.path).front().x, middles[n]) << n;
        EXPECT_EQ(cornersOf(fill.path).front().y, 79) << n;
        const ReferenceColour& colour = stops[n].colour;
        EXPECT_EQ(fill.color.red, colour[0]) << n;
        EXPECT_EQ(fill.color.green, colour[1]) << n;
        EXPECT_EQ(fill.color.blue, colour[2]) << n;
        EXPECT_EQ(fill.color.alpha, 1) << n;

        const auto& stroke = recorder.strokes[2 - n];
        EXPECT_EQ(cornersOf(stroke.path).size(), cornersOf(fill.path).size()) << n;
        EXPECT_EQ(boundsOf(stroke.path).left, bounds.left) << n;
        EXPECT_TRUE(sameColor(stroke.color, themeColorOf(host(), PF_App_Color_TEXT))) << n;
        EXPECT_EQ(stroke.width, 1) << n;
    }
}

// Each marker is its own mirror image, so that its middle is its point's place, and is made of the offsets 2.5, 3.75,
// 5, 7.5, 11.25 and 15.
TEST_F(ModuleGradientDrawing, MarksEachKindByAnOutlineOfItsOwn) {
    std::vector<std::vector<std::pair<float, float>>> outlines;
    for (const StopKind kind : {StopKind::Straight, StopKind::Soft, StopKind::Edge, static_cast<StopKind>(17)}) {
        GradientInPanel panel(host(), {{0.5F, kind, {1, 1, 1, 1}}});
        DrawingRecorder recorder;
        expectGood(panel.control.draw(recorder));
        ASSERT_THAT(recorder.fills, SizeIs(1));
        std::vector<std::pair<float, float>> outline;
        for (const DRAWBOT_PointF32& corner : cornersOf(recorder.fills[0].path)) {
            outline.emplace_back(corner.x - 206, corner.y - 79);
            EXPECT_THAT(std::abs(corner.x - 206), testing::AnyOf(0, 2.5F, 5)) << static_cast<int>(kind);
            EXPECT_THAT(corner.y - 79, testing::AnyOf(0, 3.75F, 5, 7.5F, 11.25F, 15)) << static_cast<int>(kind);
        }
        for (const auto& [x, y] : outline)
            EXPECT_THAT(outline, testing::Contains(std::pair(-x, y))) << static_cast<int>(kind);
        EXPECT_TRUE(std::holds_alternative<PathPiece::Close>(recorder.fills[0].path.back())) << static_cast<int>(kind);
        outlines.push_back(outline);
    }
    EXPECT_NE(outlines[0], outlines[1]);
    EXPECT_NE(outlines[1], outlines[2]);
    EXPECT_NE(outlines[0], outlines[2]);
    EXPECT_EQ(outlines[3], outlines[0]);  // as which any other kind blends
}

// Saved data may hold any numbers; there is no marker where nobody would see it.
TEST_F(ModuleGradientDrawing, DrawsWhateverWasSaved) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    const ReferenceColour colour = {notANumber, infinite, -5, notANumber};
    GradientInPanel panel(host(), {{-infinite, StopKind::Soft, colour},
                                   {-3e38F, StopKind::Straight, colour},
                                   {-0.03F, StopKind::Soft, colour},
                                   {1.03F, StopKind::Edge, colour},
                                   {3e38F, StopKind::Soft, colour},
                                   {notANumber, StopKind::Soft, colour}});
    DrawingRecorder recorder;
    expectGood(panel.control.draw(recorder));
    ASSERT_THAT(recorder.fills, SizeIs(2));
    EXPECT_EQ(boundsOf(recorder.fills[1].path).left, 95);
    EXPECT_EQ(boundsOf(recorder.fills[0].path).left, 307);
    EXPECT_TRUE(sameColor(recorder.fills[0].color, {0, 1, 0, 1}));
    for (const int count : {1, 2}) {
        for (const int x : {100, 206, 312})
            expectGood(panel.control.click(x, inside, count));
    }
}

// The smallest frames leave out what has no room, and break nothing.
TEST_F(ModuleGradientDrawing, DrawsIntoAnyFrame) {
    GradientInPanel panel(host(), {red, green, blue});
    for (const auto& [width, height, pictures, markers] :
         {std::array{0, 0, 0, 0}, std::array{6, 50, 0, 0}, std::array{7, 50, 2, 0}, std::array{12, 50, 2, 0},
          std::array{13, 27, 0, 3}, std::array{13, 28, 2, 3}}) {
        panel.control.event().effect_win.current_frame = {0, 0, width, height};
        DrawingRecorder recorder;
        expectGood(panel.control.draw(recorder));
        EXPECT_THAT(recorder.pictures, SizeIs(pictures)) << width << " by " << height;
        EXPECT_THAT(recorder.fills, SizeIs(markers)) << width << " by " << height;
    }
}

// Outside of a panel there is no drawing to be had.
TEST_F(ModuleGradientDrawing, DrawsNothingWhereThereIsNothingToDrawOn) {
    GradientInPanel panel(host(), {red});
    panel.control.event().e_type = PF_Event_DRAW;
    expectGood(panel.instance->command(PF_Cmd_EVENT, 0, &panel.control.event()));
    EXPECT_TRUE(panel.control.handled());
}

TEST_F(ModuleGradientDrawing, AHostCallThatFailsEndsTheDrawingWithItsError) {
    GradientInPanel panel(host(), {red, green, blue});
    const int failed = panel.control.failEachCallOf([&] {
        panel.control.event().evt_out_flags = PF_EO_NONE;
        DrawingRecorder recorder;
        return panel.control.draw(recorder);
    });
    // The drawing: 5 suites, the reference, supplier, surface, push, clip. The background: a suite, a colour, painting.
    // The value: a suite, a lock. The bar: two suites and colours; twice two layouts, the preferred one, the image and
    // its drawing. Markers: a suite, a colour, a pen; for each a path, a brush, filling and stroking, and 6 pieces of
    // the first, 6 of the second, 10 of the third.
    EXPECT_EQ(failed, 10 + 3 + 2 + 4 + 10 + 3 + 3 * 4 + 6 + 6 + 10);
}

TEST_F(ModuleGradientDrawing, WithoutASuiteTheDrawingSaysSo) {
    GradientInPanel panel(host(), {red, green, blue});
    const struct {
        const char* name;
        A_long version;
        const char* message;
    } suites[] = {{"DRAWBOT Draw Suite", 1, "Not able to acquire AEFX Suite."},
                  {"DRAWBOT Supplier Suite", 1, "Not able to acquire AEFX Suite."},
                  {"DRAWBOT Surface Suite", 2, "Not able to acquire AEFX Suite."},
                  {"DRAWBOT Path Suite", 1, "Not able to acquire AEFX Suite."},
                  {"PF Effect Custom UI Suite", 1, ""},
                  {"PF AE App Suite", 6, ""},
                  {"PF Handle Suite", 2, ""}};
    for (const auto& suite : suites) {
        host().faults().removeSuite(suite.name, suite.version);
        DrawingRecorder recorder;
        const CommandResult result = panel.control.draw(recorder);
        host().faults().clear();
        EXPECT_EQ(result.error, PF_Err_BAD_CALLBACK_PARAM) << suite.name;
        EXPECT_EQ(result.message, suite.message) << suite.name;
        EXPECT_THAT(result.broken, IsEmpty()) << suite.name;
    }
}

}  // namespace
}  // namespace TessavoyHost
