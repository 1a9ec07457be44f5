#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "Host/ImageFiles/Formats.h"
#include "Host/ImageFiles/RowConversion.h"

// PAM, the picture format "P7" of netpbm: a header of lines, then rows of samples without compression.

namespace TessavoyHost {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t longestHeader = std::size_t{64} * 1024;  // bytes, comments included

struct PamHeader {
    ImageSize size;
    int samples = 0;    // of a pixel, 1 to 4: grey, grey and alpha, RGB, RGBA
    bool wide = false;  // 16 bits, big-endian, instead of 8

    std::size_t rowBytes() const {
        return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(samples) * (wide ? 2 : 1);
    }
};

// The lines of a header as they come, before it is known whether they make sense together.
struct HeaderFields {
    std::optional<std::uint64_t> width, height, depth, maximum;
    std::string tupleType;
};

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\v\f";
    const std::size_t start = text.find_first_not_of(blanks);
    return start == text.npos ? ""sv : text.substr(start, text.find_last_not_of(blanks) + 1 - start);
}

class HeaderReader {
public:
    explicit HeaderReader(InputFile& file) : mFile(file) {}

    PamHeader read() {
        for (std::string line = readLine(); trimmed(line) != "ENDHDR"; line = readLine())
            take(trimmed(line));
        return checked();
    }

private:
    std::string readLine() {
        std::string line;
        for (char letter = '\0'; letter != '\n'; line += letter) {
            if (mFile.read(&letter, 1) != 1)
                mFile.failCutShort();
            if (mFile.position() > longestHeader)
                mFile.failDamaged("its header has no end");
        }
        line.pop_back();
        return line;
    }

    void take(std::string_view line) {
        if (line.empty() || line.starts_with('#'))
            return;
        const std::size_t end = std::min(line.find_first_of(" \t"), line.size());
        const std::string_view key = line.substr(0, end);
        const std::string_view value = trimmed(line.substr(end));
        if (key == "P7" && value.empty())
            return;
        if (key == "TUPLTYPE")
            mFields.tupleType += (mFields.tupleType.empty() ? "" : " ") + std::string(value);
        else
            numberCalled(key) = numberIn(value);
    }

    std::optional<std::uint64_t>& numberCalled(std::string_view key) {
        if (key == "WIDTH")
            return mFields.width;
        if (key == "HEIGHT")
            return mFields.height;
        if (key == "DEPTH")
            return mFields.depth;
        if (key == "MAXVAL")
            return mFields.maximum;
        mFile.failDamaged("its header has a line that PAM doesn't know");
    }

    std::uint64_t numberIn(std::string_view text) const {
        std::uint64_t number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || end != text.data() + text.size())
            mFile.failDamaged("its header has no number where one belongs");
        return number;
    }

    PamHeader checked() const {
        if (!mFields.width || !mFields.height || !mFields.depth || !mFields.maximum)
            mFile.failDamaged("its header lacks WIDTH, HEIGHT, DEPTH or MAXVAL");
        PamHeader header;
        header.size = checkedSize(mFile, *mFields.width, *mFields.height);
        header.samples = checkedSamples();
        header.wide = isWide();
        return header;
    }

    int checkedSamples() const {
        static constexpr std::string_view tupleTypes[] = {"GRAYSCALE", "GRAYSCALE_ALPHA", "RGB", "RGB_ALPHA"};
        constexpr auto remedy = "convert it to grey or RGB, with or without alpha";
        if (*mFields.depth < 1 || *mFields.depth > std::size(tupleTypes))
            mFile.fail("is a PAM with " + std::to_string(*mFields.depth) + " samples in a pixel", remedy);
        if (!mFields.tupleType.empty() && mFields.tupleType != tupleTypes[*mFields.depth - 1])
            mFile.fail("is a PAM whose TUPLTYPE isn't the one of grey or RGB with its DEPTH", remedy);
        return static_cast<int>(*mFields.depth);
    }

    bool isWide() const {
        if (*mFields.maximum != 255 && *mFields.maximum != 65535)
            mFile.fail("is a PAM with MAXVAL " + std::to_string(*mFields.maximum), "convert it to MAXVAL 255 or 65535");
        return *mFields.maximum == 65535;
    }

    InputFile& mFile;
    HeaderFields mFields;
};

std::uint8_t sampleAt(const std::uint8_t* bytes, std::size_t index, std::uint8_t) {
    return bytes[index];
}

std::uint16_t sampleAt(const std::uint8_t* bytes, std::size_t index, std::uint16_t) {
    return static_cast<std::uint16_t>(bytes[2 * index] << 8 | bytes[2 * index + 1]);
}

// Grey goes to R, G and B; alpha that isn't there is full.
template <class Sample>
void spreadRow(const std::uint8_t* from, const PamHeader& header, Sample* rgba) {
    const auto samples = static_cast<std::size_t>(header.samples);
    const std::size_t colours = samples < 3 ? 1 : 3;
    for (std::size_t x = 0; x < static_cast<std::size_t>(header.size.width); ++x, rgba += 4) {
        for (std::size_t channel = 0; channel < 3; ++channel)
            rgba[channel] = sampleAt(from, x * samples + (colours == 3 ? channel : 0), Sample{});
        rgba[3] = samples > colours ? sampleAt(from, x * samples + colours, Sample{}) : static_cast<Sample>(~Sample{0});
    }
}

// In place.
void makeBigEndian(std::vector<std::uint16_t>& samples) {
    auto* bytes = reinterpret_cast<std::uint8_t*>(samples.data());
    for (const std::uint16_t sample : samples) {
        *bytes++ = static_cast<std::uint8_t>(sample >> 8);
        *bytes++ = static_cast<std::uint8_t>(sample);
    }
}

std::string headerFor(const PixelView& pixels, const FrameMetadata& metadata) {
    return "P7\n# Software: " + metadata.software + "\n# Frame: " + std::to_string(metadata.frame) + "\nWIDTH " +
           std::to_string(pixels.width) + "\nHEIGHT " + std::to_string(pixels.height) + "\nDEPTH 4\nMAXVAL " +
           (pixels.bitsPerChannel == 8 ? "255" : "65535") + "\nTUPLTYPE RGB_ALPHA\nENDHDR\n";
}

}  // namespace

ImageSize probePam(InputFile& file) {
    return HeaderReader(file).read().size;
}

Image readPam(InputFile& file) {
    const PamHeader header = HeaderReader(file).read();
    // Before memory is taken for what a damaged header claims.
    if (file.size() - file.position() < header.rowBytes() * static_cast<std::uint64_t>(header.size.height))
        file.failCutShort();
    Image image = newImage(header.size, header.wide ? SampleFormat::UInt16 : SampleFormat::UInt8);
    std::vector<std::uint8_t> row(header.rowBytes());
    for (int y = 0; y < image.height; ++y) {
        if (file.read(row.data(), row.size()) != row.size())
            file.failCutShort();
        if (header.wide)
            spreadRow(row.data(), header, image.row<std::uint16_t>(y));
        else
            spreadRow(row.data(), header, image.row<std::uint8_t>(y));
    }
    return image;
}

void writePam(AtomicFile& file, const PixelView& pixels, const FrameMetadata& metadata, int) {
    const std::string header = headerFor(pixels, metadata);
    file.write(header.data(), header.size());
    const std::size_t samples = static_cast<std::size_t>(pixels.width) * 4;
    std::vector<std::uint8_t> bytes(samples);
    std::vector<std::uint16_t> wide(samples);
    for (int y = 0; y < pixels.height; ++y) {
        if (pixels.bitsPerChannel == 8) {
            rowToUInt8(pixels, y, bytes.data());
            file.write(bytes.data(), samples);
        } else {
            rowToUInt16(pixels, y, wide.data());
            makeBigEndian(wide);
            file.write(wide.data(), samples * sizeof(std::uint16_t));
        }
    }
}

}  // namespace TessavoyHost
