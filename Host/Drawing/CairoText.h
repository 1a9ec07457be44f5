#pragma once

#include "Host/Drawing/DrawingSurface.h"

struct _cairo;

namespace TessavoyHost {

// Chooses the face and the size, in pixels, for what is measured and drawn afterwards.
void chooseFont(_cairo* context, float size);

// How far a line of well-formed UTF-8 goes with the chosen font, in pixels.
double advanceOf(_cairo* context, const std::string& text);

// The text as it can be drawn on one line: not well-formed parts are replaced, a tab becomes four spaces, and other
// control characters are left out.
std::string drawableText(const std::string& text);

// What of a drawable text fits into a width with the chosen font, by the truncation: its beginning; the same with an
// ellipsis behind; or both ends around an ellipsis. Not even the ellipsis where that doesn't fit.
std::string truncatedText(_cairo* context, const std::string& text, DRAWBOT_TextTruncation truncation, double width);

}  // namespace TessavoyHost
