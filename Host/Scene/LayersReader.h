#pragma once

#include <filesystem>
#include <functional>
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

// Which pictures are decoded while a scene is read, so that broken ones are the scene's failure and not the frames'.
enum class PictureCheck {
    None,    // only headers are looked at
    Stills,  // what every frame needs; the pictures are kept
    All,     // those of sequences, too, one by one
};

// How scenes look at image files; tests put something else in the place of the decoders.
struct ImageAccess {
    // Reads a file's header alone. Throws HostError.
    std::function<PixelSize(const std::filesystem::path&)> probe;
    ImageReader read;
    PictureCheck check = PictureCheck::None;
    // Told before each picture of a sequence that is checked; may be empty.
    std::function<void(const std::string& layer, int picture, int count)> checking = {};
};

// The decoders of Host/ImageFiles.
ImageAccess imageFileAccess(PictureCheck check = PictureCheck::None);

struct LayerList {
    std::vector<std::shared_ptr<FrameSource>> sources;  // null where a problem was found
    std::vector<std::string> names;                     // as long as sources
};

// The list of layers: stills, numbered sequences and solids. Every file must be there; sizes come from headers. Pixels
// are read when they are asked for, but for those that are to be checked. Relative paths are relative to the folder.
LayerList readLayers(const JsonNode& node, const std::filesystem::path& folder, const Composition& composition,
                     const ImageAccess& images);

}  // namespace TessavoyHost
