#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Host/FrameSource.h"
#include "Host/Image.h"
#include "Host/Project.h"
#include "Host/Scene/NumberedName.h"

namespace TessavoyHost {

// Reads and decodes one image file. Throws HostError naming the file.
using ImageReader = std::function<Image(const std::filesystem::path&)>;

// What every layer has: its name, its size, and when it is there.
struct LayerFrame {
    std::string name;
    int width = 0;  // full-resolution pixels
    int height = 0;
    double start = 0;     // composition seconds
    double duration = 0;  // seconds
};

// The common part of the sources.
class LayerSource : public FrameSource {
public:
    explicit LayerSource(LayerFrame frame) : mFrame(std::move(frame)) {}
    std::string name() const override { return mFrame.name; }
    int width() const override { return mFrame.width; }
    int height() const override { return mFrame.height; }
    double start() const override { return mFrame.start; }
    double duration() const override { return mFrame.duration; }

protected:
    // Seconds since the start, taken up to a frame's beginning that is less than a millionth of a second away; nothing
    // before the start and from the end on.
    std::optional<double> layerTime(double compositionSeconds) const;

private:
    LayerFrame mFrame;
};

// One colour everywhere.
class SolidSource : public LayerSource {
public:
    SolidSource(LayerFrame frame, ColorValue color) : LayerSource(std::move(frame)), mColor(color) {}
    std::shared_ptr<const Image> frameAt(double compositionSeconds) override;

private:
    ColorValue mColor;
    std::once_flag mMade;
    std::shared_ptr<const Image> mImage;
};

// Decoded pictures of files, read when they are first asked for. A picture that somebody still holds is given out again
// as the same object; beyond that the pictures used last are kept, as far as they fit the budget, and one always.
class ImageCache {
public:
    // budget: bytes of samples. size: what each file must measure.
    ImageCache(ImageReader read, int width, int height, std::size_t budget);
    // Throws HostError when the file can't be read or has another size. Different files are decoded side by side.
    std::shared_ptr<const Image> get(const std::filesystem::path& file);

private:
    struct Entry {
        std::mutex decoding;
        std::weak_ptr<const Image> image;
    };
    std::shared_ptr<const Image> decode(const std::filesystem::path& file) const;
    void keep(const std::shared_ptr<const Image>& image);

    ImageReader mRead;
    int mWidth, mHeight;
    std::size_t mBudget;
    std::mutex mMutex;
    std::map<std::filesystem::path, std::shared_ptr<Entry>> mEntries;
    std::vector<std::shared_ptr<const Image>> mKept;  // used last stands last
};

// One picture for the whole time.
class StillSource : public LayerSource {
public:
    StillSource(LayerFrame frame, std::filesystem::path file, ImageReader read);
    std::shared_ptr<const Image> frameAt(double compositionSeconds) override;

private:
    std::filesystem::path mFile;
    ImageCache mCache;
};

// The files of a numbered sequence.
struct SequenceFiles {
    std::filesystem::path folder;
    NumberedName name;  // of the files in the folder, in UTF-8
    int first = 0;      // number of the first file
    int count = 0;
    double frameRate = 0;  // files a second

    std::filesystem::path file(int index) const;  // index from 0
};

// A numbered sequence, each file shown for one frame of its own rate.
class SequenceSource : public LayerSource {
public:
    SequenceSource(LayerFrame frame, SequenceFiles files, ImageReader read);
    std::shared_ptr<const Image> frameAt(double compositionSeconds) override;

private:
    SequenceFiles mFiles;
    ImageCache mCache;
};

}  // namespace TessavoyHost
