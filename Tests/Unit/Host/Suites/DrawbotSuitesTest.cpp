#include <sstream>

#include "Tests/Unit/Host/DrawingFixture.h"

namespace TessavoyHost {
namespace {

using FakeEffect::Acquired;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::ostream& operator<<(std::ostream& out, const DRAWBOT_PointF32& point) {
    return out << point.x << ' ' << point.y;
}
std::ostream& operator<<(std::ostream& out, const DRAWBOT_RectF32& area) {
    return out << area.left << ' ' << area.top << ' ' << area.width << ' ' << area.height;
}
std::ostream& operator<<(std::ostream& out, const DRAWBOT_ColorRGBA& color) {
    return out << color.red << ' ' << color.green << ' ' << color.blue << ' ' << color.alpha;
}

std::ostream& operator<<(std::ostream& out, const DrawnPath& path) {
    struct Writer {
        void operator()(const PathPiece::Move& piece) const { out << " move " << piece.to; }
        void operator()(const PathPiece::Line& piece) const { out << " line " << piece.to; }
        void operator()(const PathPiece::Curve& piece) const {
            out << " curve " << piece.control1 << ", " << piece.control2 << ", " << piece.to;
        }
        void operator()(const PathPiece::Rectangle& piece) const { out << " rectangle " << piece.area; }
        void operator()(const PathPiece::Arc& piece) const {
            out << " arc " << piece.centre << ", " << piece.radius << ", " << piece.start << ", " << piece.sweep;
        }
        void operator()(const PathPiece::Close&) const { out << " close"; }
        std::ostream& out;
    };
    for (const auto& piece : path)
        std::visit(Writer{out}, piece);
    return out;
}

// Writes down all that comes out.
class LogSurface : public DrawingSurface {
public:
    void pushState() override { log.push_back("push"); }
    void popState() override { log.push_back("pop"); }
    void clip(const DRAWBOT_Rect32& area) override {
        add("clip ", area.left, ' ', area.top, ' ', area.width, ' ', area.height);
    }
    void transform(const DRAWBOT_MatrixF32& matrix) override { add("transform ", matrix.mat[2][0]); }
    void setInterpolation(DRAWBOT_InterpolationPolicy policy) override { add("interpolation ", policy); }
    void setAntiAliasing(DRAWBOT_AntiAliasPolicy policy) override { add("antialiasing ", policy); }
    void paintRect(const DRAWBOT_RectF32& area, const DRAWBOT_ColorRGBA& color) override {
        add("paint ", area, " in ", color);
    }
    void fillPath(const DrawnPath& path, const DRAWBOT_ColorRGBA& color, DRAWBOT_FillType type) override {
        add("fill ", type, " in ", color, ':', path);
    }
    void strokePath(const DrawnPath& path, const DRAWBOT_ColorRGBA& color, float width) override {
        add("stroke ", width, " in ", color, ':', path);
    }
    void drawText(const DrawnText& text) override {
        add("text ", text.text, " at ", text.origin, " size ", text.fontSize, " in ", text.color, ", ", text.alignment,
            ' ', text.truncation, ' ', text.truncationWidth);
    }
    void drawImage(const DrawnImage& image, const DRAWBOT_PointF32& origin, float alpha) override {
        add("image ", image.width, ' ', image.height, " at ", origin, " alpha ", alpha);
    }

    std::vector<std::string> log;

private:
    template <class... Parts>
    void add(const Parts&... parts) {
        std::ostringstream line;
        (line << ... << parts);
        log.push_back(line.str());
    }
};

class HostDrawbotSuites : public DrawingFixture {
protected:
    // What comes out of a draw event that keeps every promise.
    std::vector<std::string> logOf(const std::function<void(DrawCalls&)>& body) {
        LogSurface surface;
        const CommandResult result = draw(body, surface);
        EXPECT_EQ(result.error, PF_Err_NONE);
        EXPECT_THAT(result.broken, IsEmpty());
        return surface.log;
    }
};

TEST_F(HostDrawbotSuites, DrawPathsOfEveryPiece) {
    EXPECT_THAT(
        logOf([](DrawCalls& calls) {
            const auto path = calls.path();
            const auto& suite = *calls.pathSuite.table;
            const DRAWBOT_PointF32 points[] = {{1, 2}, {3, 4}, {5, 6}};
            const DRAWBOT_RectF32 area = {7, 8, 9, 10};
            EXPECT_EQ(suite.MoveTo(path, 0.5F, 1.5F), 0);
            EXPECT_EQ(suite.LineTo(path, 10, 20), 0);
            EXPECT_EQ(suite.BezierTo(path, &points[0], &points[1], &points[2]), 0);
            EXPECT_EQ(suite.Close(path), 0);
            EXPECT_EQ(suite.AddRect(path, &area), 0);
            EXPECT_EQ(suite.AddArc(path, &points[0], 11, 90, -45), 0);
            const auto brush = calls.brush({1, 0, 0, 1});
            const auto pen = calls.pen({0, 1, 0, 0.5F}, 2);
            EXPECT_EQ(calls.surfaceSuite->FillPath(calls.surface, brush, path, kDRAWBOT_FillType_EvenOdd), 0);
            EXPECT_EQ(calls.surfaceSuite->StrokePath(calls.surface, pen, path), 0);
            calls.release(path);
            calls.release(brush);
            calls.release(pen);
        }),
        ElementsAre("fill 0 in 1 0 0 1: move 0.5 1.5 line 10 20 curve 1 2, 3 4, 5 6 close rectangle 7 8 9 10 arc 1 2, "
                    "11, 90, -45",
                    "stroke 2 in 0 1 0 0.5: move 0.5 1.5 line 10 20 curve 1 2, 3 4, 5 6 close rectangle 7 8 9 10 arc "
                    "1 2, 11, 90, -45"));
}

// A note, and the halves of a letter beyond the first plane.
TEST_F(HostDrawbotSuites, DrawTextInUtf8) {
    EXPECT_THAT(logOf([](DrawCalls& calls) {
                    const auto brush = calls.brush({0, 0, 1, 1});
                    const auto font = calls.font(9.5F);
                    const DRAWBOT_UTF16Char letters[] = {'a', 0x266B, 0xD83C, 0xDFA8, 0};
                    const DRAWBOT_PointF32 place = {5, 32};
                    EXPECT_EQ(calls.surfaceSuite->DrawString(calls.surface, brush, font, letters, &place,
                                                             kDRAWBOT_TextAlignment_Right,
                                                             kDRAWBOT_TextTruncation_EndEllipsis, 70),
                              0);
                    calls.release(brush);
                    calls.release(font);
                }),
                ElementsAre("text a\xE2\x99\xAB\xF0\x9F\x8E\xA8 at 5 32 size 9.5 in 0 0 1 1, 2 2 70"));
}

TEST_F(HostDrawbotSuites, DrawImagesAndRectangles) {
    EXPECT_THAT(
        logOf([](DrawCalls& calls) {
            DRAWBOT_Boolean supports = 0, prefersBgra = 0, prefersArgb = 1;
            EXPECT_EQ(calls.supplierSuite->SupportsPixelLayoutARGB(calls.supplier, &supports), 0);
            EXPECT_TRUE(supports);
            EXPECT_EQ(calls.supplierSuite->SupportsPixelLayoutBGRA(calls.supplier, &supports), 0);
            EXPECT_TRUE(supports);
            EXPECT_EQ(calls.supplierSuite->PrefersPixelLayoutBGRA(calls.supplier, &prefersBgra), 0);
            EXPECT_EQ(calls.supplierSuite->PrefersPixelLayoutARGB(calls.supplier, &prefersArgb), 0);
            EXPECT_NE(prefersBgra, prefersArgb);
            const std::vector<std::uint8_t> pixels(2 * 3 * 4);
            const DRAWBOT_PointF32 place = {30, 40};
            for (const DRAWBOT_PixelLayout layout :
                 {kDRAWBOT_PixelLayout_32ARGB_Straight, kDRAWBOT_PixelLayout_32BGRA_Premul}) {
                DRAWBOT_ImageRef image = nullptr;
                EXPECT_EQ(
                    calls.supplierSuite->NewImageFromBuffer(calls.supplier, 2, 3, 8, layout, pixels.data(), &image), 0);
                EXPECT_EQ(calls.surfaceSuite->DrawImage(calls.surface, image, &place, 0.5F), 0);
                calls.release(image);
            }
            const DRAWBOT_ColorRGBA grey = {0.5F, 0.5F, 0.5F, 1};
            const DRAWBOT_RectF32 area = {1, 2, 3, 4};
            EXPECT_EQ(calls.surfaceSuite->PaintRect(calls.surface, &grey, &area), 0);
            EXPECT_EQ(calls.surfaceSuite->Flush(calls.surface), 0);
        }),
        ElementsAre("image 2 3 at 30 40 alpha 0.5", "image 2 3 at 30 40 alpha 0.5", "paint 1 2 3 4 in 0.5 0.5 0.5 1"));
}

TEST_F(HostDrawbotSuites, KeepAStackOfStates) {
    EXPECT_THAT(logOf([](DrawCalls& calls) {
                    const auto& suite = *calls.surfaceSuite.table;
                    const DRAWBOT_Rect32 area = {20, 30, 40, 10};
                    const DRAWBOT_MatrixF32 shift = {{{1, 0, 0}, {0, 1, 0}, {9, 0, 1}}};
                    DRAWBOT_Rect32 bounds{};
                    DRAWBOT_Boolean within = 0;
                    DRAWBOT_InterpolationPolicy interpolation = -1;
                    DRAWBOT_AntiAliasPolicy antiAliasing = -1;
                    float scale = 0;
                    EXPECT_EQ(suite.PushStateStack(calls.surface), 0);
                    EXPECT_EQ(suite.Clip(calls.surface, calls.supplier, &area), 0);
                    EXPECT_EQ(suite.SetInterpolationPolicy(calls.surface, kDRAWBOT_InterpolationPolicy_High), 0);
                    EXPECT_EQ(suite.SetAntiAliasPolicy(calls.surface, kDRAWBOT_AntiAliasPolicy_Med), 0);
                    EXPECT_EQ(suite.GetInterpolationPolicy(calls.surface, &interpolation), 0);
                    EXPECT_EQ(suite.GetAntiAliasPolicy(calls.surface, &antiAliasing), 0);
                    EXPECT_EQ(interpolation, kDRAWBOT_InterpolationPolicy_High);
                    EXPECT_EQ(antiAliasing, kDRAWBOT_AntiAliasPolicy_Med);
                    EXPECT_EQ(suite.GetClipBounds(calls.surface, &bounds), 0);
                    EXPECT_EQ(bounds.left, 20);
                    EXPECT_EQ(bounds.height, 10);
                    EXPECT_EQ(suite.IsWithinClipBounds(calls.surface, &area, &within), 0);
                    EXPECT_TRUE(within);
                    EXPECT_EQ(suite.Transform(calls.surface, &shift), 0);
                    EXPECT_EQ(suite.IsWithinClipBounds(calls.surface, &area, &within), 0);
                    EXPECT_FALSE(within);
                    EXPECT_EQ(suite.PopStateStack(calls.surface), 0);
                    EXPECT_NE(suite.PopStateStack(calls.surface), 0);
                    EXPECT_EQ(suite.GetClipBounds(calls.surface, &bounds), 0);
                    EXPECT_EQ(bounds.width, 120);
                    EXPECT_EQ(suite.GetTransformToScreenScale(calls.surface, &scale), 0);
                    EXPECT_EQ(scale, 1);
                }),
                ElementsAre("push", "clip 20 30 40 10", "interpolation 2", "antialiasing 1", "transform 9", "pop"));
}

TEST_F(HostDrawbotSuites, CountReferencesToObjects) {
    logOf([](DrawCalls& calls) {
        const auto path = calls.path();
        EXPECT_EQ(calls.retain(path), 0);
        EXPECT_EQ(calls.release(path), 0);
        EXPECT_EQ(calls.pathSuite->MoveTo(path, 1, 1), 0) << "one reference is left";
        EXPECT_EQ(calls.release(path), 0);
        EXPECT_NE(calls.pathSuite->MoveTo(path, 1, 1), 0) << "none is left";
        EXPECT_NE(calls.release(path), 0);
        EXPECT_NE(calls.retain(path), 0);
    });
}

TEST_F(HostDrawbotSuites, ReportObjectsThatWereNotReleased) {
    LogSurface surface;
    const CommandResult result = draw(
        [](DrawCalls& calls) {
            calls.retain(calls.brush({0, 0, 0, 1}));
            calls.path();
        },
        surface);
    EXPECT_THAT(result.broken, testing::UnorderedElementsAre(HasSubstr("drawing object \"NewBrush\" (0), 2 times"),
                                                             HasSubstr("drawing object \"NewPath\"")));
}

TEST_F(HostDrawbotSuites, RefuseWhatIsNotTheirs) {
    logOf([](DrawCalls& calls) {
        const auto path = calls.path();
        const auto brush = calls.brush({0, 0, 0, 1});
        const auto& surface = *calls.surfaceSuite.table;
        const auto otherSurface = reinterpret_cast<DRAWBOT_SurfaceRef>(calls.supplier);
        const auto otherSupplier = reinterpret_cast<DRAWBOT_SupplierRef>(calls.surface);
        const DRAWBOT_Rect32 area = {0, 0, 1, 1};
        DRAWBOT_PathRef made = nullptr;
        EXPECT_NE(surface.PushStateStack(otherSurface), 0);
        EXPECT_NE(surface.Clip(calls.surface, otherSupplier, &area), 0);
        EXPECT_NE(calls.supplierSuite->NewPath(otherSupplier, &made), 0);
        EXPECT_NE(surface.FillPath(calls.surface, reinterpret_cast<DRAWBOT_BrushRef>(path), path, 1), 0);
        EXPECT_NE(surface.StrokePath(calls.surface, reinterpret_cast<DRAWBOT_PenRef>(brush), path), 0);
        EXPECT_NE(surface.FillPath(calls.surface, brush, nullptr, 1), 0);
        EXPECT_NE(surface.FillPath(calls.surface, brush, path, 2), 0);
        EXPECT_NE(surface.Clip(calls.surface, calls.supplier, nullptr), 0);
        EXPECT_NE(surface.SetInterpolationPolicy(calls.surface, 3), 0);
        EXPECT_NE(surface.SetAntiAliasPolicy(calls.surface, -1), 0);
        EXPECT_NE(surface.DrawString(calls.surface, brush, nullptr, nullptr, nullptr, 0, 0, 0), 0);
        EXPECT_NE(calls.pathSuite->BezierTo(path, nullptr, nullptr, nullptr), 0);
        calls.release(path);
        calls.release(brush);
    });
}

TEST_F(HostDrawbotSuites, HaveNothingToDrawOnOutsideOfDrawEvents) {
    renderWith(FakeProject::project(), [](PF_InData* in) {
        const Acquired<PF_EffectCustomUISuite1> customUi(in);
        const Acquired<DRAWBOT_DrawbotSuite1> drawbot(in);
        const Acquired<DRAWBOT_SupplierSuite1> supplierSuite(in);
        const Acquired<DRAWBOT_SurfaceSuite1> surfaceSuite(in);
        auto reference = reinterpret_cast<DRAWBOT_DrawRef>(in);
        EXPECT_EQ(customUi->PF_GetDrawingReference(nullptr, &reference), 0);
        EXPECT_EQ(reference, nullptr);
        DRAWBOT_SupplierRef supplier = nullptr;
        DRAWBOT_PathRef path = nullptr;
        EXPECT_NE(drawbot->GetSupplier(nullptr, &supplier), 0);
        EXPECT_NE(supplierSuite->NewPath(nullptr, &path), 0);
        EXPECT_NE(surfaceSuite->PushStateStack(nullptr), 0);
    });
}

TEST_F(HostDrawbotSuites, KnowOnlyTheEventsContext) {
    logOf([](DrawCalls& calls) {
        PF_Context other{};
        PF_Context* pointer = &other;
        DRAWBOT_DrawRef reference = nullptr;
        EXPECT_NE(calls.customUi->PF_GetDrawingReference(&pointer, &reference), 0);
    });
}

}  // namespace
}  // namespace TessavoyHost
