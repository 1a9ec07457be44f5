#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <bit>
#include <csetjmp>
#include <cstdio>
#include <cstring>

#include "Host/ImageFiles/Formats.h"
#include "Host/ImageFiles/RowConversion.h"

namespace TessavoyHost {

namespace {

// The library reports errors by jumping out of its C frames. What the jump passes over must hold nothing that needs a
// destructor, so all state lives in the owners below and the guarded lambdas keep to plain values.
struct Message {
    char text[200] = "";
};

extern "C" {
static void keepMessage(png_structp png, png_const_charp text) {
    std::snprintf(static_cast<Message*>(png_get_error_ptr(png))->text, sizeof(Message::text), "%s", text);
    png_longjmp(png, 1);
}

static void ignoreWarning(png_structp, png_const_charp) {}

static void readBytes(png_structp png, png_bytep to, png_size_t count) {
    if (static_cast<InputFile*>(png_get_io_ptr(png))->read(to, count) != count)
        png_error(png, "");  // an empty text: the file ends here
}

static void writeBytes(png_structp png, png_bytep from, png_size_t count) {
    if (!static_cast<AtomicFile*>(png_get_io_ptr(png))->write(from, count))
        png_error(png, "write error");
}

static void flushBytes(png_structp) {}
}

template <class Work>
bool guarded(png_structp png, Work work) {
    if (setjmp(png_jmpbuf(png)) != 0)
        return false;
    work();
    return true;
}

class PngReader {
public:
    explicit PngReader(InputFile& file) : mFile(file) {
        mPng = png_create_read_struct(PNG_LIBPNG_VER_STRING, &mMessage, keepMessage, ignoreWarning);
        mInfo = mPng == nullptr ? nullptr : png_create_info_struct(mPng);
        if (mInfo == nullptr)
            mFile.fail("can't be decoded: libpng doesn't start", "see whether memory is left and libpng fits");
    }
    ~PngReader() { png_destroy_read_struct(&mPng, &mInfo, nullptr); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;

    ImageSize readHeader() {
        run([this] {
            png_set_read_fn(mPng, &mFile, readBytes);
            png_set_user_limits(mPng, PNG_UINT_31_MAX, PNG_UINT_31_MAX);  // sizes are judged by checkedSize
            png_read_info(mPng, mInfo);
        });
        return checkedSize(mFile, png_get_image_width(mPng, mInfo), png_get_image_height(mPng, mInfo));
    }

    Image readPixels(ImageSize size) {
        requirePlausibleSize();
        run([this] { requestRgba(); });
        const bool wide = png_get_bit_depth(mPng, mInfo) == 16;
        Image image = newImage(size, wide ? SampleFormat::UInt16 : SampleFormat::UInt8);
        if (png_get_rowbytes(mPng, mInfo) != image.rowBytes())
            mFile.failDamaged("unexpected row length");
        mRows.reserve(static_cast<std::size_t>(size.height));
        for (int y = 0; y < size.height; ++y)
            mRows.push_back(image.row<png_byte>(y));
        run([this] {
            png_read_image(mPng, mRows.data());
            png_read_end(mPng, nullptr);
        });
        return image;
    }

private:
    template <class Work>
    void run(Work work) {
        if (guarded(mPng, work))
            return;
        if (mMessage.text[0] == '\0')
            mFile.failCutShort();
        mFile.failDamaged(mMessage.text);
    }

    // Deflate shrinks data by 1032 at most, so a small file that claims to be huge is told without filling the memory.
    void requirePlausibleSize() const {
        const std::uint64_t bits = static_cast<std::uint64_t>(png_get_bit_depth(mPng, mInfo)) *
                                   png_get_channels(mPng, mInfo) * png_get_image_width(mPng, mInfo);
        if (bits / 8 * png_get_image_height(mPng, mInfo) / 1032 > mFile.size())
            mFile.failCutShort();
    }

    // Asks for R, G, B, A of 8 or 16 bits, whatever the file holds.
    void requestRgba() {
        png_set_expand(mPng);  // palette, grey of few bits, a transparent colour
        png_set_gray_to_rgb(mPng);
        png_set_add_alpha(mPng, 0xffff, PNG_FILLER_AFTER);
        if constexpr (std::endian::native == std::endian::little)
            png_set_swap(mPng);
        png_set_interlace_handling(mPng);
        png_read_update_info(mPng, mInfo);
    }

    InputFile& mFile;
    Message mMessage;
    png_structp mPng = nullptr;
    png_infop mInfo = nullptr;
    std::vector<png_bytep> mRows;
};

class PngWriter {
public:
    explicit PngWriter(AtomicFile& file) : mFile(file) {
        mPng = png_create_write_struct(PNG_LIBPNG_VER_STRING, &mMessage, keepMessage, ignoreWarning);
        mInfo = mPng == nullptr ? nullptr : png_create_info_struct(mPng);
        if (mInfo == nullptr)
            mFile.fail("libpng doesn't start");
    }
    ~PngWriter() { png_destroy_write_struct(&mPng, &mInfo); }
    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;

    void write(const PixelView& pixels, const FrameMetadata& metadata, int level) {
        const int bits = pixels.bitsPerChannel == 8 ? 8 : 16;
        setTexts(metadata);
        mRow.resize(static_cast<std::size_t>(pixels.width) * 4);
        run([&] {
            png_set_write_fn(mPng, &mFile, writeBytes, flushBytes);
            png_set_IHDR(mPng, mInfo, static_cast<png_uint_32>(pixels.width), static_cast<png_uint_32>(pixels.height),
                         bits, PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                         PNG_FILTER_TYPE_DEFAULT);
            png_set_text(mPng, mInfo, mTexts, 2);
            chooseCompression(std::clamp(level, 0, 9));
            png_write_info(mPng, mInfo);
            if (bits == 16 && std::endian::native == std::endian::little)
                png_set_swap(mPng);
            for (int y = 0; y < pixels.height; ++y)
                writeRow(pixels, y);
            png_write_end(mPng, nullptr);
        });
    }

private:
    template <class Work>
    void run(Work work) {
        if (!guarded(mPng, work))
            mFile.fail(std::string("libpng: ") + mMessage.text);
    }

    void setTexts(const FrameMetadata& metadata) {
        mSoftware = metadata.software;
        mFrame = std::to_string(metadata.frame);
        const auto set = [](png_text& text, const char* key, std::string& value) {
            text = {};
            text.compression = PNG_TEXT_COMPRESSION_NONE;
            text.key = const_cast<char*>(key);
            text.text = value.data();
            text.text_length = value.size();
        };
        set(mTexts[0], "Software", mSoftware);
        set(mTexts[1], "Frame", mFrame);
    }

    // One filter for all rows while speed counts: trying each takes longer than the deflating. At level 1 it is the one
    // that leaves the longest runs of zeros, and deflate looks for runs alone: sooner than its usual search, for files
    // of about the same size.
    void chooseCompression(int level) {
        png_set_compression_level(mPng, level);
        png_set_compression_buffer_size(mPng, std::size_t{128} * 1024);
        if (level == 1)
            png_set_compression_strategy(mPng, Z_RLE);
        if (level == 0)
            png_set_filter(mPng, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
        else if (level == 1)
            png_set_filter(mPng, PNG_FILTER_TYPE_BASE, PNG_FILTER_PAETH);
        else if (level <= 3)
            png_set_filter(mPng, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
        else
            png_set_filter(mPng, PNG_FILTER_TYPE_BASE, PNG_ALL_FILTERS);
    }

    void writeRow(const PixelView& pixels, int y) {
        auto* bytes = reinterpret_cast<png_bytep>(mRow.data());
        if (pixels.bitsPerChannel == 8)
            rowToUInt8(pixels, y, bytes);
        else
            rowToUInt16(pixels, y, mRow.data());
        png_write_row(mPng, bytes);
    }

    AtomicFile& mFile;
    Message mMessage;
    png_structp mPng = nullptr;
    png_infop mInfo = nullptr;
    std::string mSoftware;
    std::string mFrame;
    png_text mTexts[2] = {};
    std::vector<std::uint16_t> mRow;  // room for 16 bits, half used with 8
};

}  // namespace

ImageSize probePng(InputFile& file) {
    return PngReader(file).readHeader();
}

Image readPng(InputFile& file) {
    PngReader reader(file);
    return reader.readPixels(reader.readHeader());
}

void writePng(AtomicFile& file, const PixelView& pixels, const FrameMetadata& metadata, int level) {
    PngWriter(file).write(pixels, metadata, level);
}

}  // namespace TessavoyHost
