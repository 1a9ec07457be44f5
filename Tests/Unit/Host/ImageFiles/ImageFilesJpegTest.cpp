#include <cstdio>
#include <cstdlib>
// jpeglib.h wants FILE and size_t declared before it.
#include <jpeglib.h>

#include "Tests/Unit/Host/ImageFiles/ImageFileTestSupport.h"

namespace TessavoyHost {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct JpegKind {
    J_COLOR_SPACE colours = JCS_RGB;
    int components = 3;
    bool progressive = false;
    int restart = 0;
};

// A picture of one colour, 24 x 20 pixels, by the library's own writer.
std::string jpegOf(const Bytes& colour, const JpegKind& kind = {}) {
    jpeg_compress_struct encoder;
    jpeg_error_mgr errors;
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    unsigned char* bytes = nullptr;
    unsigned long count = 0;
    jpeg_mem_dest(&encoder, &bytes, &count);
    encoder.image_width = 24;
    encoder.image_height = 20;
    encoder.input_components = kind.components;
    encoder.in_color_space = kind.colours;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, 100, TRUE);
    encoder.restart_in_rows = kind.restart;
    if (kind.progressive)
        jpeg_simple_progression(&encoder);
    jpeg_start_compress(&encoder, TRUE);
    Bytes row;
    for (int x = 0; x < 24; ++x)
        row.insert(row.end(), colour.begin(), colour.end());
    JSAMPROW rows = row.data();
    while (encoder.next_scanline < 20)
        jpeg_write_scanlines(&encoder, &rows, 1);
    jpeg_finish_compress(&encoder);
    const std::string result(reinterpret_cast<char*>(bytes), count);
    jpeg_destroy_compress(&encoder);
    std::free(bytes);
    return result;
}

void expectColour(const std::string& jpeg, const Bytes& rgba) {
    const TestFolder folder;
    const auto path = writeBytes(folder / "made.jpg", jpeg);
    const Image image = readImage(path);
    ASSERT_EQ(image.width, 24);
    ASSERT_EQ(image.height, 20);
    EXPECT_EQ(probeImage(path).width, 24);
    EXPECT_EQ(probeImage(path).height, 20);
    ASSERT_EQ(image.format, SampleFormat::UInt8);
    const Bytes samples = samplesOf<std::uint8_t>(image);
    ASSERT_EQ(samples.size(), 24u * 20u * 4u);
    // The conversion to luma and chroma and back rounds.
    for (std::size_t i = 0; i < samples.size(); ++i)
        ASSERT_NEAR(samples[i], rgba[i % 4], i % 4 == 3 ? 0 : 2) << i;
}

TEST(ImageFilesJpeg, ReadsColourWithFullAlpha) {
    expectColour(jpegOf({200, 100, 50}), {200, 100, 50, 255});
}

TEST(ImageFilesJpeg, SpreadsGrey) {
    expectColour(jpegOf({77}, {JCS_GRAYSCALE, 1}), {77, 77, 77, 255});
}

TEST(ImageFilesJpeg, ReadsProgressivePicturesAndRestartMarkers) {
    expectColour(jpegOf({20, 100, 250}, {.progressive = true}), {20, 100, 250, 255});
    expectColour(jpegOf({20, 100, 250}, {.restart = 1}), {20, 100, 250, 255});
}

TEST(ImageFilesJpeg, SkipsWhatIsNotThePicture) {
    // Comments of the greatest length, more than is read at once, after the start marker.
    const std::string jpeg = jpegOf({200, 100, 50});
    std::string comments;
    for (int i = 0; i < 3; ++i)
        comments += "\xff\xfe\xff\xff" + std::string(65533, 'x');
    expectColour(jpeg.substr(0, 2) + comments + jpeg.substr(2), {200, 100, 50, 255});
}

TEST(ImageFilesJpeg, RefusesCmyk) {
    const TestFolder folder;
    for (const J_COLOR_SPACE colours : {JCS_CMYK, JCS_YCCK}) {
        const auto path = writeBytes(folder / "print.jpg", jpegOf({1, 2, 3, 4}, {colours, 4}));
        EXPECT_EQ(toldByReading(path).text,
                  path.string() + ": is a JPEG in CMYK or another unusual colour space; convert it to RGB");
    }
}

TEST(ImageFilesJpeg, RefusesDamagedPictureData) {
    const TestFolder folder;
    std::string jpeg = jpegOf({200, 100, 50});
    const std::size_t data = jpeg.rfind("\xff\xda") + 14;  // behind the header of the only scan
    jpeg.replace(data, 6, std::string("\xff\xd9\xff\xd9\xff\xd9", 6));
    const auto path = writeBytes(folder / "bad.jpg", jpeg);
    EXPECT_EQ(toldByReading(path).text.find(path.string() + ": can't be read ("), 0u) << toldByReading(path).text;
}

TEST(ImageFilesJpeg, RefusesHugeSizes) {
    const TestFolder folder;
    std::string jpeg = jpegOf({200, 100, 50});
    const std::size_t frame = jpeg.find("\xff\xc0") + 5;  // height, then width, big-endian
    jpeg.replace(frame, 4, std::string("\xff\x00\x00\x18", 4));
    const auto path = writeBytes(folder / "huge.jpg", jpeg);
    EXPECT_EQ(toldByReading(path).text,
              path.string() + ": has 24 x 65280 pixels; scale it down to 30000 x 30000 at most");
}

}  // namespace
}  // namespace TessavoyHost
