#include "Host/Scene/LayersReader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "Host/HostError.h"
#include "Host/Scene/CompositionReader.h"
#include "Host/Scene/Files.h"
#include "Host/Scene/Values.h"

namespace TessavoyHost {
namespace {

constexpr int mostFiles = 1'000'000;

class LayerReader {
public:
    LayerReader(const std::filesystem::path& folder, const Composition& composition, const ImageAccess& images)
        : mFolder(folder), mComposition(composition), mImages(images) {}

    std::shared_ptr<FrameSource> read(const JsonNode& node, const std::string& name) const {
        const bool isObject = node.json().is_object();
        const bool hasImage = isObject && node.json().contains("image");
        if (isObject && hasImage == node.json().contains("solid")) {
            node.problem(hasImage ? "has both \"image\" and \"solid\"" : "needs \"image\" or \"solid\"");
            return nullptr;
        }
        return hasImage ? readImageLayer(node, name) : readSolid(node, name);
    }

private:
    LayerFrame wholeTime(const std::string& name, PixelSize size) const {
        return {name, size.width, size.height, 0, mComposition.duration};
    }

    std::shared_ptr<FrameSource> readSolid(const JsonNode& node, const std::string& name) const {
        const JsonObject object(node, {"name", "solid", "width", "height"});
        const auto solid = object.require("solid");
        const auto width = object.requireInteger("width", 1, maximumPictureSide);
        const auto height = object.requireInteger("height", 1, maximumPictureSide);
        const auto color = solid ? readColor(*solid) : std::nullopt;
        if (!color || !width || !height) {
            return nullptr;
        }
        return std::make_shared<SolidSource>(wholeTime(name, {*width, *height}), *color);
    }

    std::shared_ptr<FrameSource> readImageLayer(const JsonNode& node, const std::string& name) const {
        const JsonNode image = node.child("image");
        const auto text = image.name();
        if (!text) {
            return nullptr;
        }
        // Folders may be called anything: a number stands in the file's own name.
        const std::filesystem::path file = mFolder / pathFromUtf8(*text);
        const std::string fileName = utf8(file.filename());
        auto places = findNumberPlaces(fileName);
        const bool hasLoneHash = std::erase_if(places, [](const NumberPlace& place) { return place.isLoneHash; }) > 0;
        if (places.size() > 1) {
            image.problem("has more than one place for a number");
            return nullptr;
        }
        if (places.empty() && isMeantAsSequence(node)) {
            refuseUnnumbered(node, hasLoneHash);
            return nullptr;
        }
        return places.empty() ? readStill(node, name, file)
                              : readSequence(node, name, file.parent_path(), NumberedName(fileName, places[0]));
    }

    static JsonObject sequenceObject(const JsonNode& node) {
        return JsonObject(node, {"name", "image", "first", "count", "frameRate", "start"});
    }

    static bool isMeantAsSequence(const JsonNode& node) {
        return node.json().contains("first") || node.json().contains("count");
    }

    static void refuseUnnumbered(const JsonNode& node, bool hasLoneHash) {
        sequenceObject(node);
        node.child("image").problem(
            hasLoneHash ? "a lone # means a number to some tools and not to others; write ## or %d"
                        : "has no place for the number in the file's name; write ## or %d where it stands");
    }

    std::shared_ptr<FrameSource> readStill(const JsonNode& node, const std::string& name,
                                           const std::filesystem::path& file) const {
        const JsonObject object(node, {"name", "image"});
        const auto size = probe(node.child("image"), file);
        if (!size) {
            return nullptr;
        }
        auto still = std::make_shared<StillSource>(wholeTime(name, *size), file, mImages.read);
        if (mImages.check != PictureCheck::None) {
            checkPicture(node.child("image"), *still, 0);
        }
        return still;
    }

    std::shared_ptr<FrameSource> readSequence(const JsonNode& node, const std::string& name,
                                              const std::filesystem::path& folder, const NumberedName& fileName) const {
        const JsonObject object = sequenceObject(node);
        const auto first = object.requireInteger("first", 0, mostFiles);
        const auto count = object.requireInteger("count", 1, mostFiles);
        const auto rateNode = object.find("frameRate");
        const auto startNode = object.find("start");
        const auto rate = rateNode ? readFrameRate(*rateNode) : std::optional(mComposition.frameRate);
        const auto start = startNode ? startNode->number(anyNumber) : std::optional(0.0);
        if (!first || !count || !rate || !start) {
            return nullptr;
        }
        const double duration = *count / rate->value();
        if (!fitsClock(*start, duration)) {
            node.problem("runs from " + numberInWords(*start) + " to " + numberInWords(*start + duration) +
                         " seconds, which is more than the host's clock holds at " +
                         std::to_string(mComposition.frameRate.num) + " units a second");
            return nullptr;
        }
        const SequenceFiles files{folder, fileName, *first, *count, rate->value()};
        const auto size = probeAll(node.child("image"), files);
        if (!size) {
            return nullptr;
        }
        const LayerFrame frame{name, size->width, size->height, *start, duration};
        auto sequence = std::make_shared<SequenceSource>(frame, files, mImages.read);
        if (mImages.check == PictureCheck::All) {
            checkSequence(node.child("image"), *sequence, files);
        }
        return sequence;
    }

    void checkSequence(const JsonNode& image, FrameSource& source, const SequenceFiles& files) const {
        for (int i = 0; i < files.count; ++i) {
            if (mImages.checking) {
                mImages.checking(source.name(), i, files.count);
            }
            checkPicture(image, source, source.start() + (i + 0.5) / files.frameRate);
        }
    }

    // The layer's picture at a moment can be decoded.
    static void checkPicture(const JsonNode& image, FrameSource& source, double compositionSeconds) {
        try {
            source.frameAt(compositionSeconds);
        } catch (const HostError& error) {
            image.problem(error.what());
        }
    }

    // The host counts time in frameRate.num units a second, with 32 bits; layer time at the composition's end, too.
    bool fitsClock(double start, double duration) const {
        const double most = std::numeric_limits<std::int32_t>::max() / static_cast<double>(mComposition.frameRate.num);
        return std::abs(start) <= most && duration <= most && start + duration <= most &&
               mComposition.duration - start <= most;
    }

    std::optional<PixelSize> probe(const JsonNode& image, const std::filesystem::path& file) const {
        try {
            return mImages.probe(file);
        } catch (const HostError& error) {
            image.problem(error.what());
            return std::nullopt;
        }
    }

    // The size of the first file, when all are there.
    std::optional<PixelSize> probeAll(const JsonNode& image, const SequenceFiles& files) const {
        for (int i = 1; i < files.count; ++i) {
            std::error_code ignored;
            if (!std::filesystem::exists(files.file(i), ignored)) {
                image.problem(utf8(files.file(i)) + ": there is no such file; the sequence has " +
                              std::to_string(files.count) + " files from number " + std::to_string(files.first));
                return std::nullopt;
            }
        }
        return probe(image, files.file(0));
    }

    const std::filesystem::path& mFolder;
    const Composition& mComposition;
    const ImageAccess& mImages;
};

std::string readLayerName(const JsonNode& node, const std::vector<std::string>& taken) {
    if (!node.json().is_object()) {
        node.wrongType("an object");
        return {};
    }
    if (!node.json().contains("name")) {
        node.missing("name");
        return {};
    }
    const auto name = node.child("name").name();
    if (name && std::find(taken.begin(), taken.end(), *name) != taken.end()) {
        node.child("name").problem("there is a layer \"" + *name + "\" already");
    }
    return name.value_or("");
}

}  // namespace

LayerList readLayers(const JsonNode& node, const std::filesystem::path& folder, const Composition& composition,
                     const ImageAccess& images) {
    LayerList list;
    const LayerReader reader(folder, composition, images);
    const auto elements = node.elements();
    if (!elements) {
        return list;
    }
    for (const auto& element : *elements) {
        const std::string name = readLayerName(element, list.names);
        list.names.push_back(name);
        list.sources.push_back(element.json().is_object() ? reader.read(element, name) : nullptr);
    }
    return list;
}

}  // namespace TessavoyHost
