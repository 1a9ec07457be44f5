#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Host/Project.h"
#include "Host/Scene/JsonNode.h"
#include "Host/Scene/Layers.h"

namespace TessavoyHost {

struct PixelSize {
    int width = 0;
    int height = 0;
};

// How scenes look at image files; tests put something else in the place of the decoders.
struct ImageAccess {
    // Reads a file's header alone. Throws HostError.
    std::function<PixelSize(const std::filesystem::path&)> probe;
    ImageReader read;
};

// The decoders of Host/ImageFiles.
ImageAccess imageFileAccess();

struct LayerList {
    std::vector<std::shared_ptr<FrameSource>> sources;  // null where a problem was found
    std::vector<std::string> names;                     // as long as sources
};

// The list of layers: stills, numbered sequences and solids. Every file must be there; sizes come from headers, pixels
// are read when they are asked for. Relative paths are relative to the folder.
LayerList readLayers(const JsonNode& node, const std::filesystem::path& folder, const Composition& composition,
                     const ImageAccess& images);

}  // namespace TessavoyHost
