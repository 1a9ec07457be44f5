#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TessavoyHost {

// Longest side of pictures, solids and compositions, in pixels.
inline constexpr int maximumPictureSide = 30000;

struct ImageSize {
    int width = 0;
    int height = 0;
};

// UInt8 runs from 0 to 255, UInt16 from 0 to 65535, Float32 holds 0 to 1 for black to white and may lie outside.
enum class SampleFormat { UInt8, UInt16, Float32 };

inline constexpr std::size_t bytesPerSample(SampleFormat format) {
    return format == SampleFormat::UInt8 ? 1 : format == SampleFormat::UInt16 ? 2 : 4;
}

// A picture as it comes from a file: R, G, B, A interleaved, straight alpha, rows from the top, no padding, host byte
// order. A picture without alpha has full alpha, a grey one has its value in R, G and B.
struct Image {
    int width = 0;
    int height = 0;
    SampleFormat format = SampleFormat::UInt8;
    std::vector<std::byte> samples;  // width * height * 4 * bytesPerSample(format)

    std::size_t rowBytes() const { return static_cast<std::size_t>(width) * 4 * bytesPerSample(format); }

    // First sample of a row; Sample is the C++ type of the format (std::uint8_t, std::uint16_t, float).
    template <class Sample>
    const Sample* row(int y) const {
        return reinterpret_cast<const Sample*>(samples.data() + static_cast<std::size_t>(y) * rowBytes());
    }
    template <class Sample>
    Sample* row(int y) {
        return reinterpret_cast<Sample*>(samples.data() + static_cast<std::size_t>(y) * rowBytes());
    }
};

// Pixels of a world that somebody else owns: A, R, G, B interleaved, straight alpha, rows from the top, host byte
// order.
struct PixelView {
    const std::byte* data = nullptr;  // first sample of the top row, aligned for the sample type
    int width = 0;
    int height = 0;
    std::ptrdiff_t strideBytes = 0;  // from a row to the next one below
    int bitsPerChannel = 8;          // 8 (0 to 255), 16 (0 to 32768) or 32 (float)

    template <class Sample>
    const Sample* row(int y) const {
        return reinterpret_cast<const Sample*>(data + y * strideBytes);
    }
};

}  // namespace TessavoyHost
