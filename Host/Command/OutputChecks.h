#pragma once

#include <filesystem>
#include <vector>

#include "Host/Command/OutputPattern.h"
#include "Host/Command/RenderOptions.h"

namespace TessavoyHost {

// What can be known before anything is rendered. Each throws HostError(CommandLine) that names what is in the way.

// Several frames need a place for their number.
void checkNumbering(const OutputPattern& output, const std::vector<int>& frames);
// Files can be made in the folder. Passing files that processes left there which run no more are removed.
void checkFolder(const std::filesystem::path& folder);
// A name of one file, in such a folder, with nothing but a file in its place.
void checkFile(const std::filesystem::path& file);
// No file is in the way: none at all where existing files are a failure, and nothing but files where they aren't.
void checkExistingFiles(const OutputPattern& output, const std::vector<int>& frames, ExistingFiles existing);
// The region lies inside a layer of that many downsampled pixels.
void checkRegion(const Region& region, int width, int height);

}  // namespace TessavoyHost
