#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "Host/FrameSource.h"
#include "Tests/Pictures/Picture.h"

namespace Tessavoy {

/// A layer with a block of one colour for every cell of a grid, row by row. Its size is divisible by 2, 3 and 4, so
/// that it says the same at every resolution.
std::shared_ptr<TessavoyHost::FrameSource> cellLayer(const std::string& name, int columns, int rows,
                                                     const std::vector<Texel>& colours);

/// The layer that the frames are taken from. A timeline starts at 0 and shows each image for one frame.
std::shared_ptr<TessavoyHost::FrameSource> framesLayer(const PictureFrames& frames);

/// The same frames for the reference, on a grid of so many cells.
ReferenceSheet sheetOf(const PictureFrames& frames, int gridColumns, int gridRows);

/// A texture as a layer gives it at a lower resolution: every texel the mean of a box of so many, opaque ones.
ReferenceTexture boxed(const ReferenceTexture& texture, int across, int down);

/// The 2048 colours of a gradient from 0 to 1.
std::vector<ReferenceColour> gradientColours(const std::vector<GradientStop>& stops);

}  // namespace Tessavoy
