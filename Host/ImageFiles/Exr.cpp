#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfInputFile.h>
#include <ImfIntAttribute.h>
#include <ImfOutputFile.h>
#include <ImfStringAttribute.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <mutex>
#include <new>
#include <optional>
#include <stdexcept>

#include "Host/HostError.h"
#include "Host/ImageFiles/Formats.h"
#include "Host/ImageFiles/RowConversion.h"
#include "Host/ImageFiles/StraightAlpha.h"

namespace TessavoyHost {

namespace {

using Imath::Box2i;

// How many rows pass through memory at once, beside the picture; a multiple of what the compressions pack together,
// of which the largest that is common is 32.
constexpr int rowsOfABand = 64;

class ExrInput : public Imf::IStream {
public:
    explicit ExrInput(InputFile& file) : IStream("picture"), mFile(file) {}

    bool read(char to[], int count) override {
        if (mFile.read(to, static_cast<std::size_t>(count)) != static_cast<std::size_t>(count)) {
            mCutShort = true;
            throw std::runtime_error("the file ends early");
        }
        return mFile.position() < mFile.size();
    }
    std::uint64_t tellg() override { return mFile.position(); }
    void seekg(std::uint64_t position) override { mFile.seek(position); }
    void clear() override {}

    bool cutShort() const { return mCutShort; }

private:
    InputFile& mFile;
    bool mCutShort = false;
};

class ExrOutput : public Imf::OStream {
public:
    explicit ExrOutput(AtomicFile& file) : OStream("picture"), mFile(file) {}

    // AtomicFile keeps the failure, so the exception's text isn't used.
    void write(const char from[], int count) override {
        if (!mFile.write(from, static_cast<std::size_t>(count)))
            throw std::runtime_error("write error");
    }
    std::uint64_t tellp() override { return mFile.position(); }
    void seekp(std::uint64_t position) override { mFile.seek(position); }

private:
    AtomicFile& mFile;
};

// The library's own limit keeps it from taking memory for sizes that checkedSize would refuse a moment later.
void limitSizes() {
    static std::once_flag once;
    std::call_once(once, [] {
        Imf::Header::setMaxImageSize(maximumPictureSide, maximumPictureSide);
        Imf::Header::setMaxTileSize(maximumPictureSide, maximumPictureSide);
    });
}

ImageSize sizeOf(const InputFile& file, const Box2i& window) {
    const auto side = [](int from, int to) {
        const std::int64_t length = static_cast<std::int64_t>(to) - from + 1;
        return static_cast<std::uint64_t>(std::max<std::int64_t>(length, 0));
    };
    return checkedSize(file, side(window.min.x, window.max.x), side(window.min.y, window.max.y));
}

class ExrReader {
public:
    explicit ExrReader(InputFile& file) : mFile(file), mStream(file) {
        limitSizes();
        run([this] { mInput.emplace(mStream, 0); });
        chooseChannels();
    }

    ImageSize readSize() const { return sizeOf(mFile, mInput->header().displayWindow()); }

    Image readPixels() {
        const ImageSize size = readSize();
        mData = mInput->header().dataWindow();
        mDataWidth = sizeOf(mFile, mData).width;
        const bool complete = [this] {
            bool result = false;
            run([&] { result = mInput->isComplete(); });
            return result;
        }();
        if (!complete)
            mFile.failCutShort();
        requirePlausibleSize();
        Image image = newImage(size, SampleFormat::Float32);
        mBand.resize(static_cast<std::size_t>(mDataWidth) * 4 * rowsOfABand);
        for (int y = mData.min.y; y <= mData.max.y; y += rowsOfABand)
            readBand(image, y, std::min(y + rowsOfABand - 1, mData.max.y));
        makeStraight(image);
        return image;
    }

private:
    // Channels of the unnamed layer. A picture without R, G and B may have its grey in Y.
    void chooseChannels() {
        const Imf::ChannelList& channels = mInput->header().channels();
        const bool colour = channels.findChannel("R") || channels.findChannel("G") || channels.findChannel("B");
        mGrey = !colour && channels.findChannel("Y") && !channels.findChannel("RY");
        if (!colour && !mGrey && !channels.findChannel("A"))
            mFile.fail("is an EXR without channels R, G, B or A",
                       "write the picture's colour to channels of these names");
        if (mGrey)
            mNames[0] = "Y";
    }

    // No compression of the format shrinks pictures that much, so a small file that claims to be huge is told without
    // filling the memory.
    void requirePlausibleSize() const {
        const std::uint64_t rows =
            static_cast<std::uint64_t>(mData.max.y) - static_cast<std::uint64_t>(mData.min.y) + 1;
        if (rows * static_cast<std::uint64_t>(mDataWidth) / (1 << 16) > mFile.size())
            mFile.failCutShort();
    }

    // Rows of the data window, first and last. Channels that the file lacks are filled: colour with 0, alpha with 1.
    void readBand(Image& image, int first, int last) {
        const std::size_t pixelBytes = 4 * sizeof(float);
        Imf::FrameBuffer buffer;
        for (int channel = 0; channel < 4; ++channel)
            buffer.insert(
                mNames[channel],
                Imf::Slice::Make(Imf::FLOAT, mBand.data() + channel, Imath::V2i(mData.min.x, first), mDataWidth,
                                 last - first + 1, pixelBytes, pixelBytes * static_cast<std::size_t>(mDataWidth), 1, 1,
                                 channel == 3 ? 1.0 : 0.0));
        run([&] {
            mInput->setFrameBuffer(buffer);
            mInput->readPixels(first, last);
        });
        if (mGrey)
            spreadGrey();
        for (int y = first; y <= last; ++y)
            copyRow(image, y,
                    mBand.data() + static_cast<std::size_t>(y - first) * static_cast<std::size_t>(mDataWidth) * 4);
    }

    void spreadGrey() {
        for (std::size_t sample = 0; sample < mBand.size(); sample += 4)
            mBand[sample + 1] = mBand[sample + 2] = mBand[sample];
    }

    // The part of a data row that lies in the display window.
    void copyRow(Image& image, int y, const float* from) const {
        const Box2i& display = mInput->header().displayWindow();
        const int left = std::max(mData.min.x, display.min.x);
        const int right = std::min(mData.max.x, display.max.x);
        if (y < display.min.y || y > display.max.y || left > right)
            return;
        std::memcpy(image.row<float>(y - display.min.y) + std::ptrdiff_t{4} * (left - display.min.x),
                    from + std::ptrdiff_t{4} * (left - mData.min.x),
                    static_cast<std::size_t>(right - left + 1) * 4 * sizeof(float));
    }

    template <class Work>
    void run(Work work) {
        try {
            work();
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& error) {
            if (mStream.cutShort())
                mFile.failCutShort();
            mFile.failDamaged(error.what());
        }
    }

    InputFile& mFile;
    ExrInput mStream;
    std::optional<Imf::InputFile> mInput;
    Box2i mData;
    int mDataWidth = 0;
    bool mGrey = false;
    const char* mNames[4] = {"R", "G", "B", "A"};
    std::vector<float> mBand;  // R, G, B, A
};

Imf::Header headerOf(const PixelView& pixels, const FrameMetadata& metadata) {
    Imf::Header header(pixels.width, pixels.height);
    header.compression() = Imf::ZIP_COMPRESSION;
    header.zipCompressionLevel() = 1;
    header.insert("software", Imf::StringAttribute(metadata.software));
    header.insert("frame", Imf::IntAttribute(metadata.frame));
    for (const char* name : {"R", "G", "B", "A"})
        header.channels().insert(name, Imf::Channel(Imf::FLOAT));
    return header;
}

void writeBand(Imf::OutputFile& output, const PixelView& pixels, int top, int rows, std::vector<float>& band) {
    const std::size_t rowSamples = static_cast<std::size_t>(pixels.width) * 4;
    for (int row = 0; row < rows; ++row) {
        float* rgba = band.data() + static_cast<std::size_t>(row) * rowSamples;
        rowToFloat(pixels, top + row, rgba);
        premultiplyRow(rgba, pixels.width);
    }
    Imf::FrameBuffer buffer;
    for (int channel = 0; channel < 4; ++channel)
        buffer.insert(std::string(1, "RGBA"[channel]),
                      Imf::Slice::Make(Imf::FLOAT, band.data() + channel, Imath::V2i(0, top), pixels.width, rows,
                                       4 * sizeof(float), rowSamples * sizeof(float)));
    output.setFrameBuffer(buffer);
    output.writePixels(rows);
}

}  // namespace

ImageSize probeExr(InputFile& file) {
    return ExrReader(file).readSize();
}

Image readExr(InputFile& file) {
    return ExrReader(file).readPixels();
}

void writeExr(AtomicFile& file, const PixelView& pixels, const FrameMetadata& metadata, int) {
    std::vector<float> band(static_cast<std::size_t>(pixels.width) * 4 * rowsOfABand);
    try {
        ExrOutput stream(file);
        // Its destructor writes the table of rows; what fails there is kept by the file and thrown by its commit.
        Imf::OutputFile output(stream, headerOf(pixels, metadata), 0);
        for (int y = 0; y < pixels.height; y += rowsOfABand)
            writeBand(output, pixels, y, std::min(rowsOfABand, pixels.height - y), band);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        file.fail(std::string("OpenEXR: ") + error.what());
    }
}

}  // namespace TessavoyHost
