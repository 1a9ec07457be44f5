#include <csetjmp>
#include <cstdio>
#include <memory>
// jpeglib.h wants FILE and size_t declared before it.
#include <jerror.h>
#include <jpeglib.h>

#include "Host/ImageFiles/Formats.h"

namespace TessavoyHost {

namespace {

// What the library's callbacks reach: it leaves its C frames by a jump, over frames that hold only plain values.
struct JpegState {
    jpeg_decompress_struct decoder = {};
    jpeg_error_mgr errors = {};
    jpeg_source_mgr source = {};
    InputFile* file = nullptr;
    std::jmp_buf leave = {};
    char message[JMSG_LENGTH_MAX] = "";
    bool cutShort = false;
    JOCTET bytes[64 * 1024] = {};
};

extern "C" {
static void leaveWithMessage(j_common_ptr common) {
    auto* state = static_cast<JpegState*>(common->client_data);
    common->err->format_message(common, state->message);
    std::longjmp(state->leave, 1);
}

// Most warnings tell of things that don't touch the picture. Damaged picture data, which the library would fill with
// grey, is an error here.
static void judgeWarning(j_common_ptr common, int level) {
    const int code = common->err->msg_code;
    if (level < 0 && (code == JWRN_HIT_MARKER || code == JWRN_HUFF_BAD_CODE))
        leaveWithMessage(common);
}

static void printNothing(j_common_ptr) {}

static void initSource(j_decompress_ptr) {}

static boolean fillBuffer(j_decompress_ptr decoder) {
    auto* state = static_cast<JpegState*>(decoder->client_data);
    const std::size_t count = state->file->read(state->bytes, sizeof state->bytes);
    if (count == 0) {
        state->cutShort = true;
        std::longjmp(state->leave, 1);
    }
    state->source.next_input_byte = state->bytes;
    state->source.bytes_in_buffer = count;
    return TRUE;
}

static void skipBytes(j_decompress_ptr decoder, long count) {
    auto* state = static_cast<JpegState*>(decoder->client_data);
    if (count <= 0)
        return;
    const auto skipped = static_cast<std::size_t>(count);
    jpeg_source_mgr& source = state->source;
    if (skipped <= source.bytes_in_buffer) {
        source.next_input_byte += skipped;
        source.bytes_in_buffer -= skipped;
        return;
    }
    state->file->seek(state->file->position() + (skipped - source.bytes_in_buffer));
    source.bytes_in_buffer = 0;
}
}

class JpegReader {
public:
    explicit JpegReader(InputFile& file) : mState(std::make_unique<JpegState>()), mFile(file) {
        JpegState& state = *mState;
        state.file = &file;
        state.decoder.err = jpeg_std_error(&state.errors);
        state.decoder.client_data = &state;
        state.errors.error_exit = leaveWithMessage;
        state.errors.emit_message = judgeWarning;
        state.errors.output_message = printNothing;
        state.source.init_source = initSource;
        state.source.fill_input_buffer = fillBuffer;
        state.source.skip_input_data = skipBytes;
        state.source.resync_to_restart = jpeg_resync_to_restart;
        state.source.term_source = initSource;
    }
    ~JpegReader() { jpeg_destroy_decompress(&mState->decoder); }
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    ImageSize readHeader() {
        jpeg_decompress_struct& decoder = mState->decoder;
        run([&] {
            jpeg_create_decompress(&decoder);
            decoder.src = &mState->source;
            jpeg_read_header(&decoder, TRUE);
        });
        requireRgbOrGrey();
        return checkedSize(mFile, decoder.image_width, decoder.image_height);
    }

    Image readPixels(ImageSize size) {
        jpeg_decompress_struct& decoder = mState->decoder;
        Image image{size.width, size.height, SampleFormat::UInt8, {}};
        run([&] {
            decoder.out_color_space = JCS_EXT_RGBA;  // the library spreads grey and sets full alpha
            jpeg_start_decompress(&decoder);
        });
        image.samples.reserve(image.rowBytes() * static_cast<std::size_t>(image.height));
        for (int y = 0; y < size.height; ++y)
            readRow(image, y);
        run([&] { jpeg_finish_decompress(&decoder); });
        return image;
    }

private:
    // jpeg_read_header and the rest are called inside, so that their jump lands here.
    template <class Work>
    void run(Work work) {
        if (jumpless(work))
            return;
        if (mState->cutShort)
            mFile.failCutShort();
        mFile.failDamaged(mState->message);
    }

    template <class Work>
    bool jumpless(Work work) {
        if (setjmp(mState->leave) != 0)
            return false;
        work();
        return true;
    }

    void requireRgbOrGrey() const {
        const J_COLOR_SPACE space = mState->decoder.jpeg_color_space;
        if (space != JCS_GRAYSCALE && space != JCS_YCbCr && space != JCS_RGB)
            mFile.fail("is a JPEG in CMYK or another unusual colour space", "convert it to RGB");
    }

    // The picture grows row by row, so that a short file that claims to be huge doesn't fill the memory first.
    void readRow(Image& image, int y) {
        image.samples.resize(image.rowBytes() * (static_cast<std::size_t>(y) + 1));
        JSAMPROW row = image.row<JSAMPLE>(y);
        run([&] { jpeg_read_scanlines(&mState->decoder, &row, 1); });
    }

    std::unique_ptr<JpegState> mState;
    InputFile& mFile;
};

}  // namespace

ImageSize probeJpeg(InputFile& file) {
    return JpegReader(file).readHeader();
}

Image readJpeg(InputFile& file) {
    JpegReader reader(file);
    return reader.readPixels(reader.readHeader());
}

}  // namespace TessavoyHost
