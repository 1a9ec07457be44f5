#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include "HostInterface/Constants.h"
#include "HostInterface/DrawbotSuites.h"

// What modules draw in the panel, apart from where it comes out. Coordinates are pixels of the panel, y downwards,
// after the transform; colours run from 0 to 1 and are straight.

namespace TessavoyHost {

// A piece of a path. A line, curve or arc begins where the last piece ended; an arc is joined to that by a line.
namespace PathPiece {
struct Move {
    DRAWBOT_PointF32 to;
};
struct Line {
    DRAWBOT_PointF32 to;
};
struct Curve {  // cubic Bezier
    DRAWBOT_PointF32 control1, control2, to;
};
struct Rectangle {  // a closed piece of its own
    DRAWBOT_RectF32 area;
};
struct Arc {  // degrees from the x axis, clockwise as seen
    DRAWBOT_PointF32 centre;
    float radius, start, sweep;
};
struct Close {};
}  // namespace PathPiece

using DrawnPath = std::vector<std::variant<PathPiece::Move, PathPiece::Line, PathPiece::Curve, PathPiece::Rectangle,
                                           PathPiece::Arc, PathPiece::Close>>;

// A line of text.
struct DrawnText {
    std::string text;         // UTF-8
    DRAWBOT_PointF32 origin;  // of the baseline: its left end, middle or right end by the alignment
    float fontSize = 0;       // pixels
    DRAWBOT_ColorRGBA color{};
    DRAWBOT_TextAlignment alignment = kDRAWBOT_TextAlignment_Default;
    DRAWBOT_TextTruncation truncation = kDRAWBOT_TextTruncation_None;
    float truncationWidth = 0;  // pixels that the text must fit in, where there is a truncation
};

// A picture of 8 bits a channel, blue, green, red, alpha, premultiplied, rows from the top without padding.
struct DrawnImage {
    int width = 0;
    int height = 0;
    std::vector<std::byte> samples;
};

// Where the drawing of one event comes out. What an implementation has no use for it leaves as it is here.
class DrawingSurface {
public:
    virtual ~DrawingSurface() = default;

    // The state is clip, transform and policies. States nest, and every pop has its push.
    virtual void pushState() {}
    virtual void popState() {}
    // Narrows the clip.
    virtual void clip(const DRAWBOT_Rect32&) {}
    // Applies before the transform so far.
    virtual void transform(const DRAWBOT_MatrixF32&) {}
    virtual void setInterpolation(DRAWBOT_InterpolationPolicy) {}
    virtual void setAntiAliasing(DRAWBOT_AntiAliasPolicy) {}

    virtual void paintRect(const DRAWBOT_RectF32&, const DRAWBOT_ColorRGBA&) {}
    virtual void fillPath(const DrawnPath&, const DRAWBOT_ColorRGBA&, DRAWBOT_FillType) {}
    // width: of the pen, in pixels.
    virtual void strokePath(const DrawnPath&, const DRAWBOT_ColorRGBA&, float /*width*/) {}
    virtual void drawText(const DrawnText&) {}
    // origin: of the top left corner. alpha: 0 to 1, by which the picture is faded.
    virtual void drawImage(const DrawnImage&, const DRAWBOT_PointF32& /*origin*/, float /*alpha*/) {}
};

// Keeps the lines of text, and nothing else.
class TextRecorder : public DrawingSurface {
public:
    void drawText(const DrawnText& text) override { mTexts.push_back(text); }

    // In the order in which they were drawn.
    const std::vector<DrawnText>& texts() const { return mTexts; }

private:
    std::vector<DrawnText> mTexts;
};

}  // namespace TessavoyHost
